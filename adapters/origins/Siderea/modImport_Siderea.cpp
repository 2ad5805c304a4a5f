// Siderea: a workbook that the operator chooses, whose first sheet has the rows of open orders, of customers and of
// suppliers, under the headings of its first row, in any order, up to the first row without a "Tipo". Counterparties
// must be in Quadrix. Customer-specific, nothing of it is published: the headings are this system's own reading, fitted
// to another workbook by "Tracciati/Siderea.ini". The import stands behind the button for drawings, whose caption is
// that of price lists. An order is written as open ("PV"), for it has rows to deliver: "CO" would be a closed document
// to Quadrix, whose rows nobody delivers. Known gaps: everything but open orders.

#include "adapters/contract/kinds/Documents.h"
#include "adapters/contract/map/lookups.h"
#include "adapters/sourceSettings.h"
#include "core/modImport.h"
#include "core/schemaDefaults.h"
#include "sources/privateDatabase.h"
#include "sql/mod_ovTools.h"

using namespace contract;
using namespace contract::rules;

namespace modImport_Siderea {

const contract::Origin& Entry();

namespace {

const QString Sheet = QStringLiteral("SIDEREA");
const QString RowNumber = sources::RowNumberColumn;

/// What tells an order; its letter may be in small ones.
const QStringList OrderColumns{"Tipo", "Anno", "Numero"};

/// The rows of the order that a row is of.
const ChildTable OfOrder{.table = Sheet,
                         .on = {{"Tipo"}, {"Anno"}, {"Numero"}},
                         .order = RowNumber,
                         .naming = QStringLiteral("Tipo, Anno, Numero")};

// --- Rules --------------------------------------------------------------------------------------------------------

/// What is left to be delivered, as the row tells it or its quantities do.
double LeftOf(const SourceRow& row) {
    return row.IsBlank("Quantita residua") ? NumberOf(row, "Quantita ordinata") - NumberOf(row, "Quantita evasa")
                                           : NumberOf(row, "Quantita residua");
}

/// Rows of which nothing is left stay behind, and so do returns, of which less than nothing is ordered.
QString Delivered(const SourceRow& row) {
    const double left = LeftOf(row);
    if (left > 0) {
        return {};
    }
    return left < 0 && NumberOf(row, "Quantita ordinata") < 0 ? QStringLiteral("riga di reso, con quantità negativa")
                                                              : QStringLiteral("riga già evasa");
}

Rule OwnArticle() { return ArticleCode("ART_ICO", "CDART"); }

/// The counterparty that SYS_IMP tells for the code, else the one that was imported from it.
Rule Party() {
    const Rule imported = PartyOf();
    return {QStringLiteral("tradotto con SYS_IMP (CON_TRO, CDCON), altrimenti ") + imported.text,
            [imported = imported.apply](const RuleInput& input) {
                const QString code = modImport::GetNewCode(input.session, "CON_TRO", "CDCON", input.Text(), false);
                return code.isEmpty() ? imported(input) : RuleValue(code);
            }};
}

Rule NameOfParty() {
    return {"nome della controparte, altrimenti l'ultima colonna", [party = Party().apply](const RuleInput& input) {
                const auto code = party({input.session, input.row, {input.columns.first()}, input.facts});
                const QString name =
                    code ? LookUp(input.session, "CON_TRO", "CDCON", code->toString(), "CORAS") : QString();
                return RuleValue(name.isEmpty() ? input.row.Text(input.columns.last()) : name);
            }};
}

/// The number of a row without one: its place in the order, by tens, unless another row has it.
int NumberByPlace(const RuleInput& input) {
    constexpr int step = 10;
    const qint64 own = input.row.Value(RowNumber).toLongLong();
    QSet<double> taken;
    std::vector<int> places; // of the rows without a number, to this one
    int place = 0;
    OfOrder.ForEach(input.session, input.row, [&](const SourceRow& row) {
        ++place;
        const double number = mod_ovTools::ReadNumber(row.Value(input.columns.first())).value_or(0);
        if (number > 0) {
            taken.insert(number);
        } else if (row.Value(RowNumber).toLongLong() <= own) {
            places.push_back(place);
        }
    });
    int number = 0;
    for (const int each : places) {
        number = each * step;
        while (taken.contains(number)) {
            number += step;
        }
        taken.insert(number);
    }
    return number;
}

Rule NumberOfRow() {
    return {"il numero; se è vuoto il posto della riga nel suo ordine, di dieci in dieci, o il primo libero dopo",
            [](const RuleInput& input) {
                const double number = NumberOf(input.row, input.columns.first());
                return RuleValue(number > 0 ? number : NumberByPlace(input));
            },
            Side::Both, OfOrder.OwnNeeds(Sheet).reads};
}

/// The earliest of the days that the open rows of an order are wanted for.
Rule EarliestDay() {
    return {"la prima in ordine di tempo delle righe importate",
            [](const RuleInput& input) {
                QVariant earliest;
                OfOrder.ForEach(input.session, input.row, [&](const SourceRow& row) {
                    const QVariant day = DateOf(row, input.columns.first());
                    const bool isEarlier = earliest.isNull() || day.toDateTime() < earliest.toDateTime();
                    earliest = !day.isNull() && isEarlier && Delivered(row).isEmpty() ? day : earliest;
                });
                return RuleValue(earliest);
            },
            Side::Both, OfOrder.OwnNeeds(Sheet).reads};
}

/// Where DOC_CheckArticoli leaves a row whose article is missing, it is a text.
Rule TypeOfRow() {
    return {"descrittiva se il suo articolo non è in Quadrix, o se non ha né articolo né importo; altrimenti normale",
            [article = OwnArticle().apply](const RuleInput& input) -> RuleValue {
                const auto code = article(input);
                const QString text = code ? code->toString() : QString();
                const bool isMissing = !text.isEmpty() && !IsThere(input.session, "ART_ICO", "CDART", text);
                return isMissing ? RuleValue(schema::defaults::DescriptionRow) : RuleValue();
            }};
}

Rule State() {
    return {"\"PE\" se qualcosa è già consegnato, altrimenti \"PV\"", [](const RuleInput& input) {
                return RuleValue(NumberOf(input.row, input.columns.first()) > 0 ? schema::defaults::PartlyDelivered
                                                                                : schema::defaults::ToDeliver);
            }};
}

// --- Declaration --------------------------------------------------------------------------------------------------

Documents OrdiniAperti() {
    return {
        .frame = {.module = "modImport_Siderea",
                  .procedure = "ImportOrdiniApertiSiderea",
                  .announcement = "Inizio importazione Ordini aperti",
                  .step = "Ordini aperti",
                  .completion = "Ordini aperti importati correttamente!",
                  .confirmation = "Importare gli Ordini aperti?"},
        .source = {.table = Sheet,
                   .key = "Numero",
                   .order = "Tipo, Anno, Numero, _RIGA",
                   .naming = "Tipo, Anno, Numero",
                   .group = OrderColumns,
                   .groupOf = [](const SourceRow& row) { return GroupText(row, OrderColumns).toUpper(); }},
        .reading = Reading::OneTable,
        .kinds = {{.marks = {"C"}, .cause = "ORDCL", .type = "ORD", .family = Sales},
                  {.marks = {"F"}, .cause = "ORDFO", .type = "ORD", .family = Purchases}},
        .kind = "Tipo",
        .head =
            {
                .number = "Numero",
                .day = "Data",
                .year = "Anno",
                .counterparty = {"Codice controparte", Party()},
                .name = {"Codice controparte, Ragione sociale", NameOfParty()},
                .lines =
                    {
                        {"DTRIC", "Rif. ordine", Text()},
                        {"DTRID", "Data rif.", Day()},
                        {"DTMOP", "Pagamento", Translated(Sheet, "PAGAMENTI")},
                        {"DTCOR", "Consegna richiesta", EarliestDay()},
                    },
            },
        .row =
            {
                .number = {"Riga", NumberOfRow()},
                .article = {"Articolo", OwnArticle()},
                .type = {"Articolo", TypeOfRow()},
                .description = "Descrizione",
                .unit = {"U.M.", Unit(Sheet, "U.M.", "")},
                .quantity = "Quantita ordinata",
                .delivered = "Quantita evasa",
                .price = "Prezzo",
                .discounts = {"Sconto 1", "Sconto 2"},
                .vatCode = {"IVA", VatCode(Sheet, "IVA")},
                .state = {"Quantita evasa", State()},
                .lines =
                    {
                        {"DRQTD", "Quantita residua", NotBlank(RoundedTo(6))},
                        {"DRCOR", "Consegna richiesta", Day()},
                        {"DRCOC", "Consegna confermata", Day()},
                        {"DRNOT", "Note", Text()},
                    },
            },
        .sinceCondition = EveryRow,
        .leavesOut = Delivered,
    };
}

} // namespace

// --- Entry --------------------------------------------------------------------------------------------------------

const Origin& Entry() {
    static const Origin origin{
        "Siderea",
        "modImport_Siderea",
        {.kind = "Excel",
         .prepare = sourceSettings::OpenFileExcel({{.table = Sheet, .end = {"Tipo"}}}),
         .names = Naming::OurReading},
        Buttons("NNNNNNNY", {{Button::Disegni, "Importa Listini"}}),
        Shown::No,
        {ProcedureOf(Button::Disegni, OrdiniAperti())},
    };
    return origin;
}

} // namespace modImport_Siderea
