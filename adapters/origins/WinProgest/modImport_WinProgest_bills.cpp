// WinProgest: bills of materials. Heads stand in NFTDIS, components in NFCODIS; both and their columns are known from
// installations.

#include "adapters/contract/map/lookups.h"
#include "adapters/origins/WinProgest/modImport_WinProgest.h"
#include "core/modImport.h"

using namespace contract;
using namespace contract::rules;

namespace modImport_WinProgest {

namespace {

// --- Source tables ------------------------------------------------------------------------------------------------

const QString Nftdis = QStringLiteral("NFTDIS");
const QString Nfcodis = QStringLiteral("NFCODIS");

// --- Bills --------------------------------------------------------------------------------------------------------

/// A counterparty code of digits is told in six of them.
QString SixDigits(const QString& code) {
    bool isNumber = false;
    const qint64 number = code.toLongLong(&isNumber);
    return isNumber ? QStringLiteral("%1").arg(number, 6, 10, QLatin1Char('0')) : code;
}

Rule SupplierNote() {
    return {
        "\"Fornitore: \", the code and the name of the supplier; one that is not there is logged",
        [](const RuleInput& input) -> RuleValue {
            const QString code = input.Text();
            if (code.isEmpty()) {
                return std::nullopt;
            }
            Session& session = input.session;
            const QString supplier = FindCounterparty(session, code, true);
            if (supplier.isEmpty()) {
                modImport::LogNote(
                    session,
                    QStringLiteral("FORNITORE NON TROVATO: %1: '%2'").arg(NameOf(input.row, Nfcodis, "FIGLIO"), code));
                return std::nullopt;
            }
            return QString("Fornitore: " + SixDigits(supplier) + " - " +
                           LookUp(session, "CON_TRO", "CDCON", supplier, "CORAS"));
        }};
}

} // namespace

Bills DistinteWinProgest() {
    return {
        .frame = {.module = Module,
                  .procedure = "ImportDistinteWinProgest",
                  .announcement = "Inizio importazione Distinte Base da WinProgest",
                  .log = LogStart::Behind,
                  .completion = "Distinte Base WinProgest importate correttamente: %1(Fasi: %2, Comp.: %3"},
        .source = {.table = Nftdis, .key = "PADRE", .order = "PADRE"},
        .article = {"PADRE", Article()},
        .sourceKey = {"PADRE", First(50)},
        .components = {.rows = {.table = Nfcodis, .on = {{"PADRE"}}, .order = "NINS", .naming = "FIGLIO"},
                       .article = {"FIGLIO", Article()},
                       .quantity = "QTA",
                       .note = {"CODFOR", SupplierNote()}},
        .further = {{}, {}, {CounterpartyNeed()}},
    };
}

} // namespace modImport_WinProgest
