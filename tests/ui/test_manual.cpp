#include "tests/support/QuadrixTest.h"
#include "tests/support/rows.h"
#include "ui/frmManual.h"
#include "ui/ManualPane.h"

#include <QApplication>
#include <QDir>
#include <QPushButton>
#include <QTest>
#include <QTextBlock>
#include <QTextBrowser>
#include <QTimer>

class TestManual : public QObject {
    Q_OBJECT

    static QTextBrowser& Browser(QWidget& window) { return *window.findChild<QTextBrowser*>("txtManual"); }

    /// The pictures that the page shows and does not have.
    static QStringList MissingPictures(QTextBrowser& browser) {
        QStringList missing;
        for (QTextBlock block = browser.document()->begin(); block.isValid(); block = block.next()) {
            for (auto part = block.begin(); !part.atEnd(); ++part) {
                const QTextImageFormat picture = part.fragment().charFormat().toImageFormat();
                if (picture.isValid() &&
                    browser.loadResource(QTextDocument::ImageResource, QUrl(picture.name())).isNull()) {
                    missing.append(picture.name());
                }
            }
        }
        return missing;
    }

private slots:
    /// The pages are in the program, with their pictures; a link is followed and comes back.
    void ShowsItsPages() {
        const QStringList pages = QDir(":/docs/manuale").entryList({"*.md"});
        QVERIFY(pages.contains("README.md"));
        for (const QString& page : pages) {
            ManualPane pane(page);
            QVERIFY2(Browser(pane).toPlainText().size() > 100, qPrintable(page));
            QCOMPARE(MissingPictures(Browser(pane)), QStringList());
        }
        ManualPane pane({});
        auto* back = pane.findChild<QPushButton*>("cmdBack");
        QVERIFY(!back->isEnabled());
        Browser(pane).setSource(QUrl("prova.md"));
        QVERIFY(Browser(pane).toPlainText().startsWith("La prova"));
        back->click();
        QVERIFY(Browser(pane).toPlainText().startsWith("Manuale"));
    }

    void OpensAtThePageOfTheWindow_data() {
        Columns<QString, QString>("window", "page");
        Row("own page", QString("frmReset"), QString("importare.md"));
        Row("page of a further window", QString("frmCodes"), QString("codici.md"));
        Row("page of the window that it belongs to", QString("dlgReview"), QString("origini-e-sorgenti.md"));
        Row("none while an import works", QString("frmProgress"), QString());
    }
    void OpensAtThePageOfTheWindow() {
        QFETCH(QString, window);
        QWidget parent;
        parent.setObjectName("frmInspect");
        QDialog dialog(&parent);
        dialog.setObjectName(window);
        QPushButton button(&dialog);
        ManualKey key;
        QCoreApplication::instance()->installEventFilter(&key);
        QString shown;
        QTimer::singleShot(0, [&shown] {
            auto* manual = qobject_cast<frmManual*>(QApplication::activeModalWidget());
            shown = manual != nullptr ? Browser(*manual).source().fileName() : QString();
            if (manual != nullptr) {
                manual->findChild<QPushButton*>("cmdClose")->click();
            }
        });
        QTest::keyClick(&button, Qt::Key_F1);
        QCoreApplication::processEvents();
        QTEST(shown, "page");
    }
};

QUADRIX_TEST(TestManual)
#include "test_manual.moc"
