#include "adapters/registry.h"
#include "app/importFlow.h"
#include "tests/app/MergePair.h"
#include "tests/support/QuadrixTest.h"

#include <QTest>

using namespace modMain;

namespace {

const QStringList Counts{"Controparti: 5", "  PARTITA IVA: 1", "  CODICE FISCALE: 1",
                         "  RAGIONE SOCIALE: 1 (per sola ragione sociale: da verificare)", "  NUOVO!!!!: 2"};
const QString Review = Counts.join('\n') +
                       "\nRIFERIMENTO SENZA CONTROPARTE (1): X01_DOC_VEN, colonna DTCON: '000999' resta com'è, nessuna "
                       "controparte di X01 ha questo codice; in X02 non c'è\nI riferimenti di X01 Prova Uno S.r.l. si "
                       "aggiornano.\n\nFondere le controparti di X01 "
                       "Prova Uno S.r.l. in quelle di X02 Prova Due S.p.A.?";

FlowOutcome Press(MergePair& pair, bool dryRun = false) {
    ImportRequest request;
    request.choice = {"Prova Due S.p.A.", {}, registry::Find("Kordel NetSuite"), ErrorAction::Abort};
    request.button = contract::Button::Disegni;
    request.dryRun = dryRun;
    return RunImport(pair.target.Get(), request);
}

} // namespace

/// A merge behind the button of its origin.
class TestMergeButton : public QObject {
    Q_OBJECT

private slots:
    /// Behind the button of its origin: the questions, and an account that adds up.
    void button_data() {
        Columns<bool>("dryRun");
        Row("merge", false);
        Row("trial", true);
    }
    void button() {
        QFETCH(bool, dryRun);
        MergePair pair;
        FillAll(pair);
        const QStringList before = Contents(pair.target);
        pair.target.Person.AnswerTo = {{"Fondere le Controparti di due Aziende?", true},
                                       {"Aggiornare i Riferimenti alle tabelle esistenti?", true}};
        pair.target.Person.Inputs = {QString("X01"), QString("X02")};
        pair.target.Person.Otherwise = true; // the matches
        QCOMPARE(Press(pair, dryRun), FlowOutcome::Done);
        QCOMPARE(
            pair.target.Person.Events,
            QStringList({"? Fondere le Controparti di due Aziende? = si", "> Codice Azienda di Partenza:",
                         "> Codice Azienda di Destinazione:", "? Aggiornare i Riferimenti alle tabelle esistenti? = si",
                         "progress", "progress closed", "? " + Review + " = si", "progress", "progress closed",
                         "[i] Fusione completata correttamente!" +
                             QString(dryRun ? "\nEra una prova: il database resta com'era." : "")}));
        QCOMPARE(pair.target.Log("fusione.log").contains("Era una prova: il database resta com'era"), dryRun);
        QCOMPARE(pair.target.Person.Reviewed.at(2), QString("000003 Bianchi --> 000009 Bianchi (RAGIONE SOCIALE)"));
        QCOMPARE(pair.target.Person.Prompts.last().title, QString("Fusione Controparti"));
        QCOMPARE(pair.target.Person.Prompts.last().defaultText, QString("X02"));
        const RunResult& account = pair.target.Get().Results.last();
        QVERIFY(account.AddsUp());
        QCOMPARE(account.inserted, 2);
        QCOMPARE(account.skipped, 3);
        QCOMPARE(account.tables.value("CON_TRO").inserted, 2);
        QCOMPARE(account.details.mid(0, 5), Counts);
        QCOMPARE(account.details.last(), "Log della fusione: " + account.logFile);
        QVERIFY(QFile::exists(account.logFile));
        QCOMPARE(Contents(pair.target) == before, dryRun);
        QCOMPARE(pair.target.Value("SELECT COUNT(*) FROM SYS_FUS"), QString(dryRun ? "0" : "1"));
    }

    /// The matches are not shown when nothing can come of them.
    void buttonRefusesCopiesAfterAMergeOfTheReferences() {
        MergePair pair;
        FillAll(pair);
        QVERIFY(pair.Merge(true));
        pair.Add("X01", "000020", "Gialli");
        const QStringList before = Contents(pair.target);
        pair.target.Person.AnswerTo = {{"Fondere le Controparti di due Aziende?", true},
                                       {"Aggiornare i Riferimenti alle tabelle esistenti?", false}};
        pair.target.Person.Inputs = {QString("X01"), QString("X02")};
        QCOMPARE(Press(pair), FlowOutcome::Failed);
        QVERIFY2(pair.Error().contains("la prima: 000020 Gialli"), qPrintable(pair.Error()));
        QCOMPARE(pair.target.Get().Results.last().errors, QStringList(pair.Error()));
        QCOMPARE(Contents(pair.target), before);
    }

    /// Nothing is written when the operator gives up, wherever he does.
    void buttonGivenUp_data() {
        Columns<std::optional<QString>, QString, QString, QString>("to", "merged", "givenUp", "answeredNo");
        const std::optional<QString> to = "X02";
        Row("at a prompt", std::optional<QString>(), QString(), QString(), QString());
        Row("at the references", to, QString(), QString("Aggiornare i Riferimenti alle tabelle esistenti?"), QString());
        Row("at the matches", to, QString(), QString(), Review);
        Row("at the earlier merge", to, QString("X01"), QString(), QString("La fusione di X01"));
        Row("at that of the destination", to, QString("X02"), QString(), QString("La fusione di X02"));
    }
    void buttonGivenUp() {
        QFETCH(std::optional<QString>, to);
        QFETCH(QString, merged);
        QFETCH(QString, givenUp);
        QFETCH(QString, answeredNo);
        MergePair pair;
        FillAll(pair);
        pair.target.Person.GiveUpAt = {givenUp};
        if (!merged.isEmpty()) {
            pair.target.AddCompany("X03", "Prova Tre");
            QVERIFY(FusioneControparti(pair.target.Get(), merged, "X03", true));
        }
        const QStringList before = Contents(pair.target);
        pair.target.Person.Inputs = {QString("X01"), to};
        pair.target.Person.Answers = {true, true, false};
        pair.target.Person.Messages.clear();
        QCOMPARE(Press(pair), FlowOutcome::Cancelled);
        QVERIFY(pair.target.Person.Messages.isEmpty());
        QCOMPARE(Contents(pair.target), before);
        if (!answeredNo.isEmpty()) {
            const ScriptedOperator::Asked& asked = pair.target.Person.Questions.last();
            QVERIFY2(asked.question.startsWith(answeredNo), qPrintable(asked.question));
            QCOMPARE(asked.style, Question::ExclamationNo);
        }
    }
};

QUADRIX_TEST(TestMergeButton)
#include "test_mergeButton.moc"
