// WinProgest: sales documents and orders to suppliers. Each kind has a head and a row table, joined by number and day
// of the document. The head tables are known from installations; the row tables, TESTORF and all columns are this
// system's own reading.

#include "adapters/contract/kinds/Documents.h"

#include "adapters/contract/map/lookups.h"
#include "adapters/origins/WinProgest/modImport_WinProgest.h"
#include "core/modImport.h"
#include "core/schemaDefaults.h"
#include "sql/mod_ovTools.h"

using namespace contract;
using namespace contract::rules;
using namespace schema::defaults;

namespace modImport_WinProgest {

// --- Source tables ------------------------------------------------------------------------------------------------

const DocumentKind& Of(Kind kind) {
    static const Link offer{Kind::Offers, "NUMOFF", "DATOFF", "RIGOFF"};
    static const Link order{Kind::Orders, "NUMIMP", "DATIMP", "RIGIMP"};
    static const Link deliveryNote{Kind::DeliveryNotes, "NUMBO", "DATBO", "RIGBO"};
    static const std::array<DocumentKind, 6> kinds{{
        {"Offerte", "TESTOFF", "CORPOFF", Sales, "OFFWP", "OFF", true, {}},
        {"Ordini", "TESTIMP", "CORPIMP", Sales, "ORDWP", "ORD", true, {offer}},
        {"DDT", "TESTBO", "CORPBO", Sales, "DDTWP", "DDT", false, {order}},
        {"Fatture", "TESTFT", "CORPFT", Sales, "FATWP", "FAT", false, {deliveryNote, order}},
        {"Fatture Pro Forma", "TESTFP", "CORPFP", Sales, "PROWP", "FAT", false, {order}},
        {"Ordini a Fornitore", "TESTORF", "CORPORF", Purchases, "ORFWP", "ORD", true, {}},
    }};
    return kinds[static_cast<size_t>(kind)];
}

namespace {

/// The list of SYS_IMP that the payment terms of all kinds are translated by.
const QString Testate = QStringLiteral("TESTATE");

constexpr std::array AllKinds{Kind::Offers,   Kind::Orders,   Kind::DeliveryNotes,
                              Kind::Invoices, Kind::ProForma, Kind::SupplierOrders};

// --- Mappings -----------------------------------------------------------------------------------------------------

Rule NumberOfDocument() {
    return {"com'è; deve essere maggiore di zero", [](const RuleInput& input) -> RuleValue {
                if (NumberOf(input.row, input.columns.first()) <= 0) {
                    throw ImportError(QStringLiteral("'%1' non è il numero di un documento").arg(input.Text()));
                }
                return input.Text();
            }};
}

Rule Party(bool supplier) {
    return {supplier ? "CDCON della riga di CON_TRO di cui è COFGE, o di quella in cui è stata unita, SYS_IMP "
                       "(UNIFICATI, F-CODICECF)"
                     : "CDCON della riga di CON_TRO di cui è COCGE, o di quella in cui è stata unita, SYS_IMP "
                       "(UNIFICATI, C-CODICECF)",
            [supplier](const RuleInput& input) {
                return RuleValue(RequireCounterparty(input.session, input.Text(), supplier));
            }};
}

/// A row that is not marked may be a text all the same.
Rule TypeOfRow() {
    return {R"("D" per "D"; altrimenti "D" per una riga senza articolo e senza importo, "N" per le altre)",
            Choice({{DescriptionRow, DescriptionRow}}, "").apply};
}

/// A code that Quadrix does not know would leave the tax short.
Rule VatOfRow() {
    return {"tradotto con SYS_IMP (ARTICOLI, IVA), altrimenti com'è se TAB_IVA lo ha, altrimenti annotato e scritto "
            "nel log; nessuno per una riga descrittiva",
            [](const RuleInput& input) {
                const bool isText = input.row.Text("TIPRIG").compare(DescriptionRow, Qt::CaseInsensitive) == 0;
                return RuleValue(isText ? QString() : VatCodeOf(input.session, Articoli, "IVA", input.Text()));
            }};
}

// --- Hooks --------------------------------------------------------------------------------------------------------

/// A document has been delivered when each of its rows has, those that are texts aside.
void CloseDelivered(ImportRun& run, const WrittenDocument& document) {
    const Recordset rows = run.GetSession().Quadrix.ExecuteWC(
        "SELECT COUNT(*), SUM(CASE WHEN DRSTA = '" + Delivered + "' THEN 1 ELSE 0 END) FROM " +
        run.FullName(document.family.row) + " WHERE " + Equals("IDTES", document.id) + " AND DRTIP <> '" +
        DescriptionRow + "'");
    const qint64 goods = rows.Fields(0).Value().toLongLong();
    if (goods > 0 && rows.Fields(1).Value().toLongLong() == goods) {
        TargetRow state(run, document.family.head);
        state.Set("DTSTA", Delivered);
        state.Update("WHERE " + Equals("RECORD_ID", document.id));
    }
}

HeadHooks HooksOf(ImportRun& run, const DocumentKind& kind) {
    HeadHooks hooks;
    // WinProgest counts some documents more than once in a year: the day tells them apart.
    hooks.complete = [&run](const SourceRow& /*head*/, const DocumentHead& head) {
        return OnDay(run.GetSession(), "DTDAT", head.day);
    };
    if (kind.open) {
        hooks.documentWritten = [&run](const SourceRow& /*head*/, const WrittenDocument& document) {
            CloseDelivered(run, document);
        };
    }
    return hooks;
}

// --- Documents ----------------------------------------------------------------------------------------------------

/// @param empties what a reset deletes
Documents DocumentsOf(const DocumentKind& kind, const Emptying& empties) {
    return {
        .frame = {.step = kind.name},
        .source = {.table = kind.head, .key = "NUMDOC", .order = "DATDOC, NUMDOC"},
        .rows = {.table = kind.rows, .on = {{"NUMDOC"}, {"DATDOC"}}, .order = "NRIGA"},
        .reading = Reading::HeadThenRows,
        .withoutRows = WithoutRows::Written,
        .kinds = {{.cause = kind.cause, .type = kind.type, .family = kind.family, .isOpen = kind.open}},
        .head = {.number = {"NUMDOC", NumberOfDocument()},
                 .day = "DATDOC",
                 .counterparty = {kind.Counterparty(), Party(kind.IsSupplier())},
                 .name = "RAGSOC",
                 .lines = {{"DTMOP", "CODPAG", Translated(Testate, "CODPAG")},
                           {"DTRIC", "RIFCLI", Text()},
                           {"DTRID", "DATRIF", Day()},
                           {"DTPOR", "PORTO", Text()},
                           {"DTSCO", "SCOCAS", RoundedTo(2)},
                           {"DTNOT", "NOTE", Text()}}},
        .row = {.number = "NRIGA",
                .article = {"CODART", Article()},
                .type = {"TIPRIG", TypeOfRow()},
                .description = "DESCR",
                .unit = {"UM", TranslatedOrUpper(Articoli, "UM", {})},
                .quantity = "QTA",
                .delivered = "QTAEVA",
                .price = "PREZZO",
                .discounts = {"SCO1", "SCO2", "SCO3"},
                .vatCode = {"IVA, TIPRIG", VatOfRow()},
                .lines = {{"DRCOR", "DATCON", Day()}}},
        .imported = Imported::Asked,
        .empties = empties,
        .ofHeads = [&kind](ImportRun& run) { return HooksOf(run, kind); },
        .further = {{}, {}, {CounterpartyNeed()}},
    };
}

} // namespace

Procedure DocumentiWinProgest(Button button) {
    std::vector<ImportPart> parts;
    parts.reserve(AllKinds.size());
    for (const Kind kind : AllKinds) {
        parts.push_back(PartOf(DocumentsOf(Of(kind), parts.empty() ? DocumentEmptying() : Emptying())));
    }
    return ProcedureOf(button,
                       {.module = Module,
                        .procedure = "ImportDocumentiWinProgest",
                        .announcement = "Inizio importazione Documenti da WinProgest",
                        .errors = "Errore: ",
                        .completion = "Documenti importati correttamente!",
                        .confirmation = "Importare i documenti?"},
                       parts);
}

} // namespace modImport_WinProgest
