#include "tests/support/QuadrixTest.h"

#ifdef QT_WIDGETS_LIB
#include <QApplication>
using Application = QApplication;
#else
#include <QCoreApplication>
using Application = QCoreApplication;
#endif
#include <QDir>
#include <QTest>

#include <algorithm>
#include <deque>
#include <iterator>
#include <vector>

/// Runs last. A class that is left out as a whole (QSKIP in initTestCase) silently takes all that follow with it.
class EveryClassRan : public QObject {
    Q_OBJECT

public:
    bool Seen = false;

private slots:
    void IsReached() { Seen = true; }
};

namespace {

using Arguments = std::vector<char*>;
using Classes = std::vector<std::unique_ptr<QObject>>;

/// Whether an argument names a function of the class: "Function" or "Function:row".
bool IsFunctionOf(const QObject& test, const char* argument) {
    const QByteArray name = QByteArray(argument).split(':').first() + "()";
    return test.metaObject()->indexOfSlot(name.constData()) >= test.metaObject()->methodOffset();
}

bool IsNameOf(const QObject& test, const char* argument) {
    return qstrcmp(test.metaObject()->className(), argument) == 0;
}

/// A class with `Q_CLASSINFO("about", "origins")` holds what is tested of each origin.
bool IsAboutOrigins(const QObject& test) { return test.metaObject()->indexOfClassInfo("about") >= 0; }

/// The statements that tests leave to be checked go to a folder of each program, as several run at the same time.
void SeparateStatements() {
    const QString folder = qEnvironmentVariable("QUADRIX_TSQL");
    if (!folder.isEmpty()) {
        const QString own = folder + '/' + QString::number(QCoreApplication::applicationPid());
        QDir().mkpath(own);
        qputenv("QUADRIX_TSQL", own.toLocal8Bit());
    }
}

/// The command line: what Qt understands, and the classes and functions that are to run, all when none is named;
/// "!Class" is left out.
class CommandLine {
public:
    CommandLine(int argc, char** argv, const Classes& classes) {
        static const QList<QByteArray> withValue{"-o", "-maxwarnings", "-eventdelay", "-keydelay", "-mousedelay"};
        for (int i = 0; i < argc; ++i) {
            const bool isValue = i > 0 && withValue.contains(argv[i - 1]);
            const bool isOption = i == 0 || isValue || argv[i][0] == '-';
            (isOption ? m_options : argv[i][0] == '!' ? m_leftOut : m_chosen).push_back(argv[i]);
        }
        // Qt's own handler answers an exception that nobody caught with its words without end; without it the text is
        // shown.
        static char noHandler[] = "-nocrashhandler";
        m_options.push_back(noHandler);
        if (m_chosen.empty() && qEnvironmentVariableIsSet("QUADRIX_TEST_ORIGIN")) {
            for (const auto& test : classes) {
                if (IsAboutOrigins(*test)) {
                    m_names.push_back(test->metaObject()->className());
                    m_chosen.push_back(m_names.back().data());
                }
            }
        }
    }

    bool NamesAny() const { return !m_chosen.empty(); }
    /// The first name that is neither a class nor a function; none when all are known.
    const char* Unknown(const Classes& classes) const {
        const auto isUnknown = [&](const char* name) {
            return std::none_of(classes.begin(), classes.end(), [name](const auto& test) {
                return IsNameOf(*test, name) || IsFunctionOf(*test, name);
            });
        };
        const auto found = std::find_if(m_chosen.begin(), m_chosen.end(), isUnknown);
        return found == m_chosen.end() ? nullptr : *found;
    }
    /// What a class is run with; empty when it is not to run.
    Arguments For(const QObject& test) const {
        const auto isLeftOut = [&test](const char* name) { return IsNameOf(test, name + 1); };
        if (std::any_of(m_leftOut.begin(), m_leftOut.end(), isLeftOut)) {
            return {};
        }
        const auto hasName = [&test](const char* name) { return IsNameOf(test, name); };
        if (!NamesAny() || std::any_of(m_chosen.begin(), m_chosen.end(), hasName)) {
            return m_options;
        }
        Arguments own = m_options;
        std::copy_if(m_chosen.begin(), m_chosen.end(), std::back_inserter(own),
                     [&test](const char* name) { return IsFunctionOf(test, name); });
        return own.size() > m_options.size() ? own : Arguments();
    }

private:
    Arguments m_options;
    Arguments m_chosen;
    Arguments m_leftOut;
    std::deque<QByteArray> m_names; ///< of classes that the command line does not name
};

/// Runs the classes; the number of failures.
int RunAll(const Classes& classes, const CommandLine& line) {
    int failures = 0;
    for (const auto& test : classes) {
        Arguments own = line.For(*test);
        if (!own.empty()) {
            failures += QTest::qExec(test.get(), static_cast<int>(own.size()), own.data());
        }
    }
    return failures;
}

} // namespace

int main(int argc, char** argv) {
    // Qt's limit holds for all rows of a function together; `TimeLimit` holds for each.
    qputenv("QTEST_FUNCTION_TIMEOUT", "86400000");
    SeparateStatements();
    const Application application(argc, argv);
    Classes classes;
    for (const auto& make : QuadrixTests()) {
        classes.push_back(make());
    }
    const CommandLine line(argc, argv, classes);
    if (const char* unknown = line.Unknown(classes)) {
        qCritical("No test class and no function of one is called %s", unknown);
        return 1;
    }
    const int failures = RunAll(classes, line);
    if (line.NamesAny()) {
        return failures;
    }
    EveryClassRan last;
    QTest::qExec(&last, 1, argv);
    if (!last.Seen) {
        qCritical("Some classes did not run: leave tests out in init(), not in initTestCase().");
    }
    return failures + (last.Seen ? 0 : 1);
}

#include "main.moc"
