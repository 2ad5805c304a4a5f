#include "adapters/announced.h"

#include "adapters/announcedSources.h"

#include <algorithm>

namespace announced {

using contract::Shown;
using namespace sourceSettings;
using enum contract::Button;

namespace {

struct Row {
    const char* name;
    const char* module;
    const char* sourceKind;
    sourceSettings::Prepare prepare;
    const char* shown; ///< see `contract::Buttons`
    std::vector<contract::Caption> captions = {};
    Shown sequence = Shown::Keep;
};

const std::vector<Row>& Rows() {
    const QString csvTitle = QStringLiteral("File CSV da importare");
    const QString csvFilter = QStringLiteral("File CSV (*.csv)|*.csv|Tutti i file (*.*)|*.*");
    const QString datTitle = QStringLiteral("File DAT da importare");
    const QString datFilter = QStringLiteral("File DAT (*.dat)|*.dat|Tutti i file (*.*)|*.*");
    // clang-format off
    static const std::vector<Row> rows{
        {"Gamma TeamSystem", "modImport_GammaTeamsystem", "ODBC", DataSource("GAMMATEAMSYSTEM"), "YNNNNNYY",
         {{Piano, "Importa Sedi"}, {Disegni, "Importa Riferimenti"}}},
        {"Lumen", "modImport_Lumen", "File .dat", TextFile(datTitle, datFilter), "NNNNN---"},
        {"SAM", "modImport_SAM", "ODBC", PrepareSam, "YYNNN---"},
        {"OSL GP90", "modImport_OSL", "SQL Server", Server("OSL"), "YYYYYYNY",
         {{Saldi, "Importa Tabelle Generali"}, {Disegni, "Importa Listini"}}},
        {"DOMINIO", "modImport_Dominio", "ODBC", DataSource("DOMINIO"), "YNNNNYY-", {{Saldi, "Importa Tabelle Generali"}}},
        {"Kordel NetSuite", "modImport_NetSuite", "ODBC", DataSource("NETSUITE"), "YYYYYYNY",
         {{Saldi, "Importa Tabelle Generali"}, {Disegni, "Fusione Controparti"}}},
        {"Excel", "modImport_Excel", "Excel", OpenFileExcel(), "YYNNN---"},
        {"Access", "modImport_Access", "Access", ChosenAccessFile("ACCESS"), "YYYNN---"},
        {"SIGIP", "modImport_SIGIP", "ODBC", DataSource("SIGIP"), "YYYYYYN-", {{Saldi, "Correggi Date Consegna"}}},
        {"Zucchetti G2", "modImport_G2", "SQL Server", Server("G2"), "YYYNNNNY", {{Disegni, "Ricalcola IBAN Controparti"}}},
        {"Access Velmoran", "modImport_AccessVelmoran", "Access", ChosenAccessFile("VELMORAN"), "YYYN----", {{Dis, "Importa Listini"}}},
        {"Vision SQL", "modImport_Vision", "SQL Server", Server("VISION"), "YYN-----"},
        {"Dss Waps", "modImport_DssWaps", "File .dat", TextFolder("DSSWAPS"), "YY------"},
        {"Axis", "modImport_Axis", "Access", ChosenAccessFile("AXIS"), "YY------"},
        {"Excel scarico AS/400", "modImport_ExcelAS400", "Excel", OpenFileExcel(), "YYYY----",
         {{Cli, "Importa Clienti"}, {Doc, "Importa Fornitori"}}},
        {"Gemini", "modImport_Gemini", "SQL Server", Server("GEMINI"), "YYYN----", {{Dis, "Importa Listini"}}},
        {"Fenice", "modImport_Fenice", "ODBC", DataSource("FENICE"), "NN------"},
        {"Cometa", "modImport_Cometa", "ODBC", DataSource("COMETA"), "YYNNNNNY"},
        {"Albalog", "modImport_Albalog", "ODBC", DataSource("ALBALOG"), "YYYNNN--", {{Dis, "Importa Listini"}}},
        {"Puzzle", "modImport_Puzzle", "ODBC", DataSource("PUZZLE"), "YNNNNN--"},
        {"Nubrio Excel", "modImport_NubrioExcel", "Excel", OpenFileExcel(), "NNYNNNNN"},
        {"Gamma DB SqlServer", "modImport_GammaSqlServer", "SQL Server", Server("GAMMA"), "YYYNNYY-",
         {{Saldi, "Importa Riferimenti"}, {Piano, "Importa Tubolari da CSV"}}},
        {"BMS", "modImport_BMS", "Oracle", {PrepareBms, contract::Place::DataSource, DataSource("BMS").keys}, "YYYYYNN-"},
        {"Punta", "modImport_Punta", "SQL Server", Server("PUNTA"), "YYYNN---"},
        {"Terrauna", "modImport_Terrauna", "CSV", TextFile(csvTitle, csvFilter), "YYNNNNN-"},
        {"Scala", "modImport_Scala", "Excel", OpenFileExcel(), "YNNN----"},
        {"Veldra", "modImport_Veldra", "SQL Server", Server("VELDRA"), "YNNN----"},
        {"Facile", "modImport_Facile", "SQL Server", Server("FACILE"), "YYYYN-Y-",
         {{Cli, "Importa Controparti"}, {Dis, "Importa Distinte"}, {Doc, "Importa Ordini"},
          {Piano, "Importa Listini"}}},
        {"Borgo", "modImport_Borgo", "SQL Server", Server("BORGO"), "NYYYYNYN",
         {{Doc, "Importa Ordini Vendita"}, {Acq, "Importa Ordini Acquisto"}, {Piano, "Ricodifica Articoli Lamiera"}}},
        {"Lamina", "modImport_Lamina", "CSV", TextFile(csvTitle, csvFilter), "YYYYYYYN",
         {{Acq, "Importa Contatti Clienti"}, {Saldi, "Importa Sedi Clienti"},
          {Piano, "Importa Lavorazioni Distinte"}}},
        {"Siderea", "modImport_Siderea", "Excel", OpenFileExcel(), "NNNNNNN?", {{Disegni, "Importa Listini"}}, Shown::No},
    };
    // clang-format on
    return rows;
}

contract::Origin OriginOf(const Row& row) {
    contract::Origin origin;
    origin.name = QString::fromUtf8(row.name);
    origin.module = QString::fromLatin1(row.module);
    origin.source = {QString::fromLatin1(row.sourceKind), row.prepare};
    origin.sequence = row.sequence;
    origin.buttons = contract::Buttons(row.shown, row.captions);
    return origin;
}

const std::vector<contract::Origin>& Origins() {
    static const std::vector<contract::Origin> origins = [] {
        std::vector<contract::Origin> made;
        std::transform(Rows().begin(), Rows().end(), std::back_inserter(made), OriginOf);
        return made;
    }();
    return origins;
}

} // namespace

const contract::Origin& Find(const QString& name) {
    for (const contract::Origin& origin : Origins()) {
        if (origin.name == name) {
            return origin;
        }
    }
    throw ImportError(QStringLiteral("Origine '%1': non è tra quelle annunciate").arg(name));
}

int Count() { return static_cast<int>(Origins().size()); }

} // namespace announced
