#include "adapters/contract/run/RowLoop.h"
#include "sql/mod_ovTools.h"

#include <limits>

namespace contract {

namespace {

constexpr qint64 AllRows = std::numeric_limits<qint64>::max(); ///< of a loop that an earlier run has done whole

} // namespace

/// Whether the run is limited to certain rows: then these alone are counted.
bool RowLoop::IsSelective() const { return m_session.Selection != nullptr && m_session.Selection->Limits(); }

/// How many of its rows an earlier run has done.
void RowLoop::FindPlace() {
    const auto reached = m_session.Selection == nullptr ? std::nullopt : m_session.Selection->ReachedBefore();
    if (!reached || m_loopNumber > reached->loop) {
        return;
    }
    m_run.m_account.Result.givenUpBefore = reached->givenUp;
    m_before = m_loopNumber < reached->loop ? AllRows : reached->rows;
    m_lastBefore = m_loopNumber < reached->loop ? QString() : reached->last;
}

/// Rows that belong together have been read.
void RowLoop::Take(Unit unit) {
    if (IsBehind(unit) && (!IsSelective() || Select(unit))) {
        NoteAwaited(unit);
        Do(unit);
    }
}

/// Whether rows are not among those that an earlier run has done; these are left out. Raises `ImportError` where the
/// last of these is another row than then: the source has other rows, or another order.
bool RowLoop::IsBehind(const Unit& unit) {
    const auto rows = static_cast<qint64>(unit.rows.size());
    if (m_before <= 0) {
        return true;
    }
    m_before -= m_before == AllRows ? 0 : std::min(m_before, rows);
    if (m_before == 0 && unit.keys.last() != m_lastBefore) {
        throw ImportError(QStringLiteral("la fonte è cambiata dopo l'interruzione: al posto di %1 c'è %2; %3")
                              .arg(m_lastBefore, unit.keys.last(), ImportAnew));
    }
    for (qint64 row = 0; row < rows; ++row) {
        m_run.m_account.Count(RowOutcome::Skipped, QStringLiteral("già vista prima dell'interruzione"));
    }
    m_run.CommitAccount();
    return false;
}

/// Raises `ImportError` where all rows are read and the place that an earlier run had reached did not come: which of
/// them are new cannot be told.
void RowLoop::CheckCameBehind() const {
    if (m_before > 0 && m_before != AllRows) {
        throw ImportError(QStringLiteral("la fonte ha meno righe di allora (%1, %2 in meno di quelle già viste prima "
                                         "dell'interruzione, l'ultima era %3); %4")
                              .arg(QString::number(m_read), QString::number(m_before), m_lastBefore, ImportAnew));
    }
}

/// A run that goes on comes to the rows again that were given up where the one before it broke off.
void RowLoop::NoteAwaited(Unit& unit) const {
    if (m_session.Selection == nullptr || IsSelective()) {
        return;
    }
    for (const QString& name : std::as_const(unit.keys)) {
        unit.wanted += m_session.Selection->Awaited(name);
    }
}

/// Whether one of the rows is wanted; what has been mended takes the place of what the source has.
bool RowLoop::Select(Unit& unit) {
    bool isWanted = false;
    for (size_t i = 0; i < unit.rows.size(); ++i) {
        const SourceRow row(m_held->Show(unit.rows[i]));
        const auto* wanted = m_session.Selection->Find({.procedure = {},
                                                        .name = unit.keys.at(static_cast<qsizetype>(i)),
                                                        .table = m_loop.table,
                                                        .key = KeyOf(row, m_loop.keyColumn),
                                                        .number = NumberOf(row),
                                                        .columns = m_held->Columns(),
                                                        .values = unit.rows[i]});
        if (wanted != nullptr) {
            isWanted = true;
            unit.wanted.append(wanted);
            Mend(unit.rows[i], *wanted, unit.keys.at(static_cast<qsizetype>(i)));
        }
    }
    m_run.m_account.Result.sourceRows += isWanted ? static_cast<qint64>(unit.rows.size()) : 0;
    return isWanted;
}

/// A value that the source has changed since is not replaced: it cannot be read, and its row is given up again.
/// @param key name of the row
void RowLoop::Mend(HeldRows::Row& row, const RowSelection::Row& wanted, const QString& key) {
    const QStringList& columns = m_held->Columns();
    for (const auto& [name, mended] : wanted.mended.asKeyValueRange()) {
        const qsizetype column = columns.indexOf(name);
        if (column < 0) { // told when the file with it was read
            continue;
        }
        QVariant& value = row[column];
        const QString now =
            value.metaType() == QMetaType::fromType<ImportError>() ? QString() : mod_ovTools::ToText(value);
        if (now == mod_ovTools::ToText(mended.was)) {
            value = mended.text.isEmpty() ? mended.now : m_mendedNumbers.Read(name, mended, key);
        } else if (now != mod_ovTools::ToText(mended.now)) {
            value = QVariant::fromValue(
                ImportError(QStringLiteral("colonna '%1': la fonte ha ora '%2', quando è stata scartata aveva '%3': la "
                                           "correzione '%4' non si applica")
                                .arg(name, now, mod_ovTools::ToText(mended.was), mod_ovTools::ToText(mended.now))));
        }
    }
}

/// Tells the observer of the run what the source has in a row that is given up.
void RowLoop::TellGivenUp(const Unit& unit, size_t row, const QString& reason) {
    if (m_session.Observer == nullptr) {
        return;
    }
    HeldRows::Row values = unit.rows[row];
    const SourceRow shown(m_held->Show(unit.rows[row]));
    RejectedRow rejected{unit.keys.at(static_cast<qsizetype>(row)),
                         m_loop.table,
                         KeyOf(shown, m_loop.keyColumn),
                         NumberOf(shown),
                         reason,
                         m_held->Columns(),
                         {},
                         m_loopNumber,
                         unit.end};
    for (QVariant& value : values) {
        value = value.metaType() == QMetaType::fromType<ImportError>() ? QVariant() : value;
    }
    rejected.values = std::move(values);
    m_session.Observer->RowIsGivenUp(rejected);
}

} // namespace contract
