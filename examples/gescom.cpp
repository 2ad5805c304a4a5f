// Gescom: tables of a database server. The column names end in the name of their table.

#include "examples/gescom.h"

#include "examples/italian.h"
#include "examples/SqliteWriter.h"

namespace examples {

namespace gescom {

using namespace italian;

namespace {

constexpr quint64 CounterpartyStream = 61;
constexpr quint64 DestinationStream = 62;
constexpr quint64 CarrierStream = 63;
constexpr int SharedEvery = 33;            ///< one supplier in so many is a customer as well
constexpr qint64 CarrierPersons = 2390000; ///< numbers of people beyond those of the rows
constexpr int CarrierCount = 20;

QVector<Column> CounterpartyColumns(int codeLength) {
    return {{"CODCLFOR", 'C', codeLength}, {"FLAGCLFR", 'C', 1},  {"RAGCLFOR", 'C', 40}, {"RA2CLFOR", 'C', 40},
            {"INDCLFOR", 'C', 40},         {"CAPCLFOR", 'C', 10}, {"LOCCLFOR", 'C', 30}, {"PROCLFOR", 'C', 2},
            {"NAZCLFOR", 'C', 3},          {"IVACLFOR", 'C', 16}, {"FISCLFOR", 'C', 16}, {"TELCLFOR", 'C', 20},
            {"TE2CLFOR", 'C', 20},         {"FAXCLFOR", 'C', 20}, {"CELCLFOR", 'C', 20}, {"EMACLFOR", 'C', 60},
            {"WEBCLFOR", 'C', 60},         {"PAGCLFOR", 'C', 3},  {"ABICLFOR", 'C', 5},  {"CABCLFOR", 'C', 5},
            {"CCOCLFOR", 'C', 12},         {"CINCLFOR", 'C', 1},  {"IBACLFOR", 'C', 34}, {"SC1CLFOR", 'N', 6, 2},
            {"SC2CLFOR", 'N', 6, 2},       {"AGECLFOR", 'C', 3},  {"LISCLFOR", 'C', 3},  {"VALCLFOR", 'C', 3},
            {"ZONCLFOR", 'C', 3},          {"ESECLFOR", 'C', 3},  {"NOTCLFOR", 'M'},     {"ANNCLFOR", 'C', 1}};
}

void SetIdentity(TableWriter& table, const Identity& identity) {
    table.Set("RAGCLFOR", identity.name.left(40).trimmed()).Set("RA2CLFOR", identity.name.mid(40).trimmed());
    table.Set("IVACLFOR", identity.vatNumber).Set("FISCLFOR", identity.taxCode);
}

void SetAddress(TableWriter& table, Random& random, const Town& town) {
    table.Set("INDCLFOR", QString(MakeStreet(random) + u", " + MakeHouseNumber(random)));
    table.Set("CAPCLFOR", QString::fromUtf16(town.postCode)).Set("LOCCLFOR", QString::fromUtf16(town.name));
    table.Set("PROCLFOR", QString::fromUtf16(town.province)).Set("NAZCLFOR", QStringLiteral("ITA"));
}

void SetReach(TableWriter& table, Random& random, const Town& town, qint64 row) {
    table.Set("TELCLFOR", MakeTelephone(random, town));
    table.Set("TE2CLFOR", random.Chance(10) ? MakeTelephone(random, town) : QString());
    table.Set("FAXCLFOR", random.Chance(50) ? MakeTelephone(random, town) : QString());
    table.Set("CELCLFOR", random.Chance(30) ? MakeMobile(random) : QString());
    table.Set("EMACLFOR", random.Chance(60) ? QStringLiteral("info@ditta%1.example").arg(row) : QString());
    table.Set("WEBCLFOR", random.Chance(20) ? QStringLiteral("www.ditta%1.example").arg(row) : QString());
}

void SetTerms(TableWriter& table, Random& random) {
    static const QStringList payments{"B30", "B60", "RB3", "RD", "ZZ"};
    table.Set("PAGCLFOR", random.Pick(payments));
    if (random.Chance(50)) {
        const Bank bank = MakeBank(random);
        table.Set("ABICLFOR", bank.abi).Set("CABCLFOR", bank.cab).Set("CCOCLFOR", bank.account);
        table.Set("CINCLFOR", bank.check);
        table.Set("IBACLFOR", random.Chance(70) ? MakeIban(bank.check, bank.abi, bank.cab, bank.account) : QString());
    }
    table.Set("SC1CLFOR", random.Chance(30) ? 10.0 : 0.0).Set("SC2CLFOR", 0.0);
    table.Set("AGECLFOR", QString()).Set("LISCLFOR", QStringLiteral("L%1").arg(random.Between(1, 4)));
    table.Set("VALCLFOR", QStringLiteral("EUR")).Set("ZONCLFOR", QString());
    table.Set("ESECLFOR", random.Chance(5) ? QStringLiteral("N8") : QString());
    table.Set("NOTCLFOR", random.Chance(10) ? QStringLiteral("Chiamare prima:\r\nè chiuso il lunedì") : QString());
    table.Set("ANNCLFOR", random.Chance(3) ? QStringLiteral("S") : QString());
}

/// Returns how many destinations there are.
qint64 WriteDestinations(TableWriter& table, const Options& options, qint64 row, const QString& code, bool isCustomer) {
    Random random(options.seed, DestinationStream, static_cast<quint64>(row));
    const qint64 count = random.Chance(15) ? random.Between(1, 3) : 0;
    for (qint64 number = 1; number <= count; ++number) {
        const Town& town = MakeTown(random);
        table.Set("CODCLFOR", code).Set("FLAGCLFR", isCustomer ? QStringLiteral("C") : QStringLiteral("F"));
        table.Set("PRGDEST", number).Set("RAGDEST", QString(u"Magazzino di " + QString::fromUtf16(town.name)));
        table.Set("INDDEST", QString(MakeStreet(random) + u", " + MakeHouseNumber(random)));
        table.Set("CAPDEST", QString::fromUtf16(town.postCode)).Set("LOCDEST", QString::fromUtf16(town.name));
        table.Set("PRODEST", QString::fromUtf16(town.province)).Add();
    }
    return count;
}

Totals WriteCustomersAndSuppliers(Store& store, const Options& options) {
    const Codes codes(options.rows);
    const auto table = store.Create(QStringLiteral("ARCLFR"), CounterpartyColumns(codes.Length()));
    const auto destinations = store.Create(QStringLiteral("ARDEST"), {{"CODCLFOR", 'C', codes.Length()},
                                                                      {"FLAGCLFR", 'C', 1},
                                                                      {"PRGDEST", 'N', 3},
                                                                      {"RAGDEST", 'C', 40},
                                                                      {"INDDEST", 'C', 40},
                                                                      {"CAPDEST", 'C', 10},
                                                                      {"LOCDEST", 'C', 30},
                                                                      {"PRODEST", 'C', 2}});
    qint64 merged = 0;
    qint64 branches = 0;
    for (qint64 row = 0; row < options.rows; ++row) {
        const bool isCustomer = row < codes.Customers();
        const qint64 number = isCustomer ? row + 1 : row - codes.Customers() + 1;
        const bool isShared = !isCustomer && number % SharedEvery == 0;
        Random random(options.seed, CounterpartyStream, static_cast<quint64>(row));
        const Town& town = MakeTown(random);
        const QString code = isCustomer ? codes.Customer(number) : codes.Supplier(number);
        table->Set("CODCLFOR", code).Set("FLAGCLFR", isCustomer ? QStringLiteral("C") : QStringLiteral("F"));
        SetIdentity(*table, MakeIdentity(options.seed, isShared ? number - 1 : row));
        SetAddress(*table, random, town);
        SetReach(*table, random, town, row);
        SetTerms(*table, random);
        table->Add();
        merged += isShared ? 1 : 0;
        branches += WriteDestinations(*destinations, options, row, code, isCustomer);
    }
    table->Finish();
    destinations->Finish();
    store.AddIndex(table->Name(), {QStringLiteral("CODCLFOR"), QStringLiteral("FLAGCLFR")});
    store.AddIndex(destinations->Name(), {QStringLiteral("CODCLFOR"), QStringLiteral("FLAGCLFR")});
    return {{"ARCLFR: righe", QString::number(table->Count())},
            {"ARCLFR: fornitori che sono anche clienti", QString::number(merged)},
            {"CON_TRO attese (senza vettori)", QString::number(table->Count() - merged)},
            {"CON_SED attese", QString::number(branches)}};
}

Totals WriteCarriers(Store& store, const Options& options) {
    const Codes codes(options.rows);
    const auto table = store.Create(QStringLiteral("VETTORI"), {{"CDVETTOR", 'C', 4},
                                                                {"DSVETTOR", 'C', 40},
                                                                {"INVETTOR", 'C', 40},
                                                                {"CPVETTOR", 'C', 10},
                                                                {"LOVETTOR", 'C', 30},
                                                                {"PRVETTOR", 'C', 2},
                                                                {"PIVETTOR", 'C', 16},
                                                                {"TEVETTOR", 'C', 20}});
    qint64 known = 0;
    for (qint64 number = 1; number <= CarrierCount; ++number) {
        Random random(options.seed, CarrierStream, static_cast<quint64>(number));
        const Town& town = MakeTown(random);
        // Some carriers are suppliers too, as far as the supplier has a VAT number.
        const bool isKnown = number % 5 == 0 && number <= codes.Suppliers() && number % SharedEvery != 0;
        const Identity identity =
            MakeIdentity(options.seed, isKnown ? codes.Customers() + number - 1 : CarrierPersons + number);
        known += isKnown && !identity.vatNumber.isEmpty() ? 1 : 0;
        table->Set("CDVETTOR", QStringLiteral("V%1").arg(number, 3, 10, QLatin1Char('0')));
        table->Set("DSVETTOR", identity.name.left(40).trimmed());
        table->Set("INVETTOR", QString(MakeStreet(random) + u", " + MakeHouseNumber(random)));
        table->Set("CPVETTOR", QString::fromUtf16(town.postCode)).Set("LOVETTOR", QString::fromUtf16(town.name));
        table->Set("PRVETTOR", QString::fromUtf16(town.province)).Set("PIVETTOR", identity.vatNumber);
        table->Set("TEVETTOR", MakeTelephone(random, town)).Add();
    }
    table->Finish();
    return {{"VETTORI: righe", QString::number(table->Count())}, {"VETTORI: già fornitori", QString::number(known)}};
}

Totals WriteAll(Store& store, const Options& options) {
    QuadrixScript script(options.company);
    Totals totals;
    const struct {
        const char* group;
        Totals (*write)(Store& store, const Options& options, QuadrixScript& script);
    } groups[] = {{"controparti", WriteCounterparties},
                  {"articoli", WriteArticles},
                  {"distinte", WriteBills},
                  {"documenti", WriteDocuments}};
    for (const auto& group : groups) {
        if (IsAsked(options, QLatin1String(group.group))) {
            totals += group.write(store, options, script);
        }
    }
    store.Finish();
    script.Write(options.folder);
    return totals;
}

} // namespace

Totals WriteCounterparties(Store& store, const Options& options, QuadrixScript& script) {
    for (const char* payment : {"B30", "B60", "RB3", "RD"}) {
        script.Translate("ARCLFR", "PAGCLFOR", payment, payment);
    }
    for (const char* list : {"L1", "L2", "L3", "L4"}) {
        script.Translate("ARCLFR", "LISCLFOR", list, list);
    }
    script.Translate("ARCLFR", "ESECLFOR", "N8", "N8");
    script.Translate("ARCLFR", "NAZCLFOR", "ITA", "ITA");
    script.Translate("ARCLFR", "VALCLFOR", "EUR", "EUR");
    script.VatCode("N8", "Non imponibile art. 8", 0);
    return WriteCustomersAndSuppliers(store, options) + WriteCarriers(store, options);
}

} // namespace gescom

Totals MakeGescom(const Options& options) {
    SqliteFile store(options.folder + QStringLiteral("/gescom.db"));
    return gescom::WriteAll(store, options);
}

} // namespace examples
