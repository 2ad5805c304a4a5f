// Panthera: a database (DB2 or SQL Server), PANTHERA unless the setting Databasename names another, its tables in
// schema THIP. Bills of materials, which are its production models, and price lists; counterparties and articles must
// be in Quadrix. The tables of models and activities and the style of the columns are known from published
// customisations; the materials of an activity, the price lists, times in hours and the values of TIPO_MODELLO and
// POL_ATTIVITA are this system's own reading. Codes are padded with blanks. The company is that of the setting
// ID_AZIENDA ("001"). Not read: DOMINIO and the products of a model (its article is the product), PERC_SCARTO, for
// which a bill has no place, and models of an order (R_COMMESSA). Customer extensions (THIPPERS) come in by the layout
// file.

#include "adapters/contract/kinds/Bills.h"
#include "adapters/contract/kinds/childRules.h"
#include "adapters/contract/kinds/PriceLists.h"
#include "adapters/contract/run/SourceLayout.h"
#include "adapters/sourceSettings.h"
#include "core/schemaDefaults.h"

using namespace contract;
using namespace contract::rules;

namespace modImport_Panthera {

const contract::Origin& Entry();

namespace {

const QString Module = QStringLiteral("modImport_Panthera");

// --- Source tables ------------------------------------------------------------------------------------------------

const QString Modelli = QStringLiteral("MODPRO");
const QString Attivita = QStringLiteral("MODPRO_ATV");
const QString Materiali = QStringLiteral("MODPRO_ATV_MAT");

/// The tables of price lists of one direction.
struct ListTables {
    QString lists;
    QString rows;
    QString scales;
    QString party; ///< column of the counterparty whose own list it is
    const char* direction;
    Rule owner;
    const char* step;
};
ListTables Vendita() {
    return {"LST_VEN", "LST_VEN_RIG", "LST_VEN_SCG", "R_CLIENTE", "V", CustomerOf(), "Listini di vendita"};
}
ListTables Acquisto() {
    return {"LST_ACQ", "LST_ACQ_RIG", "LST_ACQ_SCG", "R_FORNITORE", "A", SupplierOf(), "Listini di acquisto"};
}

const QStringList& Tables() {
    static const QStringList tables{Modelli,       Attivita,  Materiali,     "LST_VEN",    "LST_VEN_RIG",
                                    "LST_VEN_SCG", "LST_ACQ", "LST_ACQ_RIG", "LST_ACQ_SCG"};
    return tables;
}

/// A model has its activities and materials by these.
const std::vector<Tie> OfModel{{"ID_MODELLO"}};

// --- Rules --------------------------------------------------------------------------------------------------------

Rule Article() { return ArticleCode("ARTICOLI", "ID_ARTICOLO"); }

/// A number of an activity or a material, which the model tells for its base quantity, for one unit.
Rule PerUnit(const QString& parent, double factor) {
    const ChildTable model{.table = Modelli, .on = OfModel};
    return {QStringLiteral("per %1, diviso QTA_BASE della sua riga di MODPRO (1 se è vuota o zero), 6 decimali")
                .arg(factor),
            [model, factor](const RuleInput& input) {
                double base = 0;
                model.First(input.session, input.row, [&](const SourceRow& row) { base = NumberOf(row, "QTA_BASE"); });
                const double number = Times(factor).apply(input).value_or(QVariant()).toDouble();
                constexpr int decimals = 6;
                return RuleValue(contract::RoundedTo(base == 0 ? number : number / base, decimals));
            },
            Side::Both, std::vector<TableNeed>{{Modelli, {"QTA_BASE"}}} + model.OwnNeeds(parent).reads};
}

/// Who does an activity outside.
Rule OutsideSupplier() {
    return {KnownSupplier().text + QStringLiteral("; solo se POL_ATTIVITA è \"E\""),
            [known = KnownSupplier().apply](const RuleInput& input) {
                return input.row.Text("POL_ATTIVITA").compare(u"E", Qt::CaseInsensitive) == 0 ? known(input)
                                                                                              : RuleValue();
            },
            Side::Both,
            {{Attivita, {}, {"POL_ATTIVITA"}}}};
}

// --- Bills --------------------------------------------------------------------------------------------------------

/// A model that does not tell its kind is one of production.
QString OfOtherKind(const SourceRow& row) {
    const QString kind = row.Text("TIPO_MODELLO");
    return kind.isEmpty() || kind.compare(u"P", Qt::CaseInsensitive) == 0
               ? QString()
               : QStringLiteral("modello che non è di produzione (TIPO_MODELLO)");
}

Bills Distinte() {
    return {
        .frame = {.module = Module,
                  .procedure = "ImportDistintePanthera",
                  .announcement = "Inizio importazione Distinte Base da Panthera",
                  .completion = "Distinte Base Panthera importate correttamente: %1 (Fasi: %2, Comp.: %3)"},
        .source = {.table = Modelli,
                   .key = "R_ARTICOLO",
                   .order = "R_ARTICOLO, PRIORITA, ID_MODELLO",
                   .where = "STATO = 'V' AND (R_COMMESSA IS NULL OR RTRIM(R_COMMESSA) = '')",
                   .naming = "R_ARTICOLO, ID_MODELLO"},
        .article = {"R_ARTICOLO", Article()},
        .sourceKey = "ID_MODELLO",
        .note = {"DESCRIZIONE, NOTE", OnLines()},
        .lines =
            {
                {"DBSED", "R_STABILIMENTO", Or(Translated(Modelli, "R_STABILIMENTO"), "001")},
                {"DTINS", "TIMESTAMP_CRZ", NotBlank(AsRead())},
            },
        .components =
            {
                .rows = {.table = Materiali,
                         .on = OfModel,
                         .order = "ID_ATTIVITA, SEQUENZA_ORDIN",
                         .naming = "ID_MODELLO, ID_ATTIVITA, ID_RIGA_MAT"},
                .article = {"R_ARTICOLO", Article()},
                .quantity = {"COEFF_IMPIEGO", PerUnit(Materiali, 1)},
                .note = "NOTE",
                .position = "SEQUENZA_ORDIN",
                .phase = "ID_ATTIVITA",
            },
        .phases =
            BillPhases{
                .rows = {.table = Attivita, .on = OfModel, .order = "ID_ATTIVITA", .naming = "ID_MODELLO, ID_ATTIVITA"},
                .key = "ID_ATTIVITA",
                .number = "ID_ATTIVITA",
                .work = {"R_OPERAZIONE", Or(Translated(Attivita, "R_OPERAZIONE"), schema::defaults::GenericWork)},
                .note = {"DESCRIZIONE, NOTE", OnLines()},
                .setUpTime = {"TEMPO_SETUP", Times(60)},
                .unitTime = {"TEMPO_LAV", PerUnit(Attivita, 60)},
                .supplier = {"R_FORNITORE", OutsideSupplier()},
                .machine = {"R_CEN_LAVORO", Translated(Attivita, "R_CEN_LAVORO")},
                .lines = {{"DLNUP", "NUM_RISORSE", NotZero()}},
                .sendsComponents = true,
                .isOutside = {"POL_ATTIVITA", Is("E")},
            },
        .furtherRows = "modello ulteriore dello stesso articolo",
        .leavesOut = OfOtherKind,
        .further = {{}, {{Modelli, {}, {"TIPO_MODELLO"}}}, {}},
    };
}

// --- Price lists --------------------------------------------------------------------------------------------------

PriceLists ListsOf(const ListTables& tables) {
    const std::vector<Tie> ofList{{"ID_LISTINO"}};
    std::vector<Tie> ofRow = ofList;
    ofRow.push_back({"ID_RIGA"});
    return {
        .frame = {.module = Module,
                  .procedure = "ImportListiniPanthera",
                  .announcement = "Inizio importazione Listini da Panthera",
                  .step = tables.step},
        .source = {.table = tables.rows,
                   .key = "ID_LISTINO",
                   .order = "ID_LISTINO, R_ARTICOLO, DATA_INIZ_VAL, ID_VALIDITA, ID_RIGA",
                   .where = "J1.STATO = 'V'",
                   .naming = "ID_LISTINO, ID_VALIDITA, ID_RIGA",
                   .joins = {{.table = tables.lists,
                              .on = ofList,
                              .columns = {"DESCRIZIONE", "R_VALUTA"},
                              .isOptional = false}}},
        .article = {"R_ARTICOLO", Article()},
        .prices = {{
            .list = {"ID_LISTINO", Or(TranslatedOrKnown(tables.lists, "ID_LISTINO", "LIS_TES"), Text())},
            .owner = {tables.party, tables.owner},
            .direction = Fixed(tables.direction),
            .description = "DESCRIZIONE",
            .currency = {"R_VALUTA", Currency(tables.lists, "R_VALUTA")},
            .since = {"ID_LISTINO",
                      OfFirst(tables.rows, {.table = tables.lists, .on = ofList}, "DATA_INIZ_VAL", Day())},
            .from = "DATA_INIZ_VAL",
            .to = "DATA_FINE_VAL",
            .note = "NOTE",
            .scales = {{.price = "PREZZO"}},
            .scaleRows = ScaleRows{.rows = {.table = tables.scales,
                                            .on = ofRow,
                                            .order = "QTA_LIMITE",
                                            .naming = "ID_LISTINO, ID_RIGA, QTA_LIMITE"},
                                   .scale = {.quantity = "QTA_LIMITE",
                                             .price = "PREZZO",
                                             .discounts = {"SCONTO_1", "SCONTO_2", "SCONTO_3"}}},
        }},
    };
}

/// Purchase lists follow the sales lists, which have emptied the tables.
Procedure Listini() {
    ImportPart purchases = PartOf(ListsOf(Acquisto()));
    purchases.empties = {};
    return ProcedureOf(Button::Disegni, FrameOf(ListsOf(Vendita())), {PartOf(ListsOf(Vendita())), purchases});
}

// --- Source and entry ---------------------------------------------------------------------------------------------

/// On a server the tables stand in a schema of their own, unless the layout file says otherwise.
bool PrepareSource(Session& session, ovConnection& source) {
    const bool prepared = sourceSettings::Server("PANTHERA")(session, source);
    if (prepared && !source.Embedded) {
        for (const QString& table : Tables()) {
            LayoutOf(source).CallTable(table, "THIP." + table);
        }
    }
    return prepared;
}

} // namespace

const Origin& Entry() {
    static const Origin origin{
        "Panthera",
        Module,
        {.kind = "SQL Server",
         .prepare = {PrepareSource, Place::Server},
         .company = CompanyKey{"ID_AZIENDA", Modelli, "ID_AZIENDA", "001"}},
        Buttons("NNYNNNNY", {{Button::Disegni, "Importa Listini"}}),
        Shown::Keep,
        {
            ProcedureOf(Button::Dis, Distinte()),
            Listini(),
        },
    };
    return origin;
}

} // namespace modImport_Panthera
