// Documents of Gescom, to look at: RIEMOV holds a row for each document row, MOVMAG its work phase.

#include "adapters/origins/Gescom/modImport_Gescom.h"

#include "adapters/contract/map/lookups.h"
#include "adapters/contract/run/tiedRows.h"
#include "core/modImport.h"
#include "sql/mod_ovTools.h"

using namespace contract;
using namespace contract::rules;

namespace modImport_Gescom {

namespace {

const QString Riemov = QStringLiteral("RIEMOV");
const QString Movmag = QStringLiteral("MOVMAG");

/// The VAT code of every row: what was delivered is there to be looked at, not to be invoiced again.
const QString VatCode = QStringLiteral("22");
/// Kinds of movement that are rows of one document to a subcontractor.
const QStringList WorkMarks{"LE", "LEB"};
/// Kind of a document whose cause CAU_DOC lacks.
const QString DeliveryNote = QStringLiteral("DDT");

// --- Hooks --------------------------------------------------------------------------------------------------------

/// The name that ARCLFR has for the counterparty of a row.
QString NameOf(Session& session, const SourceRow& row, const QString& code, const QString& kind) {
    ovConnection& source = session.SourceConnection();
    const Recordset found = source.ExecuteWC("SELECT * FROM ARCLFR\rWHERE " + TiedTo(source, "CODCLFOR", row, code) +
                                             "\r  AND " + TiedTo(source, "FLAGCLFR", row, kind));
    if (found.Eof()) {
        throw ImportError(
            QStringLiteral("ARCLFR non ha la controparte '%1' di tipo '%2'").arg(row.Text(code), row.Text(kind)));
    }
    return SourceRow(found).Text("RAGCLFOR");
}

/// Customers and suppliers of one number are two counterparties.
Rule CounterpartyOfKind() {
    return {
        "controparte importata da quel codice, di un fornitore se la seconda colonna è \"F\", altrimenti di un cliente",
        [customer = CustomerOf().apply, supplier = SupplierOf().apply](const RuleInput& input) {
            const QString code = input.row.Text(input.columns.first());
            const bool isSupplier = input.row.Text(input.columns.last()).compare(u"F", Qt::CaseInsensitive) == 0;
            return (isSupplier ? supplier : customer)({input.session, input.row, input.columns, input.facts, code});
        },
        Side::Both};
}

Rule SourceName() {
    return {"RAGCLFOR della riga di ARCLFR con quel CODCLFOR e FLAGCLFR; riga abbandonata se manca",
            [](const RuleInput& input) {
                return RuleValue(NameOf(input.session, input.row, input.columns.first(), input.columns.last()));
            },
            Side::Both,
            {{Arclfr, {"CODCLFOR", "FLAGCLFR", "RAGCLFOR"}}}};
}

/// The phase of the movement that a row has in MOVMAG, as it was read; Null without one.
QVariant PhaseOf(Session& session, const SourceRow& row) {
    ovConnection& source = session.SourceConnection();
    const Recordset movement =
        source.ExecuteWC("SELECT FSMOVMAG FROM MOVMAG WHERE " + TiedTo(source, "NDMOVMAG", row, "RDRIEMOV") +
                         "   AND " + TiedTo(source, "ARMOVMAG", row, "CDRIEMOV"));
    return movement.Eof() ? QVariant() : SourceRow(movement).Value("FSMOVMAG");
}

/// The work phase that the movement of the row names, with the work centre that it is done at.
void SetPhase(ImportRun& run, const SourceRow& row, TargetRow& target) {
    Session& session = run.GetSession();
    const QVariant read = PhaseOf(session, row);
    const QString phase = mod_ovTools::ToText(read).trimmed();
    if (phase.isEmpty()) {
        return;
    }
    const QString known = modImport::GetNewCode(session, Arcfas, "CODFASEL", phase, false);
    const QString work = known.isEmpty() ? phase : known;
    if (!IsThere(session, "LAV_ORA", "CDLAV", work)) {
        run.Log(QStringLiteral("LAVORAZIONE NON TROVATA: %1: '%2' manca in LAV_ORA").arg(run.RowKey(), work));
        return;
    }
    target.Set("DRLAV", work);
    target.Set("DRLDS", LookUp(session, "LAV_ORA", "CDLAV", work, "LVDES"));
    ovConnection& source = session.SourceConnection();
    const Recordset sequence =
        source.ExecuteWC("SELECT SQARCFAS FROM arcfas WHERE " + TiedTo(source, "ARARCFAS", row, "CDRIEMOV") +
                         " AND CODFASEL = " + LiteralOf(source, read));
    if (!sequence.Eof()) {
        target.Set("DRSEQ", NumberOf(SourceRow(sequence), "SQARCFAS"));
    }
}

/// The totals need the rate of the rows' VAT code: without it every document would be given up.
void RequireVatCode(ImportRun& run) {
    if (!IsThere(run.GetSession(), "TAB_IVA", "CDIVA", VatCode)) {
        throw ImportError(
            QStringLiteral("Non è stato scritto nulla: in TAB_IVA manca il codice IVA '%1', che hanno le righe "
                           "dei documenti; inserirlo con la sua aliquota e ripetere")
                .arg(VatCode));
    }
}

/// The documents of a number and year, one for each cause. Rows of other kinds are none of them: those whose kind
/// stands between the two of a subcontractor must not part his document.
QString DocumentOf(const SourceRow& row) {
    const QString kind = row.Text("CSRIEMOV").toUpper();
    return GroupText(row, {"RDRIEMOV", "ESRIEMOV"}) + QChar(u'\x1f') +
           (kind.startsWith(WorkMarks.first()) ? WorkMarks.first() : kind);
}

std::vector<TableNeed> PhaseColumns() {
    std::vector<TableNeed> columns;
    for (const Family& family : {Sales, Purchases, WorkAccount}) {
        columns.push_back({family.row, {"DRLAV", "DRLDS", "DRSEQ"}});
    }
    return columns;
}

} // namespace

// --- Documents ----------------------------------------------------------------------------------------------------

/// Every family and every year counts from one.
Documents Documenti() {
    return {
        .frame = {.module = Module,
                  .procedure = "ImportDocumentiGescom",
                  .announcement = "Inizio Importazione Documenti da Gescom",
                  .errors = "Errore durante importazione Documenti : ",
                  .completion = "Documenti Gescom importati correttamente: %1"},
        .source = {.table = Riemov,
                   .key = "RDRIEMOV",
                   .order = "RDRIEMOV, ESRIEMOV, CSRIEMOV, RGRIEMOV",
                   .naming = "RDRIEMOV, ESRIEMOV, CSRIEMOV, RGRIEMOV",
                   .group = {"RDRIEMOV", "ESRIEMOV", "CSRIEMOV"},
                   .groupOf = DocumentOf},
        .reading = Reading::OneTable,
        .kinds =
            {
                {.marks = {"BV"}, .cause = "DTGES", .type = DeliveryNote, .family = Sales, .isOpen = false},
                {.marks = {"97"}, .cause = "DAGES", .type = DeliveryNote, .family = Purchases, .isOpen = false},
                {.marks = WorkMarks, .cause = "RSGES", .type = DeliveryNote, .family = WorkAccount, .isOpen = false},
            },
        .kind = "CSRIEMOV",
        .head =
            {
                .number = "RDRIEMOV",
                .day = "DTRIEMOV",
                .year = "ESRIEMOV",
                .counterparty = {"CLRIEMOV, FLRIEMOV", CounterpartyOfKind()},
                .name = {"CLRIEMOV, FLRIEMOV", SourceName()},
            },
        .row =
            {
                .number = "RGRIEMOV",
                .article = {"CDRIEMOV", Article()},
                .quantity = "QSRIEMOV",
                .quantity2 = "QTRIEMOV",
                .price = "IRRIEMOV",
                .vatCode = Fixed(VatCode),
            },
        .since = Since::YearOfSetting,
        .checksArticles = false,
        .empties = DocumentEmptying(),
        .moreOfRow = SetPhase,
        .before = RequireVatCode,
        .further = {{},
                    {{Movmag, {"FSMOVMAG", "NDMOVMAG", "ARMOVMAG"}}, {Arcfas, {"CODFASEL", "ARARCFAS", "SQARCFAS"}}},
                    PhaseColumns(),
                    {{.list = Arcfas, .field = "CODFASEL", .codeTable = "LAV_ORA"}}},
    };
}

} // namespace modImport_Gescom
