#include "sql/visibleText.h"
#include "tests/adapters/missingColumns.h"
#include "tests/adapters/Rehearsal.h"
#include "tests/support/QuadrixTest.h"
#include "tests/support/rows.h"

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
constexpr int Few = 1;
constexpr int Many = 2;

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

/// The lines of a module that are rehearsed: each procedure once for everything; of a module that stands for others
/// once more with its emptying.
QStringList RehearsedLines(const QString& module) {
    QStringList lines;
    QSet<QString> seen;
    const RunFile file = RunFile::Of(FixtureFolder(module));
    for (const QString& line : file.lines) {
        const QString what = line.section(' ', 0, 0) + (file.IsClose() && line.contains(" reset") ? " reset" : "");
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
    Q_CLASSINFO("about", "origins")

    QMap<QString, QStringList> m_leftByGivenUp; ///< what a run leaves, by the rows that it gave up
    QSet<QString> m_withoutColumns;             ///< procedures that ran without columns of their source
    int m_faults = 0;

    /// Whether the error collector, or the question to the operator, names the statement that failed, and its row where
    /// that was the only one.
    /// The row of a document stands or falls with its document.
    static bool IsOrBelongsTo(const QString& row, const QString& named) {
        return row == named || (!named.isEmpty() && row.startsWith(named + ", "));
    }
    static bool IsNamed(Rehearsal& stage, const Faults& fault) {
        const QVector<ErrorEntry> entries = stage.Get().Errors.Entries() + stage.Person().Decided;
        QStringList failed;
        for (const QString& statement : fault.failed) {
            failed.append(VisibleText(statement));
        }
        return std::any_of(entries.begin(), entries.end(), [&](const ErrorEntry& entry) {
            return failed.contains(entry.statement) &&
                   (fault.times > 1 || IsOrBelongsTo(stage.StruckRow, entry.rowKey));
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
            QString told;
            for (const ErrorEntry& entry : stage.Get().Errors.Entries() + stage.Person().Decided) {
                told += "\n" + entry.rowKey + ": " + entry.statement;
            }
            return "the error does not name statement and row, told are:" + told;
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
            return IsOrBelongsTo(stage.StruckRow, row.rowKey) && row.reason.contains(Faults::Words);
        };
        const RunResult& result = stage.Result();
        if (result.outcome != stage.Clean.outcome ||
            std::none_of(result.givenUp.begin(), result.givenUp.end(), isCulprit)) {
            return "the row was not given up alone";
        }
        if (stage.May("keeps rows")) {
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
        return stage.May("gives place") || content == stage.SecondContent
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

    QString WhenStatementsFail(Rehearsal& stage) {
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
        for (const Mode& mode : modes) {
            const bool isClose = stage.IsClose() && mode.places == Many;
            const int wanted = isClose ? stage.CleanStatements : mode.places;
            for (const int place : Places(stage.CleanStatements, wanted, static_cast<int>(&mode - modes))) {
                const QString wrong = WrongAt(stage, mode, place);
                if (!wrong.isEmpty()) {
                    return QString("%1, statement %2 of %3, in %4: %5\n%6\n%7")
                        .arg(mode.name)
                        .arg(place)
                        .arg(stage.CleanStatements)
                        .arg(stage.StruckRow, wrong, stage.TargetFault.failed.join('\n'),
                             stage.Person().Events.filter(QRegularExpression("^(error|reported)")).join('\n'));
                }
            }
        }
        return {};
    }

    /// A statement of the source fails, or its connection breaks between two rows.
    QString WhenTheSourceFails(Rehearsal& stage) {
        for (const int place : Places(stage.CleanSource, Many, 0)) {
            ++m_faults;
            stage.Run({.source = {.first = place, .rows = true}});
            QString wrong = stage.Wrong();
            const bool isTold = !stage.Person().Reported.isEmpty() || !stage.Get().Errors.Entries().isEmpty();
            wrong = wrong.isEmpty() && !isTold ? "nobody is told" : wrong;
            wrong = wrong.isEmpty() ? WrongSecond(stage) : wrong;
            if (!wrong.isEmpty()) {
                return QString("source, %1 of %2, in %3: %4\n%5")
                    .arg(place)
                    .arg(stage.CleanSource)
                    .arg(stage.StruckRow, wrong, stage.SourceFault.failed.value(0));
            }
        }
        return {};
    }

    /// With the first line of a procedure alone: each reads the same columns.
    QString WhenColumnsAreMissing(Rehearsal& stage) {
        const QString procedure = stage.Result().module + ' ' + stage.Result().procedure;
        if (m_withoutColumns.contains(procedure)) {
            return {};
        }
        m_withoutColumns.insert(procedure);
        return WrongWithoutColumns(stage);
    }

    QString WhenTheOperatorCancels(Rehearsal& stage) {
        for (const int row : Places(static_cast<int>(stage.Clean.sourceRows), Many, 0)) {
            ++m_faults;
            const RunResult result = stage.Run({.cancelAt = static_cast<float>(row - 1)});
            const bool cancelled = result.outcome == RunResult::Outcome::Cancelled;
            QString wrong = cancelled || row > 1 ? stage.Wrong() : "it ran";
            wrong = cancelled && !stage.Person().Messages.isEmpty() ? "it tells of an end" : wrong;
            wrong = wrong.isEmpty() ? WrongSecond(stage) : wrong;
            if (!wrong.isEmpty()) {
                return QString("cancelled before row %1: ").arg(row) + wrong;
            }
        }
        return {};
    }

    QString WhenTheLogCannotBeWritten(Rehearsal& stage) {
        const QString log = std::exchange(stage.Get().LogFile, stage.Get().LogFile.section('/', 0, -2));
        stage.Run({.action = ErrorAction::Ignore});
        stage.Get().LogFile = log;
        const bool logs = !stage.CleanLog.isEmpty();
        QString wrong = stage.Wrong();
        if (stage.Result().outcome != (logs ? RunResult::Outcome::Failed : stage.Clean.outcome) ||
            (logs && !stage.Person().Reported.value(0).message.contains("Log '"))) {
            wrong = "it does not fail, or does not say why";
        }
        wrong = wrong.isEmpty() ? WrongSecond(stage) : wrong;
        return wrong.isEmpty() ? wrong : "without a log: " + wrong;
    }

    /// The log is lost while the run is under way, once with nothing else and once with a statement that fails.
    QString WhenTheLogIsLost(Rehearsal& stage) {
        const QString log = stage.Get().LogFile;
        const auto lose = [&] { stage.Get().LogFile = log.section('/', 0, -2); };
        for (const ErrorAction action : {ErrorAction::Ignore, ErrorAction::Abort}) {
            for (const int place : Places(stage.CleanStatements, Many, 0)) {
                for (const int times : {0, 1}) {
                    ++m_faults;
                    stage.Run({.target = {.first = place, .times = times, .struck = lose}, .action = action});
                    stage.Get().LogFile = log;
                    const QString wrong = WrongWithoutLog(stage);
                    if (!wrong.isEmpty()) {
                        return QString("log lost at statement %1: ").arg(place) + wrong;
                    }
                }
            }
        }
        return {};
    }
    static QString WrongWithoutLog(Rehearsal& stage) {
        const QString wrong = stage.Wrong();
        if (!wrong.isEmpty() || stage.TargetFault.failed.isEmpty() || IsSwitch(stage)) {
            return wrong; // only the log is lost, or the run had ended before
        }
        if (!IsNamed(stage, stage.TargetFault)) {
            return "nobody is told of " + stage.TargetFault.failed.first();
        }
        const QString ended = stage.Result().errors.value(0);
        // Rows of one group are told together: the first may be one that fails by itself.
        const auto& givenUp = stage.Clean.givenUp;
        const bool isOwn = std::any_of(givenUp.begin(), givenUp.end(),
                                       [&](const RunResult::GivenUp& row) { return ended.contains(row.reason); });
        const bool isRight = ended.isEmpty() || IsLookup(stage) || isOwn || ended.contains(Faults::Words);
        return isRight ? QString() : "it ended for another reason: " + ended;
    }

private slots:
    void Faults_data() {
        Columns<QString, QString>("module", "line");
        for (const QString& module : TestedModules()) {
            for (const QString& line : RehearsedLines(module)) {
                Row(qPrintable(module + ' ' + line), module, line);
            }
        }
    }
    /// Each procedure, with everything that can happen to it.
    void Faults() {
        QFETCH(const QString, module);
        QFETCH(const QString, line);
        Rehearsal stage(FixtureFolder(module), *FixtureOrigins().value(module), line);
        m_leftByGivenUp.clear();
        for (const auto when : {&TestFaults::WhenStatementsFail, &TestFaults::WhenTheSourceFails,
                                &TestFaults::WhenTheOperatorCancels, &TestFaults::WhenTheLogCannotBeWritten,
                                &TestFaults::WhenTheLogIsLost, &TestFaults::WhenColumnsAreMissing}) {
            const QString wrong = (this->*when)(stage);
            QVERIFY2(wrong.isEmpty(), qPrintable(wrong));
        }
    }

    void cleanupTestCase() { qInfo("%d faults tried", m_faults); }
};

QUADRIX_TEST(TestFaults)
#include "test_faults.moc"
