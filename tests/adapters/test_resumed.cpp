#include "adapters/contract/run/RowSelection.h"
#include "core/RunObserver.h"
#include "tests/adapters/Fixture.h"
#include "tests/support/QuadrixTest.h"

#include <QRegularExpression>
#include <QTest>

namespace {

/// Hears how far a run comes, and what it has written by then.
class HowFar final : public RunObserver {
public:
    bool KeepsImages() const noexcept override { return true; }
    void TargetChanges(const TargetChange& change) noexcept override {
        if (change.kind == TargetChange::Kind::Deleted) {
            m_written.remove({change.table, change.id});
        } else {
            m_written.insert({change.table, change.id});
        }
    }
    void RowsStand(int loop, qint64 rows, const QString& last) noexcept override { m_reached = {loop, rows, last}; }

    contract::RowSelection::Reached Reached() const {
        contract::RowSelection::Reached reached = m_reached;
        reached.hasWritten = [written = m_written](const QString& table, qint64 id) {
            return written.contains({table, id});
        };
        return reached;
    }

private:
    contract::RowSelection::Reached m_reached;
    QSet<std::pair<QString, qint64>> m_written;
};

/// What is in the target, without what imports keep for themselves.
QStringList ContentOf(Fixture& fixture) {
    QStringList rows = fixture.Content();
    rows.removeIf([](const QString& row) { return row.startsWith("SYS_IMP "); });
    return rows.replaceInStrings(fixture.Target().Folder.path(), "%FOLDER%");
}

} // namespace

/// An import that goes on behind one that was interrupted, and is interrupted again, leaves what it leaves in one.
class TestResumed : public QObject {
    Q_OBJECT
    Q_CLASSINFO("about", "origins")

private slots:
    void LeavesWhatAWholeRunLeaves_data() { EachModule(); }
    void LeavesWhatAWholeRunLeaves() {
        QFETCH(const QString, module);
        Fixture whole(FixtureFolder(module), *FixtureOrigins().value(module));
        Fixture parted(FixtureFolder(module), *FixtureOrigins().value(module));
        for (const QString& line : whole.Lines()) {
            if (line.contains(" code=")) {
                continue;
            }
            whole.RunLine(line);
            const qint64 rows = whole.Results().last().sourceRows;
            if (!RunInParts(parted, line, {2, rows / 2})) {
                continue;
            }
            QStringList missing = ContentOf(whole);
            QStringList wrong = ContentOf(parted);
            for (const QString& row : QStringList(wrong)) {
                if (missing.removeOne(row)) {
                    wrong.removeOne(row);
                }
            }
            wrong += missing.replaceInStrings(QRegularExpression("^"), "-");
            QVERIFY2(wrong.isEmpty(), qPrintable(line + ":\n" + wrong.join('\n')));
        }
    }

private:
    /// Runs a line, which the operator interrupts behind so many rows, and each time goes on.
    /// @return whether it was interrupted
    static bool RunInParts(Fixture& fixture, const QString& line, const QVector<qint64>& cuts) {
        const QString procedure = line.section(' ', 0, 0);
        Session& session = fixture.Target().Get();
        HowFar place;
        session.Observer = &place;
        std::optional<contract::RowSelection> rest;
        const auto run = [&](std::optional<qint64> cut) {
            fixture.Target().Person.CancelAt = cut;
            fixture.RunLine(rest ? QString(line).remove(" reset") : line);
            rest.emplace().GoOn(procedure, place.Reached());
            rest->Begin(procedure);
            session.Selection = &*rest;
            return session.Results.last().outcome == RunResult::Outcome::Cancelled;
        };
        bool isCancelled = true;
        int times = 0;
        for (auto cut = cuts.begin(); isCancelled && cut != cuts.end(); ++cut) {
            isCancelled = run(*cut);
            times += isCancelled ? 1 : 0;
        }
        if (isCancelled) {
            run(std::nullopt);
        }
        session.Selection = nullptr;
        session.Observer = nullptr;
        return times > 0;
    }
};

QUADRIX_TEST(TestResumed)
#include "test_resumed.moc"
