#include "adapters/announced.h"

#include <algorithm>

namespace announced {

using contract::Shown;
using enum contract::Button;

namespace {

struct Row {
    const char* name;
    const char* module;
    const char* sourceKind;
    const char* shown; ///< see `contract::Buttons`
    std::vector<contract::Caption> captions = {};
    Shown sequence = Shown::Keep;
};

const std::vector<Row>& Rows() {
    // clang-format off
    static const std::vector<Row> rows{
        {"Ad-Hoc", "modImport_AdHoc", "SQL Server", "YYNNY-NY",
         {{Acq, "Importa Tabelle Generali"}, {Disegni, "Importa Lamiere"}}},
        {"Solution", "modImport_Solution", "SQL Server", "YYNYNN--"},
        {"Gamma TeamSystem", "modImport_GammaTeamsystem", "ODBC", "YNNNNNYY",
         {{Piano, "Importa Sedi"}, {Disegni, "Importa Riferimenti"}}},
        {"Lumen", "modImport_Lumen", "File .dat", "NNNNN---"},
        {"SAM", "modImport_SAM", "ODBC", "YYNNN---"},
        {"LibertyCommerce", "modImport_LC", "ODBC", "YNNNN---"},
        {"Memphis", "modImport_Memphis", "SQL Server", "YNNNNN--"},
        {"OSL GP90", "modImport_OSL", "SQL Server", "YYYYYYNY",
         {{Saldi, "Importa Tabelle Generali"}, {Disegni, "Importa Listini"}}},
        {"DOMINIO", "modImport_Dominio", "ODBC", "YNNNNYY-", {{Saldi, "Importa Tabelle Generali"}}},
        {"OS1", "modImport_OS1", "Access", "YYNNNNN-"},
        {"Factory", "modImport_Factory", "Access", "YYYYYYY-",
         {{Cli, "Importa Controlli"}, {Doc, "Importa Commesse aperte"}, {Acq, "Importa Commesse aperte XLS"},
          {Piano, "Importa Allegati"}}},
        {"EsaSoftware \"e\"", "modImport_Esatto", "SQL Server", "--------"},
        {"Metodo", "modImport_Metodo", "SQL Server", "YYYYYYYY",
         {{Dis, "(Riallinea N° Tel e Fax)"}, {Doc, "Importa Documenti"}, {Acq, "Importa Nr. Documento"},
          {Saldi, "Importa Mod. Pagamento"}, {Disegni, "Importa Banche"}}},
        {"Kordel NetSuite", "modImport_NetSuite", "ODBC", "YYYYYYNY",
         {{Saldi, "Importa Tabelle Generali"}, {Disegni, "Fusione Controparti"}}},
        {"Excel", "modImport_Excel", "Excel", "YYNNN---"},
        {"Access", "modImport_Access", "Access", "YYYNN---"},
        {"SIGIP", "modImport_SIGIP", "ODBC", "YYYYYYN-", {{Saldi, "Correggi Date Consegna"}}},
        {"Mago NET", "modImport_Mago", "SQL Server", "YYYNN---"},
        {"Zucchetti G2", "modImport_G2", "SQL Server", "YYYNNNNY", {{Disegni, "Ricalcola IBAN Controparti"}}},
        {"Access Velmoran", "modImport_AccessVelmoran", "Access", "YYYN----", {{Dis, "Importa Listini"}}},
        {"Vision SQL", "modImport_Vision", "SQL Server", "YYN-----"},
        {"Dss Waps", "modImport_DssWaps", "File .dat", "YY------"},
        {"Axis", "modImport_Axis", "Access", "YY------"},
        {"Ad-Hoc Windows", "modImport_AdHocWindows", "FoxPro", "YYNNN-NN",
         {{Acq, "Importa Tabelle Generali"}, {Disegni, "Importa Lamiere"}}},
        {"Excel scarico AS/400", "modImport_ExcelAS400", "Excel", "YYYY----",
         {{Cli, "Importa Clienti"}, {Doc, "Importa Fornitori"}}},
        {"Gemini", "modImport_Gemini", "SQL Server", "YYYN----", {{Dis, "Importa Listini"}}},
        {"Fenice", "modImport_Fenice", "ODBC", "NN------"},
        {"Sigla", "modImport_Sigla", "SQL Server", "YYYNN---", {{Dis, "Importa Listini"}}},
        {"MexalDB", "modImport_MexalDB", "SQL Server", "YYYN----"},
        {"Cometa", "modImport_Cometa", "ODBC", "YYNNNNNY"},
        {"Albalog", "modImport_Albalog", "ODBC", "YYYNNN--", {{Dis, "Importa Listini"}}},
        {"Puzzle", "modImport_Puzzle", "ODBC", "YNNNNN--"},
        {"Nubrio Excel", "modImport_NubrioExcel", "Excel", "NNYNNNNN"},
        {"Gamma DB SqlServer", "modImport_GammaSqlServer", "SQL Server", "YYYNNYY-",
         {{Saldi, "Importa Riferimenti"}, {Piano, "Importa Tubolari da CSV"}}},
        {"BMS", "modImport_BMS", "Oracle", "YYYYYNN-"},
        {"Panthera", "modImport_Panthera", "SQL Server", "NNYNNNN?", {{Disegni, "Importa Listini"}}},
        {"Factory (SqlServer)", "modImport_Factory", "SQL Server", "YYNNNYYY",
         {{Doc, "Importa Commesse aperte"}, {Acq, "Importa Commesse aperte XLS"}, {Piano, "Importa Allegati"}}},
        {"Punta", "modImport_Punta", "SQL Server", "YYYNN---"},
        {"Terrauna", "modImport_Terrauna", "CSV", "YYNNNNN-"},
        {"Scala", "modImport_Scala", "Excel", "YNNN----"},
        {"Veldra", "modImport_Veldra", "SQL Server", "YNNN----"},
        {"Facile", "modImport_Facile", "SQL Server", "YYYYN-Y-",
         {{Cli, "Importa Controparti"}, {Dis, "Importa Distinte"}, {Doc, "Importa Ordini"},
          {Piano, "Importa Listini"}}},
        {"Borgo", "modImport_Borgo", "SQL Server", "NYYYYNYN",
         {{Doc, "Importa Ordini Vendita"}, {Acq, "Importa Ordini Acquisto"}, {Piano, "Ricodifica Articoli Lamiera"}}},
        {"Lamina", "modImport_Lamina", "CSV", "YYYYYYYN",
         {{Acq, "Importa Contatti Clienti"}, {Saldi, "Importa Sedi Clienti"},
          {Piano, "Importa Lavorazioni Distinte"}}},
        {"Siderea", "modImport_Siderea", "Excel", "NNNNNNN?", {{Disegni, "Importa Listini"}}, Shown::No},
    };
    // clang-format on
    return rows;
}

contract::Origin OriginOf(const Row& row) {
    contract::Origin origin;
    origin.name = QString::fromUtf8(row.name);
    origin.module = QString::fromLatin1(row.module);
    origin.source.kind = QString::fromLatin1(row.sourceKind);
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
