#include "tests/support/DialogDriver.h"
#include "tests/support/flaws.h"
#include "tests/support/QuadrixTest.h"
#include "tests/support/rows.h"
#include "ui/frmProgress.h"
#include "ui/frmReset.h"
#include "ui/frmSequence.h"
#include "ui/told.h"
#include "ui/WindowOperator.h"

#include <QCheckBox>
#include <QClipboard>
#include <QPlainTextEdit>
#include <QProgressBar>
#include <QScreen>
#include <QTest>
#include <QTextDocumentFragment>

class TestDialogs : public QObject {
    Q_OBJECT

private slots:
    // --- Review ---

    /// What is looked through is there in full; Enter and Escape mean No.
    void ReviewStartsNothingByAccident_data() {
        Columns<int, bool>("key", "agrees");
        Row("Enter", int(Qt::Key_Return), false);
        Row("Escape", int(Qt::Key_Escape), false);
        Row("the letter of Yes", int(Qt::Key_S), true);
    }
    void ReviewStartsNothingByAccident() {
        QFETCH(int, key);
        WindowOperator person;
        QStringList lines;
        for (int line = 0; line < 2000; ++line) {
            lines.append(QString("%1 <b>Rossi</b> & C.").arg(line));
        }
        QString shown;
        QString flaw;
        QTimer::singleShot(50, [&] {
            QWidget* dialog = QApplication::activeModalWidget();
            shown = dialog->findChild<QPlainTextEdit*>("txtList")->toPlainText();
            flaw = flaws::Of(*dialog);
            QTest::keyClick(dialog, Qt::Key(key), key == Qt::Key_S ? Qt::AltModifier : Qt::NoModifier);
        });
        QTEST(person.Review("Fondere?", lines), "agrees");
        QCOMPARE(shown, lines.join('\n'));
        QCOMPARE(flaw, QString());
    }

    // --- Progress ---

    void ProgressClampsAndTells() {
        double seconds = 0;
        frmProgress dialog(nullptr, [&seconds] { return ++seconds; });
        auto* bar = dialog.findChild<QProgressBar*>("prgImport");
        dialog.SetStep("Controparti");
        dialog.SetMax(40);
        QCOMPARE(dialog.findChild<QLabel*>("lblProgress")->text(), QString("Importazione in corso Controparti..."));
        dialog.SetValue(10);
        QCOMPARE(bar->value() * 4, bar->maximum());
        QCOMPARE(dialog.findChild<QLabel*>("lblDone")->text(), QString("10 di 40"));
        for (const float value : {40.0F, 50.0F}) {
            dialog.SetValue(value);
            QCOMPARE(dialog.Value(), 40.0F);
            QCOMPARE(bar->value(), bar->maximum());
        }
        const QPoint middle = dialog.screen()->geometry().center();
        QVERIFY((dialog.geometry().center() - middle).manhattanLength() <= 4);
        QCOMPARE(flaws::Of(dialog), QString());
    }

    void ACancelIsSeenAtTheNextValue() {
        double seconds = 0;
        frmProgress dialog(nullptr, [&seconds] { return ++seconds; });
        dialog.SetMax(10);
        auto* cancel = dialog.findChild<QPushButton*>("cmdCancel");
        QTimer::singleShot(0, cancel, &QPushButton::click);
        QVERIFY(!dialog.Cancel());
        dialog.SetValue(1);
        QVERIFY(dialog.Cancel());
        QVERIFY(dialog.isVisible());
        QVERIFY(!cancel->isEnabled());
        dialog.SetValue(2);
        QVERIFY(dialog.Cancel());
    }

    void TheLastStrokeOfARowOfBoxesCancelsNothing_data() {
        Columns<QList<int>, bool>("keys", "cancels");
        Row("enter", QList<int>{Qt::Key_Return, Qt::Key_Enter}, false);
        Row("space", QList<int>{Qt::Key_Space}, false);
        Row("the button is chosen first", QList<int>{Qt::Key_Tab, Qt::Key_Space}, true);
    }
    void TheLastStrokeOfARowOfBoxesCancelsNothing() {
        QFETCH(QList<int>, keys);
        frmProgress dialog(nullptr, [] { return 0.0; });
        QVERIFY(QTest::qWaitForWindowActive(&dialog));
        for (const int key : keys) {
            QTest::keyClick(QApplication::focusWidget(), static_cast<Qt::Key>(key));
        }
        QTEST(dialog.Cancel(), "cancels");
        QVERIFY(dialog.isVisible());
    }

    void ClosingTheProgressAsksAndNeverClosesIt() {
        WindowOperator person;
        DialogDriver driver;
        driver.Otherwise = "cmdNo";
        const std::unique_ptr<Progress> progress = person.ShowProgress();
        auto& dialog = dynamic_cast<frmProgress&>(*progress);
        dialog.close();
        QVERIFY(dialog.isVisible() && !progress->Cancel());
        driver.Otherwise = "cmdYes";
        QTest::keyClick(&dialog, Qt::Key_Escape);
        QVERIFY(dialog.isVisible() && progress->Cancel());
        dialog.close();
        QVERIFY(dialog.isVisible());
        QCOMPARE(driver.Events, QStringList({"? Interrompere l'operazione in corso? = cmdNo",
                                             "? Interrompere l'operazione in corso? = cmdYes"}));
    }

    // --- Reset ---

    void BoxesMoveEachOther() {
        WindowOperator person;
        frmReset dialog(person, "Prova", {}, {}, nullptr);
        const auto ticked = [&dialog] {
            QStringList names;
            for (const QCheckBox* box : dialog.findChildren<QCheckBox*>()) {
                if (box->isChecked()) {
                    names.append(box->objectName());
                }
            }
            names.sort();
            return names.join(' ');
        };
        const auto click = [&dialog](const char* name) { dialog.findChild<QCheckBox*>(name)->click(); };
        QCOMPARE(dialog.findChildren<QCheckBox*>().size(), 11);
        click("chkAnaArt");
        click("chkAnaCon");
        QCOMPARE(ticked(), QString("chkAnaArt chkAnaCon chkDisBas chkDocAcq chkDocVen chkMaga chkMagaLam chkOrdProd "
                                   "chkPrevProd chkRilevamenti"));
        click("chkRilevamenti");
        QCOMPARE(ticked(), QString("chkDisBas chkDocAcq chkMaga chkMagaLam chkPrevProd"));
        QVERIFY(dialog.Options().DisBas && !dialog.Options().AnaArt && !dialog.Options().Rilevamenti);
    }

    void OkNeedsAChoiceAndAYes() {
        WindowOperator person;
        frmReset dialog(person, "Prova", {}, {}, nullptr);
        DialogDriver driver;
        driver.Otherwise = "cmdNo";
        int turn = 0;
        // Pressed from outside the driver, whose own turn must end before the message box comes up.
        driver.On = [&](QWidget& shown) {
            if (&shown != &dialog) {
                return false;
            }
            if (turn == 1) {
                dialog.findChild<QCheckBox*>("chkMaga")->click();
            } else if (turn == 2) {
                driver.Otherwise = "cmdYes";
            }
            ++turn;
            QTimer::singleShot(0, &dialog, &frmReset::cmdOk_Click);
            return true;
        };
        QVERIFY(dialog.SelectOptions());
        QCOMPARE(driver.Events, QStringList({"[!] Selezionare almeno un opzione!",
                                             "? Confermi l'eliminazione di tutti i dati selezionati? = cmdNo",
                                             "? Confermi l'eliminazione di tutti i dati selezionati? = cmdYes"}));
        QString flaw;
        driver.On = [&](QWidget& shown) {
            flaw = flaws::Of(shown);
            shown.findChild<QPushButton*>("cmdCancel")->click();
            return true;
        };
        QVERIFY(!dialog.SelectOptions());
        QCOMPARE(flaw, QString());
    }

    void ResetTellsWhatGoesAndWhatStays() {
        WindowOperator person;
        const auto besides = [](const ResetOptions& options) {
            return options.AnaArt ? QStringList("Con tutti") : options.AnaCon ? QStringList("Con loro") : QStringList();
        };
        frmReset dialog(person, "DEM Prova", {{&ResetOptions::AnaCon, 6452}, {&ResetOptions::Maga, 1}}, besides,
                        nullptr);
        const auto caption = [&dialog](const char* name) {
            return dialog.findChild<QCheckBox*>(name)->text().remove('&');
        };
        QCOMPARE(caption("chkAnaCon"), QString("Anagrafica controparti - 6.452 righe"));
        QCOMPARE(caption("chkMaga"), QString("Movimenti e giacenze di magazzino - 1 riga"));
        QCOMPARE(caption("chkAnaArt"), QString("Anagrafica articoli"));
        QVERIFY(dialog.findChild<QLabel*>("lblCompany")->text().contains("DEM Prova"));
        const QString stays = dialog.findChild<QLabel*>("lblStays")->text();
        QVERIFY(stays.contains("attributi") && stays.contains("telefoni"));
        QString details;
        QString byDefault;
        DialogDriver driver;
        driver.On = [&](QWidget& shown) {
            if (auto* box = qobject_cast<QMessageBox*>(&shown)) {
                details = box->informativeText();
                byDefault = box->defaultButton()->objectName();
            }
            return false;
        };
        dialog.findChild<QCheckBox*>("chkAnaCon")->click();
        dialog.cmdOk_Click();
        QCOMPARE(details,
                 QString("Azienda DEM Prova: almeno 6.452 righe\nCon loro")); // the documents are not counted
        QCOMPARE(byDefault, QString("cmdNo"));
        for (const char* name : {"chkAnaCon", "chkDocAcq", "chkRilevamenti", "chkPrevProd", "chkMaga"}) {
            dialog.findChild<QCheckBox*>(name)->click();
        }
        dialog.cmdOk_Click();
        QCOMPARE(details, QString("Azienda DEM Prova: 1 riga"));
        dialog.findChild<QCheckBox*>("chkAnaArt")->click();
        dialog.cmdOk_Click();
        QVERIFY2(details.endsWith("\nCon tutti"), qPrintable(details));
    }

    // --- Sequence ---

    void TheStepsAreThoseTicked() {
        WindowOperator person;
        frmSequence dialog(person, nullptr);
        QCOMPARE(dialog.findChildren<QCheckBox*>().size(), 13);
        DialogDriver driver;
        QString button = "cmdOk";
        QString flaw;
        driver.On = [&](QWidget& shown) {
            flaw = flaws::Of(shown);
            for (const char* name : {"chkSaldiMEX", "chkQuery"}) {
                shown.findChild<QCheckBox*>(name)->setChecked(true);
            }
            shown.findChild<QPushButton*>(button)->click();
            return true;
        };
        SequenceSteps expected;
        expected.SaldiMEX = true;
        expected.Query = true;
        QCOMPARE(dialog.LanciaSequenza(), std::optional(expected));
        QCOMPARE(flaw, QString());
        button = "cmdCancel";
        QCOMPARE(dialog.LanciaSequenza(), std::nullopt);
        for (const char* name : {"chkSaldiMEX", "chkQuery"}) {
            dialog.findChild<QCheckBox*>(name)->setChecked(false);
        }
        driver.On = {};
        dialog.cmdOk_Click();
        QCOMPARE(driver.Events, QStringList("[!] Selezionare almeno un opzione!"));
    }

    // --- Questions and errors ---

    void QuestionsLookAsTheyAreMeant_data() {
        Columns<int, int, QString>("style", "icon", "byDefault");
        Row("plain", static_cast<int>(Question::Plain), static_cast<int>(QMessageBox::Question), "cmdYes");
        Row("plain, no", static_cast<int>(Question::PlainNo), static_cast<int>(QMessageBox::Question), "cmdNo");
        Row("warning", static_cast<int>(Question::Exclamation), static_cast<int>(QMessageBox::Warning), "cmdYes");
        Row("warning, no", static_cast<int>(Question::ExclamationNo), static_cast<int>(QMessageBox::Warning), "cmdNo");
    }
    void QuestionsLookAsTheyAreMeant() {
        QFETCH(int, style);
        QFETCH(int, icon);
        QFETCH(QString, byDefault);
        WindowOperator person;
        DialogDriver driver;
        bool pointerIsFree = false;
        driver.On = [&](QWidget& dialog) {
            auto& box = dynamic_cast<QMessageBox&>(dialog);
            pointerIsFree = QGuiApplication::overrideCursor() == nullptr;
            driver.Events = {box.windowTitle(), box.text(), QString::number(box.icon()),
                             box.defaultButton()->objectName()};
            QTest::keyClick(&box, Qt::Key_Return);
            return true;
        };
        {
            const Operator::Busy busy(person);
            const Answer answer = person.Ask("Davvero <b>?", static_cast<Question>(style));
            QCOMPARE(answer, byDefault == "cmdYes" ? Answer::Yes : Answer::No);
            QVERIFY(pointerIsFree);
            QCOMPARE(QGuiApplication::overrideCursor()->shape(), Qt::WaitCursor);
        }
        QCOMPARE(QGuiApplication::overrideCursor(), nullptr);
        QCOMPARE(driver.Events, QStringList({"Quadrix Data Import", "Davvero <b>?", QString::number(icon), byDefault}));
    }

    void GivingAQuestionUpIsNoNo_data() {
        Columns<std::function<void(QMessageBox&)>, int>("act", "answer");
        Row("escape", std::function<void(QMessageBox&)>([](auto& box) { QTest::keyClick(&box, Qt::Key_Escape); }),
            static_cast<int>(Answer::GivenUp));
        Row("close button", std::function<void(QMessageBox&)>([](auto& box) { box.close(); }),
            static_cast<int>(Answer::GivenUp));
        Row("no", std::function<void(QMessageBox&)>([](auto& box) {
                box.template findChild<QPushButton*>("cmdNo")->click();
            }),
            static_cast<int>(Answer::No));
    }
    void GivingAQuestionUpIsNoNo() {
        QFETCH(std::function<void(QMessageBox&)>, act);
        WindowOperator person;
        DialogDriver driver;
        int visible = 0;
        driver.On = [&](QWidget& dialog) {
            auto& box = dynamic_cast<QMessageBox&>(dialog);
            for (const QAbstractButton* button : box.buttons()) {
                visible += button->isVisible() ? 1 : 0;
            }
            act(box);
            return true;
        };
        QTEST(static_cast<int>(person.Ask("Davvero?")), "answer");
        QCOMPARE(visible, 2);
    }

    /// Of one line or of several, whatever looks like markup in them.
    void DetailsAreShownAsTheyAre_data() {
        Columns<QString>("details");
        Row("one line", "Rossi & Figli \"x\", PREZZO > 0");
        Row("several lines", "Azienda: X01 A<b>\n  Sorgente: <br>/tmp &amp;");
        Row("one line of markup", "<b>Rossi</b> &lt;");
    }
    void DetailsAreShownAsTheyAre() {
        QFETCH(QString, details);
        WindowOperator person;
        DialogDriver driver;
        QString shown;
        driver.On = [&shown](QWidget& box) {
            const auto& label = *box.findChild<QLabel*>("qt_msgbox_informativelabel");
            const bool isRich = label.textFormat() == Qt::RichText ||
                                (label.textFormat() == Qt::AutoText && Qt::mightBeRichText(label.text()));
            shown = isRich ? QTextDocumentFragment::fromHtml(label.text()).toPlainText() : label.text();
            return false;
        };
        person.Ask("Davvero?", Question::Plain, details);
        QCOMPARE(shown, details);
    }

    void AnErrorCanBeRetriedSkippedOrEnded_data() {
        Columns<QString, int>("clicked", "answer");
        Row("retry", "cmdRetry", static_cast<int>(ErrorAnswer::Retry));
        Row("ignore", "cmdIgnore", static_cast<int>(ErrorAnswer::Ignore));
        Row("ignore all", "cmdIgnoreAll", static_cast<int>(ErrorAnswer::IgnoreAll));
        Row("abort", "cmdAbort", static_cast<int>(ErrorAnswer::Abort));
    }
    void AnErrorCanBeRetriedSkippedOrEnded() {
        QFETCH(QString, clicked);
        QFETCH(int, answer);
        WindowOperator person;
        DialogDriver driver;
        driver.ErrorClicks = {clicked};
        QString flaw;
        driver.On = [&flaw](QWidget& dialog) {
            flaw = flaws::Of(dialog);
            dialog.findChild<QPushButton*>("cmdCopy")->click();
            return false;
        };
        ErrorEntry error;
        error.message = "valore troppo lungo";
        error.rowKey = "riga 7";
        error.statement = "INSERT INTO X";
        error.engineMessage = "too long [22001]";
        QCOMPARE(static_cast<int>(person.ChooseOnError(error)), answer);
        QCOMPARE(driver.Events, QStringList{"error Valore troppo lungo"});
        QCOMPARE(flaw, QString());
        const QString copied = QGuiApplication::clipboard()->text();
        for (const QString& part : {error.message, error.rowKey, error.statement, error.engineMessage}) {
            QVERIFY2(copied.contains(part), qPrintable(copied));
        }
    }

    /// Nothing may leave a slot, of whatever kind it is.
    void WhateverIsRaisedIsTold_data() {
        Columns<std::function<void()>, QString>("work", "told");
        Row("nothing", std::function<void()>([] {}), "");
        Row("an error of ours", std::function<void()>([] { throw ImportError("città"); }), "[!] Prima: città");
        Row("one of a library", std::function<void()>([] { throw std::runtime_error("bad \xc3\xa8"); }),
            "[!] Prima: bad è");
    }
    void WhateverIsRaisedIsTold() {
        QFETCH(std::function<void()>, work);
        QFETCH(QString, told);
        WindowOperator person;
        DialogDriver driver;
        QCOMPARE(Told(person, work, "Prima: "), told.isEmpty());
        QCOMPARE(driver.Events.join('|'), told);
    }

    void OutsideARowNothingCanBeSkipped() {
        ErrorEntry error;
        error.message = "tabella mancante";
        const ErrorDialog dialog(error, ErrorDialog::Kind::Choice, nullptr);
        QVERIFY(!dialog.findChild<QPushButton*>("cmdIgnore")->isEnabled());
        QVERIFY(!dialog.findChild<QPushButton*>("cmdIgnoreAll")->isEnabled());
        QCOMPARE(dialog.Answer(), ErrorAnswer::Abort);
    }

    void ALetterAlonePressesItsButton_data() {
        Columns<Qt::Key, bool, ErrorAnswer>("key", "closes", "answer");
        Row("Riprova", Qt::Key_R, true, ErrorAnswer::Retry);
        Row("Ignora", Qt::Key_I, true, ErrorAnswer::Ignore);
        Row("Ignora tutti", Qt::Key_T, true, ErrorAnswer::IgnoreAll);
        Row("Interrompi", Qt::Key_N, true, ErrorAnswer::Abort);
        Row("Copia", Qt::Key_C, false, ErrorAnswer::Abort);
        Row("no letter of a button", Qt::Key_X, false, ErrorAnswer::Abort);
    }
    void ALetterAlonePressesItsButton() {
        QFETCH(Qt::Key, key);
        QFETCH(bool, closes);
        ErrorEntry error;
        error.message = "valore troppo lungo";
        error.rowKey = "riga 7";
        error.statement = "INSERT INTO X";
        ErrorDialog dialog(error, ErrorDialog::Kind::Choice, nullptr);
        dialog.show();
        QVERIFY(QTest::qWaitForWindowActive(&dialog));
        dialog.findChild<QWidget*>("txtStatement")->setFocus();
        QTest::keyClick(QApplication::focusWidget(), key);
        QTest::qWait(200); // the button is seen to go down
        QCOMPARE(dialog.isVisible(), !closes);
        QTEST(dialog.Answer(), "answer");
    }

    void EnterDoesWhatCanHelp_data() {
        Columns<bool, QString, ErrorAnswer>("mayPass", "row", "answer");
        Row("a lock", true, "riga 7", ErrorAnswer::Retry);
        Row("a refused value", false, "riga 7", ErrorAnswer::Ignore);
        Row("a refused value outside a row", false, "", ErrorAnswer::Abort);
    }
    void EnterDoesWhatCanHelp() {
        QFETCH(bool, mayPass);
        QFETCH(QString, row);
        ErrorEntry error;
        error.message = "valore";
        error.rowKey = row;
        error.mayPass = mayPass;
        error.statement = "INSERT INTO T VALUES ('valore')";
        ErrorDialog dialog(error, ErrorDialog::Kind::Choice, nullptr);
        dialog.show();
        QTest::keyClick(&dialog, Qt::Key_Return);
        QVERIFY(!dialog.isVisible());
        QTEST(dialog.Answer(), "answer");
    }

    void TheEnginesWordsStandOnce_data() {
        Columns<QString, bool>("message", "beside");
        Row("within the message", "tabella T, colonna A: il valore 'x' è già presente: UNIQUE constraint failed: T.A",
            false);
        Row("the message has words of its own", "il disco è pieno", true);
    }
    void TheEnginesWordsStandOnce() {
        QFETCH(QString, message);
        QFETCH(bool, beside);
        ErrorEntry error;
        error.message = message;
        error.engineMessage = "UNIQUE constraint failed: T.A [SQLITE_CONSTRAINT]";
        const ErrorDialog dialog(error, ErrorDialog::Kind::Choice, nullptr);
        QCOMPARE(dialog.findChild<QLabel*>("lblEngine") != nullptr, beside);
        QVERIFY(ErrorDialog::TextOf(error).contains("[SQLITE_CONSTRAINT]"));
    }

    void PasswordsAreNotShown() {
        WindowOperator person;
        DialogDriver driver;
        QList<QLineEdit::EchoMode> modes;
        driver.Inputs = {"segreto", "SAM", std::nullopt};
        driver.On = [&modes](QWidget& dialog) {
            modes.append(dynamic_cast<QInputDialog&>(dialog).textEchoMode());
            return false;
        };
        QCOMPARE(person.Input("Database Password:", "", ""), std::optional<QString>("segreto"));
        QCOMPARE(person.Input("Database Name:", "", ""), std::optional<QString>("SAM"));
        QCOMPARE(person.Input("Database Name:", "", "x"), std::nullopt);
        QCOMPARE(modes, QList<QLineEdit::EchoMode>({QLineEdit::Password, QLineEdit::Normal, QLineEdit::Normal}));
    }

    void FileFiltersAreUnderstood() {
        QCOMPARE(FileDialogFilter("File di Excel (*.xls)|*.xls|Tutti i file (*.*)|*.*"),
                 QString("File di Excel (*.xls);;Tutti i file (*)"));
        QCOMPARE(FileDialogFilter("Testo|*.csv;*.txt"), QString("Testo (*.csv *.txt)"));
        QCOMPARE(FileDialogFilter(""), QString());
    }
};

QUADRIX_TEST(TestDialogs)
#include "test_dialogs.moc"
