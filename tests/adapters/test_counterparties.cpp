#include "adapters/contract/map/carrierCodes.h"
#include "adapters/contract/write/Carrier.h"
#include "adapters/contract/write/Counterparty.h"
#include "tests/support/errorOf.h"
#include "tests/support/QuadrixTest.h"
#include "tests/support/rows.h"
#include "tests/support/TestTarget.h"

#include <QTest>

using namespace contract;
using namespace contract::rules;

namespace {

/// A company with a run under way of which nothing is shown.
class PartiesTarget : public TestTarget {
public:
    ImportRun Run{Get(), "modImport_Prova", "ImportProva", "X"};

    void Party(const QString& values) {
        Execute("INSERT INTO X01_CON_TRO (CDCON, CORAS, COIVA, COFIS, COCGE, COFGE) VALUES (" + values + ')');
    }
    /// The kinds of lines that the log has about the rows so far.
    QStringList Kinds() {
        QStringList kinds;
        for (const Notes::Kind& kind : Get().Notes.kinds) {
            kinds.append(kind.name);
        }
        return kinds;
    }
    QString LogText() const { return QString::fromLatin1(Log()); }
};

SourceIdentity Customer(const QString& code, const QString& name, const QString& vatNumber = {}) {
    return {"CLIENTI", "CODICE", code, RoleOf(true), name, vatNumber, {}};
}

QString Placed(const Placement& place) { return place.code + (place.known ? " known" : " new"); }

/// A counterparty as a source with few columns has it.
const CounterpartyMapping& Mapped() {
    static const CounterpartyMapping mapping({"CON_TRO",
                                              "CLIENTI",
                                              {{"CDCON", "CODICE", Code()},
                                               {"CORAS", "NOME", Text()},
                                               {"COCLI", "", IsCustomer()},
                                               {"COMOP", "PAG", CustomerOnly(Text())},
                                               {"COSC1", "SCONTO", CustomerOnly(Discount(1))},
                                               {"COSC2", "SCONTO", CustomerOnly(Discount(2))},
                                               {"COSC3", "ALTRO", CustomerOnly(NotBlank(RoundedTo(2)))},
                                               {"COCGE", "CODICE", CustomerOnly(Text())},
                                               {"COFOR", "", IsSupplier()},
                                               {"COMOA", "PAG", SupplierOnly(Text())},
                                               {"COLSF", "LISTINO", SupplierOnly(Text())},
                                               {"COFGE", "CODICE", SupplierOnly(Text())}}});
    return mapping;
}

} // namespace

Q_DECLARE_METATYPE(contract::SourceIdentity)

/// Who is whom among the counterparties, and what becomes of what hangs on them.
class TestCounterparties : public QObject {
    Q_OBJECT

private slots:
    /// The customer "71", of whom the code 000071 may be taken.
    void GivesCodes_data() {
        Columns<QString, QString, TakenCode, QString, QString, QStringList>("party", "vatNumber", "usual", "setting",
                                                                            "place", "kinds");
        const QString nobody = "'000100', 'Altro', NULL, NULL, NULL, NULL";
        const QString stranger = "'000071', 'Informatica Esposito', '70370370911', NULL, NULL, 'F1'";
        const QString alike = "'000071', 'ROSSI  s.n.c', NULL, NULL, NULL, NULL";
        const QStringList taken{"CODICE OCCUPATO"};
        const QStringList twice{"CONTROPARTE DOPPIA"};
        const QStringList strangers{"CONTROPARTE DOPPIA", "CONTROPARTI DIVERSE"};
        const QString vat = "99999990011";
        Row("free", nobody, vat, TakenCode::Next, QString(), QString("000071 new"), QStringList());
        Row("a stranger's", stranger, vat, TakenCode::Next, QString(), QString("000072 new"), taken);
        Row("a stranger's, who has no numbers", stranger, QString(), TakenCode::Next, QString(), QString("000072 new"),
            taken);
        Row("a stranger's, taken over", stranger, vat, TakenCode::Update, QString(), QString("000071 known"),
            strangers);
        Row("a stranger's, setting aggiorna", stranger, vat, TakenCode::Next, QString("Aggiorna"),
            QString("000071 known"), strangers);
        Row("a stranger's, setting nuovo", stranger, vat, TakenCode::Update, QString("nuovo"), QString("000072 new"),
            taken);
        Row("of the same name", alike, vat, TakenCode::Next, QString(), QString("000071 known"), twice);
        Row("of the same name, setting nuovo", alike, vat, TakenCode::Next, QString("nuovo"), QString("000071 known"),
            twice);
    }
    void GivesCodes() {
        QFETCH(const QString, party);
        QFETCH(const QString, vatNumber);
        QFETCH(const TakenCode, usual);
        QFETCH(const QString, setting);
        PartiesTarget target;
        target.Party(party);
        target.Get().Config.SetAppConfig("IMPORT", "CodiceOccupato", setting);
        const CounterpartyRegister parties(target.Run, usual);
        const SourceIdentity source = Customer("71", "Rossi SNC", vatNumber);
        const Placement place = parties.Place(source);
        QTEST(Placed(place), "place");
        QTEST(target.Kinds(), "kinds");
        // What was written is found again, and gets no third code.
        if (!place.known) {
            target.Party(QString("'%1', 'Rossi SNC', '%2', NULL, '71', NULL").arg(place.code, vatNumber));
            QCOMPARE(Placed(parties.Place(source)), place.code + " known");
        }
    }

    void TellsBothOfATakenCode() {
        PartiesTarget target;
        target.Party("'000071', 'Informatica Esposito', '70370370911', NULL, NULL, 'F1'");
        CounterpartyRegister(target.Run).Place(Customer("71", "Rossi", "99999990011"));
        QVERIFY2(target.LogText().contains("'Rossi' (partita IVA 99999990011) prende il codice 000072: 000071 è di "
                                           "'Informatica Esposito' (partita IVA 70370370911)"),
                 target.Log());
    }

    void RefusesAnotherSetting() {
        PartiesTarget target;
        target.Get().Config.SetAppConfig("IMPORT", "CodiceOccupato", "sempre");
        const auto error = ErrorOf<ImportError>([&] { const CounterpartyRegister parties(target.Run); });
        QVERIFY(error);
        QCOMPARE(error->Message(), QString("impostazione CodiceOccupato della sezione IMPORT: 'sempre' non è né "
                                           "'aggiorna' né 'nuovo'"));
    }

    /// What is not an Italian account has no IBAN: one cut to it would pass every check and be somebody else's.
    void MakesIbans_data() {
        Columns<QString, QString, QString, QString, QString, QString>("cin", "abi", "cab", "account", "iban", "told");
        const QString good = "IT60X0542811101000000123456";
        Row("whole", "X", "05428", "11101", "000000123456", good, "");
        Row("zeros lost", "x", "5428", "11101", "123456", good, "");
        Row("zeros too many", "X", "05428", "11101", " 00000000 123456", good, "");
        Row("no account", "X", "05428", "11101", "", "", "");
        Row("an unknown bank", "X", "00000", "00000", "123456", "", "");
        Row("a longer account", "X", "05428", "11101", "1000000123456", "", "il conto '1000000123456' non è di dodici");
        Row("an account with signs", "X", "05428", "11101", "c/c 12345", "", "il conto 'c/c 12345' non è di dodici");
        Row("a bank of letters", "X", "ABCDE", "11101", "123456", "", "l'ABI 'ABCDE' non è di cinque cifre");
        Row("a branch of signs", "X", "05428", "1110-", "123456", "", "il CAB '1110-' non è di cinque cifre");
        Row("two letters", "XY", "05428", "11101", "123456", "", "il CIN 'XY' non è una lettera");
    }
    void MakesIbans() {
        PartiesTarget target;
        TargetRow party(target.Run, "CON_TRO");
        party.Set("CONAZ", "ITA");
        for (const auto& [column, part] :
             {std::pair{"COCIN", "cin"}, {"COABI", "abi"}, {"COCAB", "cab"}, {"COCOC", "account"}}) {
            party.Set(column, *static_cast<QString*>(QTest::qData(part, qMetaTypeId<QString>())));
        }
        Recordset source = target.Db().ExecuteWC("SELECT 1 AS A");
        SetIban(target.Run, SourceRow(source), party);
        QTEST(party.Value("COIBA").toString(), "iban");
        QFETCH(const QString, told);
        QCOMPARE(target.Kinds(), told.isEmpty() ? QStringList() : QStringList("IBAN NON CALCOLATO"));
        QVERIFY2(target.LogText().contains(told), qPrintable(target.LogText()));
    }

    /// A code that SYS_IMP tells is somebody's word.
    void ObeysTranslatedCodes() {
        PartiesTarget target;
        target.Execute("INSERT INTO SYS_IMP (TBNAM, TBFLD, TBOLD, TBNEW) VALUES ('CLIENTI', 'CODICE', '71', '000500')");
        target.Party("'000500', 'Scritto a mano', '70370370911', NULL, NULL, NULL");
        const CounterpartyRegister parties(target.Run);
        QCOMPARE(Placed(parties.Place(Customer("71", "Rossi", "99999990011"))), QString("000500 known"));
        QCOMPARE(target.Kinds(), QStringList({"CONTROPARTE DOPPIA", "CONTROPARTI DIVERSE"}));
    }

    /// Two carriers of one code in SYS_IMP: numbered anew by imports they are two, by somebody's word they are one.
    void KeepsCarriersApart_data() {
        Columns<QString, QString>("writer", "second");
        Row("numbered anew", "SYSTEM_IMPORT", "000101 new");
        Row("somebody's word", "MARIO", "000100 known");
    }
    void KeepsCarriersApart() {
        QFETCH(const QString, writer);
        PartiesTarget target;
        target.Party("'000100', 'Corriere', NULL, NULL, NULL, NULL");
        target.Execute("UPDATE X01_CON_TRO SET COVET = 1");
        for (const char* code : {"V1", "V2"}) {
            target.Execute(QStringLiteral("INSERT INTO SYS_IMP (TBNAM, TBFLD, TBOLD, TBNEW, USINS) VALUES ('VETTORI', "
                                          "'CODICE', '%1', '000100', '%2')")
                               .arg(QLatin1String(code), writer));
        }
        const CounterpartyRegister parties(target.Run);
        Carriers carriers(target.Run, parties);
        const SourceIdentity first{"VETTORI", "CODICE", "V1", {}, "Corriere", {}, {}};
        const SourceIdentity second{"VETTORI", "CODICE", "V2", {}, "Rizzi Rosa", {}, {}};
        QCOMPARE(Placed(carriers.Place(first)), QString("000100 known"));
        carriers.Remember(first, "000100");
        QCOMPARE(Placed(carriers.Place(first)), QString("000100 known"));
        QTEST(Placed(carriers.Place(second)), "second");
    }

    /// The number of a carrier that an import has kept for all companies is perhaps another company's.
    void CarriersOfSeveralCompanies_data() {
        Columns<bool, QString, QString, bool, QString>("isAlone", "name", "user", "isCarrier", "place");
        const QString import("SYSTEM_IMPORT");
        Row("alone, renamed since", true, QString("Altro nome"), import, true, QString("000100 known"));
        Row("alone, a customer by now", true, QString("Corriere"), import, false, QString("000101 new"));
        Row("its own", false, QString("Corriere S.r.l."), import, true, QString("000100 known"));
        Row("another's", false, QString("Altro nome"), import, true, QString("000090 known"));
        Row("another's, a customer here", false, QString("Altro nome"), import, false, QString("000090 known"));
        Row("somebody's word", false, QString("Altro nome"), QString("ANNA"), false, QString("000100 known"));
    }
    void CarriersOfSeveralCompanies() {
        QFETCH(const bool, isAlone);
        QFETCH(const QString, name);
        QFETCH(const QString, user);
        QFETCH(const bool, isCarrier);
        PartiesTarget target;
        if (!isAlone) {
            target.AddCompany("X02", "Prova Due S.r.l.");
        }
        target.Party("'000090', 'CORRIERE', NULL, NULL, NULL, NULL");
        target.Party(QString("'000100', '%1', NULL, NULL, NULL, NULL").arg(name));
        target.Execute("UPDATE X01_CON_TRO SET USINS = 'SYSTEM_IMPORT', COVET = " + QString(isCarrier ? "1" : "0"));
        target.Execute("UPDATE X01_CON_TRO SET COVET = 1 WHERE CDCON = '000090'");
        target.Execute("INSERT INTO SYS_IMP (TBNAM, TBFLD, TBOLD, TBNEW, USINS) VALUES ('VETTORI', 'CODICE', 'V1', "
                       "'000100', '" +
                       user + "')");
        const CounterpartyRegister parties(target.Run);
        Carriers carriers(target.Run, parties);
        const SourceIdentity carrier{"VETTORI", "CODICE", "V1", {}, "Corriere", {}, {}};
        const Placement place = carriers.Place(carrier);
        QTEST(Placed(place), "place");
        carriers.Remember(carrier, place.code);
        QCOMPARE(CarrierCode(target.Get(), "VETTORI", "CODICE", "V1"), place.code);
        QCOMPARE(target.Value("SELECT TBNEW FROM SYS_IMP WHERE TBNAM = 'VETTORI'"), isAlone ? place.code : "000100");
        target.Execute("UPDATE SYS_IMP SET TBNEW = '000777' WHERE TBNAM = 'VETTORI'");
        const bool isWord = user == "ANNA"; // it counts before what an import has given
        QCOMPARE(CarrierCode(target.Get(), "VETTORI", "CODICE", "V1"), isWord ? QString("000777") : place.code);
        if (!isAlone) {
            target.Choose("X02");
            QCOMPARE(CarrierCode(target.Get(), "VETTORI", "CODICE", "V1"), isWord ? QString("000777") : QString());
        }
    }

    /// The code of the source finds what an earlier import wrote, but not what another origin wrote under that code.
    void FindsWhatItWrote_data() {
        Columns<QString, QString>("party", "place");
        Row("another VAT number since", "'000009', 'Rossi', '70370370911', NULL, 'C9', NULL", "000009 known");
        Row("another name since", "'000009', 'Rossi e figli', '99999990011', NULL, 'C9', NULL", "000009 known");
        Row("a stranger of another origin", "'000009', 'Bianchi', '70370370911', NULL, 'C9', NULL", "000010 new");
        Row("a supplier of that code", "'000009', 'Rossi', NULL, NULL, NULL, 'C9'", "000010 new");
    }
    void FindsWhatItWrote() {
        QFETCH(const QString, party);
        PartiesTarget target;
        target.Party(party);
        QTEST(Placed(CounterpartyRegister(target.Run).Place(Customer("C9", "Rossi", "99999990011"))), "place");
        QVERIFY(target.Kinds().isEmpty());
    }

    /// Two rows of one code, in one run or in two. Nobody goes into another one untold, and another run finds
    /// what there is.
    void TellsRowsOfOneCode_data() {
        Columns<SourceIdentity, SourceIdentity, TakenCode, bool, QString, QStringList>("first", "second", "usual",
                                                                                       "isOneRun", "place", "kinds");
        const auto supplier = [](const QString& code, const QString& name, const QString& vatNumber = {}) {
            return SourceIdentity{"FORNITORI", "CODICE", code, RoleOf(false), name, vatNumber, {}};
        };
        const SourceIdentity rossi = supplier("F1", "Rossi");
        const SourceIdentity bianchi = supplier("f1", "Bianchi");
        const SourceIdentity numbered = supplier("F1", "Bianchi", "99999990011");
        const SourceIdentity stranger = supplier("F1", "Rossi", "01234567890");
        const QStringList twice{"CONTROPARTE DOPPIA"};
        const QStringList different{"CONTROPARTI DIVERSE"};
        const QStringList taken{"CONTROPARTI DIVERSE", "CODICE OCCUPATO"};
        const auto next = TakenCode::Next;
        const auto update = TakenCode::Update;
        Row("the same", rossi, rossi, next, true, QString("000001 known"), twice);
        Row("the same, with a number now", rossi, stranger, next, true, QString("000001 known"), twice);
        Row("another name", rossi, bianchi, next, true, QString("000002 new"), different);
        Row("another name, taken over", rossi, bianchi, update, true, QString("000001 known"), twice + different);
        Row("other numbers", stranger, numbered, next, true, QString("000002 new"), different);
        Row("another number of that name", stranger, supplier("F1", "Rossi", "99999990011"), next, true,
            QString("000002 new"), different);
        Row("customers", Customer("1", "Rossi"), Customer("1", "Bianchi"), next, true, QString("000002 new"), taken);
        Row("a code of the other role", Customer("1", "Rossi"), supplier("1", "Bianchi"), next, true,
            QString("000002 new"), QStringList());
        Row("renamed since", rossi, bianchi, next, false, QString("000001 known"), different);
        Row("renamed since, with a number now", rossi, numbered, next, false, QString("000002 new"), different);
        Row("called a little otherwise, with a number now", rossi, supplier("F1", "Rossi e figli", "99999990011"), next,
            false, QString("000001 known"), QStringList());
    }
    void TellsRowsOfOneCode() {
        QFETCH(const SourceIdentity, first);
        QFETCH(const SourceIdentity, second);
        QFETCH(const TakenCode, usual);
        QFETCH(const bool, isOneRun);
        PartiesTarget target;
        const auto place = [&target](CounterpartyRegister& parties, const SourceIdentity& source) {
            parties.Meet(source);
            const Placement placement = parties.Place(source);
            if (!placement.known) {
                const QString code = '\'' + source.code + '\'';
                target.Party(QString("'%1', '%2', '%3', NULL, %4, %5")
                                 .arg(placement.code, source.name, source.vatNumber,
                                      source.roles.customer ? code : "NULL", source.roles.supplier ? code : "NULL"));
            }
            return placement;
        };
        CounterpartyRegister parties(target.Run, usual);
        place(parties, first);
        CounterpartyRegister again(target.Run, usual);
        QTEST(Placed(place(isOneRun ? parties : again, second)), "place");
        QTEST(target.Kinds(), "kinds");
        const QStringList rows = target.Rows("SELECT CDCON, CORAS, COIVA FROM X01_CON_TRO");
        CounterpartyRegister third(target.Run, usual);
        if (isOneRun) {
            place(third, first);
        }
        place(third, second);
        QCOMPARE(target.Rows("SELECT CDCON, CORAS, COIVA FROM X01_CON_TRO"), rows);
    }

    /// What has no code is nobody's.
    void ABlankCodeMeansNobody() {
        PartiesTarget target;
        target.Party("'000001', 'A mano', NULL, NULL, '', ''");
        const CounterpartyRegister parties(target.Run);
        QCOMPARE(parties.ImportedBefore(Customer({}, "Rossi")), QString());
        QCOMPARE(parties.FindByCode(Customer({}, "Rossi")), QString());
    }

    void StoresNumbers_data() {
        Columns<QString, QString>("number", "stored");
        Row("separators", "0471/123 45-6", "0471123456");
        Row("prefix", "+39 0471 999", "+390471999");
        Row("no number in front", "(0471) 123456", "00");
        Row("words behind", "0471/123456 int. 5", "0471123456");
        Row("two numbers", "0471/123456 - 0471/123457 casa", "04711234560471123457");
        Row("a point", "0471.120 x", "0471.12");
        Row("a point alone", ". x", "00");
        Row("zeros", "00 x", "00");
    }
    /// However long a number is, it is written digit by digit.
    void StoresNumbers() {
        QFETCH(const QString, number);
        QTEST(StoredNumber(number), "stored");
    }

    void MergesByIdentity_data() {
        Columns<QString, QString, QString, QString>("party", "vatNumber", "taxCode", "found");
        const QString party = "'000001', 'Verdi', '01234567890', 'VRDMRA80A01H501U', 'C1', NULL";
        Row("VAT number", party, QString("01234567890"), QString(), QString("000001"));
        Row("tax code", party, QString(), QString("vrdmra80a01h501u"), QString("000001"));
        Row("tax code, the VAT number fills the field", party, QString("00000000000"), QString("VRDMRA80A01H501U"),
            QString("000001"));
        Row("another VAT number", party, QString("99999990011"), QString("VRDMRA80A01H501U"), QString());
        const QString filled = "'000001', 'Verdi', '00000000000', 'XXXXXXXXXXXXXXXX', 'C1', NULL";
        Row("both fill the field", filled, QString("00000000000"), QString(), QString());
        Row("both fill the tax code", filled, QString(), QString("XXXXXXXXXXXXXXXX"), QString());
        Row("one character", "'000001', 'Verdi', '-', NULL, 'C1', NULL", QString("-"), QString(), QString());
    }
    void MergesByIdentity() {
        QFETCH(const QString, party);
        QFETCH(const QString, vatNumber);
        QFETCH(const QString, taxCode);
        PartiesTarget target;
        target.Party(party);
        QTEST(FindByIdentity(target.Run.GetSession(), vatNumber, taxCode), "found");
    }

    /// Two customers of one VAT number: the log names both, and the code that is overwritten.
    void TellsMerges() {
        PartiesTarget target;
        target.Party("'000001', 'Verdi', '01234567890', NULL, 'C1', 'F7'");
        const CounterpartyRegister parties(target.Run);
        QCOMPARE(Placed(parties.Place(Customer("C2", "Verdi Due", "01234567890"))), QString("000001 known"));
        QVERIFY2(target.LogText().contains("CONTROPARTI UNITE: "), target.Log());
        QVERIFY2(
            target.LogText().contains("'Verdi Due' (partita IVA 01234567890) e 'Verdi' (partita IVA 01234567890), "
                                      "cliente 'C1', fornitore 'F7', diventano una: 000001; il codice cliente 'C1' "
                                      "lascia il posto a 'C2'"),
            target.Log());
        parties.FindSame(Customer("c1", "Verdi", "01234567890")); // the same again is no merge
        QCOMPARE(target.Get().Notes.count, qint64{1});
    }

    /// Discounts go one upon the other: of those of before none is left.
    void DropsDiscountsOfBefore_data() {
        Columns<QString, QString>("row", "discounts");
        Row("one", "'8' SCONTO, 3 ALTRO", "8|NULL|3");
        Row("none", "'' SCONTO, '' ALTRO", "NULL|NULL|NULL");
    }
    void DropsDiscountsOfBefore() {
        QFETCH(const QString, row);
        PartiesTarget target;
        target.Execute("INSERT INTO X01_CON_TRO (CDCON, COSC1, COSC2, COSC3) VALUES ('000001', 10, 5, 2)");
        const Recordset rows = target.Db().ExecuteWC("SELECT 'C1' CODICE, 'Verdi' NOME, '' PAG, '' LISTINO, " + row);
        CounterpartyWriter(target.Run, {}).Write(Mapped(), SourceRow(rows), {"000001", true}, RoleOf(true));
        QTEST(target.Rows("SELECT COSC1, COSC2, COSC3 FROM X01_CON_TRO").join(';'), "discounts");
    }

    /// A second role brings its columns, and what hangs on it unless it hangs there; a third time nothing is added.
    void BringsASecondRole() {
        PartiesTarget target;
        const Recordset rows =
            target.Db().ExecuteWC("SELECT 'C1' CODICE, 'Verdi' NOME, 'R30' PAG, 'L1' LISTINO, '' SCONTO, "
                                  "'' ALTRO, "
                                  "'0471/12 34' TEL, 'Info@verdi.it' MAIL");
        const SourceRow row(rows);
        const auto write = [&](const Placement& place, const Roles& roles, const QString& telephone) {
            CounterpartyWriter writer(target.Run, {});
            writer.Write(Mapped(), row, place, roles);
            writer.Numbers(OwnerOf(place), row, {"TEL", {}, {}, {}, "MAIL", {}});
            writer.Telephone(OwnerOf(place), "Ufficio", telephone);
        };
        write({"000001", false}, RoleOf(true), {});
        QCOMPARE(target.Rows("SELECT COMOP, COMOA, COLSF, COCLI, COFOR FROM X01_CON_TRO"),
                 QStringList{"R30|NULL|NULL|true|false"});
        for (int i = 0; i < 2; ++i) {
            write({"000001", true}, RoleOf(false), "0039 0471-5678");
        }
        QCOMPARE(target.Rows("SELECT COMOP, COMOA, COLSF, COCGE, COFGE, COCLI, COFOR FROM X01_CON_TRO"),
                 QStringList{"R30|R30|L1|C1|C1|true|true"});
        QCOMPARE(target.Rows("SELECT NRNUM FROM X01_NUM_TEL"), QStringList({"04711234", "003904715678"}));
        QCOMPARE(target.Rows("SELECT WBIND FROM X01_IND_WEB"), QStringList{"info@verdi.it"});
    }

    /// Contacts of one name stay two; branches keep their address and give way with their code.
    void BringsContactsAndBranches() {
        PartiesTarget target;
        const auto write = [&](bool known, const QString& street) {
            CounterpartyWriter writer(target.Run, {});
            const Owner owner{"CON_TRO", "000001", known};
            for (const char* telephone : {"1", "2"}) {
                writer.Telephone(writer.Contact(owner, "Rossi M."), "Ufficio", telephone);
            }
            TargetRow branch = writer.NewRow("CON_SED");
            branch.Set("CDCON", owner.key).Set("CDSED", "001").Set("SETIP", "CO").Set("SEIND", street);
            writer.Telephone(writer.Branch(owner, branch), "Ufficio", "3");
        };
        write(false, "Via Po 1");
        write(true, "VIA PO, 1");
        QVERIFY(target.Kinds().isEmpty());
        for (int i = 0; i < 2; ++i) {
            write(true, "Via Adige 2");
        }
        QCOMPARE(target.Rows("SELECT CDSED, SEIND FROM X01_CON_SED"),
                 QStringList({"001|Via Po 1", "F001|Via Adige 2"}));
        QCOMPARE(target.Kinds(), QStringList{"SEDE RINUMERATA"});
        QCOMPARE(target.Rows("SELECT RFNOM FROM X01_CON_RIF"), QStringList({"Rossi M.", "Rossi M."}));
        QCOMPARE(target.Rows("SELECT TBNAM, TBKEY, NRNUM FROM X01_NUM_TEL"),
                 QStringList({"CON_RIF|1|1", "CON_RIF|2|2", "CON_SED|1|3", "CON_SED|2|3"}));
    }
};

QUADRIX_TEST(TestCounterparties)
#include "test_counterparties.moc"
