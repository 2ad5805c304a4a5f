#include "tests/adapters/Rehearsal.h"
#include "tests/support/QuadrixTest.h"

#include <QRegularExpression>
#include <QTest>

namespace {

/// How a run with a fault ends.
enum class End {
    Clean,   ///< as if nothing had happened
    GivenUp, ///< the row is given up alone; outside a row the run fails
    Failed,  ///< the run fails
    Told,    ///< in whatever way, but somebody is told
};

/// How many of the places for a fault are tried; all of them when QUADRIX_FAULTS is set to "all".
constexpr int Few = 2;
constexpr int Many = 8;

/// Procedures of which rows stay that a row that was given up needed: the head of a customer's price list, the bill of
/// a production order.
const QSet<QString> KeepsRows{"ImportListiniArca2000", "ImportDocumentiLantek24"};

/// Procedures whose second run finds that another source row has taken the place of one that was given up: a code, the
/// description of a location.
const QSet<QString> GivesPlace{"ImportMaterialiFerrobrio", "ImportUbicazioniVSP"};

/// Places from 1 to `count`: as many as are wanted, spread evenly, others for each `shift`.
QVector<int> Places(int count, int wanted, int shift) {
    if (qEnvironmentVariable("QUADRIX_FAULTS") == "all") {
        wanted = count;
    }
    wanted = std::min(wanted, count);
    QVector<int> places;
    for (int i = 0; i < wanted; ++i) {
        places.append(1 + (i * count / wanted + shift * 7) % count);
    }
    return places;
}

/// The lines of a module that are rehearsed: each procedure once for everything, and once more with its emptying.
QStringList RehearsedLines(const QString& module) {
    QStringList lines;
    QSet<QString> seen;
    const Fixture fixture(FixtureFolder(module), *FixtureOrigins().value(module));
    for (const QString& line : fixture.Lines()) {
        const QString what = line.section(' ', 0, 0) + (line.contains(" reset") ? " reset" : "");
        if (!line.contains(" code=") && !seen.contains(what)) {
            seen.insert(what);
            lines.append(line);
        }
    }
    return lines;
}

} // namespace

/// What is left of every procedure when statements fail, the operator cancels, or the log cannot be written.
class TestFaults : public QObject {
    Q_OBJECT

    QString m_name;
    std::unique_ptr<Rehearsal> m_rehearsal;
    QMap<QString, QStringList> m_leftByGivenUp; ///< what a run leaves, by the rows that it gave up
    int m_faults = 0;

    /// The rehearsal of a line; the last one is kept.
    Rehearsal& Stage(const QString& module, const QString& line) {
        const QString name = module + ' ' + line;
        if (name != m_name) {
            m_rehearsal.reset();
            m_leftByGivenUp.clear();
            m_rehearsal = std::make_unique<Rehearsal>(FixtureFolder(module), *FixtureOrigins().value(module), line);
            m_name = name;
        }
        return *m_rehearsal;
    }

    /// Whether the error collector, or the question to the operator, names the statement that failed, and its row where
    /// that was the only one.
    static bool IsNamed(Rehearsal& stage, const Faults& fault) {
        const QVector<ErrorEntry> entries = stage.Get().Errors.Entries() + stage.Person().Decided;
        return std::any_of(entries.begin(), entries.end(), [&](const ErrorEntry& entry) {
            return fault.failed.contains(entry.statement) && (fault.times > 1 || entry.rowKey == stage.StruckRow);
        });
    }

    /// A row whose look-up failed is done again without it when the operator does not want to go on: it may succeed.
    static bool IsMadeUpFor(Rehearsal& stage) {
        return !stage.Person().Decided.isEmpty() && stage.Rows() == stage.CleanRows &&
               stage.Result().outcome == stage.Clean.outcome;
    }

    /// A translation that could not be looked up is reported, and the row goes on as one without a translation.
    static bool IsLookup(Rehearsal& stage) {
        const auto& entries = stage.Get().Errors.Entries();
        return std::any_of(entries.begin(), entries.end(),
                           [](const ErrorEntry& entry) { return entry.module == "modImport"; });
    }

    /// Triggers are switched on once more by themselves.
    static bool IsSwitch(Rehearsal& stage) { return stage.TargetFault.failed.value(0).startsWith("trigger "); }

    QString WrongEnd(Rehearsal& stage, const Faults& fault, End end) {
        const RunResult& result = stage.Result();
        if (end == End::Clean) {
            const QStringList rows = stage.Rows();
            return result.outcome == stage.Clean.outcome && rows == stage.CleanRows
                       ? QString()
                       : "not as without the fault:\n" + Difference(stage.CleanRows, rows);
        }
        if (fault.failed.isEmpty() || IsSwitch(stage)) {
            return {}; // in this mode the run had ended before
        }
        if (!IsNamed(stage, fault)) {
            return "the error does not name statement and row";
        }
        if (end == End::Told || IsLookup(stage) || (end == End::Failed && IsMadeUpFor(stage))) {
            return {};
        }
        if (end == End::Failed || !stage.StruckInRow) {
            return result.outcome == RunResult::Outcome::Failed ? QString() : "it did not fail";
        }
        return WrongGivingUp(stage);
    }

    /// The row is given up with its reason, and what is left is the same whichever of its statements failed; with the
    /// first of them it had written nothing yet.
    QString WrongGivingUp(Rehearsal& stage) {
        const auto isCulprit = [&](const RunResult::GivenUp& row) {
            return row.rowKey == stage.StruckRow && row.reason.contains(Faults::Words);
        };
        const RunResult& result = stage.Result();
        if (result.outcome != stage.Clean.outcome ||
            std::none_of(result.givenUp.begin(), result.givenUp.end(), isCulprit)) {
            return "the row was not given up alone";
        }
        if (KeepsRows.contains(stage.Result().procedure)) {
            return {};
        }
        QStringList& left = m_leftByGivenUp[stage.GivenUp() + QString(" at %1").arg(stage.StruckAt)];
        const QStringList rows = stage.Rows();
        left = left.isEmpty() ? rows : left;
        return left == rows ? QString() : "rows of the row that was given up are left:\n" + Difference(left, rows);
    }

    /// A second run makes up for what the first could not do.
    static QString WrongSecond(Rehearsal& stage) {
        if (IsLookup(stage)) {
            return {};
        }
        stage.RunAgain(!stage.StruckInRow);
        if (stage.Result().outcome != stage.Second.outcome || stage.GivenUp() != stage.SecondGivenUp) {
            return "a second run ends otherwise";
        }
        const QStringList content = stage.Content();
        return GivesPlace.contains(stage.Result().procedure) || content == stage.SecondContent
                   ? QString()
                   : "a second run does not make up for it:\n" + Difference(stage.SecondContent, content);
    }

    static QString Difference(const QStringList& expected, const QStringList& actual) {
        QStringList lines;
        for (const QString& row : expected) {
            if (!actual.contains(row)) {
                lines.append("- " + row);
            }
        }
        for (const QString& row : actual) {
            if (!expected.contains(row)) {
                lines.append("+ " + row);
            }
        }
        return lines.mid(0, 10).join('\n');
    }

    static void Lines_data() {
        QTest::addColumn<QString>("module");
        QTest::addColumn<QString>("line");
        for (const QString& module : FixtureOrigins().keys()) {
            for (const QString& line : RehearsedLines(module)) {
                QTest::newRow(qPrintable(module + ' ' + line)) << module << line;
            }
        }
    }

    struct Mode {
        const char* name;
        ErrorAction action;
        ErrorAnswer answer;
        int times;
        End end;
        int places;
        bool again;        ///< whether a second run follows
        bool ends = false; ///< whether the database ends the transaction with the fault
    };

    /// Everything that is wrong at one place; empty when nothing is.
    QString WrongAt(Rehearsal& stage, const Mode& mode, int place) {
        ++m_faults;
        stage.Run({.target = {.first = place, .times = mode.times, .ends = mode.ends},
                   .action = mode.action,
                   .answer = mode.answer});
        QString wrong = stage.Wrong();
        wrong = wrong.isEmpty() ? WrongEnd(stage, stage.TargetFault, mode.end) : wrong;
        return wrong.isEmpty() && mode.again ? WrongSecond(stage) : wrong;
    }

private slots:
    void EveryStatementFails_data() { Lines_data(); }
    void EveryStatementFails() {
        QFETCH(const QString, module);
        QFETCH(const QString, line);
        constexpr auto no = ErrorAnswer::Ignore;
        static const Mode modes[] = {
            {"ignore", ErrorAction::Ignore, no, 1, End::GivenUp, Many, true},
            {"ignore, the next one fails too", ErrorAction::Ignore, no, 2, End::Told, Few, false},
            {"ignore, for good", ErrorAction::Ignore, no, Faults::Always, End::Told, Few, false},
            {"retry, for good", ErrorAction::Retry, no, Faults::Always, End::Told, Few, false},
            {"ask, Riprova, the transaction ends", ErrorAction::Ask, ErrorAnswer::Retry, 1, End::Clean, Many, false,
             true},
            {"abort", ErrorAction::Abort, no, 1, End::Told, Few, true},
            {"abort, for good", ErrorAction::Abort, no, Faults::Always, End::Told, Few, false},
            {"ask, Riprova", ErrorAction::Ask, ErrorAnswer::Retry, 3, End::Clean, Few, false},
            {"ask, Ignora", ErrorAction::Ask, ErrorAnswer::Ignore, 1, End::GivenUp, Few, false},
            {"ask, Ignora, the transaction ends", ErrorAction::Ask, ErrorAnswer::Ignore, 1, End::GivenUp, Few, true,
             true},
            {"ask, Interrompi", ErrorAction::Ask, ErrorAnswer::Abort, 1, End::Failed, Few, true},
        };
        Rehearsal& stage = Stage(module, line);
        for (const Mode& mode : modes) {
            for (const int place : Places(stage.CleanStatements, mode.places, static_cast<int>(&mode - modes))) {
                const QString wrong = WrongAt(stage, mode, place);
                QVERIFY2(
                    wrong.isEmpty(),
                    qPrintable(
                        QString("%1, statement %2 of %3, in %4: %5\n%6\n%7")
                            .arg(mode.name)
                            .arg(place)
                            .arg(stage.CleanStatements)
                            .arg(stage.StruckRow, wrong, stage.TargetFault.failed.join('\n'),
                                 stage.Person().Events.filter(QRegularExpression("^(error|reported)")).join('\n'))));
            }
        }
    }

    /// A statement of the source fails, or its connection breaks between two rows.
    void SourceFails_data() { Lines_data(); }
    void SourceFails() {
        QFETCH(const QString, module);
        QFETCH(const QString, line);
        Rehearsal& stage = Stage(module, line);
        for (const int place : Places(stage.CleanSource, Many, 0)) {
            ++m_faults;
            stage.Run({.source = {.first = place, .rows = true}});
            QString wrong = stage.Wrong();
            wrong = wrong.isEmpty() && stage.Person().Reported.isEmpty() && stage.Get().Errors.Entries().isEmpty()
                        ? "nobody is told"
                        : wrong;
            wrong = wrong.isEmpty() ? WrongSecond(stage) : wrong;
            QVERIFY2(wrong.isEmpty(), qPrintable(QString("%1 of %2, in %3: %4\n%5")
                                                     .arg(place)
                                                     .arg(stage.CleanSource)
                                                     .arg(stage.StruckRow, wrong, stage.SourceFault.failed.value(0))));
        }
    }

    void CancelAtEveryRow_data() { Lines_data(); }
    void CancelAtEveryRow() {
        QFETCH(const QString, module);
        QFETCH(const QString, line);
        Rehearsal& stage = Stage(module, line);
        for (const int row : Places(static_cast<int>(stage.Clean.sourceRows), Few, 0)) {
            ++m_faults;
            const RunResult result = stage.Run({.cancelAt = static_cast<float>(row - 1)});
            const bool cancelled = result.outcome == RunResult::Outcome::Cancelled;
            QVERIFY2(cancelled || row > 1, "cancelled before the first row, but it ran");
            QVERIFY(!cancelled || stage.Person().Messages.isEmpty());
            QCOMPARE(stage.Wrong(), QString());
            QCOMPARE(WrongSecond(stage), QString());
        }
    }

    void LogCannotBeWritten_data() { Lines_data(); }
    void LogCannotBeWritten() {
        QFETCH(const QString, module);
        QFETCH(const QString, line);
        Rehearsal& stage = Stage(module, line);
        const QString log = std::exchange(stage.Get().LogFile, stage.Get().LogFile.section('/', 0, -2));
        stage.Run({.action = ErrorAction::Ignore});
        stage.Get().LogFile = log;
        QCOMPARE(stage.Wrong(), QString());
        const bool logs = !stage.CleanLog.isEmpty();
        QCOMPARE(stage.Result().outcome, logs ? RunResult::Outcome::Failed : stage.Clean.outcome);
        QVERIFY(!logs || stage.Person().Reported.first().message.contains("Log '"));
        QCOMPARE(WrongSecond(stage), QString());
    }

    /// The log is lost while the run is under way, once with nothing else and once with a statement that fails.
    void LogIsLost_data() { Lines_data(); }
    void LogIsLost() {
        QFETCH(const QString, module);
        QFETCH(const QString, line);
        Rehearsal& stage = Stage(module, line);
        const QString log = stage.Get().LogFile;
        const auto lose = [&] { stage.Get().LogFile = log.section('/', 0, -2); };
        for (const ErrorAction action : {ErrorAction::Ignore, ErrorAction::Abort}) {
            for (const int place : Places(stage.CleanStatements, Few, 0)) {
                for (const int times : {0, 1}) {
                    ++m_faults;
                    stage.Run({.target = {.first = place, .times = times, .struck = lose}, .action = action});
                    stage.Get().LogFile = log;
                    QCOMPARE(stage.Wrong(), QString());
                    if (stage.TargetFault.failed.isEmpty() || IsSwitch(stage)) {
                        continue; // only the log is lost, or the run had ended before
                    }
                    QVERIFY2(IsNamed(stage, stage.TargetFault), qPrintable(stage.TargetFault.failed.first()));
                    const QString ended = stage.Result().errors.value(0);
                    QVERIFY2(ended.isEmpty() || IsLookup(stage) || ended.contains(Faults::Words), qPrintable(ended));
                }
            }
        }
    }

    void cleanupTestCase() {
        m_rehearsal.reset();
        qInfo("%d faults tried", m_faults);
    }
};

QUADRIX_TEST(TestFaults)
#include "test_faults.moc"
