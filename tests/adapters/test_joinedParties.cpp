#include "adapters/contract/kinds/Counterparties.h"
#include "adapters/contract/map/joinedParty.h"
#include "adapters/contract/map/lookups.h"
#include "adapters/origins/Mexal/modImport_Mexal.h"
#include "tests/adapters/Trial.h"
#include "tests/support/QuadrixTest.h"
#include "tests/support/rows.h"

#include <QTest>

using namespace contract;
using namespace contract::rules;

namespace {

const char* const Vat = "01234567890";

/// Customers and suppliers by the first letter of their code.
class PartiesTrial : public Trial {
public:
    PartiesTrial()
        : Trial("CREATE TABLE ANAG (RIGA INT, CODICE VARCHAR(8), NOME VARCHAR(20), IVA VARCHAR(20), ANN VARCHAR(1), "
                "BLOC VARCHAR(1), PAG VARCHAR(4), LIS VARCHAR(6), TEL VARCHAR(30), MAIL VARCHAR(60), RIF VARCHAR(20), "
                "SC1 VARCHAR(6), SC2 VARCHAR(6))") {}

    /// @param marks "A": cancelled, "B": blocked
    void Source(const QString& code, const QString& marks = {}, const QString& vatNumber = Vat) {
        ++m_row;
        Get().Source->Execute(
            QStringLiteral(
                "INSERT INTO ANAG VALUES (%1, '%2', 'Rossi %2', '%3', '%4', '%5', 'P%2', 'L', '', '', '', '', "
                "'')")
                .arg(QString::number(m_row), code, vatNumber, marks.contains('A') ? "S" : "N",
                     marks.contains('B') ? "S" : "N"));
    }
    /// Of the row that came last.
    void Discounts(const QString& first, const QString& second) {
        Get().Source->Execute(QStringLiteral("UPDATE ANAG SET SC1 = '%1', SC2 = '%2' WHERE RIGA = %3")
                                  .arg(first, second, QString::number(m_row)));
    }
    void Change(const QString& code, const QString& changes) {
        Get().Source->Execute("UPDATE ANAG SET " + changes + " WHERE CODICE = '" + code + '\'');
    }
    /// @return the kinds of lines that the log has about the run
    QStringList Import(bool reset = false, PartyWriting writing = PartyWriting::Imported, const QString& code = {}) {
        const Counterparties parties{
            .frame = FrameNamed("ImportAnag"),
            .source = {.table = "ANAG", .key = "CODICE", .order = "RIGA"},
            .roles = ByPrefix("CODICE", {.customer = {"C"}, .supplier = {"F"}}),
            .name = "NOME",
            .vatNumber = "IVA",
            .lines = {{"CORAS", "NOME", Text()},
                      {"COIVA", "IVA", NotBlank(Text())},
                      {"COANN", "ANN", Flag()},
                      {"COBLK", "BLOC", Flag()},
                      ByRole("COMOP", "COMOA", "PAG", Text()),
                      ByRole("COLSC", "COLSF", "LIS", Text()),
                      ByRole("COSC1", "COSF1", "SC1", NotBlank(RoundedTo(2))),
                      ByRole("COSC2", "COSF2", "SC2", NotBlank(RoundedTo(2)))},
            .numbers = {.office = "TEL", .mail = "MAIL"},
            .contacts = {{.lines = {{"RFNOM", "RIF", Text()}}, .numbers = {}}},
            .writing = writing,
        };
        ProcedureOf(std::nullopt, parties).run(Get(), code, reset);
        QStringList kinds;
        for (const Notes::Kind& kind : Get().Results.last().notes.kinds) {
            kinds.append(kind.name);
        }
        kinds.sort();
        return kinds;
    }
    QString Party(const QString& column, const QString& code) {
        return LookUp(Get(), "CON_TRO", column, code, "CDCON");
    }
    QString One(const QString& query) { return Rows(query).join(';'); }

private:
    int m_row = 0;
};

} // namespace

/// Counterparties that several rows of the source are, and those that are imported again.
class TestJoinedParties : public QObject {
    Q_OBJECT

private slots:
    /// Whatever row came first: by each of the codes documents find the counterparty, which is out of force only where
    /// all rows are.
    void SeveralRows_data() {
        Columns<QStringList, QString, QStringList>("rows", "party", "kinds");
        const QString united = "CONTROPARTI UNITE";
        const QString cancelled = "ANNULLATA SOLO IN PARTE";
        Row("two in force", QStringList{"C1", "C2"}, "C2|NULL|PC2|false|false", QStringList{united});
        Row("the first is cancelled", QStringList{"C1 A", "C2"}, "C2|NULL|PC2|false|false",
            QStringList{cancelled, united});
        Row("the second is cancelled", QStringList{"C1", "C2 A"}, "C1|NULL|PC1|false|false",
            QStringList{cancelled, united});
        Row("both are cancelled", QStringList{"C1 A", "C2 A"}, "C2|NULL|PC2|true|false", QStringList{united});
        Row("the third is in force", QStringList{"C1 A", "C2 A", "C3"}, "C3|NULL|PC3|false|false",
            QStringList{cancelled, united});
        Row("a cancelled customer who supplies", QStringList{"C1 A", "F1"}, "C1|F1|PC1|false|false",
            QStringList{cancelled, united});
        Row("a blocked customer who supplies", QStringList{"C1 B", "F1"}, "C1|F1|PC1|false|true",
            QStringList{"BLOCCATA SOLO IN PARTE", united});
    }
    void SeveralRows() {
        QFETCH(const QStringList, rows);
        PartiesTrial trial;
        for (const QString& row : rows) {
            trial.Source(row.section(' ', 0, 0), row.section(' ', 1));
        }
        const QString all = "SELECT COCGE, COFGE, COMOP, COANN, COBLK FROM X01_CON_TRO";
        QTEST(trial.Import(), "kinds");
        const QStringList kept = trial.Rows("SELECT TBNAM, TBFLD, TBOLD, TBNEW FROM SYS_IMP ORDER BY TBOLD");
        for (int run = 0; run < 2; ++run) { // another import says and changes nothing
            QTEST(trial.One(all), "party");
            for (const QString& row : rows) {
                const QString code = row.section(' ', 0, 0);
                QCOMPARE(trial.Party(code.startsWith('C') ? "COCGE" : "COFGE", code), QString("000001"));
            }
            QCOMPARE(trial.Party("COFGE", "C1"), QString());
            QCOMPARE(trial.Rows("SELECT TBNAM, TBFLD, TBOLD, TBNEW FROM SYS_IMP ORDER BY TBOLD"), kept);
            QCOMPARE(trial.Import(), QStringList());
        }
    }

    /// Discounts that one row of a counterparty gives are not taken away by another one that has none; they go when no
    /// row of the source has them any more.
    void DiscountsOfSeveralRows_data() {
        Columns<QStringList, QString, QString>("rows", "discounts", "cleared");
        Row("the second has none", QStringList{"C1 5 3", "C2"}, "5|3|NULL", "NULL|NULL|NULL");
        Row("the second has zeros", QStringList{"C1 5 3", "C2 0 0"}, "5|3|NULL", "0|0|NULL");
        Row("the first has none", QStringList{"C1", "C2 5 3"}, "5|3|NULL", "5|3|NULL");
        Row("the second has others", QStringList{"C1 5 3", "C2 10"}, "10|NULL|NULL", "10|NULL|NULL");
        Row("none has any", QStringList{"C1 0", "C2", "F1 0"}, "NULL|NULL|0", "NULL|NULL|0");
        Row("two rows of one code", QStringList{"C1 5 3", "C1"}, "5|3|NULL", "NULL|NULL|NULL");
        Row("a supplier who buys too", QStringList{"C1 5 3", "F1 7", "F2"}, "5|3|7", "NULL|NULL|7");
    }
    void DiscountsOfSeveralRows() {
        QFETCH(const QStringList, rows);
        PartiesTrial trial;
        for (const QString& row : rows) {
            trial.Source(row.section(' ', 0, 0));
            trial.Discounts(row.section(' ', 1, 1), row.section(' ', 2, 2));
        }
        const QString discounts = "SELECT COSC1, COSC2, COSF1 FROM X01_CON_TRO";
        for (int run = 0; run < 2; ++run) {
            trial.Import();
            QTEST(trial.One(discounts), "discounts");
        }
        const QString last = rows.last().section(' ', 0, 0);
        trial.Import(false, PartyWriting::Imported, last); // alone it does not tell what the others have
        if (last != "C1") {
            QTEST(trial.One(discounts), "discounts");
        }
        trial.Change("C1", "SC1 = '', SC2 = ''");
        trial.Import();
        QTEST(trial.One(discounts), "cleared");
    }

    /// What a stranger has of a role is not written over: a row gives the role that is lacking, and its own later.
    void StrangersKeepTheirRole_data() {
        Columns<QString, QString, QString, QString>("there", "first", "second", "told");
        Row("renamed since", QString(), "5|PC1", "5|PC1", "resta com'è");
        Row("somebody's word, another role", "COFOR = 1, COIVA = '11111111115'", "5|PC1", "4|P4",
            "resta com'è, salvo ciò che riguarda il ruolo di questa");
        Row("somebody's word, without numbers", "COFOR = 1", "5|PC1", "4|P4",
            "resta com'è, salvo ciò che riguarda il ruolo di questa");
        Row("somebody's word, the same role", "COCLI = 1, COSC1 = 7", "7|NULL", "7|NULL", "resta com'è");
        Row("the same role of another code", "COCLI = 1, COCGE = 'X9', COIVA = '11111111115', COSC1 = 7", "7|NULL",
            "7|NULL", "resta com'è; resta il codice cliente 'X9'");
    }
    void StrangersKeepTheirRole() {
        QFETCH(const QString, there);
        PartiesTrial trial;
        trial.Source("C1", {}, there.contains("COIVA") ? QString(Vat) : QString());
        trial.Discounts("5", {});
        if (!there.isEmpty()) {
            trial.Execute("INSERT INTO X01_CON_TRO (CDCON, CORAS) VALUES ('000500', 'A mano')");
            trial.Execute("UPDATE X01_CON_TRO SET " + there);
            trial.Execute("INSERT INTO SYS_IMP (TBNAM, TBFLD, TBOLD, TBNEW) VALUES ('ANAG', 'CODICE', 'C1', '000500')");
        }
        const QString conditions = "SELECT COSC1, COMOP FROM X01_CON_TRO";
        trial.Import();
        QTEST(trial.One(conditions), "first");
        trial.Change("C1", "NOME = 'Bianchi', SC1 = '4', PAG = 'P4'");
        QVERIFY(trial.Import().contains("CONTROPARTI DIVERSE"));
        QTEST(trial.One(conditions), "second");
        QFETCH(const QString, told);
        QVERIFY2(trial.Log().contains((": la riga che c'è " + told + '\r').toLatin1()), trial.Log());
        QCOMPARE(trial.Party("COCGE", "C1"), there.isEmpty() ? QString("000001") : QString("000500"));
    }

    /// The source has given the code to somebody else since: his documents are not those of who had it before.
    void OneCodeOfTwo() {
        PartiesTrial trial;
        trial.Source("C1");
        trial.Import();
        trial.Change("C1", "NOME = 'Bianchi', IVA = '11111111115'");
        QCOMPARE(trial.Import(), QStringList({"CODICE DI DUE CONTROPARTI"}));
        QCOMPARE(trial.One("SELECT CDCON, COCGE FROM X01_CON_TRO"), QString("000001|C1;000002|C1"));
        QCOMPARE(trial.Party("COCGE", "C1"), QString("000002"));
        QCOMPARE(LookUp(trial.Get(), "CON_TRO", "COCGE", "C1", "CORAS"), QString("Bianchi"));
        QCOMPARE(modImport_Mexal::GetControparteMexal(trial.Get(), "C1", true), QString("000002"));
        QCOMPARE(trial.Import(), QStringList());
        trial.Execute("UPDATE X01_CON_TRO SET COCGE = NULL WHERE CDCON = '000002'"); // as the log advises
        QCOMPARE(trial.Party("COCGE", "C1"), QString("000001"));
        trial.Execute("UPDATE X01_CON_TRO SET COCGE = 'C1'");
        trial.Execute("DELETE FROM SYS_IMP"); // as after a merge, which copies the codes of another company
        trial.Get().Notes = {};
        QCOMPARE(trial.Party("COCGE", "C1"), QString("000001"));
        QCOMPARE(trial.Get().Notes.kinds.first().name, QString("CODICE DI PIÙ CONTROPARTI"));
    }

    /// A code goes to and fro between counterparties: documents find the one that an import of it wrote last, and each
    /// change is told once, as is which one was taken.
    void CodeToAndFro() {
        PartiesTrial trial;
        trial.Source("C1");
        trial.Source("F2", {}, "11111111115");
        trial.Import();
        const QStringList told{"CODICE DI DUE CONTROPARTI"};
        for (const auto& [vatNumber, owner] : {std::pair("11111111115", "000002"), std::pair(Vat, "000001")}) {
            trial.Change("C1", QString("NOME = 'X%1', IVA = '%1'").arg(vatNumber));
            QVERIFY(trial.Import().contains(told.first()));
            QCOMPARE(trial.One("SELECT CDCON, COCGE, COFGE FROM X01_CON_TRO"), QString("000001|C1|NULL;000002|C1|F2"));
            QCOMPARE(trial.One("SELECT TBFLD, TBOLD, TBNEW FROM SYS_IMP"), QString("COCGE|C1|%1").arg(owner));
            trial.Get().Notes = {};
            QCOMPARE(trial.Party("COCGE", "C1"), QString(owner));
            QCOMPARE(trial.Get().Notes.kinds.first().name, QString("CODICE DI PIÙ CONTROPARTI"));
            QVERIFY(!trial.Import().contains(told.first()));
        }
    }

    /// A number that the source corrects in all rows of a counterparty makes no other one of it.
    void NumberCorrected() {
        PartiesTrial trial;
        for (const char* code : {"C1", "C2"}) {
            trial.Source(code);
            trial.Change(code, code[1] == '1' ? "NOME = 'Rossi'" : "NOME = 'Rossi filiale'");
        }
        trial.Import();
        trial.Change("C1", "IVA = '11111111115'");
        trial.Change("C2", "IVA = '11111111115'");
        QCOMPARE(trial.Import(), QStringList());
        QCOMPARE(trial.Party("COCGE", "C1") + trial.Party("COCGE", "C2"), QString("000001000001"));
        QCOMPARE(trial.One("SELECT COCGE FROM X01_CON_TRO"), QString("C2"));
    }

    /// A refresh writes the telephones of every row, and the columns of the one that has them.
    void RefreshOfSeveralRows() {
        PartiesTrial trial;
        for (const char* code : {"C1", "C2"}) {
            trial.Source(code);
            trial.Change(code, QString("TEL = '0437%1'").arg(code[1]));
        }
        trial.Import();
        trial.Change("C1", "PAG = 'X1', TEL = '7'");
        trial.Change("C2", "PAG = 'X2'");
        QCOMPARE(trial.Import(false, PartyWriting::Refreshed), QStringList());
        QCOMPARE(trial.One("SELECT COMOP FROM X01_CON_TRO"), QString("X2"));
        QCOMPARE(trial.One("SELECT NRNUM FROM X01_NUM_TEL"), QString("7;04372"));
    }

    /// A sheet that was opened and saved has lost the zeros in front.
    void LostZeros_data() {
        Columns<QString, QStringList>("vatNumber", "kinds");
        Row("whole", "01234567890", QStringList());
        Row("one is lost", "1234567890", QStringList("ZERI PERSI"));
        Row("of another country", "DE123456789", QStringList());
        Row("a short number", "1234", QStringList());
    }
    void LostZeros() {
        QFETCH(const QString, vatNumber);
        PartiesTrial trial;
        trial.Source("C1", {}, vatNumber);
        QTEST(trial.Import(), "kinds");
    }

    /// What somebody has cancelled in Quadrix stays so when another row joins it.
    void CancelledByHand() {
        PartiesTrial trial;
        trial.Source("C1");
        trial.Import();
        trial.Execute("UPDATE X01_CON_TRO SET COANN = 1, USMDF = 'MARIA'");
        trial.Source("C2");
        QCOMPARE(trial.Import(), QStringList({"ANNULLATA SOLO IN PARTE", "CONTROPARTI UNITE"}));
        QCOMPARE(trial.One("SELECT COANN FROM X01_CON_TRO"), QString("true"));
    }

    /// A code whose row has a number of its own now is that of another one, as is the CDCON that was given anew.
    void CodesThatMoveOn() {
        PartiesTrial trial;
        for (const char* code : {"C1", "C2"}) {
            trial.Source(code);
        }
        trial.Import();
        trial.Change("C1", "NOME = 'Bianchi', IVA = '99999990011'");
        QCOMPARE(trial.Import(), QStringList({"CODICE DI DUE CONTROPARTI"}));
        QCOMPARE(trial.Party("COCGE", "C1"), QString("000002"));
        QCOMPARE(trial.One("SELECT TBOLD FROM SYS_IMP"), QString());
        trial.Change("C1", "IVA = '01234567890'");
        trial.Import(true);
        QCOMPARE(trial.Party("COCGE", "C1"), QString("000001"));
        trial.Change("C2", "CODICE = 'C3', IVA = '99999990011'");
        trial.Change("C1", "CODICE = 'C4', IVA = '70370370911'");
        trial.Import(true);
        QCOMPARE(trial.Party("COCGE", "C1"), QString());
    }

    /// A number that fills the field makes nobody one with another.
    void WordsForANumber() {
        PartiesTrial trial;
        trial.Source("C1", {}, "ESTERO");
        trial.Source("C2", {}, "estero");
        QCOMPARE(trial.Import(), QStringList());
        QCOMPARE(trial.Rows("SELECT COCGE, COIVA FROM X01_CON_TRO"), QStringList({"C1|ESTERO", "C2|estero"}));
    }

    /// What a hand has mended or deleted, and what the source has changed, is told and stays; who is new to a
    /// counterparty brings his own.
    void NumbersAgain_data() {
        Columns<QString, QString, QString, QStringList>("hand", "changes", "numbers", "kinds");
        const QString before = "04371;rossi@x.it;Anna";
        const QStringList told{"RECAPITO DIVERSO"};
        Row("as they were", QString(), QString(), before, QStringList());
        Row("a telephone mended", "UPDATE X01_NUM_TEL SET NRNUM = '9'", QString(), "9;rossi@x.it;Anna", told);
        Row("all deleted", "DELETE FROM X01_NUM_TEL; DELETE FROM X01_IND_WEB; DELETE FROM X01_CON_RIF", QString(), ";;",
            told);
        Row("a contact renamed", "UPDATE X01_CON_RIF SET RFNOM = 'Anna B.'", QString(), "04371;rossi@x.it;Anna B.",
            told);
        Row("changed in the source", QString(), "TEL = '2', MAIL = 'new@x.it', RIF = 'Berta'", before, told);
    }
    void NumbersAgain() {
        QFETCH(const QString, hand);
        QFETCH(const QString, changes);
        PartiesTrial trial;
        trial.Source("C1");
        trial.Change("C1", "TEL = '0437/1', MAIL = 'Rossi@x.it', RIF = 'Anna'");
        trial.Import();
        for (const QString& statement : hand.split("; ", Qt::SkipEmptyParts)) {
            trial.Execute(statement);
        }
        if (!changes.isEmpty()) {
            trial.Change("C1", changes);
        }
        QTEST(trial.Import(), "kinds");
        const QString numbers = trial.One("SELECT NRNUM FROM X01_NUM_TEL") + ';' +
                                trial.One("SELECT WBIND FROM X01_IND_WEB") + ';' +
                                trial.One("SELECT RFNOM FROM X01_CON_RIF");
        QTEST(numbers, "numbers");
        trial.Source("F1");
        trial.Change("F1", "TEL = '77'");
        trial.Import();
        QVERIFY(trial.Rows("SELECT NRNUM FROM X01_NUM_TEL").contains("77"));
    }

    /// Several addresses in one text, and numbers that may be others.
    void SeveralInOne_data() {
        Columns<QString, QString, QStringList, QStringList>("telephone", "mail", "written", "kinds");
        const QStringList two{"@ Principale|a@x.it", "@ Ufficio|b@y.it"};
        Row("blanks", QString(), "A@x.it b@y.it", two, QStringList());
        Row("a stroke", QString(), "a@x.it / b@y.it", two, QStringList());
        Row("a semicolon", QString(), "a@x.it;b@y.it;", two, QStringList());
        Row("words", QString(), "Anna a@x.it, Berta b@y.it",
            QStringList{"@ Principale|annaa@x.it", "@ Ufficio|bertab@y.it"}, QStringList());
        Row("one", QString(), "a@x .it", QStringList{"@ Principale|a@x.it"}, QStringList());
        const QStringList doubtful{"TELEFONO DUBBIO"};
        Row("of another country", "+49 89 123456", QString(), QStringList{"Ufficio|+4989123456"}, doubtful);
        Row("two numbers", "0437/123456-0437/654321", QString(), QStringList{"Ufficio|04371234560437654321"}, doubtful);
    }
    void SeveralInOne() {
        QFETCH(const QString, telephone);
        QFETCH(const QString, mail);
        PartiesTrial trial;
        trial.Source("C1");
        trial.Change("C1", "TEL = '" + telephone + "', MAIL = '" + mail + '\'');
        QTEST(trial.Import(), "kinds");
        QTEST(trial.Rows("SELECT NRDES, NRNUM FROM X01_NUM_TEL UNION ALL SELECT WBDES, WBIND FROM X01_IND_WEB"),
              "written");
    }

    /// A counterparty's own price list is not taken away by the list that the source has for everybody.
    void OwnList() {
        PartiesTrial trial;
        trial.Source("C1");
        trial.Import();
        trial.Execute("UPDATE X01_CON_TRO SET COLSC = CDCON");
        trial.Execute("INSERT INTO X01_LIS_TES (CDLIS, LTTIP) VALUES ('000001', 'V')");
        trial.Import();
        QCOMPARE(trial.One("SELECT COLSC FROM X01_CON_TRO"), QString("000001"));
        trial.Execute("UPDATE X01_CON_TRO SET COLSC = 'X'");
        trial.Import();
        QCOMPARE(trial.One("SELECT COLSC FROM X01_CON_TRO"), QString("L"));
    }
};

QUADRIX_TEST(TestJoinedParties)
#include "test_joinedParties.moc"
