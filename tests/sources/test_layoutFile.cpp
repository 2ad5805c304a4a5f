#include "sources/layout/LayoutFile.h"
#include "tests/sources/sourcesTest.h"
#include "tests/support/files.h"
#include "tests/support/QuadrixTest.h"
#include "tests/support/rows.h"

#include <QTemporaryDir>

using namespace sourcesTest;
using sources::LayoutFile;

/// The text file that holds a layout.
class LayoutFileTest : public QObject {
    Q_OBJECT

private:
    QTemporaryDir m_dir;

    QString Write(const QByteArray& bytes) const {
        const QString path = LayoutFile::PathOf(m_dir.path(), "Una/prova: 1");
        WriteFile(path, bytes);
        return path;
    }

private slots:
    void ReadsEntries_data() {
        Columns<QByteArray, QString>("line", "value");
        const QString city = QString::fromUtf8("Città");
        Row("plain", QByteArray("A.B = Nome con blank \r"), "Nome con blank");
        Row("comment behind a blank", QByteArray("A.B=X ; nota"), "X");
        Row("nothing but a comment", QByteArray("A.B=   ; not there"), "");
        Row("no comment without a blank", QByteArray("A.B=X;Y"), "X;Y");
        Row("no comment in a text", QByteArray("A.B=NOTE <> 'a ; b' ; c"), "NOTE <> 'a ; b'");
        Row("equals in a value", QByteArray("A.B=TIPO = 'C'"), "TIPO = 'C'");
        Row("UTF-8", QByteArray("A.B=Citt\xC3\xA0"), city);
        Row("cp1252", QByteArray("A.B=Citt\xE0"), city);
    }
    void ReadsEntries() {
        QFETCH(const QByteArray, line);
        const auto file = LayoutFile::Read(Write("; prima\n\n[colonne]\n" + line + "\n"));
        const auto& entries = file->Entries(LayoutFile::Columns);
        QCOMPARE(entries.size(), size_t(1));
        QCOMPARE(entries.front().key, QString("A.B"));
        QTEST(entries.front().value, "value");
        QCOMPARE(entries.front().line, 4);
        QVERIFY(file->Entries(LayoutFile::Tables).empty());
    }

    void ReadsTheMarkOfUnicode() {
        QByteArray bytes("\xFF\xFE", 2);
        for (const QChar c : QString::fromUtf8("[TABELLE]\nA=Città\n")) {
            bytes.append(static_cast<char>(c.unicode() & 0xFF)).append(static_cast<char>(c.unicode() >> 8));
        }
        QCOMPARE(LayoutFile::Read(Write(bytes))->Entries(LayoutFile::Tables).front().value, QString::fromUtf8("Città"));
    }

    void NamesWhatItCannotRead_data() {
        Columns<QByteArray, QStringList>("bytes", "told");
        Row("line", QByteArray("[TABELLE]\nsenza uguale\n"), QStringList{"riga 2", "'senza uguale'", "nome=valore"});
        Row("section that does not close", QByteArray("[TABELLE\nA=B\n"), QStringList{"riga 1", "'[TABELLE'"});
        Row("no name", QByteArray("[TABELLE]\n=B\n"), QStringList{"riga 2"});
        Row("the same twice in two pieces of a section", QByteArray("[TABELLE]\nA=1\n[FILTRI]\nA=1\n[TABELLE]\na=2\n"),
            QStringList{"riga 6", "riga 2"});
    }
    void NamesWhatItCannotRead() {
        QFETCH(const QByteArray, bytes);
        QFETCH(QStringList, told);
        told.append("Una-prova- 1.ini");
        QVERIFY(Holds(ErrorTextOf([&] { LayoutFile::Read(Write(bytes)); }), told));
    }

    void IsNothingWithoutAFile() { QVERIFY(!LayoutFile::Read(m_dir.filePath("manca.ini"))); }
};

QUADRIX_TEST(LayoutFileTest)
#include "test_layoutFile.moc"
