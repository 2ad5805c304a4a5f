#include "app/codes/preview.h"

#include "app/report/names.h"
#include "core/italianText.h"
#include "core/Schema.h"
#include "sql/mod_ovTools.h"

namespace codes {

namespace {

const QStringList Unseen{"RECORD_ID", "USINS", "DTINS", "USMDF", "DTMDF"};

bool IsSeen(const QString& column) { return !Unseen.contains(column, Qt::CaseInsensitive); }

QString NotEmpty(const QString& value) { return value.isEmpty() ? QStringLiteral("(vuoto)") : value; }

/// Remembers the rows that a trial writes, and what they were before.
class CellWatch final : public RunObserver {
public:
    explicit CellWatch(Session& session)
        : m_session(session),
          m_other(std::exchange(session.Observer, this)) {}
    ~CellWatch() override { m_session.Observer = m_other; }
    CellWatch(const CellWatch&) = delete;
    CellWatch& operator=(const CellWatch&) = delete;

    bool KeepsImages() const noexcept override { return true; }
    void TargetChanges(const TargetChange& change) noexcept override {
        Written& row = m_rows[{change.table, change.id}];
        row.isNew = row.isNew || change.kind == TargetChange::Kind::Inserted;
        for (const auto& [column, value] : change.before.asKeyValueRange()) {
            if (!row.before.contains(column)) {
                row.before.insert(column, value);
            }
        }
    }

    /// Compares them with what they are now, within the trial.
    void Compare(std::vector<CellChange>& cells) {
        for (const auto& [place, row] : m_rows) {
            CompareRow(place.first, place.second, row, cells);
        }
        for (const Whole& gone : m_gone) { // one that was removed and written anew is the same row
            const auto again = std::find_if(m_fresh.begin(), m_fresh.end(),
                                            [&gone](const Whole& each) { return each.content == gone.content; });
            if (again == m_fresh.end()) {
                cells.push_back({gone.table, gone.title, {}, QStringLiteral("la riga"), {}});
            } else {
                m_fresh.erase(again);
            }
        }
        for (const Whole& fresh : m_fresh) {
            cells.push_back({fresh.table, fresh.title, {}, {}, QStringLiteral("la riga")});
        }
    }

private:
    struct Written {
        bool isNew = false;
        QVariantMap before = {};
    };
    /// A row that is new, or gone.
    struct Whole {
        QString table;
        QString title;
        QString content;
    };

    const schema::Table* TableOf(const QString& physical) const {
        const QString prefix = m_session.UserManager.Azienda() + u'_';
        return schema::FindTable(physical.startsWith(prefix) ? physical.mid(prefix.size()) : physical);
    }

    static QString ContentOf(const QString& table, const QVariantMap& values) {
        QStringList texts{table};
        for (const auto& [column, value] : values.asKeyValueRange()) {
            texts += IsSeen(column) ? QStringList(column.toUpper() + u'=' + mod_ovTools::ToText(value)) : QStringList();
        }
        return texts.join(u'\x1f');
    }

    Whole WholeOf(const schema::Table& table, const QVariantMap& values) {
        return {table.name, Title(table, values), ContentOf(table.name, values)};
    }

    QString Title(const schema::Table& table, const QVariantMap& values) {
        return proof::RowTitle(m_session, table, [&values](const QString& column) { return values.value(column); });
    }

    void CompareRow(const QString& physical, qint64 id, const Written& row, std::vector<CellChange>& cells) {
        const schema::Table* table = TableOf(physical);
        if (table == nullptr) {
            return;
        }
        QVariantMap now;
        {
            const Recordset rows = m_session.Quadrix.ExecuteWC(
                QStringLiteral("SELECT * FROM %1 WHERE RECORD_ID = %2").arg(physical, QString::number(id)));
            for (const QString& column : rows.Eof() ? QStringList() : rows.Columns()) {
                now.insert(column, rows.Value(column));
            }
        }
        if (now.isEmpty() || row.isNew) {
            if (!(now.isEmpty() && row.isNew)) {
                (now.isEmpty() ? m_gone : m_fresh).push_back(WholeOf(*table, now.isEmpty() ? row.before : now));
            }
            return;
        }
        for (const auto& [column, before] : row.before.asKeyValueRange()) {
            if (IsSeen(column) && mod_ovTools::ToText(before) != mod_ovTools::ToText(now.value(column))) {
                const schema::Column* known = table->FindColumn(column);
                cells.push_back({table->name, Title(*table, now), column, proof::Shown(known, before),
                                 proof::Shown(known, now.value(column))});
            }
        }
    }

    Session& m_session;
    RunObserver* m_other;                                 ///< who was told before
    std::map<std::pair<QString, qint64>, Written> m_rows; ///< by physical name and RECORD_ID
    std::vector<Whole> m_gone;
    std::vector<Whole> m_fresh;
};

} // namespace

QString Preview::Text() const {
    QMap<QString, qint64> counts;
    for (const CellChange& cell : cells) {
        ++counts[cell.table];
    }
    QStringList parts;
    for (const auto& [table, count] : counts.asKeyValueRange()) {
        parts.append(QStringLiteral("%1 in %2").arg(italian::NumberText(count), table));
    }
    return parts.isEmpty() ? QStringLiteral("Nessuna cella cambierebbe: ciò che c'è già resta.")
                           : QStringLiteral("Celle che cambierebbero: ") + parts.join(QStringLiteral(", "));
}

Preview PreviewOf(Session& session, const std::vector<RowsToRepeat>& all) {
    Preview preview;
    for (const RowsToRepeat& rows : all) {
        CellWatch watch(session);
        const FlowOutcome outcome = Try(session, rows, {[] {}, [&] { watch.Compare(preview.cells); }});
        if (outcome != FlowOutcome::Done) {
            preview.outcome = outcome;
            break;
        }
    }
    return preview;
}

QString CellText(const CellChange& cell) {
    const QString row = cell.table + u' ' + cell.row;
    if (cell.column.isEmpty()) {
        return row + (cell.before.isEmpty() ? QStringLiteral(": riga nuova") : QStringLiteral(": la riga si toglie"));
    }
    const QString title = proof::ColumnTitle(cell.column);
    return QStringLiteral("%1, %2: %3 -> %4")
        .arg(row, title == cell.column ? title : QStringLiteral("%1 (%2)").arg(title, cell.column),
             NotEmpty(cell.before), NotEmpty(cell.after));
}

} // namespace codes
