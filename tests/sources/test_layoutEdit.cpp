#include "sources/layout/LayoutEdit.h"
#include "sources/layout/LayoutFile.h"
#include "sources/layout/LayoutTable.h"
#include "sql/errors.h"
#include "tests/support/errorOf.h"
#include "tests/support/files.h"
#include "tests/support/QuadrixTest.h"
#include "tests/support/rows.h"

#include <QTemporaryDir>

using sources::LayoutEdit;
using sources::LayoutFile;

/// Changes to a layout file that somebody keeps by hand, too.
class LayoutEditTest : public QObject {
    Q_OBJECT

private slots:
    void ChangesNothingElse_data() {
        Columns<QString, QString, QString>("before", "value", "after");
        Row("new file", "", "X", "[COLONNE]\nA.B=X\n");
        Row("new section", "; mio\n[TABELLE]\nA=T\n", "X", "; mio\n[TABELLE]\nA=T\n\n[COLONNE]\nA.B=X\n");
        Row("behind the last of its section", "[colonne]\nA.C=Y ; nota\n\n[TABELLE]\nA=T\n", "X",
            "[colonne]\nA.C=Y ; nota\nA.B=X\n\n[TABELLE]\nA=T\n");
        Row("in its place", "[COLONNE]\n a.b = Y ; nota\nA.C=Z\n", "X", "[COLONNE]\nA.B=X ; nota\nA.C=Z\n");
        Row("a comment is none", "[COLONNE]\n;A.B=Y ; simile\n", "X", "[COLONNE]\n;A.B=Y ; simile\nA.B=X\n");
        Row("that of another section is none", "[FILTRI]\nA.B=1\n[COLONNE]\nA.C=1\n", "X",
            "[FILTRI]\nA.B=1\n[COLONNE]\nA.C=1\nA.B=X\n");
        Row("not there", "[COLONNE]\nA.B=Y\n", "", "[COLONNE]\nA.B=\n");
        Row("lines of Windows", "[COLONNE]\r\nA.B=Y\r\n", "X", "[COLONNE]\nA.B=X\n");
    }
    void ChangesNothingElse() {
        QFETCH(const QString, before);
        QFETCH(const QString, value);
        LayoutEdit edit(before);
        edit.Set(LayoutFile::Columns, "A.B", value);
        QTEST(edit.Text(), "after");
        QCOMPARE(edit.Value(LayoutFile::Columns, "a.b"), value);
        edit.Remove(LayoutFile::Columns, "A.B");
        QVERIFY(edit.Value(LayoutFile::Columns, "A.B").isNull());
    }

    /// A name comes back from the file as it went in.
    void WritesNames_data() {
        Columns<QString>("name");
        for (const char* name : {"CODICE", "Rag. Soc", "C.F.", "Rag Soc", "a ; b", "l'altro", "Città", "dbo.x"}) {
            Row(name, QString::fromUtf8(name));
        }
    }
    void WritesNames() {
        QFETCH(const QString, name);
        const QTemporaryDir folder;
        const QString path = folder.filePath("Tracciati/Prova.ini");
        LayoutEdit edit({});
        edit.Set(LayoutFile::Columns, "A.B", LayoutEdit::Written(name));
        sources::WriteLayoutFile(path, edit.Text());
        const auto file = LayoutFile::Read(path);
        const QString value = file->Entries(LayoutFile::Columns).front().value;
        QCOMPARE(sources::NameParts(value), QStringList(name));
    }

    void RefusesWhatItCannotHold() {
        LayoutEdit edit({});
        for (const char* value : {"X = 1 ; nota", "X\n[TABELLE]"}) {
            const auto error = ErrorOf<ImportError>([&] { edit.Set(LayoutFile::Filters, "A", value); });
            QVERIFY(error && error->Message().contains(value));
        }
        edit.Set(LayoutFile::Filters, "A", "X = 'a ; b'");
        QCOMPARE(edit.Text(), QString("[FILTRI]\nA=X = 'a ; b'\n"));
    }

    /// What is suggested counts for nothing, and comes once.
    void Suggests() {
        LayoutEdit edit("[COLONNE]\nA.C=Z\n");
        for (int times = 0; times < 2; ++times) {
            edit.Suggest(LayoutFile::Columns, "A.B", "X", "simile");
            edit.Suggest(LayoutFile::Columns, "A.C", "Y", "uguale");
        }
        QCOMPARE(edit.Text(), QString("[COLONNE]\nA.C=Z\n;A.B=X ; simile\n"));
        const QTemporaryDir folder;
        const QString path = folder.filePath("Prova.ini");
        sources::WriteLayoutFile(path, edit.Text());
        QCOMPARE(LayoutFile::Read(path)->Entries(LayoutFile::Columns).size(), size_t(1));
    }
};

QUADRIX_TEST(LayoutEditTest)
#include "test_layoutEdit.moc"
