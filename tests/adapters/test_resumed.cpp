#include "adapters/contract/run/RowSelection.h"
#include "core/RunObserver.h"
#include "tests/adapters/Fixture.h"
#include "tests/support/QuadrixTest.h"

#include <QRegularExpression>
#include <QTest>

namespace {

/// Hears how far a run comes.
class HowFar final : public RunObserver {
public:
    void RowsStand(int loop, qint64 rows, const QString& last) noexcept override { Reached = {loop, rows, last}; }

    contract::RowSelection::Reached Reached;
};

/// What is in the target, without what imports keep for themselves.
QStringList ContentOf(Fixture& fixture) {
    QStringList rows = fixture.Content();
    rows.removeIf([](const QString& row) { return row.startsWith("SYS_IMP "); });
    return rows.replaceInStrings(fixture.Target().Folder.path(), "%FOLDER%");
}

/// Procedures that do not know what they have met before an interruption: the first of several rows that are one thing,
/// or what rows behind it refer to.
const QStringList NotAlike{"ImportLamiereAhr", "AggiornaContropartiBMS", "ImportSaldiVSP", "ImportDisegniVSP",
                           "ImportDocumentiArcaEvolution"};

} // namespace

/// An import that goes on behind one that was interrupted leaves what it leaves in one.
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
            if (line.contains(" code=") || NotAlike.contains(line.section(' ', 0, 0))) {
                continue;
            }
            whole.RunLine(line);
            Session& session = parted.Target().Get();
            HowFar place;
            session.Observer = &place;
            parted.Target().Person.CancelAt = whole.Results().last().sourceRows / 2;
            parted.RunLine(line);
            parted.Target().Person.CancelAt.reset();
            session.Observer = nullptr;
            if (session.Results.last().outcome == RunResult::Outcome::Cancelled) {
                const QString procedure = line.section(' ', 0, 0);
                contract::RowSelection rest;
                rest.GoOn(procedure, place.Reached);
                rest.Begin(procedure);
                session.Selection = &rest;
                parted.RunLine(QString(line).remove(" reset"));
                session.Selection = nullptr;
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
};

QUADRIX_TEST(TestResumed)
#include "test_resumed.moc"
