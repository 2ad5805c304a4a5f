#include "app/history/History.h"
#include "app/mergeButton.h"
#include "app/mergeRecord.h"
#include "app/truncation.h"
#include "tests/app/MergePair.h"
#include "tests/support/QuadrixTest.h"

#include <QDir>
#include <QTest>

using namespace modMain;

/// A merge after another one, whole or broken off.
class TestMergeAgain : public QObject {
    Q_OBJECT

private slots:
    /// Re-pointed references are not re-pointed again, into whatever company, unless that is asked for by name.
    void secondMergeWithReferencesIsRefused_data() { Engines(); }
    void secondMergeWithReferencesIsRefused() {
        QFETCH(TestTarget::On, engine);
        MergePair pair(engine);
        FillAll(pair);
        pair.target.AddCompany("X03", "Prova Tre");
        pair.target.Execute("DROP TABLE SYS_FUS"); // a database that has never seen a merge
        QVERIFY(pair.Merge(true));
        const QStringList merged = Contents(pair.target);
        const QString told = "La fusione di X01 Prova Uno S.r.l. in X02 Prova Due S.p.A., con l'aggiornamento dei "
                             "riferimenti, è già stata fatta il 05/03/2024 10:20 da ";
        for (const QString& to : {QString("X02"), QString("X03")}) {
            QVERIFY(!FusioneControparti(pair.target.Get(), "X01", to, true));
            QVERIFY2(pair.Error().startsWith(told), qPrintable(pair.Error()));
            const MergeResult preview = PreviewFusioneControparti(pair.target.Get(), "X01", to, true);
            QVERIFY(preview.earlier && preview.earlier->IsDone() && !preview.takesUp);
        }
        QCOMPARE(Contents(pair.target), merged);
        QVERIFY(pair.Merge(false)); // everybody is found again, nothing is re-pointed
        QCOMPARE(Contents(pair.target), merged);
        QVERIFY(pair.Merge(true, nullptr, {.again = true}));
        QVERIFY(Contents(pair.target) != merged);
        QCOMPARE(pair.target.Value("SELECT COUNT(*) FROM SYS_FUS WHERE FUFIN IS NOT NULL"), QString("2"));
        QVERIFY(merge::MergedText(pair.target.Get(), "X01").contains("le righe di X01 hanno i codici"));
        QCOMPARE(merge::MergedText(pair.target.Get(), "X02"), QString());
    }

    /// After a merge of the references contacts and numbers bear new codes: a copy would take those of another one.
    void copiesAfterAMergeOfTheReferencesAreRefused_data() {
        Columns<QString, QString, QString>("gained", "to", "told");
        Row("gained since", QString("000010"), QString("X02"), QString("(1, la prima: 000009 Gialli)"));
        Row("into a third company", QString(), QString("X03"), QString("(4, la prima: 000001 Rossi Mario)"));
    }
    void copiesAfterAMergeOfTheReferencesAreRefused() {
        QFETCH(QString, gained);
        QFETCH(QString, to);
        QFETCH(QString, told);
        MergePair pair;
        FillAll(pair);
        pair.target.AddCompany("X03", "Prova Tre");
        QVERIFY(pair.Merge(true));
        if (!gained.isEmpty()) {
            pair.Add("X01", "000009", "Gialli"); // the code that the contacts of Bianchi Laura would bear now
        }
        const QStringList companies{"X01", "X02", "X03"};
        const QStringList before = Contents(pair.target, companies);
        const auto merge = [&](bool again) {
            return FusioneControparti(pair.target.Get(), "X01", to, again, nullptr, {.again = again});
        };
        QVERIFY(!merge(false));
        QVERIFY2(pair.Error().contains("è già stata fatta") && pair.Error().contains(told), qPrintable(pair.Error()));
        QCOMPARE(Contents(pair.target, companies), before);
        QVERIFY(merge(true)); // the source was filled anew
    }

    /// A company whose references bear the codes of another takes no copies: they would be given what is of others.
    void copiesIntoACompanyThatWasMergedAreRefused_data() {
        Columns<QString, QString, bool>("statement", "told", "refused");
        Row("done", "", "è già stata fatta", true);
        Row("interrupted",
            "UPDATE SYS_FUS SET FUFIN = NULL\nGO\nUPDATE X01_DOC_VEN SET DTCON = 'XXXXX7' WHERE DTNUM = 1",
            "è rimasta interrotta: le righe di X01 hanno in parte i codici", true);
        Row("noted, with nothing done", "UPDATE SYS_FUS SET FUFIN = NULL", "", false);
        Row("nobody is copied", "UPDATE X03_CON_TRO SET CORAS = 'Rossi'", "è già stata fatta", false);
    }
    void copiesIntoACompanyThatWasMergedAreRefused() {
        QFETCH(QString, statement);
        QFETCH(QString, told);
        QFETCH(bool, refused);
        MergePair pair;
        FillAll(pair);
        pair.target.AddCompany("X03", "Prova Tre");
        pair.Add("X03", "000001", "Zeta");
        QVERIFY(pair.Merge(true));
        pair.target.Db().ExecuteScript(statement);
        const QStringList before = Contents(pair.target);
        const auto merge = [&](const MergeConsent& consent) {
            return FusioneControparti(pair.target.Get(), "X03", "X01", true, nullptr, consent);
        };
        const MergeResult preview = PreviewFusioneControparti(pair.target.Get(), "X03", "X01", true);
        QCOMPARE(preview.ofDestination ? preview.ofDestination->to.code : QString(),
                 QString(told.isEmpty() ? "" : "X02"));
        QCOMPARE(merge({}), !refused);
        QVERIFY2(!refused || (pair.Error().contains(told) && pair.Error().contains("(1, la prima: 000001 Zeta)")),
                 qPrintable(pair.Error()));
        QCOMPARE(Contents(pair.target) == before, !told.isEmpty());
        QVERIFY(!refused || merge({.intoMerged = true})); // it was filled anew
    }

    /// A company that was emptied bears its own codes again; one that keeps something of its old references does not.
    void emptyingEndsAMerge_data() {
        Columns<QString, bool>("left", "isOver");
        Row("nothing", "", true);
        Row("an attribute of a customer", "INSERT INTO X01_FLD_VAL (FLTAB, FLKEY) VALUES ('CON_TRO', '000010')", false);
    }
    void emptyingEndsAMerge() {
        QFETCH(QString, left);
        QFETCH(bool, isOver);
        MergePair pair;
        FillAll(pair);
        QVERIFY(pair.Merge(true));
        pair.target.Execute("DELETE FROM X01_FLD_VAL");
        pair.target.Db().ExecuteScript(left);
        QCOMPARE(modImport::TruncateDatabase(pair.target.Get()).outcome, RunResult::Outcome::Done);
        QCOMPARE(merge::MergedText(pair.target.Get(), "X01").isEmpty(), isOver);
        QCOMPARE(merge::MergedInto(pair.target.Db(), "X02"), isOver ? QStringList() : QStringList("X01"));
        pair.Add("X01", "000001", "Zeta"); // filled anew
        pair.target.Execute("INSERT INTO X01_DOC_VEN (DTNUM, DTCON) VALUES (1, '000001')");
        QCOMPARE(pair.Merge(true), isOver);
        QCOMPARE(merge::MergedInto(pair.target.Db(), "X02"), QStringList("X01"));
    }

    /// A merge finds what another has copied as that one found it, whatever the collation.
    void mergeMadeTwiceFindsTheSame_data() { Engines(); }
    void mergeMadeTwiceFindsTheSame() {
        QFETCH(TestTarget::On, engine);
        MergePair pair(engine);
        const QStringList names{"Nicolò Rossi", "Nicolo Rossi", "Bìanchi", "Perù Srl", "Peru",
                                "a_c",          "STRASSE",      "Straße",  "È.C.A.",   "e.c.a."};
        for (qsizetype i = 0; i < names.size(); ++i) {
            pair.Add("X01", QStringLiteral("%1").arg(i + 1, 6, 10, QChar('0')), names[i]);
        }
        pair.Add("X01", "000021", "Uno", "IT01234567890");
        pair.Add("X01", "000022", "Due", "it01234567890 ", "ABC");
        pair.Add("X01", "000023", "Quattro", "", "abc");
        MergeResult first;
        MergeResult second;
        QVERIFY(pair.Merge(false, &first) && pair.Merge(false, &second));
        QCOMPARE(second.Count(MergeCriterion::New), 0);
        for (qsizetype i = 0; i < first.matches.size(); ++i) {
            QCOMPARE(second.matches[i].oldCode + second.matches[i].newCode,
                     first.matches[i].oldCode + first.matches[i].newCode);
        }
    }

    /// What was copied is found again, whatever its name is taken for; what nothing tells from others is noted.
    void copiesAreFoundAgain_data() { Engines(); }
    void copiesAreFoundAgain() {
        QFETCH(TestTarget::On, engine);
        MergePair pair(engine);
        pair.Add("X01", "000001", "Rossi [ex Verdi]");
        pair.Add("X01", "000002", "C:\\Bianchi %_");
        pair.Add("X01", "000003", " ", "00000000000");
        QVERIFY(pair.Merge(false));
        MergeResult result;
        QVERIFY(pair.Merge(false, &result));
        QCOMPARE(pair.target.Rows("SELECT CORAS FROM X02_CON_TRO WHERE CORAS > ' ' ORDER BY CDCON"),
                 pair.target.Rows("SELECT CORAS FROM X01_CON_TRO WHERE CORAS > ' ' ORDER BY CDCON"));
        QCOMPARE(result.copied.value("CON_TRO"), 1);
        QCOMPARE(result.notes.count, 1);
        QVERIFY(pair.target.Log("fusione.log")
                    .contains("CONTROPARTE NON RICONOSCIBILE: controparte 000003 di X01, copiata come 000004"));
    }

    void failureNamesItsCounterparty() {
        MergePair pair;
        FillAll(pair);
        pair.target.Db().Trace = [](const QString& statement) {
            if (statement.startsWith("INSERT INTO X02_CON_RIF")) {
                throw SqlError(statement, "fault");
            }
        };
        QVERIFY(!pair.Merge(false));
        QVERIFY2(pair.Error().startsWith("Controparte 000007 Verdi S.r.l. di X01: "), qPrintable(pair.Error()));
    }

    void interruptedMergeIsTold_data() {
        Columns<QString, QString, bool, QString>("statement", "to", "takesUp", "refused");
        Row("marks and record", "", "X02", true, "");
        Row("marks of before there were records", "DELETE FROM SYS_FUS", "X02", true, "");
        Row("another destination", "", "X03", false, "rimasta interrotta: completarla prima");
    }
    void interruptedMergeIsTold() {
        QFETCH(QString, statement);
        QFETCH(QString, to);
        QFETCH(bool, takesUp);
        QFETCH(QString, refused);
        MergePair pair;
        FillAll(pair);
        pair.target.AddCompany("X03", "Prova Tre");
        QVERIFY(!pair.MergeUntilTheFirstCopy());
        pair.target.Db().ExecuteScript(statement);
        const QStringList before = Contents(pair.target);
        const MergeResult preview = PreviewFusioneControparti(pair.target.Get(), "X01", to, true);
        QCOMPARE(preview.takesUp, takesUp);
        QCOMPARE(Contents(pair.target), before);
        MergeResult result;
        QCOMPARE(FusioneControparti(pair.target.Get(), "X01", to, true, &result), refused.isEmpty());
        QVERIFY2(pair.Error().contains(refused), qPrintable(pair.Error()));
        QCOMPARE(result.takesUp, takesUp);
        QCOMPARE(pair.target.Log("fusione.log").contains("Si riprende una fusione interrotta"), takesUp);
        if (refused.isEmpty()) {
            QCOMPARE(pair.target.Value("SELECT COUNT(*) FROM X01_DOC_VEN WHERE DTCON LIKE '%X%'"), QString("0"));
            QVERIFY(!pair.Merge(true)); // it is done now
        }
    }

    /// A merge that has done nothing keeps from no other one.
    void nothingDoneIsNotAnInterruption_data() {
        Columns<QString, RunResult::Outcome>("trouble", "outcome");
        Row("the first counterparty fails", "UPDATE X01_", RunResult::Outcome::Failed);
        Row("the log cannot be written", "log", RunResult::Outcome::Failed);
        Row("cancelled before the first", "BEGIN", RunResult::Outcome::Cancelled);
        Row("cancelled before all are found", "", RunResult::Outcome::Cancelled);
    }
    void nothingDoneIsNotAnInterruption() {
        QFETCH(QString, trouble);
        MergePair pair;
        FillAll(pair);
        pair.target.AddCompany("X03", "Prova Tre");
        const QStringList before = Contents(pair.target);
        const QString log = MergeLogFile(pair.target.Get());
        if (trouble == "log") {
            QVERIFY(QDir().mkpath(log));
        }
        if (trouble.isEmpty()) {
            pair.target.Person.CancelAt = 0;
        }
        pair.target.Db().Trace = [&](const QString& statement) {
            if (trouble.startsWith("UPDATE") && statement.startsWith(trouble)) {
                throw SqlError(statement, "fault");
            }
            if (trouble == "BEGIN" &&
                statement.contains("FROM X01_DOC_VEN")) { // the last that is read before the first
                pair.target.Person.CancelAt = 0;
            }
        };
        MergeResult result;
        QVERIFY(!pair.Merge(true, &result));
        pair.target.Db().Trace = nullptr;
        pair.target.Person.CancelAt.reset();
        QTEST(result.outcome, "outcome");
        QCOMPARE(Contents(pair.target), before);
        QCOMPARE(pair.target.Value("SELECT COUNT(*) FROM SYS_FUS"), QString("0"));
        QVERIFY(trouble != "log" || QDir().rmdir(log));
        QVERIFY(FusioneControparti(pair.target.Get(), "X01", "X03", true));
    }

    /// Whoever may not make tables learns it before anything is written.
    void tableThatCannotBeMadeIsTold() {
        MergePair pair;
        FillAll(pair);
        pair.target.Execute("DROP TABLE SYS_FUS");
        const QStringList before = Contents(pair.target);
        pair.target.Db().Trace = [](const QString& statement) {
            if (statement.startsWith("CREATE TABLE")) {
                throw SqlError(statement, "permission denied");
            }
        };
        QVERIFY(!pair.Merge(true));
        QVERIFY2(pair.Error().contains("SYS_FUS, che non c'è e non si può creare"), qPrintable(pair.Error()));
        QCOMPARE(Contents(pair.target), before);
        QVERIFY(pair.target.Log("fusione.log").isEmpty());
        QVERIFY(pair.Merge(false)); // without references there is nothing to remember
    }

    void cancelStopsBetweenTwoCounterparties() {
        MergePair pair;
        FillAll(pair);
        QStringList whole;
        {
            MergePair other;
            FillAll(other);
            QVERIFY(other.Merge(true));
            whole = Contents(other.target);
        }
        MergeResult result;
        QVERIFY(!pair.MergeUntilTheFirstCopy(&result));
        QCOMPARE(result.outcome, RunResult::Outcome::Cancelled);
        QCOMPARE(result.merged, 4);
        QVERIFY(pair.target.Log("fusione.log").contains("Fusione interrotta: 4 controparti fuse su 5"));
        QCOMPARE(pair.target.Value("SELECT DTCON FROM X01_DOC_VEN WHERE DTNUM = 1"), QString("XXXX1X"));
        QVERIFY(pair.target.Person.Messages.isEmpty());
        QVERIFY(pair.target.Person.Progresses.back().closed);
        QVERIFY(pair.Merge(true));
        QCOMPARE(Contents(pair.target), whole);
    }

    /// Counterparties are committed together; those before one that fails stand, whole, and are told of.
    void whatComesBeforeAFailureStays_data() { Engines(); }
    void whatComesBeforeAFailureStays() {
        QFETCH(TestTarget::On, engine);
        MergePair pair(engine);
        FillAll(pair);
        int begun = 0;
        pair.target.Db().Trace = [&begun](const QString& statement) {
            begun += statement.startsWith("BEGIN") ? 1 : 0;
            if (statement.startsWith("INSERT INTO X02_NUM_TEL") && statement.contains("'045'")) {
                throw SqlError(statement, "fault");
            }
        };
        MergeResult result;
        QVERIFY(!pair.Merge(true, &result));
        pair.target.Db().Trace = nullptr;
        QCOMPARE(begun, 1);
        QCOMPARE(result.merged, 3);
        QCOMPARE(pair.target.Log("fusione.log").count("-->"), 3);
        QCOMPARE(pair.target.Value("SELECT COUNT(*) FROM X02_CON_TRO"), QString("2"));
        QCOMPARE(pair.target.Value("SELECT COUNT(*) FROM X02_NUM_TEL"), QString("0"));
        QVERIFY2(pair.Error().contains("Controparte 000007"), qPrintable(pair.Error()));
    }

    /// One merge writes behind the other in the merge log; the history keeps with each what is of it.
    void historyKeepsTheLinesOfEachMerge() {
        MergePair pair;
        FillAll(pair);
        Session& session = pair.target.Get();
        for (int run = 1; run <= 2; ++run) {
            QCOMPARE(MergeAndKeep(session, "x01", "x02", false).outcome, RunResult::Outcome::Done);
            const history::History history(history::FilePath(session.Config.ConfigFile()));
            QCOMPARE(history.Load(run).company + ", " + history.Load(run).work,
                     "X02, fusione delle controparti di X01 in quelle di X02"); // as SYS_AZI writes them
            const QString log = history.Log(run);
            QCOMPARE(log.count("Inizio fusione"), 1);
            QCOMPARE(log.count("NUOVO!!!!   "), 0);
            QCOMPARE(log.count("Controparti fuse: 5"), 1);
        }
    }

    /// Wherever a statement fails, the next run ends where an undisturbed one does.
    void secondRunCompletesWhatFailedAtAnyStatement() {
        MergePair pair;
        FillAll(pair);
        TestTarget& target = pair.target;
        // Fewer references, or there would be hundreds of runs.
        target.Execute(
            "DELETE FROM SYS_SYS WHERE TABNM NOT IN ('CON_TRO', 'CON_RIF', 'NUM_TEL', 'DOC_VEN', 'FLD_VAL')");
        const QString file = target.Db().DatabaseName;
        target.Db().CloseConnection();
        QVERIFY(QFile::copy(file, file + ".start"));
        const auto startAgain = [&] {
            target.Db().CloseConnection();
            return QFile::remove(file) && QFile::copy(file + ".start", file);
        };

        target.Db().OpenConnection();
        int statements = 0;
        target.Db().Trace = [&statements](const QString&) { ++statements; };
        QVERIFY(pair.Merge(true));
        target.Db().Trace = nullptr;
        const QStringList whole = Contents(target);

        int marksLeft = 0;
        for (int failing = 1; failing <= statements; ++failing) {
            QVERIFY(startAgain());
            target.Db().OpenConnection();
            int count = 0;
            target.Db().Trace = [&](const QString& statement) {
                if (++count == failing) {
                    throw SqlError(statement, "fault");
                }
            };
            QVERIFY2(!pair.Merge(true), qPrintable(QString::number(failing)));
            target.Db().Trace = nullptr;
            marksLeft += target.Value("SELECT COUNT(*) FROM X01_DOC_VEN WHERE DTCON LIKE '%X%'").toInt() > 0 ? 1 : 0;
            QVERIFY(pair.Merge(true));
            QVERIFY2(Contents(target) == whole, qPrintable(QString::number(failing)));
        }
        QVERIFY(marksLeft > 0);
    }
};

QUADRIX_TEST(TestMergeAgain)
#include "test_mergeAgain.moc"
