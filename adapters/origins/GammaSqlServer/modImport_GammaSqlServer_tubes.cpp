// Tubes of a CSV file that the operator chooses, beside the database: columns divided by ";" under a header row. Their
// names are this system's own.

#include "adapters/origins/GammaSqlServer/modImport_GammaSqlServer.h"

#include "adapters/contract/map/lookups.h"
#include "adapters/contract/write/BaseTable.h"
#include "adapters/sourceSettings.h"
#include "core/schemaDefaults.h"
#include "sources/fileSource.h"

using namespace contract;
using namespace contract::rules;

namespace modImport_GammaSqlServer {

namespace {

const QString Name = QStringLiteral("ImportTubolariFromCSVSqlServer");
const QString Tubes = QStringLiteral("TUBOLARI"); ///< what the page calls the file
const QStringList Columns{"CODICE",   "DESCRIZIONE", "PROFILO", "DIM_A",     "DIM_B",
                          "SPESSORE", "LUNGHEZZA",   "PESO_ML", "MATERIALE", "COSTO"};

/// Kilograms of a tube: weight of a metre by a length in millimetres. Without one of them nobody knows it.
Rule TubeWeight() {
    return {"peso al metro (prima colonna) per la lunghezza in mm diviso 1000; arrotondato a 3 decimali; niente se una "
            "delle due è vuota",
            [](const RuleInput& input) -> RuleValue {
                const auto isBlank = [&input](const QString& column) { return input.row.IsBlank(column); };
                if (std::any_of(input.columns.begin(), input.columns.end(), isBlank)) {
                    return std::nullopt;
                }
                const double weight = NumberOf(input.row, input.columns.first());
                return RoundedTo(weight * NumberOf(input.row, input.columns.last()) / 1000, 3);
            }};
}

/// A profile is known by its external code.
QString ProfileOf(Session& session, const QString& profile) {
    const QString known = LookUp(session, "TAB_PRF", "PREXT", profile, "CDPRF");
    return known.isEmpty() ? profile.toUpper() : known;
}

Rule Profile() {
    return {"profilo con quel codice esterno, altrimenti il testo maiuscolo; niente se è vuoto",
            [](const RuleInput& input) -> RuleValue {
                return input.Text().isEmpty() ? RuleValue() : RuleValue(ProfileOf(input.session, input.Text()));
            }};
}

const Mapping& ProfileMapping() {
    static const Mapping mapping{
        "TAB_PRF",
        Tubes,
        {
            {"CDPRF", "PROFILO", Profile()},
            {"PRDES", "PROFILO", Text()},
            {"PRLAA", "DIM_A", RoundedTo(3)},
            {"PRLAB", "DIM_B", RoundedTo(3)},
            {"PRDMZ", "SPESSORE", RoundedTo(3)},
            {"PREXT", "PROFILO", Text()},
        },
    };
    return mapping;
}

const Mapping& TubeMapping() {
    static const Mapping mapping{
        "ART_ICO",
        Tubes,
        {
            {"CDEXT", "CODICE", First(50)},
            {"ARDES", "DESCRIZIONE", First(100)},
            {"ARCDR", "DESCRIZIONE", CodeAndText(100)},
            {"ARCLA", "", Constant("TB")},
            {"ARTUB", "", Constant(true)},
            {"ARPRF", "PROFILO", Profile()},
            {"ARDMX", "LUNGHEZZA", RoundedTo(3)},
            {"ARDMZ", "SPESSORE", RoundedTo(3)},
            {"ARPSN", "PESO_ML, LUNGHEZZA", TubeWeight()},
            {"ARMAT", "MATERIALE", NotBlank(LookedUp("TAB_MAT", "MAEXT", "CDMAT"))},
            {"ARCOS", "COSTO", RoundedTo(6)},
        },
    };
    return mapping;
}

/// The mark-up of the price that an article has over the cost of now.
void SetMarkUpOver(ImportRun& run, const QString& article, TargetRow& target) {
    const QString price = LookUp(run.GetSession(), "ART_ICO", "CDART", article, "ARPRZ");
    if (!price.isEmpty() && target.Value("ARCOS").isValid()) {
        target.Set("ARRIC", MarkUpOf(mod_ovTools::ToDouble(price), target.Value("ARCOS").toDouble()));
    }
}

/// What a new article has beside: one that is there keeps its own.
void SetUsual(TargetRow& article) {
    article.Set("ARUMS", schema::defaults::Unit);
    article.Set("ARIVA", schema::defaults::VatCode);
    article.Set("ARTPG", schema::defaults::ArticleKind);
    article.Set("ARMAG", true);
    article.Set("ARMAD", schema::defaults::Warehouse);
}

/// The profile of a tube, unless one has its external code. One that bears the code itself has been entered by hand: it
/// gains the external code alone.
void WriteProfile(ImportRun& run, const SourceRow& row) {
    Session& session = run.GetSession();
    const QString external = row.Text("PROFILO");
    if (external.isEmpty() || !LookUp(session, "TAB_PRF", "PREXT", external, "CDPRF").isEmpty()) {
        return;
    }
    const QString code = Field("PROFILO", Profile()).Text(session, row);
    if (!IsThere(session, "TAB_PRF", "CDPRF", code)) {
        WriteByCode(run, ProfileMapping(), row, {code});
    } else if (LookUp(session, "TAB_PRF", "CDPRF", code, "PREXT").isEmpty()) {
        TargetRow profile(run, "TAB_PRF");
        profile.Set("PREXT", external);
        profile.Update("WHERE " + Equals(session, "CDPRF", code));
    }
}

RowOutcome ImportTube(ImportRun& run, const SourceRow& row) {
    Session& session = run.GetSession();
    const QString code = Field("CODICE").RequiredText(session, row);
    const QString article = Field("CODICE", Article()).Text(session, row);
    WriteProfile(run, row);
    const QString material = row.Text("MATERIALE");
    if (!material.isEmpty() && LookUp(session, "TAB_MAT", "MAEXT", material, "CDMAT").isEmpty()) {
        run.Log(QStringLiteral("MATERIALE NON TROVATO: %1: '%2'").arg(run.RowKey(), material));
    }
    const bool isThere = IsThere(session, "ART_ICO", "CDART", article);
    const ArticleWriter writer(run);
    const RowOutcome outcome = writer.Write(TubeMapping(), row, {article}, [&](TargetRow& target) {
        isThere ? SetMarkUpOver(run, article, target) : SetUsual(target);
    });
    writer.Texts(article, row.Text("DESCRIZIONE"));
    return outcome;
}

std::vector<TableNeed> TubeWrites() {
    return std::vector<TableNeed>{{"ART_ICO", TubeMapping().TargetColumns() + QStringList{"ARPRZ", "ARRIC"}},
                                  {"TAB_PRF", ProfileMapping().TargetColumns()}} +
           ArticleNeeds();
}

/// The table that the file is. Raises `ImportError` naming the columns that its first line lacks.
QString TableOf(ovConnection& file) {
    const QString table = file.GetTables().value(0);
    QStringList missing = Columns;
    for (const ColumnInfo& column : file.GetColumns(table)) {
        missing.removeIf([&](const QString& name) { return name.compare(column.name, Qt::CaseInsensitive) == 0; });
    }
    if (!missing.isEmpty()) {
        throw ImportError(QStringLiteral("File '%1': nella prima riga mancano le colonne '%2'")
                              .arg(table, missing.join(QStringLiteral("', '"))));
    }
    return table;
}

void ImportTubolari(Session& session, const QString& singleCode, bool /*reset*/) {
    ImportRun run(session, Module, Name, singleCode);
    run.Guard([&] {
        run.Announce("Inizio importazione tubolari");
        ovConnection file;
        file.Errors = &session.Errors;
        file.OpenFiles = sources::OpenFileSource;
        const auto choose =
            sourceSettings::TextFile("File CSV dei tubolari", "File CSV (*.csv)|*.csv|Tutti i file (*.*)|*.*");
        if (!choose(session, file)) {
            throw GivenUpByOperator();
        }
        file.OpenConnection();
        run.Preflight({{}, {}, TubeWrites()});
        const QString table = TableOf(file);
        const QString from = " FROM [" + table + ']' + run.OnlyCode(" WHERE", "CODICE", singleCode);
        const bool toTheEnd = run.Rows({.step = "Tubolari",
                                        .table = table,
                                        .keyColumn = "CODICE",
                                        .count = "SELECT COUNT(*)" + from,
                                        .select = "SELECT *" + from,
                                        .database = &file},
                                       [&run](const SourceRow& row) { return ImportTube(run, row); });
        if (toTheEnd) {
            run.Complete("Tubolari importati correttamente!");
        }
    });
}

} // namespace

Procedure Tubolari() {
    Needs needs = NeedsOf(TubeMapping()) + NeedsOf(ProfileMapping());
    needs.reads.clear(); // they are the file's: the run looks at its first line
    needs.writes = TubeWrites();
    return {.button = Button::Piano,
            .name = Name,
            .run = ImportTubolari,
            .needs = needs,
            .confirmation = "Importare i tubolari da un file CSV?",
            .opensSource = false,
            .choosesFile = true,
            .asksReset = false};
}

} // namespace modImport_GammaSqlServer
