#include "sources/tableFile.h"
#include "sql/errors.h"
#include "sql/mod_ovTools.h"
#include "tests/support/files.h"
#include "tests/support/QuadrixTest.h"

#include <QTemporaryDir>
#include <xlsxwriter.h>

/// Tables that are written for people and come back from them.
class TestTableFile : public QObject {
    Q_OBJECT

private slots:
    void ComesBackAsItWas_data();
    void ComesBackAsItWas();
    void WritesOverItsOwnAlone_data();
    void WritesOverItsOwnAlone();
    void WhatPeopleMakeOfIt_data();
    void WhatPeopleMakeOfIt();
    void WhatExcelMakesOfIt();

private:
    QTemporaryDir m_folder;
};

void TestTableFile::ComesBackAsItWas_data() {
    QTest::addColumn<QString>("name");
    QTest::newRow("csv") << "a.csv";
    QTest::newRow("xlsx") << "a.xlsx";
}

void TestTableFile::ComesBackAsItWas() {
    QFETCH(QString, name);
    const QString path = m_folder.filePath(name);
    const QStringList columns{"Codice", "Note; \"altro\"", "Valore", "Data", "Vuota"};
    const auto file = sources::TableWriter::Create(path, "Scarti: [1]", columns);
    file->AddRow({"00012", "=1+1\r\nè, \"qui\"\t;", 12.5, QDate(2026, 3, 5), QVariant()});
    file->AddRow({"", "", QVariant(), QVariant(), QVariant()});
    file->AddRow({" x ", "-", 12345678901234567LL, -3, true});
    file->Close();
    const sources::TableOfFile table = sources::ReadTable(path);
    QCOMPARE(table.columns, columns);
    QCOMPARE(table.rows.size(), 2U);
    QCOMPARE(table.rows[0].values, QStringList({"00012", "=1+1\r\nè, \"qui\"\t;", "12.5", "2026-03-05", ""}));
    QCOMPARE(table.rows[1].values, QStringList({" x ", "-", "12345678901234567", "-3", "True"}));
}

void TestTableFile::WritesOverItsOwnAlone_data() {
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<bool>("isWritten");
    QTest::newRow("the same kind of table") << QByteArray("A;B;X\r\n1;2;3\r\n") << true;
    QTest::newRow("an empty file") << QByteArray() << true;
    QTest::newRow("somebody's table") << QByteArray("A;C\r\n1;2\r\n") << false;
    QTest::newRow("no table") << QByteArray("SQLite format 3\0more", 20) << false;
}

void TestTableFile::WritesOverItsOwnAlone() {
    QFETCH(QByteArray, bytes);
    QFETCH(bool, isWritten);
    const QString path = m_folder.filePath("there.csv");
    WriteFile(path, bytes);
    try {
        sources::TableWriter::Create(path, "x", {"A", "B"})->Close();
        QVERIFY(isWritten);
    } catch (const ImportError& error) {
        QVERIFY2(!isWritten && error.Message().contains(path), qPrintable(error.Message()));
        QCOMPARE(ReadFile(path), bytes);
    }
}

void TestTableFile::WhatPeopleMakeOfIt_data() {
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QString>("values"); ///< or the error
    QTest::newRow("Excel's own separator, cp1252") << QByteArray("A;B\r\nperch\xE9;2\r\n") << "2:perché|2";
    QTest::newRow("comma, UTF-8") << QByteArray("A,B\nperch\xC3\xA9,2\n") << "2:perché|2";
    QTest::newRow("a line too short") << QByteArray("A;B;C\n1\n\n;;\n4;5;6\n") << "2:1||/5:4|5|6";
    QTest::newRow("a line too long") << QByteArray("A;B\n1;2;3\n")
                                     << "file '%1': riga 2: ha 3 valori, le colonne sono 2";
    QTest::newRow("nothing") << QByteArray() << "file '%1': è vuoto";
}

void TestTableFile::WhatPeopleMakeOfIt() {
    QFETCH(QByteArray, bytes);
    QFETCH(QString, values);
    const QString path = m_folder.filePath("people.csv");
    WriteFile(path, bytes);
    QStringList rows;
    try {
        for (const auto& row : sources::ReadTable(path).rows) {
            rows.append(QString::number(row.number) + u':' + row.values.join(u'|'));
        }
    } catch (const ImportError& error) {
        rows = {error.Message()};
    }
    QCOMPARE(rows.join(u'/'), values.contains(QLatin1String("%1")) ? values.arg(path) : values);
}

/// What is typed into a cell comes back as it shows.
void TestTableFile::WhatExcelMakesOfIt() {
    const QString path = m_folder.filePath("excel.xlsx");
    lxw_workbook* workbook = workbook_new(path.toUtf8().constData());
    lxw_worksheet* sheet = workbook_add_worksheet(workbook, "F");
    const auto write = [&](int column, double number, const char* shown) {
        lxw_format* format = workbook_add_format(workbook);
        format_set_num_format(format, shown);
        worksheet_write_string(sheet, 0, static_cast<lxw_col_t>(column), QByteArray(1, char('A' + column)), nullptr);
        worksheet_write_number(sheet, 1, static_cast<lxw_col_t>(column), number, format);
    };
    write(0, 45350, "dd/mm/yyyy");
    write(1, 123, "00000");
    write(2, 0.5, "hh:mm");
    write(3, 12.5, "0.00");
    workbook_close(workbook);
    const QStringList values = sources::ReadTable(path).rows.front().values;
    QCOMPARE(mod_ovTools::ReadDate(values.front()), QDate(2024, 2, 28).startOfDay());
    QCOMPARE(values.mid(1).join('|'), "00123|12:00:00|12.5");
}

QUADRIX_TEST(TestTableFile)
#include "test_tableFile.moc"
