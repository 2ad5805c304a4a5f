#include "sql/ovConnection.h"
#include "tests/support/embedded.h"
#include "tests/support/errorOf.h"
#include "tests/support/QuadrixTest.h"
#include "tests/support/rows.h"

#include <QElapsedTimer>
#include <QTemporaryDir>
#include <QTest>

#include <deque>

/// What a failing statement leads to, and what the collector keeps of it.
class TestErrors : public QObject {
    Q_OBJECT

    enum class Outcome { Raised, RowGivenUp };

private slots:
    void init() {
        m_errors = {};
        m_errors.Now = [] { return QDateTime(QDate(2024, 3, 5), QTime(10, 20), Qt::UTC); };
        m_tries = 0;
        m_connection = std::make_unique<ovConnection>();
        m_connection->Errors = &m_errors;
        m_connection->Trace = [this](const QString&) { ++m_tries; };
        OpenEmbedded(*m_connection);
    }

    void Decisions_data() {
        Columns<ErrorAction, bool, QVector<ErrorAnswer>, int, Outcome>("action", "inRow", "answers", "tries",
                                                                       "outcome");
        using Answers = QVector<ErrorAnswer>;
        Row("retry", ErrorAction::Retry, true, Answers{}, 4, Outcome::Raised);
        Row("ignore", ErrorAction::Ignore, true, Answers{}, 1, Outcome::RowGivenUp);
        Row("ignore outside a row", ErrorAction::Ignore, false, Answers{}, 1, Outcome::Raised);
        Row("abort", ErrorAction::Abort, true, Answers{}, 1, Outcome::Raised);
        Row("ask: abort", ErrorAction::Ask, true, Answers{ErrorAnswer::Abort}, 1, Outcome::Raised);
        Row("ask: ignore", ErrorAction::Ask, true, Answers{ErrorAnswer::Ignore}, 1, Outcome::RowGivenUp);
        Row("ask: ignore outside a row", ErrorAction::Ask, false, Answers{ErrorAnswer::Ignore}, 1, Outcome::Raised);
        Row("ask: five times again, then ignore", ErrorAction::Ask, true,
            (Answers(5, ErrorAnswer::Retry) << ErrorAnswer::Ignore), 6, Outcome::RowGivenUp);
        Row("ask: ignore all", ErrorAction::Ask, true, Answers{ErrorAnswer::IgnoreAll}, 1, Outcome::RowGivenUp);
        Row("ask nobody", ErrorAction::Ask, true, Answers{}, 1, Outcome::Raised);
    }
    void Decisions() {
        QFETCH(ErrorAction, action);
        QFETCH(bool, inRow);
        QFETCH(QVector<ErrorAnswer>, answers);
        QFETCH(Outcome, outcome);
        m_errors.Action = action;
        if (!answers.isEmpty()) {
            m_errors.AskOperator = [&answers](const ErrorEntry&) { return answers.takeFirst(); };
        }
        std::optional<ovErrors::Row> row;
        if (inRow) {
            row.emplace(m_errors, "anagrafe 123");
        }
        std::optional<RowGivenUp> givenUp;
        std::optional<SqlError> raised;
        try {
            m_connection->Execute("DELETE NOWHERE");
        } catch (const RowGivenUp& error) {
            givenUp = error;
        } catch (const SqlError& error) {
            raised = error;
        }
        QTEST(m_tries, "tries");
        QVERIFY(answers.isEmpty());
        QCOMPARE(givenUp.has_value(), outcome == Outcome::RowGivenUp);
        QCOMPARE(raised.has_value(), outcome == Outcome::Raised);
        QCOMPARE(m_errors.Entries().size(), givenUp ? 1 : 0); // what is raised is taken in by whoever it ends
        if (raised) {
            QCOMPARE(raised->Statement(), "DELETE FROM NOWHERE");
            QCOMPARE(raised->RowKey(), inRow ? "anagrafe 123" : "");
        } else {
            QCOMPARE(m_errors.Entries().first().rowKey, "anagrafe 123");
            QVERIFY(m_errors.Entries().first().message.contains("NOWHERE"));
        }
    }

    /// A retry waits for what may pass by itself, and for nothing else.
    void RetriesWait_data() {
        Columns<QString, ErrorAction, bool>("statement", "action", "waits");
        Row("locked", "INSERT INTO T VALUES (2)", ErrorAction::Retry, true);
        Row("locked, given up", "INSERT INTO T VALUES (2)", ErrorAction::Abort, false);
        Row("no such table", "DELETE NOWHERE", ErrorAction::Retry, false);
    }
    void RetriesWait() {
        QFETCH(const QString, statement);
        QFETCH(const ErrorAction, action);
        QFETCH(const bool, waits);
        const QTemporaryDir folder;
        ovConnection holder;
        OpenEmbedded(holder, folder.filePath("quadrix.db"));
        holder.Execute("CREATE TABLE T (N INTEGER)");
        holder.BeginTrans();
        ovConnection other;
        OpenEmbedded(other, folder.filePath("quadrix.db"));
        other.Execute("PRAGMA busy_timeout = 0");
        other.RetryPause = 20;
        other.Errors = &m_errors;
        m_errors.Action = action;
        QElapsedTimer timer;
        timer.start();
        QVERIFY(ErrorOf<SqlError>([&] { other.Execute(statement); }));
        constexpr int Pauses = 20 + 60 + 180;
        QCOMPARE(timer.elapsed() >= Pauses, waits);
    }

    void RetrySucceeds() {
        m_errors.Action = ErrorAction::Retry;
        m_connection->Trace = [this](const QString& statement) {
            if (statement.startsWith("INSERT") && ++m_tries == 3) {
                m_connection->Execute("CREATE TABLE T (N INTEGER)");
            }
        };
        QCOMPARE(m_connection->Execute("INSERT INTO T VALUES (1)"), 1);
        QCOMPARE(m_tries, 3);
        QVERIFY(m_errors.Entries().isEmpty());
    }

    void AskAgain() {
        ErrorEntry shown;
        m_errors.AskOperator = [&](const ErrorEntry& entry) {
            shown = entry;
            m_connection->Execute("CREATE TABLE T (N INTEGER)");
            return ErrorAnswer::Retry;
        };
        const ovErrors::Row row(m_errors, "riga 7");
        QVERIFY(m_connection->ExecuteWC("SELECT N FROM T").Eof());
        QCOMPARE(shown.rowKey, "riga 7");
        QCOMPARE(shown.statement, "SELECT N FROM T");
        QVERIFY2(shown.engineMessage.contains("no such table: T [1]"), qPrintable(shown.engineMessage));
    }

    /// Asked once, then the rows that fail are given up; outside a row the work fails without a question.
    void IgnoreAllAsksNoMore() {
        int asked = 0;
        m_errors.AskOperator = [&asked](const ErrorEntry&) {
            ++asked;
            return ErrorAnswer::IgnoreAll;
        };
        const auto fails = [this] { m_connection->Execute("DELETE NOWHERE"); };
        for (const char* key : {"riga 1", "riga 2", "riga 3"}) {
            const ovErrors::Row row(m_errors, key);
            QVERIFY_THROWS_EXCEPTION(RowGivenUp, fails());
        }
        QVERIFY_THROWS_EXCEPTION(SqlError, fails());
        QCOMPARE(asked, 1);
        QCOMPARE(m_errors.Entries().size(), 3);
    }

    /// Who has seen an error and chosen to end is not shown it once more; it is kept all the same.
    void AnEndedProcedureIsNotTold_data() {
        Columns<ErrorAction, int>("action", "told");
        Row("chosen by the operator", ErrorAction::Ask, 0);
        Row("chosen beforehand", ErrorAction::Abort, 1);
    }
    void AnEndedProcedureIsNotTold() {
        QFETCH(ErrorAction, action);
        int told = 0;
        m_errors.Action = action;
        m_errors.AskOperator = [](const ErrorEntry&) { return ErrorAnswer::Abort; };
        m_errors.ReportToOperator = [&told](const ErrorEntry&) { ++told; };
        const bool done = Guarded(m_errors, "modX", "ImportX", false, [this] {
            m_connection->Execute("DELETE NOWHERE");
            return true;
        });
        QVERIFY(!done);
        QTEST(told, "told");
        QCOMPARE(m_errors.Entries().size(), 1);
        QCOMPARE(m_errors.Entries().first().procedure, "ImportX");
    }

    /// Nobody is invited to try again what will be refused again.
    void WhatMayPassIsTold_data() {
        Columns<QString, bool>("statement", "mayPass");
        Row("a value that is there already", "INSERT INTO T VALUES ('Rossi', 3)", false);
        Row("a value that is missing", "INSERT INTO T VALUES ('Verdi', NULL)", false);
        Row("words that are not known", "DELETE FROM T T T", true);
    }
    void WhatMayPassIsTold() {
        QFETCH(QString, statement);
        m_connection->Execute("CREATE TABLE T (A TEXT, B INTEGER NOT NULL, UNIQUE (A, B))");
        m_connection->Execute("INSERT INTO T VALUES ('Rossi', 3)");
        ErrorEntry shown;
        m_errors.AskOperator = [&shown](const ErrorEntry& entry) {
            shown = entry;
            return ErrorAnswer::Ignore;
        };
        const ovErrors::Row row(m_errors, "riga 7");
        QVERIFY_THROWS_EXCEPTION(RowGivenUp, m_connection->Execute(statement));
        QTEST(shown.mayPass, "mayPass");
    }

    /// What is kept does not grow with the rows that fail; the last one and the number of all are known.
    void OfVeryManyErrorsTheFirstAndTheLastAreKept() {
        constexpr int rows = 2500;
        m_errors.Action = ErrorAction::Ignore;
        for (int i = 1; i <= rows; ++i) {
            const ovErrors::Row row(m_errors, QString::number(i));
            QVERIFY_THROWS_EXCEPTION(RowGivenUp, m_connection->Execute("DELETE NOWHERE"));
        }
        QCOMPARE(m_errors.Count(), rows);
        QCOMPARE(m_errors.Entries().size(), ovErrors::MostKept);
        QCOMPARE(m_errors.Entries().first().rowKey, "1");
        QCOMPARE(m_errors.Entries().last().rowKey, "2500");
        QVERIFY(m_errors.Since(rows).isEmpty());
        QCOMPARE(m_errors.Since(rows - 1).size(), 1);
        QCOMPARE(m_errors.Since(900).size(), ovErrors::MostKept - 900);
        m_errors.ClearError();
        QCOMPARE(m_errors.Count(), 0);
        QVERIFY(m_errors.Since(0).isEmpty());
    }

    void RowsWithinRows() {
        QVERIFY(!m_errors.InRow());
        {
            const ovErrors::Row outer(m_errors, "1");
            {
                const ovErrors::Row inner(m_errors, "1a");
                QCOMPARE(m_errors.RowKey(), "1a");
                QCOMPARE(m_errors.WholeRowKey(), "1");
            }
            QVERIFY(m_errors.InRow());
            QCOMPARE(m_errors.RowKey(), "1");
        }
        QVERIFY(!m_errors.InRow());
        QCOMPARE(m_errors.RowKey(), "");
        QCOMPARE(m_errors.WholeRowKey(), "");
    }

    void Monitoring_data() {
        Columns<int, ErrorEntry>("kind", "entry");
        const auto entry = [](const char* message, const char* statement, const char* engine, const char* key) {
            return ErrorEntry{{}, {}, {}, QString(message), QString(statement), QString(engine), QString(key)};
        };
        Row("statement", 0, entry("Tabella 'T': rotto", "DELETE T", "rotto [E7]", "riga 3"));
        Row("source data", 1, entry("file vuoto", "", "", ""));
        Row("the language's own", 2, entry("bad cast", "", "", ""));
        Row("anything", 3, entry("errore sconosciuto", "", "", ""));
    }
    void Monitoring() {
        QFETCH(int, kind);
        QFETCH(ErrorEntry, entry);
        QVector<ErrorEntry> reported;
        m_errors.ReportToOperator = [&](const ErrorEntry& shown) { reported.append(shown); };
        const int result = Guarded(m_errors, "modX", "ImportX", 7, [kind]() -> int {
            SqlError error("DELETE T", "rotto", "E7");
            error.AddContext("Tabella 'T'");
            error.SetRowKey("riga 3");
            switch (kind) {
            case 0:
                throw error;
            case 1:
                throw ImportError("file vuoto");
            case 2:
                throw std::runtime_error("bad cast");
            default:
                throw 5;
            }
        });
        QCOMPARE(result, 7);
        QCOMPARE(reported.size(), 1);
        QCOMPARE(m_errors.Entries().size(), 1);
        const ErrorEntry& kept = m_errors.Entries().first();
        QCOMPARE(kept.module, "modX");
        QCOMPARE(kept.procedure, "ImportX");
        QCOMPARE(kept.time, m_errors.Now());
        QCOMPARE(kept.message, entry.message);
        QCOMPARE(kept.statement, entry.statement);
        QCOMPARE(kept.engineMessage, entry.engineMessage);
        QCOMPARE(kept.rowKey, entry.rowKey);
        m_errors.ClearError();
        QVERIFY(m_errors.Entries().isEmpty());
        QCOMPARE(Guarded(m_errors, "modX", "ImportX", 7, [] { return 8; }), 8);
        QVERIFY(m_errors.Entries().isEmpty());
    }

private:
    std::unique_ptr<ovConnection> m_connection;
    ovErrors m_errors;
    int m_tries = 0;
};

QUADRIX_TEST(TestErrors)

#include "test_ovErrors.moc"
