#include "adapters/contract/run/Origin.h"
#include "adapters/contract/run/SourceLayout.h"
#include "tests/adapters/Fixture.h"
#include "tests/support/embedded.h"
#include "tests/support/QuadrixTest.h"
#include "tests/support/rows.h"

#include <QRegularExpression>
#include <QTest>

#include <algorithm>

namespace {

/// The tables that an origin reads.
std::vector<contract::NeededTables::Table> TablesOf(const contract::Origin& origin) {
    contract::NeededTables tables;
    for (const contract::Procedure& procedure : origin.procedures) {
        if (contract::SourceOf(origin, procedure) != &origin) {
            continue;
        }
        for (const auto& table : contract::NeededTables::Read(procedure.needs).Tables()) {
            tables.Add(table.name, table.necessary, table.optional);
        }
    }
    return tables.Tables();
}

/// Every table and every second column under another name, and the layout file that says so.
struct OtherNames {
    Fixture::Names names;
    QString layout;
};

OtherNames OtherNamesOf(const contract::Origin& origin) {
    OtherNames other;
    QString tables;
    QString columns;
    int number = 0;
    for (const auto& table : TablesOf(origin)) {
        const QString name = QString("tab%1").arg(++number);
        other.names.insert(table.name, name);
        tables += table.name + '=' + name + '\n';
        const QStringList all = table.necessary + table.optional;
        for (qsizetype i = 0; i < all.size(); i += 2) {
            const QString column = QString("c%1_%2").arg(number).arg(i);
            other.names.insert(table.name + '.' + all[i], column);
            columns += table.name + '.' + all[i] + '=' + column + '\n';
        }
    }
    other.layout = "[TABELLE]\n" + tables + "[COLONNE]\n" + columns;
    return other;
}

/// The columns of an origin that its procedures can do without, each marked as not there.
QString WithoutOptional(const contract::Origin& origin) {
    QString layout = "[COLONNE]\n";
    for (const auto& table : TablesOf(origin)) {
        for (const QString& column : table.optional) {
            layout += table.name + '.' + column + "=\n";
        }
    }
    return layout;
}

/// What reasons tell of the names that the source has itself.
const QRegularExpression ToldOwnNames("; nella sorgente [^\n]* si chiama '[^'\n]*'");

/// Changes the source of a fixture that is a SQLite file.
void Change(Fixture& fixture, const QString& statement) {
    ovConnection source;
    OpenEmbedded(source, fixture.Target().Folder.filePath("source.sqlite")).Execute(statement);
}

/// The error that a procedure of Tessera ends with under a layout; empty when it ends well.
QString EndOf(const QString& layout, const QString& line = "ImportContropartiTessera",
              const Fixture::Names& names = {}) {
    Fixture fixture(FixtureFolder("modImport_Tessera"), *FixtureOrigins().value("modImport_Tessera"),
                    TestTarget::On::Embedded, {}, names);
    if (!layout.isEmpty()) {
        fixture.WriteLayout(layout);
    }
    try {
        fixture.RunLine(line);
    } catch (const ImportError& error) { // of the opening
        return error.Message();
    }
    return fixture.Results().last().errors.join('\n');
}

} // namespace

/// What holds with a layout file as it does without one.
class TestLayouts : public QObject {
    Q_OBJECT

private slots:
    void OtherNamesGiveTheSameRows_data() {
        Columns<QString>("module");
        for (const auto& [module, origin] : FixtureOrigins().asKeyValueRange()) {
            const auto& procedures = origin->procedures;
            const bool opensIt = std::all_of(procedures.begin(), procedures.end(), [](const auto& procedure) {
                return procedure.opensSource || procedure.needs.reads.empty();
            });
            const bool isChosen = origin->source.prepare.place == contract::Place::Chosen;
            const bool hasOwnNames = origin->source.kind != "File .dat";
            // A source that a procedure opens by itself has no layout; what a chosen file calls its columns, by letters
            // or by a header, the fixture does not change; those of fixed width have the names that the module gives.
            if (opensIt && !isChosen && hasOwnNames) {
                Row(qPrintable(module), module);
            }
        }
    }
    void OtherNamesGiveTheSameRows() {
        QFETCH(const QString, module);
        const contract::Origin& origin = *FixtureOrigins().value(module);
        const OtherNames other = OtherNamesOf(origin);
        Fixture fixture(FixtureFolder(module), origin, TestTarget::On::Embedded, {}, other.names);
        fixture.WriteLayout(other.layout);
        fixture.Run();
        QString outcome = fixture.Outcome();
        outcome.remove(ToldOwnNames);
        const QString difference = fixture.Compare("expected.txt", outcome);
        QVERIFY2(difference.isEmpty(), qPrintable(difference + '\n' + other.layout));
    }

    /// All of it at once: other names, a column that is not there, and the rows of another company among those of ours.
    void AnotherInstallationGivesTheSameRows() {
        const contract::Origin& origin = *FixtureOrigins().value("modImport_Tessera");
        OtherNames other = OtherNamesOf(origin);
        other.names.remove("CliFor.Tel2");
        other.layout.remove(QRegularExpression("CliFor\\.Tel2=[^\n]*\n"));
        Fixture fixture(FixtureFolder("modImport_Tessera"), origin, TestTarget::On::Embedded, {}, other.names);
        const QString table = other.names.value("CliFor");
        for (const char* change :
             {"ALTER TABLE %1 DROP COLUMN Tel2", "ALTER TABLE %1 ADD COLUMN DITTA VARCHAR(2) DEFAULT '01'",
              "INSERT INTO %1 SELECT * FROM %1", "UPDATE %1 SET DITTA = '02' WHERE _rowid_ > 6"}) {
            Change(fixture, QString(change).arg(table));
        }
        fixture.WriteLayout(other.layout + "CliFor.Tel2=\n[FILTRI]\nCliFor=DITTA = '01'\n");
        fixture.Run();
        QString outcome = fixture.Outcome();
        outcome.remove(ToldOwnNames);
        QVERIFY(outcome.contains("COLONNE CHE MANCANO NELL'ORIGINE: CliFor.Tel2"));
        QVERIFY(outcome.contains("Filtro del tracciato: della tabella 'CliFor' si leggono le righe con DITTA = '01'"));
        outcome.remove(QRegularExpression("-- log\n[^\n]*COLONNE CHE MANCANO[^\n]*\n(?=== )"));
        outcome.remove(QRegularExpression("[^\n]*(COLONNE CHE MANCANO|Filtro del tracciato)[^\n]*\n"));
        const QString difference = fixture.Compare("expected.txt", outcome);
        QVERIFY2(difference.isEmpty(), qPrintable(difference));
    }

    /// As headers of sheets have.
    void AColumnMayHavePointsInItsName() {
        const QString module = "modImport_NubrioExcel";
        Fixture fixture(FixtureFolder(module), *FixtureOrigins().value(module));
        fixture.WriteLayout("[COLONNE]\nNUBRIO.U.M.=\n[AGGIUNTE]\nART_ICO.AROBS=NUBRIO.Rev.\n");
        fixture.Run();
        const QString outcome = fixture.Outcome();
        QVERIFY2(outcome.contains("COLONNE CHE MANCANO NELL'ORIGINE: NUBRIO.U.M.") && outcome.contains("AROBS=2"),
                 qPrintable(outcome));
    }

    void AnOptionalColumnCanBeMissing_data() { OtherNamesGiveTheSameRows_data(); }
    /// What a procedure calls optional it neither looks up by, nor joins, nor sorts by.
    void AnOptionalColumnCanBeMissing() {
        QFETCH(const QString, module);
        const contract::Origin& origin = *FixtureOrigins().value(module);
        Fixture fixture(FixtureFolder(module), origin);
        fixture.WriteLayout(WithoutOptional(origin));
        fixture.Run();
        QVERIFY(!fixture.Results().isEmpty());
        for (const RunResult& result : fixture.Results()) {
            const QString end = result.procedure + ": " + result.errors.join('\n');
            for (const char* refusal : {"non può fare a meno", "non c'è", "Non è stato scritto nulla"}) {
                QVERIFY2(!end.contains(refusal), qPrintable(end));
            }
        }
    }

    void ColumnsThatAreLeftOutAreToldOnce() {
        const contract::Origin& origin = *FixtureOrigins().value("modImport_Tessera");
        Fixture fixture(FixtureFolder("modImport_Tessera"), origin);
        Change(fixture, "ALTER TABLE CliFor DROP COLUMN Note");
        fixture.WriteLayout("[COLONNE]\nCliFor.Web=\n");
        fixture.RunLine("ImportContropartiTessera");
        const RunResult& result = fixture.Results().last();
        QVERIFY2(result.outcome == RunResult::Outcome::Done, qPrintable(result.errors.join('\n')));
        const auto& kinds = result.notes.kinds;
        const auto told = std::find_if(kinds.begin(), kinds.end(), [](const Notes::Kind& kind) {
            return kind.name == "COLONNE CHE MANCANO NELL'ORIGINE";
        });
        QVERIFY(told != kinds.end() && told->count == 1);
        QCOMPARE(
            told->first,
            QString("CliFor.Note, CliFor.Web; non valorizzate: CON_TRO.CONOT; con le altre colonne: IND_WEB.WBIND"));
        QCOMPARE(fixture.Target().Value("SELECT COUNT(*) FROM X01_CON_TRO WHERE CONOT > ''"), QString("0"));
    }

    /// SQLite files that other programs make hold days as "2024-02-01", in columns of any declaration.
    void DaysOfASqliteFileMayHaveDashes_data() {
        Columns<QString, QString>("module", "columns");
        Row("documents since a day", "modImport_Solution", "DOC_TES.DT_DATA");
        Row("articles since a day", "modImport_Vision", "ARTICOLI.DATA_INS, ARTICOLI.DATA_MOD");
        Row("price of today", "modImport_Esatto", "ListiniRighe.DataInizio");
        Row("price from and to", "modImport_AdHoc", "LIS_TINI.LIDATATT, LIS_TINI.LIDATDIS");
    }
    void DaysOfASqliteFileMayHaveDashes() {
        QFETCH(const QString, module);
        QFETCH(const QString, columns);
        for (const char* type : {"TEXT", "DATETIME"}) {
            const auto dashed = [&](ovConnection& source) {
                for (const QString& each : columns.split(", ")) {
                    const QString table = each.section('.', 0, 0);
                    const QString column = each.section('.', 1);
                    source.Execute(QString("ALTER TABLE %1 RENAME COLUMN %2 TO OLD_DAY").arg(table, column));
                    source.Execute(QString("ALTER TABLE %1 ADD COLUMN %2 %3").arg(table, column, type));
                    source.Execute(QString("UPDATE %1 SET %2 = SUBSTR(OLD_DAY, 1, 4) || '-' || SUBSTR(OLD_DAY, 5, 2) "
                                           "|| '-' || SUBSTR(OLD_DAY, 7)")
                                       .arg(table, column));
                    source.Execute(QString("ALTER TABLE %1 DROP COLUMN OLD_DAY").arg(table));
                }
            };
            Fixture fixture(FixtureFolder(module), *FixtureOrigins().value(module), TestTarget::On::Embedded, dashed);
            fixture.Run();
            const QString difference = fixture.Compare("expected.txt", fixture.Outcome());
            QVERIFY2(difference.isEmpty(), qPrintable(difference));
        }
    }

    void ABlankDayIsNone_data() {
        Columns<QString, QString, QString>("module", "line", "change");
        Row("from", "modImport_Esatto", "ImportArticoliE", "UPDATE ListiniRighe SET DataInizio = %1");
        Row("from and to", "modImport_AdHoc", "ImportArticoliAhr", "UPDATE LIS_TINI SET LIDATATT = %1, LIDATDIS = %1");
    }
    /// A SQLite file that was made of sheets has blanks for Null.
    void ABlankDayIsNone() {
        QFETCH(const QString, module);
        QFETCH(const QString, line);
        QFETCH(const QString, change);
        Fixture fixture(FixtureFolder(module), *FixtureOrigins().value(module));
        QList<QStringList> prices;
        for (const char* none : {"NULL", "' '"}) {
            Change(fixture, change.arg(none));
            fixture.RunLine(line);
            prices.append(fixture.Target().Rows("SELECT CDART, ARPRZ FROM X01_ART_ICO WHERE ARPRZ > 0 ORDER BY CDART"));
        }
        QVERIFY(!prices.first().isEmpty());
        QCOMPARE(prices.last(), prices.first());
    }

    void ADayThatCannotBeComparedIsRefused() {
        const QString module = "modImport_Esatto";
        Fixture fixture(FixtureFolder(module), *FixtureOrigins().value(module));
        Change(fixture, "UPDATE ListiniRighe SET DataInizio = '24/12/2023' WHERE PrezzoLis = 90");
        fixture.RunLine("ImportArticoliE");
        const QString end = fixture.Results().last().errors.join('\n');
        QVERIFY2(end.contains("Non è stato scritto nulla") &&
                     end.contains("origine: colonna 'ListiniRighe.DataInizio': '24/12/2023' non è un giorno"),
                 qPrintable(end));
    }

    void RowsOfAnotherCompanyAreNotRead() {
        const contract::Origin& origin = *FixtureOrigins().value("modImport_Tessera");
        Fixture fixture(FixtureFolder("modImport_Tessera"), origin);
        Change(fixture, "ALTER TABLE CliFor ADD COLUMN DITTA VARCHAR(2) DEFAULT '01'");
        Change(fixture, "UPDATE CliFor SET DITTA = '02' WHERE IdCliFor = 12");
        fixture.WriteLayout("[FILTRI]\nclifor=DITTA = '01' ; l'altra no\n");
        fixture.RunLine("ImportContropartiTessera");
        QCOMPARE(fixture.Results().last().sourceRows, qint64(5));
        QCOMPARE(fixture.Target().Value("SELECT COUNT(*) FROM X01_CON_TRO WHERE COFGE = 'F0020'"), QString("0"));
    }

    void TheFileAddsColumns() {
        const contract::Origin& origin = *FixtureOrigins().value("modImport_Tessera");
        Fixture fixture(FixtureFolder("modImport_Tessera"), origin);
        fixture.WriteLayout("[COLONNE]\nCliFor.Cell=Cell\n[AGGIUNTE]\nCON_TRO.CONOM=CliFor.Citta -> FirstUpper(4)\n"
                            "CON_TRO.COBLK=costante:S\nCON_TRO.COOBS=CliFor.[Via -> n.] -> Testo\n");
        Change(fixture, "ALTER TABLE CliFor ADD COLUMN [Via -> n.] VARCHAR(9) DEFAULT 'Piazza'");
        fixture.RunLine("ImportContropartiTessera");
        QCOMPARE(fixture.Results().last().errors, QStringList());
        QCOMPARE(fixture.Target().Rows("SELECT CONOM, COBLK, COOBS FROM X01_CON_TRO WHERE COCGE = '00000123'"),
                 QStringList("RIVA|true|Piazza"));
    }

    /// One row stands for several: which of them would give the column.
    void AHeadReadByItsKeyTakesConstantsAlone() {
        const contract::Origin& origin = *FixtureOrigins().value("modImport_Gescom");
        Fixture fixture(FixtureFolder("modImport_Gescom"), origin);
        const QString line = fixture.Lines().filter("ImportDistint").constFirst();
        fixture.WriteLayout("[AGGIUNTE]\nDIS_BAS.DBOBS=DISBAS.PADISBAS\n");
        QVERIFY_THROWS_EXCEPTION(ImportError, fixture.RunLine(line));
        fixture.WriteLayout("[AGGIUNTE]\nDIS_BAS.DBOBS=costante:x\n");
        fixture.RunLine(line);
        QCOMPARE(fixture.Target().Value("SELECT COUNT(*) FROM X01_DIS_BAS WHERE DBOBS IS NULL"), QString("0"));
    }

    void AChangedSourceIsTold() {
        const contract::Origin& origin = *FixtureOrigins().value("modImport_Tessera");
        Fixture fixture(FixtureFolder("modImport_Tessera"), origin);
        const auto told = [&fixture] {
            fixture.RunLine("ImportContropartiTessera");
            QStringList lines;
            for (const Notes::Kind& kind : fixture.Results().last().notes.kinds) {
                lines += kind.name.startsWith("ORIGINE CAMBIATA") ? QStringList(kind.first) : QStringList();
            }
            return lines.join('|');
        };
        QCOMPARE(told(), QString());
        Change(fixture, "ALTER TABLE CliFor ADD COLUMN Cig VARCHAR(10)");
        Change(fixture, "ALTER TABLE CliFor DROP COLUMN Web");
        QCOMPARE(told(), QString("CliFor: in più Cig; in meno Web"));
        fixture.WriteLayout("[COLONNE]\nCliFor.Web=Cig\n"); // what it is called is no change of the source
        QCOMPARE(told(), QString());
        Change(fixture, "ALTER TABLE CliFor DROP COLUMN Cig");
        Change(fixture, "ALTER TABLE CliFor ADD COLUMN Cig INTEGER");
        QCOMPARE(told(), QString("CliFor: di altro tipo Cig (INTEGER, prima VARCHAR(10))"));
        const auto retype = [&fixture](const QString& type) {
            Change(fixture, "ALTER TABLE CliFor DROP COLUMN Cig");
            Change(fixture, "ALTER TABLE CliFor ADD COLUMN Cig " + type);
        };
        retype({}); // as one of a sheet without any value has it
        QCOMPARE(told(), QString());
        retype("DATE");
        QCOMPARE(told(), QString("CliFor: di altro tipo Cig (DATE, prima INTEGER)"));
    }

    void WhatFitsNothingIsAnError_data() {
        Columns<QString, QString>("layout", "told");
        Row("section", "[TABELE]\n", "riga 1: '[TABELE]': sezione sconosciuta");
        Row("no section", "CliFor=X\n", "riga 1: 'CliFor=X': non sta in una sezione");
        Row("twice", "[TABELLE]\nCliFor=A\n\nCLIFOR=B\n", "riga 4, sezione [TABELLE]: 'CLIFOR': c'è già alla riga 2");
        Row("table", "[TABELLE]\nCli_For=A\n",
            "riga 2, sezione [TABELLE]: 'Cli_For': l'origine non legge nessuna tabella 'Cli_For' (c'è: uguale "
            "'CliFor'");
        Row("column", "[COLONNE]\nCliFor.CodiceCliFor=A\n",
            "della tabella 'CliFor' non si legge nessuna colonna 'CodiceCliFor' (c'è: abbreviato 'CodCliFor'");
        Row("table of the source", "[TABELLE]\nCliFor=CLIFORN\n",
            "l'origine non ha la tabella 'CLIFORN' (c'è: abbreviato 'CliFor'");
        Row("column of the source", "[COLONNE]\nCliFor.Note=Annotazioni\n",
            "la tabella 'CliFor' dell'origine non ha la colonna 'Annotazioni'");
        Row("condition that ends early", "[FILTRI]\nCliFor=FlgCli = 1)\n", "la condizione non si legge da ')'");
        Row("open text", "[FILTRI]\nCliFor=CodNaz = 'IT\n", "la condizione non si legge da ''IT'");
        Row("condition on no column", "[FILTRI]\nCliFor=Ditta = 1\n",
            "l'origine non accetta la condizione 'Ditta = 1'");
        Row("target", "[AGGIUNTE]\nCON_TRO.COXXX=CliFor.Note\n", "Quadrix non ha la colonna 'CON_TRO.COXXX'");
        Row("target that is written", "[AGGIUNTE]\nCON_TRO.CONOT=CliFor.Citta\n", "viene già da 'CliFor.Note'");
        Row("key", "[AGGIUNTE]\nCON_TRO.CDCON=CliFor.Citta\n", "'CDCON' è la chiave");
        Row("rule", "[AGGIUNTE]\nCON_TRO.CONOM=CliFor.Citta -> Frist(3)\n",
            "la regola 'Frist' non c'è: forse 'Is' o 'First'?");
        Row("arguments", "[AGGIUNTE]\nCON_TRO.CONOM=CliFor.Citta -> First\n",
            "la regola 'First' vuole 1 argomenti, non 0");
        Row("column that is added", "[AGGIUNTE]\nCON_TRO.CONOM=CliFor.Nome\n", "non ha la colonna 'Nome'");
        Row("constant", "[AGGIUNTE]\nCON_TRO.COSC1=costante:molto\n", "'molto' non è un numero");
        Row("yes or no", "[AGGIUNTE]\nCON_TRO.COBLK=costante:forse\n", "'forse' non è né un sì");
        Row("written with others", "[AGGIUNTE]\nART_FOR.AFLOR=costante:5\n",
            "le righe di 'ART_FOR' si scrivono insieme a quelle di un'altra tabella");
        Row("nothing writes it", "[AGGIUNTE]\nPIA_CON.PCDES=CliFor.Note\n", "l'origine non scrive 'PIA_CON'");
        Row("necessary, but marked", "[COLONNE]\nCliFor.RagSoc=\n",
            "origine: colonna 'CliFor.RagSoc' (segnata come mancante nel tracciato): è necessaria. Indicare in "
            "[COLONNE]");
    }
    void WhatFitsNothingIsAnError() {
        QFETCH(const QString, layout);
        QFETCH(const QString, told);
        const QString end = EndOf(layout);
        QVERIFY2(end.contains(told), qPrintable(end));
    }

    /// One message names all that is missing, with what the source has in its place.
    void WithoutTheFileAllThatIsMissingIsTold() {
        const QString end = EndOf({}, "ImportContropartiTessera",
                                  {{"Iva", "Aliquote"}, {"CliFor.RagSoc", "RAG_SOC"}, {"CliFor.Citta", "Località"}});
        QCOMPARE(end, QString("Non è stato scritto nulla. Mancano:\n"
                              "origine: colonna 'CliFor.RagSoc' (c'è: uguale 'RAG_SOC')\n"
                              "origine: tabella 'Iva'\n"
                              "Mancano, facoltative:\n"
                              "origine: colonna 'CliFor.Citta'"));
    }
};

QUADRIX_TEST(TestLayouts)
#include "test_layouts.moc"
