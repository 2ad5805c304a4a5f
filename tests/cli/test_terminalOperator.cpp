#include "cli/TerminalOperator.h"
#include "tests/support/errorOf.h"
#include "tests/support/QuadrixTest.h"
#include "tests/support/rows.h"

#include <QTest>

namespace {

/// A terminal on which a script is typed.
class FakeTerminal {
public:
    TerminalStreams Streams(bool person, bool draws) {
        TerminalStreams streams;
        streams.print = [this](const QString& line) { Lines.append(line); };
        streams.complain = [this](const QString& line) { Complaints.append(line); };
        if (draws) {
            streams.draw = [this](const QString& line) { Drawn.append(line); };
        }
        if (person) {
            streams.ask = [this](const QString& prompt, bool echo) -> std::optional<QString> {
                Prompts.append(prompt + (echo ? "" : "(hidden)"));
                return Typed.isEmpty() ? std::nullopt : std::optional(Typed.takeFirst());
            };
        }
        streams.interrupted = [this] { return Interrupted; };
        streams.seconds = [this] { return Seconds; };
        return streams;
    }

    QStringList Lines;
    QStringList Complaints;
    QStringList Drawn;
    QStringList Prompts;
    QStringList Typed;
    bool Interrupted = false;
    double Seconds = 0;
};

} // namespace

class TestTerminalOperator : public QObject {
    Q_OBJECT

private slots:
    void answersFromTheCommandLine() {
        FakeTerminal fake;
        TerminalOperator person(fake.Streams(true, false), {{true, false}, {"testo"}, {"/a.xls"}});
        QCOMPARE(person.Ask("Prima?", Question::Plain, "Azienda: X01"), Answer::Yes);
        QCOMPARE(person.Ask("Seconda?"), Answer::No);
        QCOMPARE(person.Input("Nome:", "", "altro"), std::optional<QString>("testo"));
        QCOMPARE(person.OpenFile("File:", ""), QString("/a.xls"));
        QCOMPARE(fake.Lines, QStringList({"Azienda: X01", "Prima? sì", "Seconda? no"}));
        QVERIFY(fake.Prompts.isEmpty());
        fake.Typed = {"sì"};
        QCOMPARE(person.Ask("Terza?"), Answer::Yes); // the answers of the command line are used up
    }

    void asksAPerson_data() {
        Columns<QStringList, Answer>("typed", "answer");
        Row("s", QStringList{"s"}, Answer::Yes);
        Row("SI", QStringList{" SI "}, Answer::Yes);
        Row("n", QStringList{"n"}, Answer::No);
        Row("asked again", QStringList{"", "forse", "no"}, Answer::No);
        Row("end of the input", QStringList{"forse"}, Answer::GivenUp);
    }
    void asksAPerson() {
        QFETCH(QStringList, typed);
        FakeTerminal fake;
        fake.Typed = typed;
        TerminalOperator person(fake.Streams(true, false), {});
        QTEST(person.Ask("Vuoi?"), "answer");
        QCOMPARE(fake.Prompts.size(), typed.size() + (person.GaveUp() ? 1 : 0));
        QCOMPARE(person.GaveUp(), typed == QStringList{"forse"});
    }

    void failsWithoutAnAnswer() {
        FakeTerminal fake;
        TerminalOperator person(fake.Streams(false, false), {});
        const auto error = ErrorOf<ImportError>([&] { person.Ask("Vuoi?"); });
        QVERIFY(error && error->Message().contains("\"Vuoi?\"") && error->Message().contains("--answer"));
        QVERIFY(ErrorOf<ImportError>([&] { person.Input("Nome:", "", "x"); })->Message().contains("--input"));
        QVERIFY(ErrorOf<ImportError>([&] { person.OpenFile("File:", ""); })->Message().contains("--file"));
    }

    void hidesPasswords() {
        FakeTerminal fake;
        TerminalOperator person(fake.Streams(true, false), {{}, {"segreta"}, {}});
        QCOMPARE(person.Input("Password:", "", ""), std::optional<QString>("segreta"));
        QVERIFY2(fake.Lines.isEmpty(), "an answer of the command line is not shown");
        fake.Typed = {"x", ""};
        QCOMPARE(person.Input("Database Password:", "", ""), std::optional<QString>("x"));
        QCOMPARE(person.Input("Nome:", "", "predefinito"), std::optional<QString>("predefinito"));
        QCOMPARE(person.Input("Nome:", "", "predefinito"), std::nullopt);
        QCOMPARE(fake.Prompts[0], QString("Database Password: (hidden)"));
        QCOMPARE(fake.Prompts[1], QString("Nome: [predefinito] "));
    }

    void choosesOnErrors_data() {
        Columns<QStringList, QString, ErrorAnswer>("typed", "row", "answer");
        Row("retry", QStringList{"R"}, "riga 7", ErrorAnswer::Retry);
        Row("ignore", QStringList{"ignora"}, "riga 7", ErrorAnswer::Ignore);
        Row("ignore all", QStringList{"s"}, "riga 7", ErrorAnswer::IgnoreAll);
        Row("abort", QStringList{"x", "t"}, "riga 7", ErrorAnswer::Abort);
        Row("gives up", QStringList{}, "riga 7", ErrorAnswer::Abort);
        Row("outside a row nothing is ignored", QStringList{"i", "s", "r"}, "", ErrorAnswer::Retry);
    }
    void choosesOnErrors() {
        QFETCH(QStringList, typed);
        QFETCH(QString, row);
        FakeTerminal fake;
        fake.Typed = typed;
        ErrorEntry entry;
        entry.message = "tabella piena";
        entry.rowKey = row;
        TerminalOperator person(fake.Streams(true, false), {});
        QTEST(person.ChooseOnError(entry), "answer");
        QVERIFY(fake.Complaints.join(' ').contains("tabella piena"));
        // Where nobody can choose, the error is told all the same: it is not told again.
        fake.Complaints.clear();
        TerminalOperator nobody(fake.Streams(false, false), {});
        QCOMPARE(nobody.ChooseOnError(entry), ErrorAnswer::Abort);
        QVERIFY(fake.Complaints.join(' ').contains("tabella piena"));
    }

    void reportsErrorsInFull() {
        FakeTerminal fake;
        TerminalOperator person(fake.Streams(false, true), {});
        ErrorEntry entry;
        entry.module = "modImport_Arca2000";
        entry.procedure = "ImportContropartiArca2000";
        entry.message = "scrittura fallita";
        entry.statement = "INSERT INTO X";
        entry.engineMessage = "disk full [SQLITE_FULL]";
        entry.rowKey = "codice 'C1'";
        person.ReportError(entry);
        QCOMPARE(fake.Complaints,
                 QStringList{"Errore (modImport_Arca2000.ImportContropartiArca2000): scrittura fallita\n"
                             "  Riga: codice 'C1'\n  Database: disk full [SQLITE_FULL]\n  Istruzione: INSERT INTO X"});
        QCOMPARE(fake.Drawn, QStringList{""}); // the line of a progress makes room
    }

    void drawsProgress() {
        FakeTerminal fake;
        TerminalOperator person(fake.Streams(false, true), {});
        auto progress = person.ShowProgress();
        progress->SetStep("Controparti");
        progress->SetMax(200);
        for (int row = 1; row <= 100; ++row) {
            fake.Seconds = row * 0.25;
            progress->SetValue(static_cast<float>(row));
            progress->SetMax(200); // too soon to be drawn again
        }
        QCOMPARE(fake.Drawn.size(), 100);
        QCOMPARE(fake.Drawn.last(),
                 QString("Importazione in corso Controparti... [############------------] 100 di 200, "
                         "4,0 al secondo, ancora 25 s"));
        QVERIFY(fake.Lines.isEmpty());
        QVERIFY(!progress->Cancel());
        fake.Interrupted = true;
        QVERIFY(progress->Cancel());
        progress.reset();
        QCOMPARE(fake.Drawn.last(), QString());
        QCOMPARE(fake.Lines, QStringList{"Importazione in corso Controparti... 100 di 200"});
    }

    void printsProgressNowAndThen() {
        FakeTerminal fake;
        TerminalOperator person(fake.Streams(false, false), {});
        auto progress = person.ShowProgress();
        progress->SetStep("Articoli");
        progress->SetMax(30);
        for (int row = 1; row <= 30; ++row) {
            fake.Seconds = row;
            progress->SetValue(static_cast<float>(row));
        }
        progress.reset();
        QCOMPARE(fake.Lines.size(), 3);
        QVERIFY(fake.Lines[0].startsWith("Importazione in corso Articoli... 10 di 30"));
        QVERIFY(fake.Lines[2].startsWith("Importazione in corso Articoli... 30 di 30"));
    }
};

QUADRIX_TEST(TestTerminalOperator)
#include "test_terminalOperator.moc"
