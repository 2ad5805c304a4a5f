#include "sources/layout/Layout.h"
#include "tests/sources/sourcesTest.h"
#include "tests/support/embedded.h"
#include "tests/support/QuadrixTest.h"
#include "tests/support/rows.h"

using namespace sourcesTest;

namespace {

const QString Source = R"(
CREATE TABLE TESTATE (ID INT, NUM_DOC VARCHAR(8), DATA VARCHAR(20), CLIENTE VARCHAR(8), Num VARCHAR(8));
INSERT INTO TESTATE VALUES (1, '7', '20240110 00:00:00', 'C1', 'altro');
INSERT INTO TESTATE VALUES (2, '8', '20240211 00:00:00', 'C2', 'altro');
CREATE TABLE Righe (ID INT, NR INT, QUANT REAL, DATA VARCHAR(8));
INSERT INTO Righe VALUES (1, 10, 2, 'x');
INSERT INTO Righe VALUES (1, 20, 3, 'y');
CREATE TABLE [ANA GRAFICA] (CODICE VARCHAR(8), [Rag. Soc] VARCHAR(20), TIPO VARCHAR(1));
INSERT INTO [ANA GRAFICA] VALUES ('C1', 'Rossi', 'C');
INSERT INTO [ANA GRAFICA] VALUES ('F1', 'Acciai', 'F');
)";

/// Orders and rows with other names, counterparties of two kinds in one table.
std::shared_ptr<sources::Layout> MakeLayout() {
    auto layout = std::make_shared<sources::Layout>();
    layout->Know("Ordini", {"Id", "Num", "Dat", "Cli", "Note"});
    layout->Know("Righe", {"Id", "Riga", "Qta", "Sconto"});
    layout->Know("Clienti", {"Cod", "Nome", "Fax"});
    layout->Know("Fornitori", {"Cod", "Nome"});
    layout->CallTable("ORDINI", "dbo.TESTATE");
    layout->CallColumn("Ordini", "Num", "NUM_DOC");
    layout->CallColumn("Ordini", "Dat", "DATA");
    layout->CallColumn("Ordini", "Cli", "Cliente");
    layout->CallColumn("Ordini", "Note", {});
    layout->CallColumn("Righe", "Riga", "NR");
    layout->CallColumn("Righe", "Qta", "QUANT");
    layout->CallColumn("Righe", "Sconto", {});
    layout->CallTable("Clienti", "[ANA GRAFICA]");
    layout->Filter("Clienti", "TIPO = 'C'");
    layout->CallColumn("Clienti", "Cod", "CODICE");
    layout->CallColumn("Clienti", "Nome", "Rag. Soc");
    layout->CallColumn("Clienti", "Fax", {});
    layout->CallTable("Fornitori", "[ANA GRAFICA]");
    layout->Filter("Fornitori", "TIPO = 'F'");
    layout->CallColumn("Fornitori", "Cod", "CODICE");
    return layout;
}

/// Columns and values of every row: "Num=7 Note=; Num=8 Note=".
QString Text(Recordset rows) {
    QStringList lines;
    for (; !rows.Eof(); rows.MoveNext()) {
        QStringList values;
        for (const QString& column : rows.Columns()) {
            values.append(column + '=' + rows.Value(column).toString());
        }
        lines.append(values.join(' '));
    }
    return lines.join("; ");
}

} // namespace

/// Queries in logical names are asked in the names of the source, and their rows have the logical names.
class LayoutTest : public QObject {
    Q_OBJECT

private:
    ovConnection m_source;
    QString m_asked;

private slots:
    void init() {
        OpenEmbedded(m_source).ExecuteScript(Source);
        m_source.Layout = MakeLayout();
        m_source.Trace = [this](const QString& statement) { m_asked = statement; };
    }
    void cleanup() {
        m_source.Layout.reset();
        m_source.Trace = {};
    }

    void QueriesAreSaidInTheNamesOfTheSource_data() {
        Columns<QString, QString, QString>("query", "asked", "rows");
        Row("table and columns", "SELECT Num, Cli FROM Ordini WHERE Num = '7'",
            "SELECT [NUM_DOC], [Cliente] FROM [TESTATE] Ordini WHERE [NUM_DOC] = '7'", "Num=7 Cli=C1");
        Row("literals and comments stay", "SELECT Num FROM Ordini /* Num */ WHERE Num <> 'Ordini.Num' AND Num = '8'",
            "SELECT [NUM_DOC] FROM [TESTATE] Ordini /* Num */ WHERE [NUM_DOC] <> 'Ordini.Num' AND [NUM_DOC] = '8'",
            "Num=8");
        Row("brackets and case", "select [num] from [ORDINI]\rORDER BY [NUM] desc",
            "select [NUM_DOC] from [TESTATE] [ORDINI]\rORDER BY [NUM_DOC] desc", "num=8; num=7");
        Row("all columns", "SELECT * FROM Ordini WHERE Id = 1", "SELECT * FROM [TESTATE] Ordini WHERE Id = 1",
            "ID=1 Num=7 Dat=20240110 00:00:00 Cli=C1 origine: Num=altro Note=");
        Row("a column that is not there", "SELECT Num, Note FROM Ordini WHERE Num = '7'",
            "SELECT [NUM_DOC], NULL FROM [TESTATE] Ordini WHERE [NUM_DOC] = '7'", "Num=7 Note=");
        Row("aliases",
            "SELECT T.Num AS N, R.Qta Quanto FROM Ordini T JOIN Righe AS R ON R.Id = T.Id ORDER BY N, R.Riga",
            "SELECT T.[NUM_DOC] AS N, R.[QUANT] Quanto FROM [TESTATE] T JOIN Righe AS R ON R.Id = T.Id ORDER BY N, "
            "R.[NR]",
            "N=7 Quanto=2; N=7 Quanto=3");
        Row("a column without a table goes to the one that has it",
            "SELECT Num, Riga, Dat FROM Ordini T INNER JOIN Righe R ON R.Id = T.Id WHERE Qta > 2",
            "SELECT T.[NUM_DOC], R.[NR], T.[DATA] FROM [TESTATE] T INNER JOIN Righe R ON R.Id = T.Id WHERE R.[QUANT] > "
            "2",
            "Num=7 Riga=20 Dat=20240110 00:00:00");
        Row("all of one table and some of the other",
            "SELECT T.*, R.Riga, R.Sconto FROM Ordini T JOIN Righe R ON R.Id = T.Id WHERE R.Riga = 10",
            "SELECT T.*, R.[NR], NULL FROM [TESTATE] T JOIN Righe R ON R.Id = T.Id WHERE R.[NR] = 10",
            "ID=1 Num=7 Dat=20240110 00:00:00 Cli=C1 origine: Num=altro Riga=10 Sconto= Note=");
        Row("all of both", "SELECT * FROM Ordini T, Righe R WHERE R.Id = T.Id AND R.Riga = 10",
            "SELECT * FROM [TESTATE] T, Righe R WHERE R.Id = T.Id AND R.[NR] = 10",
            "ID=1 Num=7 Dat=20240110 00:00:00 Cli=C1 origine: Num=altro ID=1 Riga=10 Qta=2 DATA=x Note= Sconto=");
        Row("table names before columns", "SELECT Ordini.Num, Righe.Riga FROM Ordini, Righe WHERE Righe.Id = Ordini.Id",
            "SELECT Ordini.[NUM_DOC], Righe.[NR] FROM [TESTATE] Ordini, Righe WHERE Righe.Id = Ordini.Id",
            "Num=7 Riga=10; Num=7 Riga=20");
        Row("functions, groups",
            "SELECT YEAR(Dat) AS Anno, COUNT(*) FROM Ordini GROUP BY YEAR(Dat) HAVING COUNT(*) > 1",
            "SELECT CAST(SUBSTR([DATA], 1, 4) AS INTEGER) AS Anno, COUNT(*) FROM [TESTATE] Ordini GROUP BY "
            "CAST(SUBSTR([DATA], 1, 4) AS INTEGER) HAVING COUNT(*) > 1",
            "Anno=2024 COUNT(*)=2");
        Row("distinct in a count", "SELECT COUNT(DISTINCT(Num)) FROM Ordini",
            "SELECT COUNT(DISTINCT([NUM_DOC])) FROM [TESTATE] Ordini", "COUNT(DISTINCT([NUM_DOC]))=2");
        Row("a query in the FROM",
            "SELECT U.Num, Quante FROM (SELECT Num, COUNT(*) AS Quante FROM Ordini GROUP BY Num) U",
            "SELECT U.Num, Quante FROM (SELECT Ordini.[NUM_DOC] AS [Num], COUNT(*) AS Quante FROM [TESTATE] Ordini "
            "GROUP "
            "BY Ordini.[NUM_DOC]) U",
            "Num=7 Quante=1; Num=8 Quante=1");
        Row("all columns of a query in the FROM",
            "SELECT U.Num, U.Note FROM (SELECT * FROM Ordini) U WHERE U.Num = '8'",
            "SELECT U.[NUM_DOC], NULL FROM (SELECT * FROM [TESTATE] Ordini) U WHERE U.[NUM_DOC] = '8'", "Num=8 Note=");
        Row("a query in a condition",
            "SELECT Num FROM Ordini T WHERE EXISTS (SELECT 1 FROM Righe WHERE Id = T.Id AND Cli = 'C1')",
            "SELECT [NUM_DOC] FROM [TESTATE] T WHERE EXISTS (SELECT 1 FROM Righe WHERE Id = T.Id AND T.[Cliente] = "
            "'C1')",
            "Num=7");
        Row("a filter", "SELECT Cod, Nome, Fax FROM Clienti",
            "SELECT [CODICE], [Rag. Soc], NULL FROM (SELECT * FROM [ANA GRAFICA] WHERE TIPO = 'C') Clienti",
            "Cod=C1 Nome=Rossi Fax=");
        Row("a filter behind a left join keeps the rows before it",
            "SELECT T.Num, C.Nome FROM Ordini T LEFT JOIN Clienti C ON C.Cod = T.Cli ORDER BY T.Num",
            "SELECT T.[NUM_DOC], C.[Rag. Soc] FROM [TESTATE] T LEFT JOIN (SELECT * FROM [ANA GRAFICA] WHERE TIPO = "
            "'C') "
            "C ON C.[CODICE] = T.[Cliente] ORDER BY T.[NUM_DOC]",
            "Num=7 Nome=Rossi; Num=8 Nome=");
        Row("a union", "SELECT Cod FROM Clienti UNION SELECT Cod FROM Fornitori ORDER BY Cod DESC",
            "SELECT [CODICE] AS [Cod] FROM (SELECT * FROM [ANA GRAFICA] WHERE TIPO = 'C') Clienti UNION SELECT "
            "[CODICE] AS "
            "[Cod] FROM (SELECT * FROM [ANA GRAFICA] WHERE TIPO = 'F') Fornitori ORDER BY Cod DESC",
            "Cod=F1; Cod=C1");
        Row("choices", "SELECT CASE WHEN Note IS NULL THEN Num ELSE Note END AS Testo FROM Ordini T ORDER BY Num DESC",
            "SELECT CASE WHEN NULL IS NULL THEN [NUM_DOC] ELSE NULL END AS Testo FROM [TESTATE] T ORDER BY [NUM_DOC] "
            "DESC",
            "Testo=8; Testo=7");
        Row("a table without a layout", "SELECT TIPO FROM [ANA GRAFICA] ORDER BY TIPO",
            "SELECT TIPO FROM [ANA GRAFICA] ORDER BY TIPO", "TIPO=C; TIPO=F");
    }
    void QueriesAreSaidInTheNamesOfTheSource() {
        QFETCH(const QString, query);
        for (int times = 0; times < 2; ++times) { // the second time the form of the query is known
            QTEST(Text(m_source.ExecuteWC(query)), "rows");
            QTEST(m_asked, "asked");
        }
    }

    /// What is remembered is the form of a query, not its values.
    void LiteralsAreThoseOfTheQuery() {
        for (const QString& number : QStringList{"7", "8", "it's"}) {
            QString text = number;
            text.replace('\'', "''");
            const QString rows =
                Text(m_source.ExecuteWC("SELECT Num FROM Ordini WHERE Num = '" + text + "' AND Id < 10"));
            QCOMPARE(rows, number.size() == 1 ? "Num=" + number : QString());
        }
    }

    void WhatCannotBeSaidIsAnError_data() {
        Columns<QString, QStringList>("query", "told");
        Row("missing in a condition", "SELECT Num FROM Ordini WHERE Note <> ''", QStringList{"'Ordini.Note'", "manca"});
        Row("missing in an order", "SELECT Num FROM Ordini T ORDER BY T.Note", QStringList{"'Ordini.Note'"});
        Row("missing in a join", "SELECT T.Num FROM Ordini T JOIN Righe R ON R.Sconto = T.Id",
            QStringList{"'Righe.Sconto'"});
        Row("of two tables", "SELECT Nome FROM Clienti C JOIN Fornitori F ON F.Cod = C.Cod",
            QStringList{"'Nome'", "C o di F"});
    }
    void WhatCannotBeSaidIsAnError() {
        QFETCH(const QString, query);
        QFETCH(const QStringList, told);
        QVERIFY(Holds(ErrorTextOf([&] { m_source.ExecuteWC(query); }), told));
    }

    void TheSourceIsDescribedInLogicalNames() {
        QStringList columns;
        for (const ColumnInfo& column : m_source.GetColumns("Clienti")) {
            columns.append(column.name);
        }
        QCOMPARE(columns, QStringList({"Cod", "Nome", "TIPO"}));
        QVERIFY(m_source.GetTables().contains("Clienti") && !m_source.GetTables().contains("TESTATE"));
        QVERIFY(m_source.GetColumns("Nessuna").isEmpty());
    }

    /// Signs that names are written between may stand in one.
    void ATableMayHaveBracketsInItsName() {
        m_source.Execute(R"(CREATE TABLE "Sconti [1]" (Cod VARCHAR(8)))");
        m_source.Execute(R"(INSERT INTO "Sconti [1]" VALUES ('S1'))");
        auto& layout = static_cast<sources::Layout&>(*m_source.Layout);
        for (const char* written : {"Sconti [1]", "[Sconti [1]]"}) {
            layout.CallTable("Sconti", written);
            QCOMPARE(Text(m_source.ExecuteWC("SELECT S.Cod FROM Sconti S")), QString("Cod=S1"));
        }
    }

    /// Two logical columns may stand in one of the source.
    void OneColumnServesTwoNames() {
        MakeLayout();
        static_cast<sources::Layout&>(*m_source.Layout).CallColumn("Clienti", "Nome2", "rag. soc");
        QCOMPARE(Text(m_source.ExecuteWC("SELECT * FROM Clienti")),
                 QString("Cod=C1 Nome=Rossi TIPO=C Fax= Nome2=Rossi"));
        // Also that of one that is read by its own name.
        static_cast<sources::Layout&>(*m_source.Layout).CallColumn("Righe", "Altra", "id");
        QCOMPARE(Text(m_source.ExecuteWC("SELECT * FROM Righe WHERE Riga = 10")),
                 QString("ID=1 Riga=10 Qta=2 DATA=x Altra=1 Sconto="));
    }

    /// A column that the layout adds is read also where a query lists its columns.
    void AddedColumnsAreRead() {
        static_cast<sources::Layout&>(*m_source.Layout).ReadAlso("Righe", "DATA");
        QCOMPARE(
            Text(m_source.ExecuteWC("SELECT T.Num, R.Riga FROM Ordini T JOIN Righe R ON R.Id = T.Id ORDER BY Riga")),
            QString("Num=7 Riga=10 DATA=x; Num=7 Riga=20 DATA=y"));
        QCOMPARE(Text(m_source.ExecuteWC("SELECT COUNT(*) AS N FROM Righe")), QString("N=2"));
        QCOMPARE(Text(m_source.ExecuteWC("SELECT DISTINCT Id FROM Righe")), QString("Id=1"));
    }
};

QUADRIX_TEST(LayoutTest)
#include "test_layout.moc"
