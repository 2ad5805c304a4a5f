#include "tests/support/files.h"
#include "tests/support/QuadrixTest.h"

#include <QDirIterator>
#include <QRegularExpression>
#include <QTest>

/// docs/SETTINGS.md against the code.
class TestSettingsPage : public QObject {
    Q_OBJECT

    /// The literals that a call gives a function which reads a setting.
    static QStringList LiteralsOfReads(const QString& code) {
        static const QRegularExpression call(
            R"(\b(?:Get|Set|Peek|Is)(?:App)?Config(?:On)?\(|\bSetting\(|\bfile\.Read\(|[kK]eys?\{|keys\.\w+ = |(?<![.\w])\w+Key = |\bIsUpper\(|\bisOn\(|\bHideWhenOn\()");
        static const QRegularExpression literal(R"re("([A-Za-z_]+)")re");
        QStringList literals;
        for (auto found = call.globalMatch(code); found.hasNext();) {
            const qsizetype from = found.next().capturedEnd();
            const QString arguments = code.mid(from, code.indexOf(QRegularExpression("[;{}]"), from) - from);
            for (auto each = literal.globalMatch(arguments); each.hasNext();) {
                literals.append(each.next().captured(1));
            }
        }
        return literals;
    }

private slots:
    void tellsEveryKey() {
        const QString page = QString::fromUtf8(ReadFile(QUADRIX_SOURCE_DIR "/docs/SETTINGS.md"));
        QSet<QString> read;
        for (const char* floor : {"adapters", "app", "cli", "core", "ui"}) {
            QDirIterator files(QString(QUADRIX_SOURCE_DIR "/") + floor, {"*.cpp", "*.h"}, QDir::Files,
                               QDirIterator::Subdirectories);
            while (files.hasNext()) {
                for (const QString& literal : LiteralsOfReads(QString::fromUtf8(ReadFile(files.next())))) {
                    read.insert(literal);
                }
            }
        }
        for (const char* known : {"DOC_DateStart", "PasswordEncryption", "AUTOMA_Servername", "TEXTFIELD_CHAR"}) {
            QVERIFY2(read.contains(known), known); // the code is still read as it is written
        }
        QStringList untold;
        for (const QString& key : std::as_const(read)) {
            if (!page.contains(key)) {
                untold.append(key);
            }
        }
        untold.sort();
        QVERIFY2(untold.isEmpty(), qPrintable(untold.join(", ")));
    }
};

QUADRIX_TEST(TestSettingsPage)
#include "test_settingsPage.moc"
