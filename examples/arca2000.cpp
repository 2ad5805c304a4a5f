// Arca 2000: a folder of FoxPro tables. Customers and suppliers share the table of counterparties, told apart by the
// first letter of the code.

#include "examples/arca2000.h"

#include "examples/italian.h"

namespace examples {

namespace arca2000 {

using namespace italian;

namespace {

constexpr quint64 CounterpartyStream = 1;
constexpr quint64 BranchStream = 2;
constexpr int StreetWidth = 25; ///< the house number stands behind it
constexpr int SharedEvery = 33; ///< one supplier in so many is a customer as well: 3 %
constexpr int DeletedEvery = 90;

QVector<Column> AnagrafeColumns(int codeLength) {
    return {{"codice", 'C', codeLength},
            {"descrizion", 'C', 40},
            {"supragsoc", 'C', 31},
            {"indirizzo", 'C', 60},
            {"cap", 'C', 10},
            {"localita", 'C', 30},
            {"prov", 'C', 2},
            {"partiva", 'C', 17},
            {"codfiscale", 'C', 16},
            {"telefono", 'C', 20},
            {"fax", 'C', 20},
            {"telefono2", 'C', 20},
            {"telefono3", 'C', 20},
            {"telex", 'C', 20},
            {"url", 'C', 100},
            {"email", 'C', 50},
            {"emailamm", 'C', 50},
            {"emailven", 'C', 50},
            {"emailacq", 'C', 50},
            {"persdacont", 'C', 30},
            {"pag", 'C', 4},
            {"aliiva", 'C', 3},
            {"valuta", 'C', 3},
            {"banca", 'C', 10},
            {"classe", 'C', 3},
            {"abicab", 'C', 10},
            {"contocorr", 'C', 20},
            {"cb_cin_it", 'C', 1},
            {"cb_bic", 'C', 11},
            {"sconto1", 'C', 10},
            {"contrpart", 'C', 9},
            {"destdiv", 'C', 2},
            {"note", 'M'},
            {"timestamp", 'D'},
            {"zona", 'C', 3},
            {"agente", 'C', 3},
            {"agente2", 'C', 3},
            {"settore", 'C', 3},
            {"lingua", 'C', 3},
            {"listino", 'C', 1},
            {"codnazione", 'C', 3},
            {"tipofatt", 'C', 1},
            {"contoscar", 'C', 9}};
}

QVector<Column> DestinazColumns(int codeLength) {
    return {{"codicecf", 'C', codeLength}, {"codicedes", 'C', 2}, {"ragionesoc", 'C', 40}, {"suppragsoc", 'C', 30},
            {"indirizzo", 'C', 60},        {"cap", 'C', 10},      {"localita", 'C', 25},   {"provincia", 'C', 2},
            {"codnazione", 'C', 3},        {"telefono", 'C', 16}, {"fax", 'C', 16},        {"personarif", 'C', 30}};
}

/// What an import of the counterparties must write.
struct Expected {
    qint64 merged = 0;
    qint64 contacts = 0;
    qint64 telephones = 0;
    qint64 webAddresses = 0;
    qint64 branches = 0;
    qint64 deleted = 0;
};

/// Writes the counterparties and their branches.
class Counterparties {
public:
    Counterparties(Store& store, const Options& options)
        : m_codes(options.rows),
          m_seed(options.seed),
          m_anagrafe(store.Create(QStringLiteral("anagrafe"), AnagrafeColumns(m_codes.Length()))),
          m_destinaz(store.Create(QStringLiteral("destinaz"), DestinazColumns(m_codes.Length()))) {}

    Totals Write() {
        for (qint64 row = 0; row < m_codes.Customers() + m_codes.Suppliers(); ++row) {
            WriteRow(row, false);
            if (row % DeletedEvery == DeletedEvery - 1) {
                WriteRow(row, true);
            }
        }
        m_anagrafe->Finish();
        m_destinaz->Finish();
        return Counted();
    }

private:
    bool IsCustomer(qint64 row) const { return row < m_codes.Customers(); }
    /// The supplier's number within the suppliers, from 1.
    qint64 SupplierNumber(qint64 row) const { return row - m_codes.Customers() + 1; }
    bool IsShared(qint64 row) const { return !IsCustomer(row) && SupplierNumber(row) % SharedEvery == 0; }
    /// Some counterparties have neither VAT number nor tax code, but never one that a supplier shares.
    bool HasIdentity(qint64 row) const { return row % 20 != 7 || (row + 1) % SharedEvery == 0 || IsShared(row); }

    QString Code(qint64 row) const {
        return IsCustomer(row) ? m_codes.Customer(row + 1) : m_codes.Supplier(SupplierNumber(row));
    }

    void WriteRow(qint64 row, bool isDeleted) {
        Random random(m_seed, CounterpartyStream, static_cast<quint64>(row) * 2 + (isDeleted ? 1 : 0));
        const bool isShared = IsShared(row) && !isDeleted;
        // A deleted row keeps the code of a living one, as in a source where it was entered anew.
        const qint64 person = isShared ? SupplierNumber(row) - 1 : isDeleted ? HighestPerson - row : row;
        const Town& town = MakeTown(random);
        const QString code = Code(row);
        SetIdentity(random, code, MakeIdentity(m_seed, person), isShared, HasIdentity(row));
        SetAddress(random, town);
        const int telephones = SetTelephones(random, town);
        const int webAddresses = SetInternet(random, DomainOf(MakePerson(random)) + QString::number(row));
        const bool hasContact = random.Chance(40);
        m_anagrafe->Set("persdacont", hasContact ? MakePerson(random) : QString());
        SetTrade(random, IsCustomer(row));
        SetBank(random);
        const bool hasBranches = random.Chance(20) && !isDeleted;
        m_anagrafe->Set("destdiv", hasBranches && random.Chance(50) ? QStringLiteral("01") : QString());
        SetRest(random);
        if (isDeleted) {
            ++m_expected.deleted;
            return m_anagrafe->AddDeleted();
        }
        m_anagrafe->Add();
        m_expected.merged += isShared ? 1 : 0;
        if (!isShared) {
            m_expected.contacts += hasContact ? 1 : 0;
            m_expected.telephones += telephones;
            m_expected.webAddresses += webAddresses;
        }
        if (hasBranches) {
            WriteBranches(row, code, isShared);
        }
    }

    void SetIdentity(Random& random, const QString& code, const Identity& identity, bool isShared, bool hasIdentity) {
        QString name = identity.name;
        if (random.Chance(8)) {
            name += QStringLiteral(" - Divisione Commerciale Nord Italia");
        }
        m_anagrafe->Set("codice", code).Set("descrizion", name.left(40).trimmed());
        m_anagrafe->Set("supragsoc", name.mid(40).trimmed().left(31));
        // Half of those who are customer and supplier give their tax code alone the second time.
        const bool hidesVat = isShared && random.Chance(50);
        m_anagrafe->Set("partiva", hasIdentity && !hidesVat ? identity.vatNumber : QString());
        m_anagrafe->Set("codfiscale", hasIdentity ? identity.taxCode : QString());
    }

    void SetAddress(Random& random, const Town& town) {
        const bool hasStreet = random.Chance(97);
        const QString street = MakeStreet(random).leftJustified(StreetWidth) + MakeHouseNumber(random);
        m_anagrafe->Set("indirizzo", hasStreet ? street : QString());
        if (random.Chance(98)) {
            m_anagrafe->Set("cap", QString::fromUtf16(town.postCode)).Set("localita", QString::fromUtf16(town.name));
            m_anagrafe->Set("prov", QString::fromUtf16(town.province));
        }
    }

    /// Returns how many there are.
    int SetTelephones(Random& random, const Town& town) {
        const QString main = random.Chance(90) ? MakeTelephone(random, town) : QString();
        const QString fax = random.Chance(60) ? MakeTelephone(random, town) : QString();
        const QString second = random.Chance(15) ? MakeTelephone(random, town) : QString();
        const QString mobile = random.Chance(30) ? MakeMobile(random) : QString();
        m_anagrafe->Set("telefono", main).Set("fax", fax).Set("telefono2", second).Set("telefono3", mobile);
        return (main.isEmpty() ? 0 : 1) + (fax.isEmpty() ? 0 : 1) + (second.isEmpty() ? 0 : 1) +
               (mobile.isEmpty() ? 0 : 1);
    }

    /// Returns how many addresses there are.
    int SetInternet(Random& random, const QString& name) {
        const QString domain = name + QStringLiteral(".example");
        int count = 0;
        const auto set = [&](const char* column, int percent, const QString& address) {
            const bool isThere = random.Chance(percent);
            m_anagrafe->Set(column, isThere ? address : QString());
            count += isThere ? 1 : 0;
        };
        set("url", 25, QStringLiteral("www.") + domain);
        set("email", 60, QStringLiteral("Info@") + domain);
        set("emailamm", 20, QStringLiteral("amministrazione@") + domain);
        set("emailven", 12, QStringLiteral("vendite@") + domain);
        set("emailacq", 12, QStringLiteral("acquisti@") + domain);
        return count;
    }

    void SetTrade(Random& random, bool isCustomer) {
        static const QStringList discounts{"10", "10+5", "5", "7.5", "15+10+3"};
        m_anagrafe->Set("pag", random.Chance(95) ? random.Pick(PaymentTerms()).code : QString());
        m_anagrafe->Set("aliiva", random.Chance(10) ? random.Pick(VatCodes()) : QString());
        m_anagrafe->Set("valuta", QStringLiteral("EUR"));
        m_anagrafe->Set("banca", random.Chance(50) ? random.Pick(BankCodes()) : QString());
        m_anagrafe->Set("classe", random.Chance(60) ? random.Pick(CategoryCodes()) : QString());
        m_anagrafe->Set("sconto1", random.Chance(30) ? random.Pick(discounts) : QString());
        m_anagrafe->Set("contrpart", isCustomer ? QStringLiteral("580100001") : QStringLiteral("660100001"));
    }

    void SetBank(Random& random) {
        const Bank bank = MakeBank(random);
        if (random.Chance(55)) {
            m_anagrafe->Set("abicab", bank.abi + bank.cab).Set("contocorr", bank.account);
            m_anagrafe->Set("cb_cin_it", bank.check).Set("cb_bic", random.Chance(40) ? bank.bic : QString());
        }
    }

    void SetRest(Random& random) {
        static const QStringList notes{
            "Cliente storico.\r\nConsegna solo al mattino, citofonare al magazzino.",
            "Sconto già concordato; perché l'ordine sia valido serve la conferma scritta.",
            "Pagamenti: attenzione, più volte in ritardo",
        };
        if (random.Chance(15)) {
            m_anagrafe->Set("note", random.Chance(5) ? notes.join("\r\n").repeated(12) : random.Pick(notes));
        }
        m_anagrafe->Set("timestamp",
                        random.Chance(97) ? QVariant(QDate(2015, 1, 1).addDays(random.Below(3400))) : QVariant());
        m_anagrafe->Set("zona", QStringLiteral("%1").arg(random.Below(20), 3, 10, QLatin1Char('0')));
        m_anagrafe->Set("agente", random.Chance(50) ? QStringLiteral("A01") : QString());
        m_anagrafe->Set("lingua", QStringLiteral("ITA")).Set("codnazione", QStringLiteral("IT"));
        m_anagrafe->Set("listino", QString::number(random.Between(1, 7)));
    }

    void WriteBranches(qint64 row, const QString& code, bool isShared) {
        Random random(m_seed, BranchStream, static_cast<quint64>(row));
        const qint64 count = random.Between(1, 3);
        for (qint64 branch = 1; branch <= count; ++branch) {
            const Town& town = MakeTown(random);
            const bool hasStreet = random.Chance(95);
            const QString street = MakeStreet(random).leftJustified(StreetWidth) + MakeHouseNumber(random);
            m_destinaz->Set("codicecf", code).Set("codicedes", BranchCode(random, branch));
            m_destinaz->Set("ragionesoc", QStringLiteral("Magazzino di ") + QString::fromUtf16(town.name));
            m_destinaz->Set("indirizzo", hasStreet ? street : QString());
            m_destinaz->Set("cap", QString::fromUtf16(town.postCode)).Set("localita", QString::fromUtf16(town.name));
            m_destinaz->Set("provincia", QString::fromUtf16(town.province));
            m_destinaz->Set("telefono", random.Chance(60) ? MakeTelephone(random, town).left(16) : QString());
            m_destinaz->Set("personarif", random.Chance(30) ? MakePerson(random) : QString());
            m_destinaz->Add();
            m_expected.branches += hasStreet && !isShared ? 1 : 0;
        }
    }

    /// Mostly a number; the last of some is a word.
    static QString BranchCode(Random& random, qint64 branch) {
        return branch == 3 && random.Chance(30) ? QStringLiteral("MG")
                                                : QStringLiteral("%1").arg(branch, 2, 10, QLatin1Char('0'));
    }

    Totals Counted() const {
        const auto text = [](qint64 number) { return QString::number(number); };
        return {{"anagrafe: righe", text(m_anagrafe->Count())},
                {"anagrafe: clienti", text(m_codes.Customers())},
                {"anagrafe: fornitori", text(m_codes.Suppliers())},
                {"anagrafe: righe cancellate", text(m_expected.deleted)},
                {"anagrafe: fornitori che sono anche clienti", text(m_expected.merged)},
                {"destinaz: righe", text(m_destinaz->Count())},
                {"CON_TRO attese", text(m_anagrafe->Count() - m_expected.merged)},
                {"CON_SED attese", text(m_expected.branches)},
                {"CON_RIF attese (senza le mail nei riferimenti)", text(m_expected.contacts)},
                {"NUM_TEL attese delle controparti", text(m_expected.telephones)},
                {"IND_WEB attese", text(m_expected.webAddresses)}};
    }

    Codes m_codes;
    quint64 m_seed;
    std::unique_ptr<TableWriter> m_anagrafe;
    std::unique_ptr<TableWriter> m_destinaz;
    Expected m_expected;
};

void WritePayments(Store& store) {
    const auto table =
        store.Create(QStringLiteral("pagament"), {{"codice", 'C', 4}, {"descrizion", 'C', 40}, {"tipopag", 'C', 1}});
    for (const PaymentTerm& term : PaymentTerms()) {
        table->Set("codice", term.code).Set("descrizion", term.description).Set("tipopag", term.type).Add();
    }
    table->Finish();
}

/// Translates every code but those that begin with ZZ.
void Translate(QuadrixScript& script, const QString& field, const QStringList& codes) {
    for (const QString& code : codes) {
        if (!code.startsWith(u"ZZ")) {
            script.Translate("anagrafe", field, code, code.left(4));
        }
    }
}

void Prepare(QuadrixScript& script) {
    for (const PaymentTerm& term : PaymentTerms()) {
        Translate(script, "pag", {term.code});
    }
    Translate(script, "aliva", VatCodes());
    Translate(script, "banca", BankCodes());
    Translate(script, "classe", CategoryCodes());
    script.UsualVatCodes();
    script.VatCode("N9", "Non imponibile art. 9", 0);
    script.VatCode("E15", "Escluso art. 15", 0);
}

} // namespace

const QVector<PaymentTerm>& PaymentTerms() {
    static const QVector<PaymentTerm> terms{
        {"BO30", "Bonifico 30 gg f.m.", "O"},          {"BO60", "Bonifico 60 gg f.m.", "O"},
        {"RB30", "Ricevuta bancaria 30 gg f.m.", "B"}, {"RB60", "Ricevuta bancaria 60 gg f.m.", "B"},
        {"R369", "Ric. banc. 30/60/90 gg f.m.", "B"},  {"RD", "Rimessa diretta", "R"},
        {"CONT", "Contanti alla consegna", "C"},       {"ZZ99", "Come da accordi, metà subito", "X"},
    };
    return terms;
}

const QStringList& VatCodes() {
    static const QStringList codes{"22", "10", "N8", "N9", "E15", "ZZ"};
    return codes;
}

const QStringList& BankCodes() {
    static const QStringList codes{"BNL", "MPS", "UNICREDIT", "INTESA", "ZZBANCA"};
    return codes;
}

const QStringList& CategoryCodes() {
    static const QStringList codes{"IND", "ART", "COM", "PRI", "ZZ"};
    return codes;
}

} // namespace arca2000

Totals MakeArca2000(const Options& options) {
    using namespace arca2000;
    DbfFolder store(options.folder, {true, 0x03, QStringLiteral("arca")});
    QuadrixScript script(options.company);
    Totals totals;
    if (IsAsked(options, "controparti")) {
        WritePayments(store);
        totals += Counterparties(store, options).Write();
        Prepare(script);
    }
    if (IsAsked(options, "articoli")) {
        totals += WriteArticles(store, options, script);
    }
    if (IsAsked(options, "conti")) {
        totals += WriteAccounts(store);
    }
    store.Finish();
    script.Write(options.folder);
    return totals;
}

} // namespace examples
