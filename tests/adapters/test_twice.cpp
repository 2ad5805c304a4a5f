#include "tests/adapters/Fixture.h"
#include "tests/support/disturbed.h"
#include "tests/support/QuadrixTest.h"

#include "core/Schema.h"
#include "sql/mod_ovTools.h"

#include <QRegularExpression>
#include <QTest>

#include <algorithm>

namespace {

/// What a run has changed, one line a row: "-" before it, "+" behind it.
QStringList Changes(QStringList before, QStringList after) {
    for (const QString& row : QStringList(before)) {
        if (after.removeOne(row)) {
            before.removeOne(row);
        }
    }
    return before.replaceInStrings(QRegularExpression("^"), "-") + after.replaceInStrings(QRegularExpression("^"), "+");
}

using RowValues = QMap<QString, QString>;                 ///< by column
using TableRows = QMap<QString, QMap<qint64, RowValues>>; ///< by table and RECORD_ID

/// Physical names of the tables of the target, without those of the translations of codes and of the references.
QStringList TablesOf(TestTarget& target) {
    QStringList names;
    for (const schema::Table& table : schema::Tables()) {
        const QString name = target.Db().GetFullTableName(table.name);
        if (table.name != "SYS_IMP" && !table.name.startsWith("SYS_SYS") && !target.Db().GetColumns(name).isEmpty()) {
            names.append(name);
        }
    }
    return names;
}

TableRows RowsOf(TestTarget& target, const QStringList& tables) {
    TableRows all;
    for (const QString& table : tables) {
        Recordset rows = target.Db().ExecuteWC("SELECT * FROM " + table);
        for (; !rows.Eof(); rows.MoveNext()) {
            RowValues& row = all[table][rows.Value("RECORD_ID").toLongLong()];
            for (const QString& column : rows.Columns()) {
                row.insert(column, mod_ovTools::ToText(rows.Value(column)));
            }
        }
    }
    return all;
}

/// Hears what the history would keep.
class Listener final : public RunObserver {
public:
    bool KeepsImages() const noexcept override { return true; }
    void TargetChanges(const TargetChange& change) noexcept override { m_changes.append(change); }

    /// The rows without what was heard.
    TableRows TakenBack(TableRows rows) const {
        std::for_each(m_changes.crbegin(), m_changes.crend(), [&rows](const TargetChange& change) {
            if (change.kind == TargetChange::Kind::Inserted) {
                rows[change.table].remove(change.id);
                return;
            }
            RowValues& row = rows[change.table][change.id];
            row.insert("RECORD_ID", QString::number(change.id));
            for (const auto& [column, value] : change.before.asKeyValueRange()) {
                row.insert(column, mod_ovTools::ToText(value));
            }
        });
        return rows;
    }

private:
    QVector<TargetChange> m_changes;
};

/// The rows that are not what they were, "-" before and "+" behind, but for tables that were emptied.
QStringList Untold(const TableRows& before, const TableRows& after, const QVector<RunResult::Emptied>& emptied) {
    QSet<QString> tables(before.keyBegin(), before.keyEnd());
    tables.unite({after.keyBegin(), after.keyEnd()});
    QStringList lines;
    for (const QString& table : tables) {
        if (table == "SYS_IMP" || before.value(table) == after.value(table) ||
            std::any_of(emptied.begin(), emptied.end(), [&](const auto& one) { return one.table == table; })) {
            continue;
        }
        QStringList sides[2];
        for (const bool isAfter : {false, true}) {
            for (const RowValues& row : (isAfter ? after : before).value(table)) {
                sides[isAfter].append(table + ' ' + QStringList(row.values()).join('|'));
            }
        }
        lines += Changes(sides[0], sides[1]);
    }
    return lines;
}

QString WithoutReset(QString line) { return line.remove(" reset"); }

} // namespace

/// What an import has written is found and rewritten by the next: nothing doubles, nothing grows.
class TestTwice : public QObject {
    Q_OBJECT
    Q_CLASSINFO("about", "origins")

private slots:
    void ProceduresFindWhatTheyWrote_data() { EachModule(); }
    /// Each procedure right after itself; then all of them after all of them, as they share tables.
    void ProceduresFindWhatTheyWrote() {
        QFETCH(const QString, module);
        Fixture fixture(FixtureFolder(module), *FixtureOrigins().value(module));
        for (const QString& line : fixture.Lines()) {
            fixture.RunLine(line);
            const QStringList before = fixture.Content();
            fixture.RunLine(WithoutReset(line));
            const QStringList changes = Changes(before, fixture.Content());
            QVERIFY2(changes.isEmpty(), qPrintable(line + ":\n" + changes.join('\n')));
        }
        QStringList contents[2];
        for (QStringList& content : contents) {
            for (const QString& line : fixture.Lines()) {
                fixture.RunLine(WithoutReset(line));
            }
            content = fixture.Content();
        }
        const QStringList changes = Changes(contents[0], contents[1]);
        QVERIFY2(changes.isEmpty(), qPrintable(changes.join('\n')));
    }

    void EveryChangeIsTold_data() { EachModule(); }
    /// What an undo needs: every row that is inserted, updated or deleted, but for tables that are emptied, which the
    /// result tells.
    void EveryChangeIsTold() {
        QFETCH(const QString, module);
        Fixture fixture(FixtureFolder(module), *FixtureOrigins().value(module));
        const QStringList tables = TablesOf(fixture.Target());
        TableRows before = RowsOf(fixture.Target(), tables);
        for (const bool again : {false, true}) {
            for (const QString& line : fixture.Lines()) {
                Listener history;
                fixture.Target().Get().Observer = &history;
                fixture.RunLine(again ? WithoutReset(line) : line);
                fixture.Target().Get().Observer = nullptr;
                const TableRows after = RowsOf(fixture.Target(), tables);
                const QStringList wrong = Untold(before, history.TakenBack(after), fixture.Results().last().emptied);
                QVERIFY2(wrong.isEmpty(), qPrintable(line + ":\n" + wrong.join('\n')));
                before = after;
            }
            if (!again) {
                Disturb(fixture.Target());
                before = RowsOf(fixture.Target(), tables);
            }
        }
    }
};

QUADRIX_TEST(TestTwice)
#include "test_twice.moc"
