// Open orders of Borgo, of customers and to suppliers: OrdTes with OrdRig. A row of sheets counts in kilograms.

#include "adapters/contract/kinds/Documents.h"
#include "adapters/contract/map/lookups.h"
#include "adapters/origins/Borgo/modImport_Borgo.h"
#include "core/modImport.h"
#include "core/qdxProduction_sheets.h"
#include "sql/mod_ovTools.h"

using namespace contract;
using namespace contract::rules;

namespace modImport_Borgo {

namespace {

const QString FormatTable = QStringLiteral("ART_FMT");
const QString Rows = QStringLiteral("OrdRig");

/// One column of a format; Null when the article has none of that code.
QVariant OfFormat(Session& session, const QString& article, const QString& format, const QString& column) {
    if (article.isEmpty() || format.isEmpty()) {
        return {};
    }
    const Recordset found = session.Quadrix.ExecuteWC(
        QStringLiteral("SELECT %1 FROM %2 WHERE ").arg(column, session.Quadrix.GetFullTableName(FormatTable)) +
        Equals(session, "CDART", article) + QStringLiteral(" AND ") + Equals(session, "CDFMT", format));
    return found.Eof() ? QVariant() : found.Fields(0).Value();
}

} // namespace

double GetPesoFormatoBorgo(Session& session, const QString& article, const QString& format) {
    const auto number = [&](const char* column) {
        return mod_ovTools::ToDouble(OfFormat(session, article, format, QLatin1String(column)));
    };
    const double own = number("LMPES");
    return own != 0
               ? own
               : qdxProduction::qdxPesoFormato(session, article, number("LMDMX"), number("LMDMY"), number("LMPSR"));
}

double GetQuantitaFormatoBorgo(Session& session, const QString& article, const QString& format, double sheets) {
    return sheets * GetPesoFormatoBorgo(session, article, format);
}

namespace {

QString ArticleOf(const RuleInput& input) {
    return ArticleCodeOf(input.session, CodesOf, CodeField, input.row.Text("CodArt"));
}

/// Kilograms of a row that tells its sheets; 0 for any other row, and for a format whose weight is not known.
double SheetWeight(const RuleInput& input) {
    const double sheets = NumberOf(input.row, "NumFogli");
    return sheets > 0 ? GetQuantitaFormatoBorgo(input.session, ArticleOf(input), input.row.Text("CodFormato"), sheets)
                      : 0;
}

Rule RowQuantity() {
    return {"chilogrammi dei fogli di una riga (NumFogli) secondo il peso del loro formato; senza fogli Qta, come per "
            "un formato senza peso, che va nel log",
            [](const RuleInput& input) {
                const double quantity = NumberOf(input.row, "Qta");
                const double weight = SheetWeight(input);
                if (weight == 0 && NumberOf(input.row, "NumFogli") > 0) {
                    modImport::LogNote(
                        input.session,
                        QStringLiteral("PESO DEL FORMATO NON NOTO: %1: '%2' di '%3', resta la quantità %4")
                            .arg(input.session.Errors.RowKey(), input.row.Text("CodFormato"), input.row.Text("CodArt"),
                                 mod_ovTools::NumberText(quantity)));
                }
                return RuleValue(weight == 0 ? quantity : weight);
            }};
}

/// What has been delivered is the same part of the row, in whatever unit the source counts it.
Rule RowDelivered() {
    return {"come la quantità: la parte di Qta che essa è", [](const RuleInput& input) {
                const double delivered = NumberOf(input.row, "QtaEv");
                const double quantity = NumberOf(input.row, "Qta");
                const double weight = SheetWeight(input);
                constexpr int decimals = 6;
                return RuleValue(weight == 0 || quantity == 0
                                     ? delivered
                                     : contract::RoundedTo(weight * delivered / quantity, decimals));
            }};
}

/// The price of sheets stays that of the unit that the source counts them in. A row that names none counts in that of
/// its article when its quantity is the weight already.
/// @param weight kilograms of its sheets
void TellUnitOfPrice(const RuleInput& input, const QString& unit, double weight) {
    constexpr double sameWeight = 0.001;
    const QString ofArticle =
        mod_ovTools::ToText(input.session.Quadrix.GetDbValue("ART_ICO", "CDART", ArticleOf(input), "ARUMS")).trimmed();
    const bool isSame = unit.isEmpty() ? std::abs(weight - NumberOf(input.row, "Qta")) < sameWeight
                                       : unit.compare(ofArticle, Qt::CaseInsensitive) == 0;
    if (NumberOf(input.row, "Prezzo") != 0 && !isSame) {
        modImport::LogNote(
            input.session,
            QStringLiteral("PREZZO DI ALTRA UNITÀ: %1: la quantità passa da %2 a '%3', il prezzo %4 resta")
                .arg(input.session.Errors.RowKey(),
                     unit.isEmpty() ? QStringLiteral("nessuna unità") : QString(u'\'' + unit + u'\''), ofArticle,
                     mod_ovTools::NumberText(NumberOf(input.row, "Prezzo"))));
    }
}

/// A row that counts in kilograms now has the unit of its article.
Rule RowUnit() {
    const Rule unit = ArticleUnit("");
    return {unit.text + QStringLiteral("; quella dell'articolo per una riga di fogli, un'altra va nel log"),
            [unit = unit.apply](const RuleInput& input) -> RuleValue {
                const RuleValue own = unit({input.session, input.row, {"Um"}, input.facts});
                const double weight = SheetWeight(input);
                if (weight == 0) {
                    return own;
                }
                TellUnitOfPrice(input, own ? mod_ovTools::ToText(*own) : QString(), weight);
                return {};
            }};
}

/// A format that the article does not have is logged, and left out.
Rule FormatCode() {
    return {"formato dell'articolo (ART_FMT); se non lo ha va nel log e non si scrive",
            [](const RuleInput& input) -> RuleValue {
                const QString format = input.row.Text("CodFormato");
                const QVariant known = OfFormat(input.session, ArticleOf(input), format, "CDFMT");
                if (known.isNull() && !format.isEmpty()) {
                    modImport::LogNote(input.session,
                                       QStringLiteral("FORMATO NON TROVATO: %1: '%2' di '%3'")
                                           .arg(input.session.Errors.RowKey(), format, input.row.Text("CodArt")));
                }
                return known.isNull() ? RuleValue() : known;
            }};
}

Rule FormatMeasure(const QString& column) {
    return {column + QStringLiteral(" del formato; niente se manca"), [column](const RuleInput& input) -> RuleValue {
                const QVariant measure =
                    OfFormat(input.session, ArticleOf(input), input.row.Text("CodFormato"), column);
                return measure.isNull() ? RuleValue() : measure;
            }};
}

/// What the orders of customers and those to suppliers differ by.
struct Orders {
    const char* procedure;
    const char* step;
    const char* mark; ///< OrdTes.Tipo
    DocumentKind kind;
    Rule counterparty;
};

Documents DocumentsOf(const Orders& orders) {
    const QString heads = QStringLiteral("OrdTes");
    const QString what = QString::fromLatin1(orders.step);
    return {
        .frame = {.module = Module,
                  .procedure = "ImportArticoliTerraunaFromCSV", // the name that errors have always been reported under
                  .announcement = "Inizio importazione " + what + " da Borgo",
                  .step = what,
                  .completion = what + " Borgo importati correttamente: %1",
                  .confirmation = "Importare gli " + what + "?"},
        .source = {.table = heads,
                   .key = "Num",
                   .order = "Anno, Num, Riga",
                   .where = QStringLiteral("T.Tipo = '%1'").arg(QLatin1String(orders.mark)),
                   .naming = "Anno, Num, Riga",
                   .group = {"Anno", "Num"}},
        .rows = {.table = Rows, .on = {{"IdOrd"}}, .order = "Riga", .where = "(J1.Saldato = 0 OR J1.Saldato IS NULL)"},
        .kinds = {orders.kind},
        .head =
            {
                .number = "Num",
                .day = "Data",
                .year = "Anno",
                .counterparty = {"CodCF", orders.counterparty},
                .lines =
                    {
                        {"DTRIC", "Rif", Text()},
                        {"DTRID", "DataRif", Day()},
                        {"DTMOP", "CodPag", Translated(Anagrafica, "CodPag")},
                        {"DTVAL", "Valuta", Currency(Anagrafica, "CodValuta")},
                        {"DTNOT", "Note", Text()},
                    },
            },
        .row =
            {
                .number = "Riga",
                .article = {"CodArt", Article()},
                .description = "Descr",
                .unit = {"Um, CodArt, CodFormato, NumFogli", RowUnit()},
                .quantity = {"Qta, CodArt, CodFormato, NumFogli", RowQuantity()},
                .delivered = {"QtaEv, Qta, CodArt, CodFormato, NumFogli", RowDelivered()},
                .price = "Prezzo",
                .discounts = {"Sc1", "Sc2"},
                .vatCode = {"CodIva", NotBlank(VatCode(Articoli, "CodIva"))},
                .lines =
                    {
                        {"DRCOR", "DataCons", Day()},
                        {"DRLAM", "CodFormato", WhenNotBlank("CodFormato", Constant(true))},
                        {"DRFMT", "CodArt, CodFormato", FormatCode()},
                        {"DRLMX", "CodArt, CodFormato", FormatMeasure("LMDMX")},
                        {"DRLMY", "CodArt, CodFormato", FormatMeasure("LMDMY")},
                    },
            },
    };
}

/// The procedure, under its own name in the list and in its account.
Procedure ProcedureOf(Button button, const Orders& orders) {
    Procedure procedure = contract::ProcedureOf(button, DocumentsOf(orders));
    procedure.name = QString::fromLatin1(orders.procedure);
    procedure.run = [run = procedure.run, name = procedure.name](Session& session, const QString& singleCode,
                                                                 bool reset) {
        const auto before = session.Results.size();
        run(session, singleCode, reset);
        if (session.Results.size() > before) {
            session.Results.last().procedure = name;
        }
    };
    return procedure;
}

} // namespace

Procedure ImportOrdiniVenditaBorgo() {
    return ProcedureOf(Button::Doc, {.procedure = "ImportOrdiniVenditaBorgo",
                                     .step = "Ordini Vendita",
                                     .mark = "V",
                                     .kind = {.cause = "ORDCL", .type = "ORD", .family = Sales},
                                     .counterparty = CustomerOf()});
}

Procedure ImportOrdiniAcquistoBorgo() {
    return ProcedureOf(Button::Acq, {.procedure = "ImportOrdiniAcquistoBorgo",
                                     .step = "Ordini Acquisto",
                                     .mark = "A",
                                     .kind = {.cause = "ORDFO", .type = "ORD", .family = Purchases},
                                     .counterparty = SupplierOf()});
}

} // namespace modImport_Borgo
