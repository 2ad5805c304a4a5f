// Contact persons of Punta: the first sheet of a workbook, whose columns from A to O and first row, 2, are this
// system's own layout; they end at the first row without a code. C, the name of the company, is for who reads the sheet
// and for the log.

#include "adapters/contract/kinds/PartyRows.h"
#include "adapters/contract/map/lookups.h"
#include "adapters/origins/Punta/modImport_Punta.h"
#include "adapters/sourceSettings.h"
#include "core/modImport.h"
#include "sources/privateDatabase.h"

using namespace contract;
using namespace contract::rules;

namespace modImport_Punta {

namespace {

const QString Sheet = QStringLiteral("RIFERIMENTI");
constexpr int FirstRow = 2;
constexpr int Columns = 15;

/// The counterparty that was imported from a code, a customer before a supplier, else the one with a VAT number.
QString FindParty(Session& session, const QString& code, const QString& vatNumber) {
    for (const QString& column : {QStringLiteral("COCGE"), QStringLiteral("COFGE")}) {
        if (const QString found = LookUp(session, "CON_TRO", column, code, "CDCON"); !found.isEmpty()) {
            return found;
        }
    }
    return vatNumber.isEmpty() ? QString() : LookUp(session, "CON_TRO", "COIVA", vatNumber, "CDCON");
}

Rule Party() {
    return {"controparte importata dal codice, di un cliente o di un fornitore, altrimenti quella con la partita IVA; "
            "se manca va nel log col nome e non si scrive",
            [](const RuleInput& input) -> RuleValue {
                const SourceRow& row = input.row;
                const QString found = FindParty(input.session, row.Text("A"), row.Text("B"));
                if (found.isEmpty()) {
                    modImport::LogNote(input.session,
                                       QStringLiteral("CONTROPARTE NON TROVATA: %1: '%2', partita IVA '%3'")
                                           .arg(input.session.Errors.RowKey(), row.Text("C"), row.Text("B")));
                    return std::nullopt;
                }
                return found;
            }};
}

/// A cross, or any way in which a flag is set.
Rule Crossed() {
    return {"vero per \"X\" e per un flag vero", [cross = Is("X").apply, flag = Flag().apply](const RuleInput& input) {
                return RuleValue(cross(input)->toBool() || flag(input)->toBool());
            }};
}

PartyRows Riferimenti() {
    return {
        .kind = PartyRow::Contact,
        .frame = {.module = Module,
                  .procedure = "ImportRiferimentiPuntaExcel",
                  .confirmation = "Importare i Riferimenti da un file Excel?"},
        .source = {.table = Sheet, .key = "A", .order = sources::RowNumberColumn, .naming = "A, D"},
        .roles = Always({.customer = true, .supplier = true}),
        .owner = "A",
        .party = {"A, B, C", Party()},
        .lines =
            {
                {"RFNOM", "D", Text()},
                {"RFQUA", "E", Text()},
                {"RFTIT", "F", Text()},
                {"RFOFF", "K", Crossed()},
                {"RFORD", "L", Crossed()},
                {"RFDDT", "M", Crossed()},
                {"RFFAT", "N", Crossed()},
                {"RFNOT", "O", Text()},
            },
        .numbers = {.office = "G", .fax = "I", .mobile = "H", .mail = "J"},
    };
}

} // namespace

Procedure ImportRiferimentiPuntaExcel() {
    return OverSourceOf(EntryOfWorkbook(), ProcedureOf(Button::Cli, Riferimenti()));
}

const Origin& EntryOfWorkbook() {
    static const Origin origin{
        "Punta (Excel)",
        Module,
        {.kind = "Excel",
         .prepare = sourceSettings::OpenFileExcel(
             {{.table = Sheet, .headerRow = 0, .firstRow = FirstRow, .columns = Columns, .end = {"A"}}})},
        Buttons("--------"),
        Shown::Keep,
        {ProcedureOf(std::nullopt, Riferimenti())},
    };
    return origin;
}

} // namespace modImport_Punta
