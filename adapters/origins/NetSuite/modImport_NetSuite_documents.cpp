// Orders and base tables of NetSuite. The names of these files and of their columns are this system's own reading.

#include "adapters/origins/NetSuite/modImport_NetSuite.h"

#include "adapters/contract/kinds/BaseTables.h"
#include "adapters/contract/map/codeRules.h"
#include "core/schemaDefaults.h"

using namespace contract;
using namespace contract::rules;

namespace modImport_NetSuite {

namespace {

/// What orders of customers and those to suppliers do not have in common.
struct OrderFiles {
    const char* procedure;
    QString heads;
    QString rows;
    QString parties;   ///< whose codes those of the orders are
    const char* party; ///< column
    DocumentKind kind;
};

OrderFiles OfCustomers() {
    return {"ImportDocumentiNetSuite",
            "ORCT200F",
            "ORCR200F",
            Clienti,
            "CDCLI",
            {.cause = "ORDCK", .type = "ORD", .family = Sales}};
}
OrderFiles ToSuppliers() {
    return {"ImportDocAcqNetSuite",
            "ORFT200F",
            "ORFR200F",
            Fornitori,
            "CDFOR",
            {.cause = "ORDFK", .type = "ORD", .family = Purchases}};
}

/// Days are numbers of two kinds, which no condition could compare: every row is read, and older ones are left out.

PaymentTerms Pagamenti() {
    return {
        .frame = {.step = "Pagamenti"},
        .source = {.table = "TBPA200F", .key = "CDPAG", .order = "CDPAG"},
        .code = "CDPAG",
        .lines = {{"MPDES", "DSPAG", First(100)}, {"MPRAT", "NRRAT", RoundedTo(0)}},
        .series = InstalmentSeries{.count = "NRRAT", .firstDays = "GGPRI", .everyDays = "GGRAT"},
    };
}

BaseTable CodiciIva() {
    return CodeTable("Codici IVA", "TBIV200F", "CDIVA", "TAB_IVA",
                     {{"IVDES", "DSIVA", First(100)}, {"IVALI", "PCIVA", VatRate()}});
}

BaseTable UnitaDiMisura() {
    return CodeTable("Unità di misura", "TBUM200F", "CDUMI", "TAB_UMS", {{"UMDES", "DSUMI", First(100)}});
}

Banks Banche() {
    return {
        .source = {.table = "TBBA200F", .key = "CDABI", .order = "CDABI, CDCAB", .naming = "CDABI, CDCAB"},
        .code = "CDABI, CDCAB",
        .lines =
            {
                {"BADES", "DSBAN", First(100)},
                {"BAABI", "CDABI", Digits(5)},
                {"BACAB", "CDCAB", Digits(5)},
                {"BANAZ", "", Constant(schema::defaults::Country)},
                {"BAVAL", "", Constant(schema::defaults::Currency)},
            },
    };
}

} // namespace

Documents Ordini(bool customers) {
    const OrderFiles files = customers ? OfCustomers() : ToSuppliers();
    return {
        .frame = {.module = Module, .procedure = files.procedure},
        .source = {.table = files.heads, .key = "NRORD", .order = "AAORD, NRORD", .naming = "AAORD, NRORD"},
        .rows = {.table = files.rows,
                 .on = {{"AAORD"}, {"NRORD"}},
                 .order = "NRRIG",
                 .where = "(J1.FLSAL IS NULL OR J1.FLSAL <> 'S')"},
        .reading = Reading::HeadThenRows, // both have a state of their own
        .kinds = {files.kind},
        .head =
            {
                .number = "NRORD",
                .day = {"DTORD", Giorno()},
                .year = "AAORD",
                .counterparty = {files.party, PartyOf()},
                .lines =
                    {
                        {"DTRIC", "RFORD", Text()},
                        {"DTRID", "DTRIF", Giorno()},
                        {"DTMOP", "CDPAG", Translated(files.parties, "CDPAG")},
                        {"DTVAL", "CDVAL", Valuta(files.parties)},
                    },
            },
        .row =
            {
                .number = "NRRIG",
                .article = {"CDPAR", Article()},
                .description = "DSRIG",
                .unit = {"UMORD", Unit(Parti, "UMMAG", "")},
                .quantity = "QTORD",
                .delivered = "QTEVA",
                .price = "PRUNI",
                .discounts = {"SCON1", "SCON2"},
                .vatCode = {"CDIVA", NotBlank(VatCode(Parti, "CDIVA"))},
                .lines = {{"DRCON", "DTCNS", NotNull(Giorno())}, {"DRCOR", "DTCNS", NotNull(Giorno())}},
            },
        .sinceCondition = EveryRow,
        .leavesOut = Cancelled,
        .ofHeads = [](ImportRun& /*run*/) { return HeadHooks{.leavesOut = Cancelled}; },
        .further = {{}, ReadsState(files.heads).reads + ReadsState(files.rows).reads, {}},
    };
}

/// The tables serve every company: nothing is emptied.
Procedure TabelleBase() {
    const Frame frame{.module = Module,
                      .procedure = "ImportTabelleBaseNetSuite",
                      .announcement = "Inizio importazione tabelle di base",
                      .completion = "Tabelle di base importate correttamente!",
                      .asksReset = false};
    std::vector<ImportPart> parts{PartOf(Pagamenti()), PartOf(CodiciIva()), PartOf(UnitaDiMisura()), PartOf(Banche())};
    for (ImportPart& part : parts) {
        part.empties = {};
    }
    return ProcedureOf(Button::Saldi, frame, parts);
}

} // namespace modImport_NetSuite
