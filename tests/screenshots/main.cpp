// Draws every window into a folder: quadrix-screenshots FOLDER THEME, THEME being "chiaro" or "scuro". The scale is
// that of QT_SCALE_FACTOR; the names of the pictures carry both.

#include "adapters/registry.h"
#include "app/connectSource.h"
#include "app/history/again.h"
#include "app/history/compare.h"
#include "app/history/rowDetails.h"
#include "app/inspect_draft.h"
#include "app/inspect_further.h"
#include "app/reset.h"
#include "examples/examples.h"
#include "tests/support/DialogDriver.h"
#include "tests/support/foreignSource.h"
#include "tests/support/TestWindow.h"
#include "ui/CodePreview.h"
#include "ui/frmCodes.h"
#include "ui/frmHelp.h"
#include "ui/frmHistory.h"
#include "ui/frmInspect.h"
#include "ui/frmManual.h"
#include "ui/frmReset.h"
#include "ui/frmResult.h"
#include "ui/frmRow.h"
#include "ui/frmSequence.h"
#include "ui/frmSource.h"
#include "ui/ReviewDialog.h"
#include "ui/TextDialog.h"

#include <QCheckBox>
#include <QDir>
#include <QLineEdit>
#include <QSet>
#include <QStyleFactory>
#include <QTabWidget>
#include <QTest>
#include <QToolButton>
#include <QTreeWidget>

namespace {

/// The colours of a dark desktop.
QPalette DarkPalette() {
    const QColor window(45, 45, 48);
    const QColor base(30, 30, 32);
    const QColor text(230, 230, 230);
    QPalette palette(window);
    for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText, QPalette::ToolTipText}) {
        palette.setColor(role, text);
        palette.setColor(QPalette::Disabled, role, QColor(130, 130, 130));
    }
    palette.setColor(QPalette::Base, base);
    palette.setColor(QPalette::AlternateBase, window);
    palette.setColor(QPalette::ToolTipBase, window);
    palette.setColor(QPalette::PlaceholderText, QColor(150, 150, 150));
    palette.setColor(QPalette::Highlight, QColor(47, 128, 195));
    palette.setColor(QPalette::HighlightedText, Qt::white);
    return palette;
}

/// Where the pictures go and what their names end with.
class Album {
public:
    Album(const QString& folder, const QString& theme)
        : m_folder(folder) {
        const int percent = qRound(qApp->devicePixelRatio() * 100);
        m_suffix = QStringLiteral("-%1-%2.png").arg(theme).arg(percent);
    }

    void Take(QWidget& window, const QString& name) const {
        QTest::qWait(50); // until every layout has settled
        const QString path = m_folder.filePath(name + m_suffix);
        if (!window.grab().save(path)) {
            qFatal("cannot write %s", qPrintable(path));
        }
    }

private:
    QDir m_folder;
    QString m_suffix;
};

void PrepareData(TestWindow& test) {
    examples::Options options;
    options.rows = 1200;
    options.folder = test.Folder.filePath("arca");
    options.company = "DEM";
    examples::Make("arca2000", options);
    test.Set("IMPORT", "Databasename", options.folder);
    test.Set("IMPORT", "AZIENDA", "Officine Dimostrative S.r.l.");
}

void RunScript(TestWindow& test) {
    QFile script(test.Folder.filePath("arca/quadrix.sql"));
    if (script.open(QIODevice::ReadOnly)) {
        test.Get().Quadrix.ExecuteScript(QString::fromUtf8(script.readAll()));
    }
}

void TakeReset(TestWindow& test, const Album& album) {
    frmReset dialog(test.Person(), "DEM Officine Dimostrative S.r.l.", CountResetRows(test.Get()), {}, &test.Window());
    dialog.show();
    dialog.findChild<QCheckBox*>("chkAnaCon")->click();
    album.Take(dialog, "frmReset");
}

void TakeSequence(TestWindow& test, const Album& album) {
    frmSequence dialog(test.Person(), &test.Window());
    dialog.show();
    album.Take(dialog, "frmSequence");
}

void TakeProgress(TestWindow& test, const Album& album) {
    double seconds = 0;
    ErrorAction action = ErrorAction::Ask;
    frmProgress dialog(&test.Window(), [&seconds] { return seconds; });
    dialog.OfferErrors(action);
    dialog.SetStep("Controparti");
    dialog.SetMax(20000);
    for (int row = 6000; row <= 7200; ++row) {
        dialog.SetValue(static_cast<float>(row));
        seconds += 0.001;
    }
    album.Take(dialog, "frmProgress");
}

void TakeError(TestWindow& test, const Album& album) {
    ErrorEntry error;
    error.time = QDateTime(QDate(2024, 3, 5), QTime(10, 20, 30));
    error.message = "il valore '01234567890' è già presente nella colonna 'COIVA' della tabella 'DEM_CON_TRO', che non "
                    "ammette doppioni (UNIQUE constraint failed: DEM_CON_TRO.COIVA [SQLITE_CONSTRAINT])";
    error.mayPass = false;
    error.rowKey = "tabella 'anagrafe', riga 214, codice 'C00214'";
    error.statement = "INSERT INTO DEM_CON_TRO\r\n(CDCON, CORAS, COIVA)\r\nVALUES\r\n('000214', 'Carpenteria Rossi & "
                      "Figli S.n.c.', '01234567890')";
    error.engineMessage = "UNIQUE constraint failed: DEM_CON_TRO.COIVA [SQLITE_CONSTRAINT]";
    ErrorDialog dialog(error, ErrorDialog::Kind::Choice, &test.Window());
    dialog.show();
    album.Take(dialog, "errore");
}

/// Takes what an import shows while it runs: the question before a reset, the log in the middle, the end.
class ImportPictures {
public:
    ImportPictures(TestWindow& test, const Album& album)
        : m_test(test),
          m_album(album) {}

    /// For a dialog that is shown; true while a picture is taken.
    bool Look(QWidget& dialog) {
        const QString name = NameOf(dialog);
        if (m_isTaking || name.isEmpty() || m_taken.contains(name)) {
            return m_isTaking;
        }
        m_isTaking = true;
        m_taken.insert(name);
        m_album.Take(name.startsWith("frmImport") ? m_test.Window() : dialog, name);
        m_isTaking = false;
        return false;
    }

private:
    static QString NameOf(const QWidget& dialog) {
        if (const auto* progress = qobject_cast<const frmProgress*>(&dialog)) {
            return progress->Value() > progress->Max() / 2 ? "frmImport-registro" : "";
        }
        const auto* box = qobject_cast<const QMessageBox*>(&dialog);
        const QString text = box == nullptr ? QString() : box->text();
        return text.startsWith("Resettare")               ? "conferma"
               : text.startsWith("Controparti importate") ? "fine-incompleta"
                                                          : "";
    }

    TestWindow& m_test;
    const Album& m_album;
    QSet<QString> m_taken;
    bool m_isTaking = false;
};

void TakeImport(TestWindow& test, const Album& album) {
    DialogDriver driver;
    test.Choose("cmbOrigine", "Arca 2000");
    test.Choose("cmbErrors", "Ignora e continua");
    album.Take(test.Window(), "frmImport-arca2000");
    test.Button("cmdImportCli").click(); // so that a reset has rows to delete
    test.Get().Quadrix.Execute("CREATE TRIGGER REFUSED BEFORE INSERT ON DEM_CON_TRO WHEN NEW.CDCON = '000020' "
                               "BEGIN SELECT RAISE(ABORT, 'riga rifiutata'); END");
    ImportPictures pictures(test, album);
    driver.On = [&pictures](QWidget& dialog) { return pictures.Look(dialog); };
    test.Window().findChild<QTabWidget*>()->setCurrentIndex(1);
    test.Button("cmdImportCli").click();
    if (test.Get().Results.isEmpty() || test.Get().Results.last().outcome != RunResult::Outcome::Done) {
        qFatal("the import failed: %s", qPrintable(driver.Events.join('\n')));
    }
    album.Take(test.Window(), "frmImport-esito");
}

/// The import before, as the history keeps it: the run, a row of it, the list of runs.
void TakeHistory(TestWindow& test, const Album& album) {
    auto* result = test.Window().findChild<frmResult*>();
    if (result == nullptr) {
        qFatal("the import has shown no result");
    }
    album.Take(*result, "frmResult");
    const history::History history(history::FilePath(test.Get().Config.ConfigFile()));
    const history::Run run = history.Load(result->Run());
    const history::Note note = history.Notes(run.id, history.NoteKinds(run.id).front().kind, {}, 0, 1).front();
    {
        frmRow row(note, history::LookUp(test.Get(), history, run, note), result);
        row.show();
        album.Take(row, "frmRow");
    }
    result->close();
    test.Window().findChild<QToolButton*>("cmdHistory")->click();
    auto* runs = test.Window().findChild<frmHistory*>();
    album.Take(*runs, "frmHistory");
    runs->close();
    auto& origins = test.List("cmbOrigine");
    origins.showPopup();
    origins.findChild<QLineEdit*>("txtOrigin")->setText("excel");
    album.Take(*origins.findChild<QFrame*>("popOrigins"), "origini");
    origins.hidePopup();
}

void TakeReview(TestWindow& test, const Album& album) {
    const QStringList matches{"000001 Rossi Mario --> 000007 Rossi Mario & C. S.n.c. (PARTITA IVA)",
                              "000002 Bianchi Laura --> 000009 Bianchi (CODICE FISCALE)",
                              "000003 Riva S.r.l. --> 000012 Stampaggio Plastica Riva S.r.l. (RAGIONE SOCIALE)",
                              "000004 Neri d'Est S.p.A. --> 000013 Neri d'Est S.p.A. (NUOVO!!!!)"};
    ReviewDialog dialog("Controparti: 4\n  PARTITA IVA: 1\n  CODICE FISCALE: 1\n  RAGIONE SOCIALE: 1 (per sola "
                        "ragione sociale: da verificare)\n  NUOVO!!!!: 1\nI riferimenti di X01 Officine Riunite S.p.A. "
                        "si aggiornano.\n\nFondere le controparti di X01 Officine Riunite S.p.A. in quelle di DEM "
                        "Officine Dimostrative S.r.l.?",
                        matches, &test.Window());
    dialog.show();
    album.Take(dialog, "fusione");
}

void TakeFailed(const Album& album) {
    TestWindow test;
    test.Set("DATABASE", "DatabaseName", "cartella che manca/quadrix.db");
    DialogDriver driver;
    test.Start();
    album.Take(test.Window(), "frmImport-senza-database");
}

/// The codes that the imports have met, one of them given a code that is not saved yet.
void TakeCodes(TestWindow& test, const Album& album) {
    test.Get().Quadrix.ExecuteScript(
        "INSERT INTO TAB_MOP (CDMOP, MPDES) VALUES ('RDIR', 'Rimessa diretta'), ('RB30', 'Ricevuta bancaria 30 gg');\n"
        "INSERT INTO TAB_MPR (CDMOP, NRRAT, MPGGF) VALUES ('RB30', 1, 30);\n"
        "INSERT INTO SYS_IMP (TBNAM, TBFLD, TBOLD, TBNEW) VALUES ('anagrafe', 'pag', 'RIBA 30 GG FM', ''), "
        "('anagrafe', 'pag', 'RIMESSA DIRETTA', ''), ('anagrafe', 'classe', 'GROSSISTI', '')");
    frmCodes dialog(test.Get(), test.Person(), registry::Find("Arca 2000"), &test.Window());
    dialog.show();
    dialog.activateWindow(); // its keys are those of the active window
    static_cast<void>(QTest::qWaitForWindowActive(&dialog));
    auto* list = dialog.findChild<QTreeWidget*>("lstCodes");
    list->setCurrentItem(list->findItems("RIMESSA DIRETTA", Qt::MatchExactly).value(0));
    QTest::keyClick(list, Qt::Key_1);
    list->setCurrentItem(list->findItems("RIBA 30 GG FM", Qt::MatchExactly).value(0));
    album.Take(dialog, "frmCodes");
}

/// The same codes given and applied, the row given up imported alone, and what has changed since.
void TakeAfterImport(TestWindow& test, const Album& album) {
    Session& session = test.Get();
    DialogDriver driver;
    const Operator::Quiet quiet(session.Person);
    codes::Worklist worklist(session, registry::Find("Arca 2000"));
    codes::Save(worklist, {{.table = "anagrafe", .field = "pag", .oldCode = "ZZ99", .newCode = "RDIR"},
                           {.table = "anagrafe", .field = "classe", .oldCode = "ZZ", .newCode = "VARI"}});
    QStringList lines;
    const std::vector<codes::RowsToRepeat> all = codes::FindRowsToRepeat(worklist);
    for (const codes::RowsToRepeat& rows : all) {
        lines += rows.Lines(worklist);
    }
    CodePreview preview(lines, codes::PreviewOf(session, all), &test.Window());
    preview.show();
    album.Take(preview, "codici-anteprima");
    preview.close();
    for (const codes::RowsToRepeat& rows : all) {
        codes::Repeat(session, rows);
    }
    session.Quadrix.Execute("DROP TRIGGER REFUSED");
    const history::History history(history::FilePath(session.Config.ConfigFile()));
    const qint64 incomplete = 2;
    RunImport(session, history::RejectsAgain(session, history, incomplete, {}, ErrorAction::Ignore).front().request);
    const qint64 last = history.LastRun();
    test.Window().findChild<QToolButton*>("cmdHistory")->click();
    auto* runs = test.Window().findChild<frmHistory*>();
    album.Take(*runs, "frmHistory-dopo");
    runs->close();
    TextDialog compared(QStringLiteral("Dall'esecuzione %1 alla %2").arg(incomplete).arg(last),
                        history::Differences(history, incomplete, last).join('\n'), &test.Window());
    compared.show();
    album.Take(compared, "confronto");
}

/// A source with names of its own, before and after it has been fitted.
void TakeInspect(TestWindow& test, const Album& album) {
    const contract::Origin& origin = *registry::Find("Gescom");
    MakeForeignSource(test.Folder.filePath("sorgente.sqlite"));
    test.Set("IMPORT", "Databasename", "sorgente.sqlite");
    Session& session = test.Get();
    frmSource source(session, origin, &test.Window());
    source.show();
    album.Take(source, "frmSource");
    source.close();
    inspection::OpenToLook(session, origin);
    frmInspect dialog(session, origin, &test.Window());
    dialog.show();
    album.Take(dialog, "frmInspect");
    inspection::TakeNames(session, origin,
                          {{"ARCLFR", "SOGGETTI"},
                           {"ARCLFR.FLAGCLFR", "TIPO_SOGGETTO"},
                           {"ARCLFR.CODCLFOR", "COD_SOGGETTO"},
                           {"ARCLFR.RAGCLFOR", "DENOMINAZIONE"}});
    dialog.Refresh();
    inspection::TakeNames(session, origin, inspection::ProposedNames(dialog.Shown()));
    inspection::SetFilter(session, origin, "ARCLFR", "SOCIETA = '01'");
    inspection::SetAdded(session, origin, "CON_TRO.CONOM", "ARCLFR.GRUPPO_VENDITA -> First(10)");
    dialog.Refresh();
    album.Take(dialog, "frmInspect-adattata");
    auto* tabs = dialog.findChild<QTabWidget*>();
    tabs->setCurrentIndex(1);
    album.Take(dialog, "frmInspect-filtri");
    tabs->setCurrentIndex(2);
    album.Take(dialog, "frmInspect-anteprima");
    dialog.close();
    CloseSource(session);
    DialogDriver driver;
    test.Choose("cmbOrigine", "Gescom");
    test.Window().findChild<QToolButton*>("cmdCheck")->click();
    album.Take(test.Window(), "frmImport-verifica");
    frmHelp help(&origin, "ImportContropartiGescom", &test.Window());
    help.show();
    album.Take(help, "frmHelp");
    help.close();
    frmManual manual("prima-migrazione.md", &test.Window());
    manual.show();
    album.Take(manual, "frmManual");
}

} // namespace

int main(int argc, char** argv) {
    QApplication application(argc, argv);
    const QStringList arguments = QApplication::arguments();
    if (arguments.size() != 3 || !QDir().mkpath(arguments.at(1))) {
        qWarning("usage: quadrix-screenshots FOLDER chiaro|scuro");
        return 2;
    }
    QApplication::setStyle(QStyleFactory::create("Fusion"));
    if (arguments.at(2) == "scuro") {
        QApplication::setPalette(DarkPalette());
    }
    const Album album(arguments.at(1), arguments.at(2));
    TestWindow test;
    PrepareData(test);
    test.Start();
    RunScript(test);
    album.Take(test.Window(), "frmImport");
    TakeImport(test, album);
    TakeHistory(test, album);
    TakeReset(test, album);
    TakeSequence(test, album);
    TakeProgress(test, album);
    TakeError(test, album);
    TakeReview(test, album);
    TakeCodes(test, album);
    TakeAfterImport(test, album);
    TakeInspect(test, album);
    TakeFailed(album);
    return 0;
}
