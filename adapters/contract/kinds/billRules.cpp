// The rules of bills.

#include "adapters/contract/kinds/Bills.h"
#include "adapters/contract/map/wholeNumbers.h"
#include "core/modImport.h"

namespace contract {

std::pair<qint64, QString> PlaceOfRevision(const QString& text) {
    const auto number = ReadWholeNumber(text);
    return {number.value_or(0), number ? QString() : text.toUpper()};
}

qint64 NumberOfRevision(Session& session, const QString& text) {
    const auto number = ReadWholeNumber(text);
    if (!text.isEmpty() && !number) {
        modImport::LogNote(
            session,
            QStringLiteral("REVISIONE SENZA NUMERO: %1: '%2' scritta come 0").arg(session.Errors.RowKey(), text));
    }
    return number.value_or(0);
}

Rule rules::RevisionNumber() {
    return {"il numero intero; 0 per un altro testo, che va nel log se non è vuoto",
            [](const RuleInput& input) { return RuleValue(NumberOfRevision(input.session, input.Text())); }};
}

Rule rules::PhaseInTens() {
    return {"dieci volte il numero, almeno 10", [](const RuleInput& input) {
                const int number = WholeNumberOf(input.row, input.columns.first());
                return RuleValue(std::max(1, number) * schema::defaults::FirstPhase);
            }};
}

Rule rules::IsNewestRevision(const ChildTable& revisions, const QString& column,
                             const std::function<bool(Session&, const SourceRow&)>& counts) {
    return {"vero per la revisione più alta dell'articolo, come numero e poi come testo",
            [revisions, column, counts](const RuleInput& input) {
                const auto place = PlaceOfRevision(input.row.Text(column));
                bool isNewest = true;
                revisions.ForEach(input.session, input.row, [&](const SourceRow& other) {
                    const bool isNewer = PlaceOfRevision(other.Text(column)) > place;
                    isNewest = isNewest && !(isNewer && (!counts || counts(input.session, other)));
                });
                return RuleValue(isNewest);
            },
            Side::Both, revisions.OwnNeeds(revisions.table).reads};
}

Rule rules::WasteFactor() {
    return {"1 più la percentuale, 6 decimali; 1 se è vuoto", [](const RuleInput& input) {
                constexpr double hundred = 100;
                constexpr int decimals = 6;
                const double waste = NumberOf(input.row, input.columns.first());
                return RuleValue(contract::RoundedTo(1 + waste / hundred, decimals));
            }};
}

} // namespace contract
