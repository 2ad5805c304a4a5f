#include "tests/support/ArcaWindow.h"
#include "tests/support/DialogDriver.h"
#include "tests/support/QuadrixTest.h"
#include "tests/support/rows.h"
#include "ui/SignalWatch.h"
#include "ui/TextDialog.h"

#include <QTest>
#include <QToolButton>

#include <csignal>

namespace {

const QString Confirmation = "? Importare le controparti? = cmdYes";
const QString Completed = "[i] Controparti importate correttamente!";

/// Does something once, in the turn of the window that follows a value of the progress dialog.
class AtProgress {
public:
    AtProgress(DialogDriver& driver, float value, std::function<void(frmProgress&)> work) {
        driver.On = [this, value, work = std::move(work)](QWidget& dialog) {
            auto* progress = qobject_cast<frmProgress*>(&dialog);
            if (progress != nullptr && progress->Value() >= value && !m_done) {
                m_done = true;
                QTimer::singleShot(0, progress, [progress, work] { work(*progress); });
            }
            return progress != nullptr;
        };
    }
    bool Done() const { return m_done; }

private:
    bool m_done = false;
};

} // namespace

class TestImporting : public QObject {
    Q_OBJECT

private slots:
    void TheWholeWay() {
        ArcaWindow test;
        DialogDriver driver;
        test.Button("cmdImportCli").click();
        QCOMPARE(driver.Events.first(), Confirmation);
        QVERIFY2(driver.Events.contains("? Resettare prima di importare? = cmdYes"),
                 qPrintable(driver.Events.join('\n')));
        QCOMPARE(driver.Events.last(), Completed);
        QCOMPARE(test.Result().sourceRows, ArcaWindow::RowCount);
        QCOMPARE(test.Value("SELECT COUNT(*) FROM DEM_CON_TRO").toLongLong(), test.Result().inserted);
        QVERIFY(test.Result().inserted > ArcaWindow::RowCount / 2);
        QVERIFY(test.Get().Source == nullptr);
        QCOMPARE(QGuiApplication::overrideCursor(), nullptr);
        QVERIFY(test.Text("txtResult").contains("Righe dell'origine 120"));
        QVERIFY(test.Text("txtLog").contains("Inizio importazione controparti"));
    }

    /// The counterparties just imported go to another company, with theirs.
    void MergesTwoCompanies() {
        ArcaWindow test;
        CreateDatabase(test.Get().Quadrix, "DUE", "Officine Riunite S.p.A.");
        test.Get().Quadrix.Execute("INSERT INTO DUE_CON_TRO (CDCON, CORAS, COIVA, COCLI) VALUES ('000007', 'Altra', "
                                   "'99999999999', 1)");
        DialogDriver driver;
        test.Button("cmdImportCli").click();
        const qint64 imported = test.Result().inserted;
        test.Choose("cmbOrigine", "Kordel NetSuite");
        driver.Inputs = {QString("DEM"), QString("DUE")};
        driver.Events.clear();
        test.Button("cmdImportDisegni").click();
        QCOMPARE(driver.Events, QStringList({"? Fondere le Controparti di due Aziende? = cmdYes",
                                             "> Codice Azienda di Partenza:", "> Codice Azienda di Destinazione:",
                                             "? Aggiornare i Riferimenti alle tabelle esistenti? = cmdYes",
                                             "review Fondere le controparti di DEM Officine Dimostrative S.r.l. in "
                                             "quelle di DUE Officine Riunite S.p.A.? = cmdYes",
                                             "[i] Fusione completata correttamente!"}));
        QCOMPARE(test.Result().sourceRows, imported);
        QVERIFY(test.Result().inserted > 0 && test.Result().AddsUp());
        QCOMPARE(test.Value("SELECT COUNT(*) FROM DUE_CON_TRO").toLongLong(), test.Result().inserted + 1);
        const qint64 telephones = test.Value("SELECT COUNT(*) FROM DUE_NUM_TEL").toLongLong();
        QVERIFY(telephones > 0);
        QCOMPARE(telephones, test.Result().tables.value("NUM_TEL").inserted);
        QVERIFY(test.Text("txtResult").contains("FusioneControparti"));
        QVERIFY(test.Text("txtResult").contains("  PARTITA IVA: "));
        QVERIFY(test.Text("txtResult").contains(test.Folder.filePath("fusione.log")));
        QVERIFY(test.Text("txtLog").contains("Inizio fusione controparti da DEM a DUE"));

        // The next import has its own log again.
        test.Choose("cmbOrigine", "Arca 2000");
        test.Button("cmdImportCli").click();
        QVERIFY(test.Text("txtLog").contains("Inizio importazione controparti"));
    }

    void CancelStopsAtTheNextRow() {
        ArcaWindow test;
        DialogDriver driver;
        const AtProgress cancel(driver, 40, [](frmProgress& dialog) {
            QTest::mouseClick(dialog.findChild<QPushButton*>("cmdCancel"), Qt::LeftButton);
        });
        test.Button("cmdImportCli").click();
        QVERIFY(cancel.Done());
        QCOMPARE(test.Result().outcome, RunResult::Outcome::Cancelled);
        QVERIFY(test.Result().AddsUp());
        const qint64 reached = ArcaWindow::RowCount - test.Result().notReached;
        QVERIFY2(reached >= 40 && reached < ArcaWindow::RowCount, qPrintable(QString::number(reached)));
        QVERIFY(!driver.Events.contains(Completed));
        QVERIFY(test.Text("txtResult").contains("interrotta dall'operatore"));
        QCOMPARE(QGuiApplication::overrideCursor(), nullptr);
        driver.On = nullptr;
        test.Button("cmdImportCli").click();
        QCOMPARE(driver.Events.last(), Completed);
    }

    void EachErrorModeGoesItsWay_data() {
        Columns<QString, QStringList, int, bool>("mode", "clicks", "asked", "done");
        Row("operator ignores", "Gestiti dall'utente", QStringList{"cmdIgnore"}, 1, true);
        Row("operator retries, then ignores", "Gestiti dall'utente", QStringList{"cmdRetry", "cmdRetry", "cmdIgnore"},
            3, true);
        Row("operator ends", "Gestiti dall'utente", QStringList{"cmdAbort"}, 1, false);
        Row("ignore", "Ignora e continua", QStringList{}, 0, true);
        Row("retry", "Riprova 3 volte", QStringList{}, 0, false);
        Row("end", "Interrompi l'azione", QStringList{}, 0, false);
    }
    void EachErrorModeGoesItsWay() {
        QFETCH(QString, mode);
        QFETCH(QStringList, clicks);
        QFETCH(int, asked);
        QFETCH(bool, done);
        ArcaWindow test;
        test.FailAt("000020");
        test.Choose("cmbErrors", mode);
        DialogDriver driver;
        driver.ErrorClicks.assign(clicks.begin(), clicks.end());
        test.Button("cmdImportCli").click();
        QCOMPARE(driver.Events.filter(QRegularExpression("^error ")).size(), asked);
        // Who ended it himself has seen the error.
        QCOMPARE(driver.Events.filter(QRegularExpression("^reported ")).size(), done || asked > 0 ? 0 : 1);
        QCOMPARE(test.Result().outcome, done ? RunResult::Outcome::Done : RunResult::Outcome::Failed);
        QCOMPARE(test.Result().givenUpCount, 1);
        QVERIFY(test.Result().AddsUp());
        QCOMPARE(driver.Events.last() ==
                     "[!] Controparti importate correttamente!\nRighe abbandonate: 1. Il risultato e "
                     "il log le elencano.",
                 done);
        QCOMPARE(test.Value("SELECT COUNT(*) FROM DEM_CON_TRO WHERE CDCON = '000020'"), QString("0"));
        QCOMPARE(test.Value("SELECT COUNT(*) FROM DEM_CON_TRO").toLongLong(), test.Result().inserted);
        QVERIFY(test.Text("txtResult").contains("riga rifiutata"));
        QCOMPARE(QGuiApplication::overrideCursor(), nullptr);
    }

    /// Asked once in a run; the next one begins as the list says.
    void IgnoreAllHoldsForOneRun() {
        ArcaWindow test;
        test.Get().Quadrix.Execute("CREATE TRIGGER Guasto BEFORE INSERT ON DEM_CON_TRO WHEN NEW.CDCON LIKE '00002%' "
                                   "BEGIN SELECT RAISE(ABORT, 'riga rifiutata'); END");
        for (int run = 0; run < 2; ++run) {
            DialogDriver driver;
            driver.ErrorClicks = {"cmdIgnoreAll"};
            test.Button("cmdImportCli").click();
            QCOMPARE(driver.Events.filter(QRegularExpression("^error ")).size(), 1);
            QCOMPARE(test.Result().outcome, RunResult::Outcome::Done);
            QVERIFY2(test.Result().givenUpCount > 1, qPrintable(QString::number(test.Result().givenUpCount)));
            QVERIFY(test.Result().AddsUp());
        }
    }

    /// What is told is the operation that was started last, also when it came to nothing.
    void TheAccountNamesItsOperation() {
        ArcaWindow test;
        DialogDriver driver;
        test.Button("cmdImportCli").click();
        QVERIFY2(
            test.Text("txtResult").startsWith("Controparti da Arca 2000, azienda DEM " + ArcaWindow::Company + ", "),
            qPrintable(test.Text("txtResult")));
        test.Set("IMPORT", "Databasename", test.Folder.filePath("manca"));
        test.Button("cmdImportArt").click();
        const QString account = test.Text("txtResult");
        QVERIFY2(account.startsWith("Articoli da Arca 2000, azienda DEM "), qPrintable(account));
        QVERIFY2(account.contains("Non eseguita") && account.contains("manca"), qPrintable(account));
        QVERIFY(!account.contains("inserite"));
    }

    void ClosingDuringAnImportAsks_data() {
        Columns<QString, bool>("answer", "closes");
        Row("no: the import goes on", "cmdNo", false);
        Row("yes: it stops at the next row, then the window closes", "cmdYes", true);
    }
    void ClosingDuringAnImportAsks() {
        QFETCH(QString, answer);
        QFETCH(bool, closes);
        ArcaWindow test;
        DialogDriver driver;
        const QString question = "Un'operazione è in corso. Interromperla e chiudere il programma?";
        driver.Click = {{question, answer}};
        const AtProgress close(driver, 30, [&test](frmProgress&) { test.Window().close(); });
        test.Button("cmdImportCli").click();
        QCOMPARE(driver.Events.count("? " + question + " = " + answer), 1);
        QCOMPARE(test.Result().outcome, closes ? RunResult::Outcome::Cancelled : RunResult::Outcome::Done);
        QVERIFY(test.Result().AddsUp());
        QCOMPARE(driver.Events.last() == Completed, !closes);
        QTRY_COMPARE(test.Window().isVisible(), !closes);
        QCOMPARE(test.Get().Quadrix.State(), !closes);
        QCOMPARE(test.Setting("IMPORT", "ORIGINE"), closes ? QString("Arca 2000") : QString());
    }

    /// The system does not ask twice: what is under way is cancelled, a box that waits counts as given up.
    void ASignalEndsInOrder_data() {
        Columns<int, bool>("signal", "atQuestion");
#ifndef Q_OS_WIN
        Row("asked to end", SIGTERM, false);
        Row("session gone", SIGHUP, false);
        Row("at a question", SIGTERM, true);
#endif
    }
    void ASignalEndsInOrder() {
#ifdef Q_OS_WIN
        QSKIP("no signals to send");
#else
        QFETCH(const int, signal);
        QFETCH(const bool, atQuestion);
        ArcaWindow test;
        const SignalWatch watch([&test] { test.Window().End(); });
        DialogDriver driver;
        std::optional<AtProgress> atProgress;
        if (atQuestion) {
            driver.On = [raised = false, signal](QWidget& dialog) mutable {
                if (!std::exchange(raised, true)) {
                    raise(signal);
                }
                return qobject_cast<QMessageBox*>(&dialog) != nullptr;
            };
        } else {
            atProgress.emplace(driver, 30, [signal](frmProgress&) { raise(signal); });
        }
        test.Button("cmdImportCli").click();
        QTRY_VERIFY(!test.Window().isVisible());
        QVERIFY(!test.Get().Quadrix.State());
        QCOMPARE(test.Setting("IMPORT", "ORIGINE"), QString("Arca 2000"));
        if (atQuestion) {
            QVERIFY(test.Get().Results.isEmpty());
        } else {
            QCOMPARE(test.Result().outcome, RunResult::Outcome::Cancelled);
            QVERIFY(test.Result().AddsUp() && test.Result().notReached > 0);
        }
#endif
    }

    void ASignalClosesAnIdleWindow() {
#ifdef Q_OS_WIN
        QSKIP("no signals to send");
#else
        ArcaWindow test;
        const SignalWatch watch([&test] { test.Window().End(); });
        raise(SIGTERM);
        QTRY_VERIFY(!test.Window().isVisible());
#endif
    }

    /// Rows that stay are looked through before, and told behind, in lists: a box would be higher than the screen.
    void AnUndoThatLeavesManyRowsIsLookedThrough() {
        ArcaWindow test;
        DialogDriver driver;
        test.Button("cmdImportCli").click();
        test.Get().Quadrix.Execute("UPDATE DEM_CON_TRO SET CORAS = 'di mano'");
        driver.Events.clear();
        QStringList listed;
        QString told;
        driver.On = [&](QWidget& dialog) {
            if (qobject_cast<ReviewDialog*>(&dialog) != nullptr) {
                listed = dialog.findChild<QPlainTextEdit*>("txtList")->toPlainText().split('\n');
            } else if (auto* text = qobject_cast<TextDialog*>(&dialog)) {
                told = text->findChild<QPlainTextEdit*>("txtLines")->toPlainText();
                text->accept();
            }
            return false;
        };
        test.Window().findChild<QToolButton*>("cmdHistory")->click();
        test.Window().findChild<QPushButton*>("cmdUndo")->click();
        QCOMPARE(driver.Events, QStringList("review Annullare l'esecuzione 1? = cmdYes"));
        QCOMPARE(QString::number(listed.size()), test.Value("SELECT COUNT(*) FROM DEM_CON_TRO"));
        QVERIFY2(told.startsWith("Righe tolte: ") && told.endsWith(listed.last()), qPrintable(told));
    }

    /// Also one that asks before it closes, stands beneath a progress, or comes up when the end was told already.
    void NoDialogOutlastsTheEnd_data() {
        using Work = std::function<void(WindowOperator&)>;
        Columns<Work>("work");
        Row("it waits", Work([](WindowOperator& person) { person.End(); }));
        Row("beneath a progress", Work([](WindowOperator& person) {
                const auto progress = person.ShowProgress();
                person.End();
                QVERIFY(progress->Cancel());
            }));
        Row("it comes up later", Work());
    }
    void NoDialogOutlastsTheEnd() {
        class Stubborn : public QDialog {
        public:
            void reject() override {}
        };
        QFETCH(std::function<void(WindowOperator&)>, work);
        WindowOperator person;
        Stubborn dialog;
        QTimer::singleShot(5000, &dialog, &QDialog::accept);
        if (work) {
            QTimer::singleShot(0, &dialog, [&] { work(person); });
        } else {
            person.End();
        }
        QCOMPARE(dialog.exec(), int(QDialog::Rejected));
    }

    /// While a question waits nothing can be stopped: the window stays, the import goes its way.
    void ClosingBehindAQuestionDoesNothing() {
        ArcaWindow test;
        DialogDriver driver;
        bool closed = false;
        driver.On = [&](QWidget& dialog) {
            if (!closed && qobject_cast<QMessageBox*>(&dialog) != nullptr) {
                closed = true;
                test.Window().close();
            }
            return false;
        };
        test.Button("cmdImportCli").click();
        QVERIFY(closed && test.Window().isVisible());
        QCOMPARE(driver.Events.last(), Completed);
    }
};

QUADRIX_TEST(TestImporting)
#include "test_importing.moc"
