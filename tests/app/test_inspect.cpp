#include "adapters/registry.h"
#include "app/connectSource.h"
#include "app/importFlow.h"
#include "app/inspect_draft.h"
#include "app/inspect_fields.h"
#include "app/inspect_further.h"
#include "app/inspect_suggest.h"
#include "core/Schema.h"
#include "sources/tableFile.h"
#include "tests/app/gescom.h"
#include "tests/support/files.h"
#include "tests/support/foreignSource.h"
#include "tests/support/QuadrixTest.h"
#include "tests/support/rows.h"
#include "tests/support/TestTarget.h"

#include <QScopeGuard>
#include <QTest>

using namespace inspection;

namespace {

/// A company, and the foreign source behind the settings.
class ForeignTarget : public TestTarget {
public:
    ForeignTarget() {
        MakeForeignSource(Folder.filePath("sorgente.sqlite"));
        Get().Config.SetAppConfig("IMPORT", "Databasename", "sorgente.sqlite");
    }
    ~ForeignTarget() { CloseSource(Get()); }
    ForeignTarget(const ForeignTarget&) = delete;
    ForeignTarget& operator=(const ForeignTarget&) = delete;

    Inspection Inspected() {
        OpenToLook(Get(), Gescom());
        return inspection::Inspect(Get(), Gescom());
    }
    void WriteLayout(const QString& text) {
        QDir().mkpath(Folder.filePath("Tracciati"));
        WriteFile(Folder.filePath("Tracciati/Gescom.ini"), text.toUtf8());
    }
};

const Table& TableOf(const Inspection& inspection, const QString& name) {
    return *std::find_if(inspection.tables.begin(), inspection.tables.end(),
                         [&name](const Table& table) { return table.name == name; });
}

const Column& ColumnOf(const Table& table, const QString& name) {
    return *std::find_if(table.columns.begin(), table.columns.end(),
                         [&name](const Column& column) { return column.name == name; });
}

/// "NAME (ground)" of each suggestion.
QStringList Texts(const std::vector<Suggestion>& suggestions) {
    QStringList texts;
    for (const Suggestion& each : suggestions) {
        texts.append(each.name + " (" + GroundText(each) + ')');
    }
    return texts;
}

/// A table that reads those columns, of a source table with columns "NAME: value, value".
Table Made(const QStringList& reads, const QStringList& own, const QStringList& feeds = {}) {
    Table table{.name = "ANAGRAFICA", .inSource = "ALTRA"};
    for (const QString& name : reads) {
        table.columns.push_back({.name = name, .feeds = feeds});
    }
    for (const QString& each : own) {
        table.own.push_back({each.section(": ", 0, 0), {}, each.section(": ", 1).split(", ", Qt::SkipEmptyParts), 0});
    }
    return table;
}

} // namespace

/// A source beside what an origin reads.
class TestInspect : public QObject {
    Q_OBJECT

private slots:
    void WritesWhatIsAdded_data() {
        Columns<QString, QString, QString>("typed", "rule", "value");
        Row("a column", " NOME ", "", "ARCLFR.NOME");
        Row("with a rule", "NOME", " First(3) ", "ARCLFR.NOME -> First(3)");
        Row("that has the mark of a rule", "A->B", "", "ARCLFR.[A->B]");
        Row("a constant, which has no rule", " Costante: 1 ", "First(3)", "costante:1");
    }
    void WritesWhatIsAdded() {
        QFETCH(QString, typed);
        QFETCH(QString, rule);
        QTEST(AddedValue("ARCLFR", typed, rule), "value");
    }

    /// A line that cannot be read hides no other.
    void ShowsTheRestOfATable() {
        TestTarget target;
        WriteFile(target.Folder.filePath("ART_MAG.csv"), "_ARCOD;_ARDES\nA;x\nB\nC;y\n");
        target.Get().Config.SetAppConfig("IMPORT", "Databasename", target.Folder.path());
        const contract::Origin& mexal = *registry::Find("Mexal");
        QVERIFY(OpenToLook(target.Get(), mexal));
        const Inspection seen = inspection::Inspect(target.Get(), mexal);
        CloseSource(target.Get());
        const Table& table = TableOf(seen, "ART_MAG");
        QCOMPARE(table.trouble, QString());
        QCOMPARE(table.rows, 3);
        QCOMPARE(table.Own("_ARDES")->values, (QStringList{"x", "(non si legge)", "y"}));
    }

    void SuggestsColumns_data() {
        Columns<QStringList, QStringList, QStringList, QString>("reads", "own", "feeds", "told");
        const auto row = [](const char* name, const QStringList& reads, const QStringList& own, const char* told,
                            const QStringList& feeds = {}) { Row(name, reads, own, feeds, told); };
        row("equal before alias", {"RAGSOC"}, {"DENOMINAZIONE", "RAG_SOC"},
            "RAG_SOC (uguale)|DENOMINAZIONE (alias: ragione sociale)");
        row("written out", {"CodArticolo"}, {"COD_ART"}, "COD_ART (abbreviato)");
        row("English", {"PartitaIva"}, {"VAT_NUMBER"}, "VAT_NUMBER (alias: partita IVA)");
        row("by what it feeds", {"XYZ1"}, {"COMUNE", "VIA"}, "COMUNE (alias: città)", {"CON_TRO.COCIT"});
        row("behind what all names share", {"ANDESCRI", "ANINDIR", "ANCAP", "ANTEL", "ANCITTA"}, {"STREET"},
            "|STREET (alias: indirizzo)|||");
        row("by its values", {"PIVA"}, {"F1: a, b, c", "F2: 00743110157, 01234567897, 07643520567"},
            "F2 (valori: partita IVA)");
        row("two values are chance", {"PIVA"}, {"F2: 00743110157, 01234567897"}, "");
        row("values against the name", {"PIVA"}, {"VAT: ordinaria, ridotta, esente"}, "");
        row("a date", {"DATA"}, {"F3: 2024-01-31, 05/03/2024, 20240101"}, "F3 (valori: data)");
        row("a telephone", {"TELEFONO"}, {"F4: 0461/123456, +39 335 1234567, 045 998877"},
            "F4 (valori: numero di telefono)");
        row("one of the source for one alone", {"NOME", "RAGSOC"}, {"DENOMINAZIONE"},
            "DENOMINAZIONE (alias: ragione sociale)|");
        row("similar comes last", {"NOTE"}, {"NOTEX", "ANNOTAZIONI"}, "ANNOTAZIONI (alias: note)|NOTEX (simile)");
    }
    void SuggestsColumns() {
        QFETCH(const QStringList, reads);
        QFETCH(const QStringList, own);
        QFETCH(const QStringList, feeds);
        QFETCH(QString, told);
        Table table = Made(reads, own, feeds);
        SuggestColumns(table, {}, {});
        QStringList all;
        for (const Column& column : table.columns) {
            all.append(Texts(column.suggestions).join('|'));
        }
        QCOMPARE(all.join('|'), told);
    }

    /// A column that is gone and one that has come since the last import are one when more than the type speaks for it.
    void ProposesWhatTookItsPlace_data() {
        Columns<QString, QString, QString>("own", "type", "told");
        Row("place", "CODICE X9 FAX", "TEXT", "X9 (nuova, al posto di NOTA: stesso tipo, stesso posto)");
        Row("name", "CODICE FAX NOTA2", "TEXT", "NOTA2 (nuova, al posto di NOTA: stesso tipo, nome simile)");
        Row("both", "CODICE NOTA2 FAX", "TEXT",
            "NOTA2 (nuova, al posto di NOTA: stesso tipo, stesso posto, nome simile)");
        Row("another type", "CODICE X9 FAX", "INTEGER", "");
        Row("type alone", "CODICE FAX X9", "TEXT", "");
        Row("still there", "CODICE NOTA X9 FAX", "TEXT", "");
    }
    void ProposesWhatTookItsPlace() {
        QFETCH(const QString, own);
        QFETCH(QString, type);
        QFETCH(QString, told);
        Table table = Made({"SEGNALAZIONE"}, own.split(' '));
        table.columns.front().called = "NOTA";
        for (OwnColumn& column : table.own) {
            column.type = type;
        }
        table.lastTime = {{"CODICE", "TEXT"}, {"NOTA", "TEXT"}, {"FAX", "TEXT"}};
        SuggestColumns(table, {}, {});
        QCOMPARE(Texts(table.columns.front().suggestions).join('|'), told);
    }

    void TakesWhatIsEqualAlone() {
        Inspection looked;
        looked.tables.push_back(Made({"RAGSOC", "NOTE", "XYZ"}, {"Rag_Soc", "ANNOTAZIONI"}));
        looked.tables.front().isFound = true;
        SuggestColumns(looked.tables.front(), {}, {});
        QCOMPARE(EqualNames(looked), (QMap<QString, QString>{{"ANAGRAFICA.RAGSOC", "Rag_Soc"}}));
        QCOMPARE(ProposedNames(looked).size(), 2);
        looked.tables.front().isFound = false; // its table is not taken either
        QVERIFY(EqualNames(looked).isEmpty());
    }

    /// What the other layout files of the installation say comes first, whatever else is near.
    void RemembersWhatWasUsed() {
        const QTemporaryDir folder;
        WriteFile(folder.filePath("Altra.ini"), "[TABELLE]\nCLIENTI=ANA\n[COLONNE]\nCLIENTI.PIVA=CAMPO_9\n");
        WriteFile(folder.filePath("Rotto.ini"), "[ALTRO]\n");
        const NamesBefore before = ReadNamesBefore(folder.path());
        Table table = Made({"PIVA"}, {"PARTITA_IVA", "CAMPO_9"});
        SuggestColumns(table, before, {});
        QCOMPARE(Texts(table.columns.front().suggestions),
                 QStringList({"CAMPO_9 (usato prima)", "PARTITA_IVA (abbreviato)"}));
        table.name = "CLIENTI";
        QCOMPARE(Texts(TablesFor(table, {{"ANA", {}}, {"CLIENTE", {}}}, before)).first(), QString("ANA (usato prima)"));
    }

    /// A field that feeds no column of Quadrix suggests nothing.
    void KnowsTheTarget() {
        for (const schema::Table& table : schema::Tables()) {
            for (const schema::Column& column : table.columns) {
                m_columns.insert(table.name + '.' + column.name);
            }
        }
        for (const Field& field : Fields()) {
            for (const QString& target : field.targets) {
                QVERIFY2(m_columns.contains(target), qPrintable(target));
            }
        }
    }

    void ShowsTheSource() {
        ForeignTarget target;
        const Inspection looked = target.Inspected();
        QVERIFY(!IsComplete(looked));
        QVERIFY(looked.others.contains("PARAMETRI"));
        const Table& people = TableOf(looked, "ARCLFR");
        QVERIFY(!people.isFound);
        QCOMPARE(people.suggestions.front().name, QString("SOGGETTI"));
        QVERIFY(people.procedures.contains("ImportContropartiGescom"));
        QCOMPARE(people.rows, qint64(3));
        const OwnColumn& name = *people.Own("denominazione");
        QCOMPARE(name.values.first(), QString("Ferramenta L'Incudine"));
        QCOMPARE(people.Own("ANNOTAZIONI")->filled, 1);
        QCOMPARE(Texts(ColumnOf(people, "IVACLFOR").suggestions).first(), QString("CAMPO7 (valori: partita IVA)"));
        QVERIFY(ColumnOf(people, "CODCLFOR").isNecessary);
        QVERIFY(!ColumnOf(people, "NOTCLFOR").isNecessary);
        QCOMPARE(Texts(ColumnOf(TableOf(looked, "ARDEST"), "CODCLFOR").suggestions).first(),
                 QString("COD_SOGGETTO (alias: così in un'altra tabella)"));
        QVERIFY(!QFileInfo::exists(looked.layoutFile));
    }

    /// A source that nobody has named before, fitted by what is proposed and imported without a loss.
    void FitsAForeignSource() {
        ForeignTarget target;
        target.Inspected();
        QCOMPARE(TakeNames(target.Get(), Gescom(), {{"ARCLFR", "SOGGETTI"}, {"ARCLFR.FLAGCLFR", "TIPO_SOGGETTO"}}),
                 QString());
        QCOMPARE(TakeNames(target.Get(), Gescom(), ProposedNames(target.Inspected())), QString());
        const Inspection fitted = target.Inspected();
        for (const char* name : {"ARCLFR", "ARDEST", "VETTORI"}) {
            const Table& table = TableOf(fitted, name);
            QVERIFY2(table.isFound, name);
            for (const Column& column : table.columns) {
                QVERIFY2(!column.isNecessary || !column.IsMissing(), qPrintable(table.name + '.' + column.name));
            }
        }
        QCOMPARE(TableOf(fitted, "ARCLFR").rows, qint64(3));
        CloseSource(target.Get());
        ImportRequest request;
        request.choice = {"Prova Uno S.r.l.", "X01", &Gescom(), ErrorAction::Abort};
        request.confirmed = true;
        request.reset = false;
        QCOMPARE(RunImport(target.Get(), request), FlowOutcome::Done);
        QCOMPARE(target.Rows("SELECT COCGE, COFGE, CORAS, COIVA, COCIT FROM X01_CON_TRO ORDER BY CORAS"),
                 QStringList({"NULL|7|Acciaierie Nord S.p.A.|07643520567|Verona",
                              "2|NULL|Consorzio del legno|01234567897|Torino", "NULL|NULL|Corriere Veloce|NULL|Padova",
                              "1|NULL|Ferramenta L'Incudine|00743110157|Trento"}));
        QCOMPARE(target.Rows("SELECT SERAS, SECIT FROM X01_CON_SED"), QStringList("Magazzino|Rovereto"));
        QCOMPARE(target.Value("SELECT COUNT(*) FROM X01_NUM_TEL"), QString("4"));
    }

    /// The draft counts for nothing before somebody takes its ";" away, and leaves what stands there.
    void DraftsTheLayout() {
        ForeignTarget target;
        target.WriteLayout("; di Carlo\n[TABELLE]\nARCLFR=SOGGETTI\n[COLONNE]\nARCLFR.NOTCLFOR= ; non serve\n");
        WriteDraft(target.Inspected());
        const QString text = QString::fromUtf8(ReadFile(target.Folder.filePath("Tracciati/Gescom.ini")));
        QVERIFY(text.startsWith("; di Carlo\n[TABELLE]\nARCLFR=SOGGETTI\n"));
        QVERIFY(text.contains("\nARCLFR.NOTCLFOR= ; non serve\n"));
        QVERIFY(!text.contains(";ARCLFR.NOTCLFOR"));
        QVERIFY(text.contains("\n;ARCLFR.IVACLFOR=CAMPO7 ; necessaria, valori: partita IVA"));
        QVERIFY(text.contains("\n;VETTORI=TRASPORTATORI ; alias: vettori"));
        const Inspection again = target.Inspected();
        QVERIFY(!TableOf(again, "VETTORI").isFound);
        QVERIFY(TableOf(again, "ARCLFR").isFound);
        QVERIFY(ColumnOf(TableOf(again, "ARCLFR"), "NOTCLFOR").isMarkedMissing);
        QCOMPARE(Draft(again, text), text);
    }

    /// A change that would stop the next import leaves the file as it was.
    void RefusesWhatWouldStopAnImport_data() {
        Columns<QString, QString, QString, QString>("section", "key", "value", "told");
        Row("name that is not there", "COLONNE", "ARCLFR.NOTCLFOR", "NOTA9", "non ha la colonna 'NOTA9'");
        Row("condition", "FILTRI", "ARCLFR", "SOCIETA9 = '01'", "non accetta la condizione");
        Row("target that is written", "AGGIUNTE", "CON_TRO.COCIT", "ARCLFR.VIA", "viene già da");
        Row("rule", "AGGIUNTE", "CON_TRO.CONOM", "ARCLFR.VIA -> Frist(3)", "la regola 'Frist' non c'è");
        Row("text that no file holds", "FILTRI", "ARCLFR", "SOCIETA = '01' ; nota", "non si può scrivere");
        Row("all well", "FILTRI", "ARCLFR", "SOCIETA = '01'", "");
    }
    void RefusesWhatWouldStopAnImport() {
        QFETCH(const QString, section);
        QFETCH(const QString, key);
        QFETCH(const QString, value);
        QFETCH(const QString, told);
        ForeignTarget target;
        const QString path = target.Folder.filePath("Tracciati/Gescom.ini");
        target.WriteLayout("[TABELLE]\nARCLFR=SOGGETTI\n[COLONNE]\nARCLFR.LOCCLFOR=COMUNE\n");
        const QByteArray before = ReadFile(path);
        target.Inspected();
        const QString trouble =
            ChangeLayout(target.Get(), Gescom(), [&](sources::LayoutEdit& edit) { edit.Set(section, key, value); });
        QVERIFY2(told.isEmpty() ? trouble.isEmpty() : trouble.contains(told), qPrintable(trouble));
        QCOMPARE(ReadFile(path) == before, !told.isEmpty());
    }

    /// Of a file that is chosen for each import names are taken for the table alone that it is, and what the layout
    /// says of other files stops no change but one of theirs.
    void TakesNamesForTheChosenFile_data() {
        Columns<QString, QString, QString, QString, QString, QString>("origin", "file", "headers", "layout", "taken",
                                                                      "other");
        const auto row = [](const char* name, const char* origin, const char* file, const char* headers,
                            const char* layout, const char* taken,
                            const char* other) { Row(name, origin, file, headers, layout, taken, other); };
        row("parties", "Lamina", "a.csv", "CODICE;TIPO;Ragione Sociale;C.A.P.;SCONTO;E-mail", "",
            "CONTROPARTI.CAP=[C.A.P.]\nCONTROPARTI.EMAIL=E-mail\nCONTROPARTI.RAGIONE_SOCIALE=Ragione Sociale\n",
            "SEDI");
        row("branches, which know most columns of parties too", "Lamina", "a.csv",
            "CLIENTE;PROGRESSIVO;TIPO;RAGIONE_SOCIALE;INDIRIZZO;C.A.P.;CITTA;NAZIONE;NOTE", "", "SEDI.CAP=[C.A.P.]\n",
            "CONTROPARTI");
        row("branches, beside names of parties", "Lamina", "a.csv", "CLIENTE;PROGRESSIVO;TIPO;Indi rizzo;C.A.P.",
            "CONTROPARTI.CAP=[C.A.P.]\nCONTROPARTI.EMAIL=E-mail\n", "SEDI.CAP=[C.A.P.]\nSEDI.INDIRIZZO=Indi rizzo\n",
            "CONTROPARTI");
        row("a sheet of customers", "Excel", "a.xlsx", "Co.Cge;co ras;CORA2;COIVA;COFIS;ar des", "",
            "CLIENTI.COCGE=[Co.Cge]\nCLIENTI.CORAS=co ras\n", "ARTICOLI");
        row("a sheet of articles, beside names of customers", "Excel", "a.xlsx", "CDART;ar des",
            "CLIENTI.CORAS=Ragione\n", "ARTICOLI.ARDES=ar des\n", "CLIENTI");
    }
    void TakesNamesForTheChosenFile() {
        QFETCH(const QString, origin);
        QFETCH(const QString, file);
        QFETCH(const QString, headers);
        QFETCH(QString, layout);
        QFETCH(const QString, taken);
        QFETCH(const QString, other);
        TestTarget target;
        const auto close = qScopeGuard([&target] { CloseSource(target.Get()); });
        const QString path = target.Folder.filePath(file);
        const auto table = sources::TableWriter::Create(path, "Foglio1", headers.split(';'));
        for (const char* const value : {"1", "2", "3"}) {
            table->AddRow(QVector<QVariant>(headers.count(';') + 1, value));
        }
        table->Close();
        target.Person.Files = {path};
        const QString layoutFile = target.Folder.filePath("Tracciati/" + origin + ".ini");
        layout.prepend("[COLONNE]\n");
        QDir().mkpath(target.Folder.filePath("Tracciati"));
        WriteFile(layoutFile, QString(layout).replace("\n", "\r\n").toUtf8());
        const contract::Origin& of = *registry::Find(origin);
        QVERIFY(OpenToLook(target.Get(), of));
        const Inspection looked = inspection::Inspect(target.Get(), of);
        const QString known = Draft(looked, {});
        QVERIFY2(!known.contains(";" + other + '.'), qPrintable(known));
        QCOMPARE(TakeNames(target.Get(), of, EqualNames(looked)), QString());
        QCOMPARE(QString::fromUtf8(ReadFile(layoutFile)), layout + taken);
        const QString trouble = SetFilter(target.Get(), of, other, "NESSUNA = 1");
        QVERIFY2(trouble.contains("non accetta la condizione") || trouble.contains("non ha la colonna"),
                 qPrintable(trouble));
        QCOMPARE(QString::fromUtf8(ReadFile(layoutFile)), layout + taken);
    }

    void TellsALayoutThatIsWrong() {
        ForeignTarget target;
        target.WriteLayout("[TABELLE]\nARCLFR=SOGGETTI\nARCXXX=Y\n");
        const Inspection looked = target.Inspected();
        QVERIFY2(looked.layoutTrouble.contains("riga 3") && looked.layoutTrouble.contains("ARCXXX"),
                 qPrintable(looked.layoutTrouble));
        QVERIFY(!TableOf(looked, "ARCLFR").isFound);
    }

private:
    QSet<QString> m_columns;
};

QUADRIX_TEST(TestInspect)
#include "test_inspect.moc"
