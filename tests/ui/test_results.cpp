#include "app/history/Recorder.h"
#include "sources/tableFile.h"
#include "tests/support/ArcaWindow.h"
#include "tests/support/DialogDriver.h"
#include "tests/support/flaws.h"
#include "tests/support/QuadrixTest.h"
#include "tests/support/rows.h"
#include "ui/AnnotationModel.h"
#include "ui/frmHistory.h"
#include "ui/frmResult.h"
#include "ui/frmRow.h"
#include "ui/lists.h"
#include "ui/TextDialog.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QLineEdit>
#include <QTableWidget>
#include <QTabWidget>
#include <QTest>
#include <QToolButton>
#include <QTreeView>
#include <QTreeWidget>

namespace {

template<class Widget>
Widget& Part(QWidget& window, const char* name) {
    auto* part = window.findChild<Widget*>(name);
    if (part == nullptr) {
        throw std::runtime_error(std::string("no ") + name);
    }
    return *part;
}

void Press(QWidget& window, const char* button) { Part<QPushButton>(window, button).click(); }

/// A window in which an import has given up one row.
class ImportedWindow : public ArcaWindow {
public:
    explicit ImportedWindow(DialogDriver& driver) {
        FailAt("000020");
        Choose("cmbErrors", "Ignora e continua");
        Button("cmdImportCli").click();
        driver.Events.clear();
    }

    frmResult& Shown() { return Part<frmResult>(Window(), "frmResult"); }
    QTreeView& Notes() { return Part<QTreeView>(Shown(), "treNotes"); }
    frmHistory& History() {
        Part<QToolButton>(Window(), "cmdHistory").click();
        return Part<frmHistory>(Window(), "frmHistory");
    }
    void Mend() { Get().Quadrix.Execute("DROP TRIGGER Guasto"); }
    QString Rows() { return Value("SELECT COUNT(*) FROM DEM_CON_TRO"); }
};

/// Does something with windows of a kind before they are closed.
template<class Dialog>
void Look(DialogDriver& driver, std::function<void(Dialog&)> look) {
    driver.On = [look = std::move(look)](QWidget& dialog) {
        auto* wanted = qobject_cast<Dialog*>(&dialog);
        if (wanted != nullptr) {
            look(*wanted);
            wanted->close();
        }
        return wanted != nullptr;
    };
}

/// The texts of a column of a table.
QStringList ColumnOf(const QTableWidget& table, int column) {
    QStringList texts;
    for (int row = 0; row < table.rowCount(); ++row) {
        texts.append(table.item(row, column)->text());
    }
    return texts;
}

} // namespace

/// What imports did, looked through and imported again.
class TestResults : public QObject {
    Q_OBJECT

private slots:
    void EveryImportShowsItsResult() {
        DialogDriver driver;
        ImportedWindow test(driver);
        auto& procedures = Part<QTableWidget>(test.Shown(), "tblProcedures");
        QCOMPARE(procedures.rowCount(), 1);
        QCOMPARE(procedures.item(0, 0)->text(), QString("Controparti da Arca 2000"));
        QCOMPARE(procedures.item(0, 1)->text(), QString::number(ArcaWindow::RowCount));
        QCOMPARE(procedures.item(0, 5)->text(), QString("1"));
        QCOMPARE(procedures.item(0, 8)->text(), QString("completata ma non per intero"));
        const QAbstractItemModel& model = *test.Notes().model();
        QCOMPARE(model.index(0, 0).data().toString(), QString("RIGA ABBANDONATA: 1, di cui fatte 0"));
        QVERIFY(test.Notes().isExpanded(model.index(0, 0)));
        const QModelIndex reject = model.index(0, 0, model.index(0, 0));
        QVERIFY2(model.index(0, 1, model.index(0, 0)).data().toString().contains("riga rifiutata"),
                 qPrintable(reject.data().toString()));
        QVERIFY(model.rowCount() > 1);
    }

    /// By typing, by kind, and back.
    /// Another program that works on the same settings has runs in the same history.
    void TheResultIsThatOfItsOwnRun() {
        DialogDriver driver;
        ArcaWindow test;
        driver.On = [&](QWidget& dialog) {
            const auto* box = qobject_cast<QMessageBox*>(&dialog);
            if (box != nullptr && box->text().startsWith("Controparti importate")) {
                history::Recorder other(test.Get(), {.work = "di un altro"});
                other.ProcedureBegins("modImport_Altro", "Import");
            }
            return false;
        };
        test.Button("cmdImportCli").click();
        QCOMPARE(history::History(history::FilePath(test.Get().Config.ConfigFile())).LastRun(), 2);
        QCOMPARE(Part<frmResult>(test.Window(), "frmResult").Run(), 1);
    }

    void NotesAreSearchedTickedAndCopied() {
        DialogDriver driver;
        ImportedWindow test(driver);
        QAbstractItemModel& model = *test.Notes().model();
        const int kinds = model.rowCount();
        QTest::keyClicks(&Part<QLineEdit>(test.Shown(), "txtSearch"), "RIFIUTATA");
        QTRY_COMPARE(model.rowCount(), 1);
        const QModelIndex reject = model.index(0, 0, model.index(0, 0));
        test.Notes().setCurrentIndex(reject);
        Press(test.Shown(), "cmdDone");
        QCOMPARE(reject.data(Qt::CheckStateRole).toInt(), int(Qt::Checked));
        QCOMPARE(model.index(0, 0).data().toString(), QString("RIGA ABBANDONATA: 1, di cui fatte 1"));
        QTest::keyClick(&test.Notes(), Qt::Key_C, Qt::ControlModifier);
        const QStringList copied = QGuiApplication::clipboard()->text().split('\t');
        QCOMPARE(copied.size(), 4);
        QCOMPARE(copied.first(), history::GivenUpKind);
        QCOMPARE(copied.at(2), reject.data().toString());

        Part<QLineEdit>(test.Shown(), "txtSearch").clear();
        QTRY_COMPARE(model.rowCount(), kinds);
        test.Notes().setCurrentIndex(model.index(1, 0));
        Press(test.Shown(), "cmdDone"); // all of a kind
        QCOMPARE(model.index(0, 0, model.index(1, 0)).data(Qt::CheckStateRole).toInt(), int(Qt::Checked));

        // The ticks are those of the run, whichever window shows it.
        const QTreeView* before = &test.Notes();
        auto& history = test.History();
        Press(history, "cmdOpen");
        QVERIFY(&test.Notes() != before);
        QCOMPARE(test.Notes().model()->index(0, 0).data(Qt::CheckStateRole).toInt(), int(Qt::Checked));
        QCOMPARE(test.Notes().model()->index(1, 0).data(Qt::CheckStateRole).toInt(), int(Qt::Checked));
    }

    /// It is told once, however often the view asks; what was copied before stays.
    void NotesThatCannotBeReadAreTold() {
        DialogDriver driver;
        ImportedWindow test(driver);
        ovConnection history;
        OpenEmbedded(history, history::FilePath(test.Get().Config.ConfigFile()));
        history.Execute("ALTER TABLE notes RENAME TO notes2");
        QGuiApplication::clipboard()->setText("di prima");
        const QModelIndex kind = test.Notes().model()->index(1, 0);
        test.Notes().expand(kind);
        const QModelIndex note = kind.model()->index(0, 0, kind);
        for (int time = 0; time < 3; ++time) {
            QVERIFY(!note.data().isValid());
        }
        QTRY_COMPARE(driver.Events.size(), 1);
        test.Notes().setCurrentIndex(note);
        Press(test.Shown(), "cmdCopy");
        QTRY_COMPARE(driver.Events.size(), 2);
        QCOMPARE(QGuiApplication::clipboard()->text(), QString("di prima"));
    }

    void ShownNotesAreExported() {
        DialogDriver driver;
        ImportedWindow test(driver);
        auto& kinds = Part<QComboBox>(test.Shown(), "cmbKind");
        kinds.setCurrentIndex(kinds.findData(history::GivenUpKind));
        emit kinds.activated(kinds.currentIndex());
        const QString path = test.Folder.filePath("note.csv");
        driver.AnswerFiles(path);
        Press(test.Shown(), "cmdExport");
        const sources::TableOfFile table = sources::ReadTable(path);
        QCOMPARE(table.rows.size(), size_t(1));
        QCOMPARE(table.rows.front().values.front(), history::GivenUpKind);
        QVERIFY(driver.Events.isEmpty());
    }

    /// The values of a row given up are kept; those of another one are read again. Beside them stands what became.
    void ARowIsShownBesideWhatItBecame() {
        DialogDriver driver;
        ImportedWindow test(driver);
        QAbstractItemModel& model = *test.Notes().model();
        QStringList codes;
        QStringList became;
        QString flaw;
        Look<frmRow>(driver, [&](frmRow& row) {
            flaw = flaws::Of(row);
            auto& source = Part<QTableWidget>(row, "tblSource");
            const auto at = ColumnOf(source, 0).indexOf("codice");
            codes.append(at < 0 ? QString() : source.item(static_cast<int>(at), 1)->text());
            auto& target = Part<QTableWidget>(row, "tblTarget");
            const auto name = ColumnOf(target, 0).indexOf("CORAS");
            became.append(target.item(static_cast<int>(name), 1)->text() + '<' +
                          target.item(static_cast<int>(name), 2)->text());
        });
        emit test.Notes().activated(model.index(0, 0, model.index(0, 0)));
        emit test.Notes().activated(model.index(0, 0, model.index(1, 0)));
        QCOMPARE(codes.size(), 2);
        QCOMPARE(flaw, QString());
        QCOMPARE(flaws::Of(test.Shown()), QString());
        for (const QString& code : codes) {
            QVERIFY(!code.trimmed().isEmpty());
        }
        QVERIFY2(became.first().startsWith('<'), qPrintable(became.first())); // it was given up
        QVERIFY2(!became.last().startsWith('<') && !became.last().endsWith('<'), qPrintable(became.last()));
        QVERIFY(test.Get().Source == nullptr);

        // Without its source the row is not to be seen, what became of it is.
        QVERIFY(QDir(test.Folder.filePath("arca")).removeRecursively());
        QString trouble;
        Look<frmRow>(driver, [&](frmRow& row) {
            for (const WrappedLabel* label : row.findChildren<WrappedLabel*>()) {
                trouble += label->Text() + '\n';
            }
        });
        emit test.Notes().activated(model.index(0, 0, model.index(1, 0)));
        QVERIFY2(trouble.contains("La sorgente non si può leggere"), qPrintable(trouble));
    }

    void RejectsAreImportedAgain_data() {
        Columns<bool>("agrees");
        Row("when the operator agrees", true);
        Row("else nothing is", false);
    }
    void RejectsAreImportedAgain() {
        QFETCH(bool, agrees);
        DialogDriver driver;
        ImportedWindow test(driver);
        const QString before = test.Rows();
        test.Mend();
        test.Choose("cmbOrigine", "Gescom"); // what is chosen meanwhile does not count
        QString details;
        driver.On = [&details](QWidget& dialog) {
            if (const auto* box = qobject_cast<QMessageBox*>(&dialog)) {
                details += box->informativeText();
            }
            return false;
        };
        driver.Otherwise = agrees ? QString() : QString("cmdNo");
        auto& history = test.History();
        Press(history, "cmdImportRejects");
        QCOMPARE(driver.Events.value(0),
                 QString("? Importare di nuovo le righe abbandonate? = " + QString(agrees ? "cmdYes" : "cmdNo")));
        QVERIFY2(details.contains("Azienda: DEM " + ArcaWindow::Company) && details.contains("Sorgente: ") &&
                     details.contains("Righe: 1, abbandonate dall'esecuzione 1"),
                 qPrintable(details));
        QCOMPARE(test.Rows().toInt() - before.toInt(), agrees ? 1 : 0);
        auto& runs = Part<QTableWidget>(history, "tblRuns");
        QCOMPARE(runs.rowCount(), agrees ? 2 : 1);
        if (agrees) {
            QCOMPARE(test.Result().sourceRows, 1);
            QCOMPARE(test.List("cmbOrigine").currentText(), QString("Arca 2000"));
            QCOMPARE(test.Shown().Run(), 2);
        }
    }

    /// What the settings lock stands behind the rejects of another company and origin as before, and is stored so; that
    /// company need not have been there when the window opened.
    void ALockedWindowStaysLocked() {
        DialogDriver driver;
        ImportedWindow test(driver);
        test.Mend();
        CreateDatabase(test.Get().Quadrix, "ZLT", "Altra S.r.l.");
        const QString before = test.Rows();
        test.Get().Quadrix.Execute("UPDATE SYS_AZI SET CDAZI = 'ZZZ' WHERE CDAZI = 'DEM'");
        test.Window().close();
        test.Set("IMPORT", "AZIENDA", "Altra S.r.l.");
        test.Set("IMPORT", "ORIGINE", "Gescom");
        test.Set("IMPORT", "Disable_Configuration", "1");
        test.Set("IMPORT", "Disable_ImportArt", "1");
        test.Start();
        test.Get().Quadrix.Execute("UPDATE SYS_AZI SET CDAZI = 'DEM' WHERE CDAZI = 'ZZZ'");
        Press(test.History(), "cmdImportRejects");
        QCOMPARE(test.Rows().toInt() - before.toInt(), 1);
        QVERIFY2(test.Text("txtResult").contains("azienda DEM " + ArcaWindow::Company + ", "),
                 qPrintable(test.Text("txtResult")));
        QCOMPARE(test.List("cmbAzienda").currentText(), QString("Altra S.r.l."));
        QCOMPARE(test.List("cmbOrigine").currentText(), QString("Gescom"));
        QVERIFY(!test.Button("cmdImportArt").isVisible() && test.Button("cmdImportCli").isVisible());
        test.Window().close();
        QCOMPARE(test.Setting("IMPORT", "AZIENDA"), QString("Altra S.r.l."));
        QCOMPARE(test.Setting("IMPORT", "ORIGINE"), QString("Gescom"));
    }

    /// What it comes to is seen before it is done; the pointer tells that it is under way, both times.
    void ARunIsTakenBack() {
        int deletes = 0;
        int busyDeletes = 0;
        DialogDriver driver;
        ImportedWindow test(driver);
        QString details;
        driver.On = [&](QWidget& dialog) {
            const auto* box = qobject_cast<QMessageBox*>(&dialog);
            if (box != nullptr && details.isEmpty()) {
                details = box->informativeText() + "\nrighe: " + test.Rows();
            }
            return false;
        };
        driver.Otherwise = "cmdYes";
        auto& history = test.History();
        QCOMPARE(flaws::Of(history), QString());
        const QString rows = test.Rows();
        test.Get().Quadrix.Written = [&](const QString& statement) {
            const bool isDelete = statement.startsWith("DELETE");
            deletes += isDelete ? 1 : 0;
            busyDeletes += isDelete && QGuiApplication::overrideCursor() != nullptr ? 1 : 0;
        };
        Press(history, "cmdUndo");
        QVERIFY(deletes > 1 && busyDeletes == deletes && QGuiApplication::overrideCursor() == nullptr);
        QVERIFY2(details.contains("Righe tolte: ") && details.endsWith("righe: " + rows), qPrintable(details));
        QCOMPARE(driver.Events.value(0), QString("? Annullare l'esecuzione 1? = cmdYes"));
        QCOMPARE(test.Rows(), QString("0"));
        QVERIFY(!Part<QPushButton>(history, "cmdUndo").isEnabled());
    }

    /// Out as a table, mended, back.
    void RejectsAreMendedInAFile() {
        DialogDriver driver;
        ImportedWindow test(driver);
        auto& history = test.History();
        const QString path = test.Folder.filePath("scarti.csv");
        driver.AnswerFiles(path);
        Press(history, "cmdWriteRejects");
        QVERIFY2(driver.Events.value(0).startsWith("[i] Righe abbandonate scritte in:"),
                 qPrintable(driver.Events.join('\n')));
        const sources::TableOfFile rejects = sources::ReadTable(path);
        QStringList values = rejects.rows.at(0).values;
        values[rejects.columns.indexOf("descrizion")] = "Nome corretto";
        {
            const auto writer = sources::TableWriter::Create(path, {}, rejects.columns);
            writer->AddRow(QVector<QVariant>(values.begin(), values.end()));
            writer->Close();
        }
        test.Mend();
        Press(history, "cmdImportMended");
        QVERIFY(driver.Events.contains("? Importare le righe corrette? = cmdYes"));
        QCOMPARE(test.Value("SELECT COUNT(*) FROM DEM_CON_TRO WHERE CORAS LIKE 'Nome corretto%'"), QString("1"));
    }

    /// Whatever name was typed for it: what was mended is lost with a yes only.
    void MendedRejectsAreNotWrittenOver() {
        DialogDriver driver;
        ImportedWindow test(driver);
        auto& history = test.History();
        driver.AnswerFiles(test.Folder.filePath("scarti"));
        driver.Otherwise = "cmdNo";
        Press(history, "cmdWriteRejects");
        const QString path = test.Folder.filePath("scarti.xlsx");
        const sources::TableOfFile rejects = sources::ReadTable(path);
        Press(history, "cmdWriteRejects"); // nobody has touched it
        QCOMPARE(driver.Events.size(), 2);
        QStringList values = rejects.rows.at(0).values;
        values[rejects.columns.indexOf("descrizion")] = "Nome corretto";
        {
            const auto writer = sources::TableWriter::Create(path, {}, rejects.columns);
            writer->AddRow(QVector<QVariant>(values.begin(), values.end()));
            writer->Close();
        }
        Press(history, "cmdWriteRejects");
        QVERIFY2(driver.Events.size() == 3 && driver.Events.last().contains("righe corrette"),
                 qPrintable(driver.Events.join('\n')));
        QCOMPARE(sources::ReadTable(path).rows.at(0).values, values);
    }

    void AnInterruptedRunGoesOn() {
        DialogDriver driver;
        ArcaWindow test;
        driver.On = [done = false](QWidget& dialog) mutable {
            auto* progress = qobject_cast<frmProgress*>(&dialog);
            if (progress != nullptr && progress->Value() >= 40 && !std::exchange(done, true)) {
                Press(*progress, "cmdCancel");
            }
            return progress != nullptr;
        };
        test.Button("cmdImportCli").click();
        const qint64 first = test.Result().inserted;
        QVERIFY(test.Result().notReached > 0);
        Part<QToolButton>(test.Window(), "cmdHistory").click();
        auto& history = Part<frmHistory>(test.Window(), "frmHistory");
        QVERIFY(!Part<QPushButton>(history, "cmdImportRejects").isEnabled());
        Press(history, "cmdResume");
        QVERIFY(driver.Events.contains("? Riprendere l'esecuzione 1 da dove si è interrotta? = cmdYes"));
        QCOMPARE(test.Result().outcome, RunResult::Outcome::Done);
        QVERIFY(test.Result().sourceRows < ArcaWindow::RowCount || test.Result().skipped > 0);
        QCOMPARE(test.Value("SELECT COUNT(*) FROM DEM_CON_TRO").toLongLong(), first + test.Result().inserted);

        // Two runs are compared, the log of one is read.
        auto& runs = Part<QTableWidget>(history, "tblRuns");
        QString text;
        QString flaw;
        Look<TextDialog>(driver, [&](TextDialog& dialog) {
            text = Part<QPlainTextEdit>(dialog, "txtLines").toPlainText();
            flaw = flaws::Of(dialog);
        });
        lists::ChooseRow(runs, 0);
        QVERIFY(!Part<QPushButton>(history, "cmdResume").isEnabled());
        Press(history, "cmdLog");
        QVERIFY2(text.contains("Inizio importazione controparti"), qPrintable(text));
        QCOMPARE(flaw, QString());
        runs.selectAll();
        Press(history, "cmdCompare");
        QVERIFY2(text.contains("non raggiunte: da "), qPrintable(text));
        Part<QLineEdit>(history, "txtSearchRuns").setText("interrotta");
        QVERIFY(runs.isRowHidden(0) && !runs.isRowHidden(1));
    }

    /// Errors from here on are dealt with otherwise, without another question.
    void ErrorsAreDealtWithOtherwiseWhileItRuns_data() {
        Columns<QString, ErrorAction>("control", "action");
        Row("the button", QString("cmdIgnoreAll"), ErrorAction::Ignore);
        Row("the list", QString("cmbErrorsNow"), ErrorAction::Abort);
    }
    void ErrorsAreDealtWithOtherwiseWhileItRuns() {
        QFETCH(QString, control);
        QFETCH(ErrorAction, action);
        ArcaWindow test;
        test.Get().Quadrix.Execute("CREATE TRIGGER Guasto BEFORE INSERT ON DEM_CON_TRO WHEN NEW.CDCON >= '000050' "
                                   "AND NEW.CDCON < '000060' BEGIN SELECT RAISE(ABORT, 'riga rifiutata'); END");
        DialogDriver driver;
        driver.On = [&, done = false](QWidget& dialog) mutable {
            auto* progress = qobject_cast<frmProgress*>(&dialog);
            if (progress != nullptr && progress->Value() >= 20 && !std::exchange(done, true)) {
                if (action == ErrorAction::Ignore) {
                    Press(*progress, "cmdIgnoreAll");
                } else {
                    auto& modes = Part<QComboBox>(*progress, "cmbErrorsNow");
                    modes.setCurrentText(ErrorModeName(action));
                    emit modes.activated(modes.currentIndex());
                }
            }
            return progress != nullptr;
        };
        test.Button("cmdImportCli").click();
        QVERIFY(driver.Events.filter(QRegularExpression("^error ")).isEmpty());
        QCOMPARE(test.Result().outcome,
                 action == ErrorAction::Ignore ? RunResult::Outcome::Done : RunResult::Outcome::Failed);
        QCOMPARE(test.Result().givenUpCount > 1, action == ErrorAction::Ignore);
        QCOMPARE(test.List("cmbErrors").currentText(), QString("Gestiti dall'utente")); // it was for that run
    }

    void AnOriginIsFoundByTyping_data() {
        Columns<QString, Qt::Key, QString>("typed", "key", "chosen");
        Row("the middle of a name", QString("winp"), Qt::Key_Return, QString("WinProgest"));
        Row("with a sign", QString("s/4"), Qt::Key_Return, QString("Excel scarico AS/400"));
        Row("nothing has it", QString("xyzw"), Qt::Key_Return, QString("Gescom"));
        Row("given up", QString("winp"), Qt::Key_Escape, QString("Gescom"));
    }
    void AnOriginIsFoundByTyping() {
        QFETCH(QString, typed);
        QFETCH(Qt::Key, key);
        QFETCH(QString, chosen);
        TestWindow test;
        test.Start();
        test.Choose("cmbOrigine", "Gescom");
        QComboBox& list = test.List("cmbOrigine");
        list.setFocus();
        QTest::keyClick(&list, typed.front().toLatin1());
        auto& text = Part<QLineEdit>(list, "txtOrigin");
        QVERIFY(text.isVisible());
        QTest::keyClicks(&text, typed.mid(1));
        QTest::keyClick(&text, key);
        QCOMPARE(list.currentText(), chosen);
        list.hidePopup();
    }

    void OriginsAreFoundByTheirKind() {
        TestWindow test;
        test.Start();
        QComboBox& list = test.List("cmbOrigine");
        list.showPopup();
        QTest::keyClicks(&Part<QLineEdit>(list, "txtOrigin"), "foxpro");
        const auto& found = Part<QTreeWidget>(list, "lstOrigins");
        int shown = 0;
        for (int i = 0; i < found.topLevelItemCount(); ++i) {
            const QTreeWidgetItem* item = found.topLevelItem(i);
            shown += item->isHidden() ? 0 : 1;
            QCOMPARE(item->isHidden(), !QString(item->text(0) + item->text(1)).contains("foxpro", Qt::CaseInsensitive));
        }
        QVERIFY(shown > 1 && shown < list.count());
        list.hidePopup();
    }
};

QUADRIX_TEST(TestResults)
#include "test_results.moc"
