// Mago.net: a SQL Server database, MAGONET unless the setting Databasename names another. Counterparties with branches,
// contacts and letters of intent stand here, articles in modImport_Mago_articles.cpp, bills in
// modImport_Mago_bills.cpp. Tables and columns are those of Mago.net 3.14, known from published models; the number of a
// woman's gender and the direction of letters are not among them. Booleans are '0' and '1', enumerations numbers, an
// empty day is 31/12/1799. Customers and suppliers are numbered apart. Country (its name) and the types beside the two
// are not read: ISOCountryCode and CustSuppType tell them. MA_Carriers has names alone: its codes wait in SYS_IMP for
// the carrier they mean. Known gaps: documents, stock, price lists.

#include "adapters/origins/Mago/modImport_Mago.h"

#include "adapters/contract/kinds/BaseTables.h"
#include "adapters/contract/kinds/childRules.h"
#include "adapters/contract/kinds/Counterparties.h"
#include "adapters/contract/map/codeRules.h"
#include "adapters/contract/map/lookups.h"
#include "adapters/sourceSettings.h"
#include "core/modImport.h"
#include "core/schemaDefaults.h"

using namespace contract;
using namespace contract::rules;

namespace modImport_Mago {

const contract::Origin& Entry();

namespace {

// --- Source tables ------------------------------------------------------------------------------------------------

const QString CustSupp = QStringLiteral("MA_CustSupp");
const QString CustomerOptions = QStringLiteral("MA_CustSuppCustomerOptions");
const QString SupplierOptions = QStringLiteral("MA_CustSuppSupplierOptions");
const QString Branch = QStringLiteral("MA_CustSuppBranches");
const QString People = QStringLiteral("MA_CustSuppPeople");

const QString CustomerType = QStringLiteral("3211264");
const QString SupplierType = QStringLiteral("3211265");

/// The key of a counterparty, in every table that hangs on it.
const std::vector<Tie> OfParty{{"CustSuppType"}, {"CustSupp"}};

/// A code of the counterparties, translated.
Rule Coded(const QString& column) { return Translated(CustSupp, column); }

// --- VAT numbers --------------------------------------------------------------------------------------------------

/// A VAT number without blanks, "." and "-" and, of an Italian one, without its "IT" and with the zeros in front that
/// its eleven digits lack.
QString NormalizzaPartitaIvaMago(QString number, const QString& country) {
    static const QString italy = QStringLiteral("IT");
    constexpr qsizetype size = 11;
    number.removeIf([](QChar c) { return c.isSpace() || c == u'.' || c == u'-'; });
    if (!country.isEmpty() && country.compare(italy, Qt::CaseInsensitive) != 0) {
        return number;
    }
    if (!country.isEmpty() && number.startsWith(italy, Qt::CaseInsensitive)) {
        number.remove(0, italy.size());
    }
    const bool isNumber =
        !number.isEmpty() && std::all_of(number.begin(), number.end(), [](QChar c) { return c >= u'0' && c <= u'9'; });
    return isNumber ? number.rightJustified(size, u'0') : number;
}

Rule VatNumber() {
    return {"senza spazi, \".\" e \"-\"; se è italiana anche senza \"IT\", undici cifre; niente se è vuota",
            [](const RuleInput& input) -> RuleValue {
                const QString number = NormalizzaPartitaIvaMago(input.row.Text(input.columns.first()),
                                                                input.row.Text(input.columns.last()));
                return number.isEmpty() ? RuleValue() : RuleValue(number);
            }};
}

// --- Rules --------------------------------------------------------------------------------------------------------

/// A supplier that is one of the customers. One that has not come over must come first: else there would be two of it.
Rule LinkedCustomer() {
    return {"controparte importata da quel codice cliente; riga abbandonata se MA_CustSupp ha il cliente e Quadrix no, "
            "altrimenti va nel log e non si scrive",
            [](const RuleInput& input) -> RuleValue {
                const QString code = input.Text();
                const QString found = code.isEmpty() ? code : LookUp(input.session, "CON_TRO", "COCGE", code, "CDCON");
                if (code.isEmpty() || !found.isEmpty()) {
                    return found.isEmpty() ? RuleValue() : RuleValue(found);
                }
                ovConnection& source = input.session.SourceConnection();
                const Recordset customer =
                    source.ExecuteWC("SELECT CustSupp FROM MA_CustSupp WHERE CustSuppType = " + CustomerType +
                                     " AND CustSupp = " + LiteralOf(source, input.Value()));
                if (!customer.Eof()) {
                    throw ImportError(QStringLiteral("il cliente collegato '%1' non è stato importato").arg(code));
                }
                modImport::LogNote(
                    input.session,
                    QStringLiteral("CLIENTE COLLEGATO NON TROVATO: %1: '%2'").arg(input.session.Errors.RowKey(), code));
                return std::nullopt;
            }};
}

/// An enumeration; a number that is not known is logged and left out.
Rule Enumerated(const QList<QPair<QString, QString>>& values) {
    const Rule choice = Choice(values, {});
    return {choice.text.section(QStringLiteral(", altrimenti"), 0, 0) +
                QStringLiteral("; ogni altro va nel log e non si scrive"),
            [choice](const RuleInput& input) -> RuleValue {
                const QString number = input.Text();
                const RuleValue value = choice.apply(input);
                if (number.isEmpty() || number == u"0" || !value || !value->toString().isEmpty()) {
                    return number.isEmpty() || number == u"0" ? RuleValue() : value;
                }
                modImport::LogNote(input.session,
                                   QStringLiteral("VALORE NON PREVISTO: %1, colonna '%2': '%3'")
                                       .arg(input.session.Errors.RowKey(), input.columns.first(), number));
                return std::nullopt;
            }};
}

/// Whether a person gets a kind of document, whatever the way.
Rule Receives() {
    return {"vero se non è vuoto, 0 o 12451840", [](const RuleInput& input) {
                static const QStringList none{QString(), "0", "12451840"};
                return RuleValue(!none.contains(input.Text()));
            }};
}

/// A customer pays split tax by his options, or by himself.
Rule SplitPayment() {
    const Rule flag = Flag();
    return {flag.text + QStringLiteral("; anche se lo è SplitTax di MA_CustSupp"),
            [flag](const RuleInput& input) {
                const auto isSet = [&](const QString& column) {
                    return Field(column, flag).Value(input.session, input.row).toBool();
                };
                return RuleValue(isSet(input.columns.first()) || isSet(QStringLiteral("SplitTax")));
            },
            Side::Both,
            {{CustSupp, {}, {"SplitTax"}}}};
}

const Rule& TaxFree() {
    static const Rule rule = ExemptVat(CustSupp, "TaxCode");
    return rule;
}

bool SaysNotExempt(const SourceRow& row) { return row.Text("ExemptFromTax") == u"0"; }

/// The code (last column) of a customer whose flag (first column) does not say that he pays tax.
Rule Exemption() {
    return Around(TaxFree(), TaxFree().text + QStringLiteral("; niente se il flag è \"0\""),
                  [](const RuleInput& input) -> RuleValue {
                      return SaysNotExempt(input.row)
                                 ? std::nullopt
                                 : TaxFree().apply({input.session, input.row, {input.columns.last()}, input.facts});
                  });
}

// --- Hooks --------------------------------------------------------------------------------------------------------

/// Adds the IBAN, and tells who is exempt and has no code without tax, or has one and is not exempt; of one who is
/// there the code is not looked at.
void CompleteCustomer(ImportRun& run, const SourceRow& row, TargetRow& target) {
    SetIban(run, row, target);
    if (!target.Value("CORAS").isValid()) {
        return;
    }
    Session& session = run.GetSession();
    const bool isExempt = Field("ExemptFromTax", Flag()).Value(session, row).toBool();
    if (isExempt && !target.Value("COESE").isValid()) {
        run.Log(QStringLiteral("ESENTE SENZA CODICE: %1: TaxCode '%2' non è un codice IVA ad aliquota zero")
                    .arg(run.RowKey(), row.Text("TaxCode")));
    }
    if (SaysNotExempt(row) && !Field("TaxCode", TaxFree()).Text(session, row).isEmpty()) {
        run.Log(QStringLiteral("CODICE DI ESENZIONE NON USATO: %1: TaxCode '%2', ma ExemptFromTax dice che non è "
                               "esente")
                    .arg(run.RowKey(), row.Text("TaxCode")));
    }
}

// --- Counterparties -----------------------------------------------------------------------------------------------

Branches Destinazioni() {
    const ChildTable party{.table = CustSupp, .on = OfParty};
    return {
        .rows = {.table = Branch, .on = OfParty, .order = "Branch", .naming = "CustSupp, Branch"},
        .lines =
            {
                {"CDSED", "Branch", Digits(3)},
                {"SETIP", "Branch", NamedBy(Branch, party, "SendDocumentsTo", "FT", "CO")},
                {"SERAS", "CompanyName", First(100)},
                {"SEIND", "Address", First(100)},
                {"SENRC", "StreetNo", Text()},
                {"SECAP", "ZIPCode", WhenNotBlank("City", Text())},
                {"SECIT", "City", First(60)},
                {"SEPRO", "County", Text()},
                {"SENAZ", "ISOCountryCode", Country(CustSupp, "ISOCountryCode")},
                {"SERIF", "ContactPerson", Text()},
                {"SEDEF", "Branch", NamedBy(Branch, party, "ShipToAddress")},
                {"SENOT", "Notes", Text()},
            },
        .numbers = {.office = "Telephone1", .office2 = "Telephone2", .fax = "Fax", .mail = "EMail"},
    };
}

Contacts Persone(bool customers) {
    return {
        .rows = {.table = People, .on = OfParty, .order = "Line", .naming = "CustSupp, Line"},
        .lines =
            {
                {"RFNOM", "LastName, Name", Text()},
                {"RFQUA", "WorkingPosition", Text()},
                {"RFTIT", "TitleCode", Text()},
                {"RFNOT", "Notes", Text()},
                {"RFOFF", "CustomerQuotation", Receives()},
                {"RFORD", customers ? "SaleOrder" : "PurchaseOrder", Receives()},
                {"RFDDT", "DeliveryNote", Receives()},
                {"RFFAT", "Invoice", Receives()},
            },
        .numbers = {.office = "Telephone1", .fax = "Fax", .mobile = "Telephone2", .mail = "EMail"},
    };
}

/// What customers and suppliers have alike.
std::vector<MapLine> CommonLines() {
    const ChildTable notes{.table = "MA_CustSuppNotes", .on = OfParty, .order = "Line"};
    const Lines lines{
        {"CORAS", "CompanyName", First(35)},
        {"CORA2", "CompanyName", From(36)},
        {"COPER", "NaturalPerson", Flag()},
        {"COCOG", "LastName", NotBlank(Text())},
        {"CONOM", "Name", NotBlank(Text())},
        {"CODTN", "DateOfBirth", DayThere(NoDay)},
        {"CONAT", "CityOfBirth", NotBlank(Text())},
        {"COPRN", "CountyOfBirth", NotBlank(Text())},
        {"COSEX", "Gender", Enumerated({{"2097152", "M"}, {"2097153", "F"}})},
        {"COIND", "Address", First(100)},
        {"CONRC", "StreetNo", Text()},
        {"COIN2", "Address2", First(100)},
        {"COCAP", "ZIPCode", Text()},
        {"COCIT", "City", First(60)},
        {"COPRO", "County", Text()},
        {"CONAZ", "ISOCountryCode", Country(CustSupp, "ISOCountryCode")},
        {"COLNG", "Language", TranslatedOr(CustSupp, "Language", schema::defaults::Language)},
        {"COVAL", "Currency", Currency(CustSupp, "Currency")},
        {"COIVA", "TaxIdNumber, ISOCountryCode", VatNumber()},
        {"COFIS", "FiscalCode, ISOCountryCode", VatNumber()},
        {"COPEC", "CertifiedEMail, EICertifiedEMail", FirstNotBlank(Text())},
        {"COCFE", "IPACode", Text()},
        ByRole("COMOP", "COMOA", "Payment", Coded("Payment")),
        {"COABI", "ABI", NotBlank(Digits(5))},
        {"COCAB", "CAB", NotBlank(Digits(5))},
        {"COBIC", "Swift", NotBlank(Text())},
        {"COCIN", "CIN", NotBlank(Text())},
        {"COCOC", "CA", NotBlank(Text())},
        {"COIBA", "IBAN", NotBlank(WithoutBlanks())},
        {"COBAN", "CompanyBank", OwnBank(CustSupp, "CompanyBank")},
        ByRole("COSC1", "COSF1", "Discount1", RoundedTo(2)),
        ByRole("COSC2", "COSF2", "Discount2", RoundedTo(2)),
        ByRole("COLSC", "COLSF", "PriceList", Coded("PriceList")),
        ByRole("COMAC", "COMAF", "Account", NotBlank(Text())),
        ByRole("COCCC", "COCCF", "Category", Coded("Category")),
        {"COCCT", "CustSuppKind", Coded("CustSuppKind")},
        {"COPOR", "Port", Coded("Port")},
        {"COMOS", "Shipping", Coded("Shipping")},
        {"COVEP", "Carrier1", Coded("Carrier1")},
        {"COINV", "InsertionDate", Or(Day(NoDay), Today())},
        {"DTINS", "TBCreated", DayThere(NoDay)},
        {"COANN", "Disabled", Flag()},
        {"COPCY", "PrivacyStatement", Flag()},
        {"CONOT", "Notes", WithLines(CustSupp, notes, "Notes")},
    };
    return lines.Over({});
}

/// Customers or suppliers, with their options.
struct Half {
    QString type;
    const char* step;
    Join options;
    Roles roles;
};

Counterparties PartiesOf(const Half& half) {
    Join options = half.options;
    options.columns += QStringList{"Category", "Port", "Shipping", "Carrier1"};
    return {
        .frame = {.module = Module, .procedure = "ImportContropartiMago", .step = half.step},
        .source =
            {
                .table = CustSupp,
                .key = "CustSupp",
                .order = "CustSupp",
                .where = QStringLiteral("T.CustSuppType = %1").arg(half.type),
                .joins =
                    {
                        options,
                        {.table = "MA_CustSuppNaturalPerson",
                         .on = OfParty,
                         .columns = {"LastName", "Name", "DateOfBirth", "CityOfBirth", "CountyOfBirth", "Gender"}},
                        {.table = "MA_Banks",
                         .on = {{"Bank", "CustSuppBank"}},
                         .columns = {"ABI", "CAB", "Swift"},
                         .where = "(J3.IsACompanyBank IS NULL OR J3.IsACompanyBank <> '1')"},
                    },
            },
        .roles = Always(half.roles),
        .name = "CompanyName",
        .vatNumber = {"TaxIdNumber, ISOCountryCode", VatNumber()},
        .taxCode = {"FiscalCode, ISOCountryCode", VatNumber()},
        .numbers = {.office = "Telephone1",
                    .office2 = "Telephone2",
                    .fax = "Fax",
                    .mail = "EMail",
                    .web = "Internet",
                    .telex = "Telex"},
        .created = {"TBCreated", DayThere(NoDay)},
        .branches = {Destinazioni()},
        .contacts = {{.lines = {{"RFNOM", "ContactPerson", Text()}}}, Persone(half.roles.customer)},
    };
}

Counterparties Clienti() {
    Counterparties customers = PartiesOf(
        {.type = CustomerType,
         .step = "Clienti",
         .options = {.table = CustomerOptions,
                     .on = {{"CustSuppType"}, {"Customer", "CustSupp"}},
                     .columns = {"Area", "Salesperson", "AreaManager", "ExemptFromTax", "TaxCode", "GoodsOffset",
                                 "Blocked", "MaximumCredit", "MaxOrderValue", "CustomerClassification",
                                 "OneInvoicePerDN", "PASplitPayment", "DeclarationOfIntentNo",
                                 "DeclarationOfIntentDate", "DeclarationOfIntentOurNo", "DeclarationOfIntentDueDate"}},
         .roles = {.customer = true}});
    customers.lines = {
        CommonLines(),
        {"COZON", "Area", Coded("Area")},
        {"COAGE", "Salesperson", Coded("Salesperson")},
        {"COAG2", "AreaManager", Coded("AreaManager")},
        {"COESE", "ExemptFromTax, TaxCode", Exemption()},
        {"COMAS", "GoodsOffset", CustomerOnly(NotBlank(Text()))},
        {"COBLK", "Blocked", Flag()},
        {"COFID", "MaximumCredit", RoundedTo(2)},
        {"COMXO", "MaxOrderValue", RoundedTo(2)},
        {"COCLC", "CustomerClassification", Coded("CustomerClassification")},
        {"CORGS", "OneInvoicePerDN", NotBlank(Choice({{"1", "N"}}, "S"))},
        {"COSPP", "PASplitPayment", SplitPayment()},
        {"COINT", "DeclarationOfIntentNo", NotBlank(Text())},
        {"COINI", "DeclarationOfIntentDate", DayThere(NoDay)},
        {"CONRI", "DeclarationOfIntentOurNo", NotBlank(Text())},
        {"COSCI", "DeclarationOfIntentDueDate", DayThere(NoDay)},
    };
    customers.more = CompleteCustomer;
    customers.further = {{}, {{CustomerOptions, {}, {"ExemptFromTax", "TaxCode"}}}, {}};
    return customers;
}

/// They come behind the customers: who is one already gains the role.
Counterparties Fornitori() {
    Counterparties suppliers = PartiesOf({.type = SupplierType,
                                          .step = "Fornitori",
                                          .options = {.table = SupplierOptions,
                                                      .on = {{"CustSuppType"}, {"Supplier", "CustSupp"}},
                                                      .columns = {"TaxCode", "GoodsOffset", "Blocked"}},
                                          .roles = {.supplier = true}});
    suppliers.lines = {
        CommonLines(),
        {"COESA", "TaxCode", SupplierOnly(ExemptVat(CustSupp, "TaxCode"))},
        {"COCAC", "GoodsOffset", SupplierOnly(NotBlank(Text()))},
        {"COBLA", "Blocked", SupplierOnly(Flag())},
        {"COSPP", "SplitTax", Flag()},
    };
    suppliers.more = SetIban;
    suppliers.sameAs = {"LinkedCustSupp", LinkedCustomer()};
    suppliers.sameIsTold = true;
    suppliers.empties = false;
    return suppliers;
}

// --- Letters of intent --------------------------------------------------------------------------------------------

/// Not every release has them: a procedure of their own.
BaseTable LettereIntento() {
    return {
        .frame = {.module = Module,
                  .procedure = "ImportLettereIntentoMago",
                  .announcement = "Inizio importazione lettere d'intento",
                  .errors = "Errore: ",
                  .step = "Lettere d'intento",
                  .completion = "Lettere d'intento importate correttamente!"},
        .source = {.table = "MA_DeclarationOfIntent", .key = "DeclId", .order = "DeclId"},
        .target = "DIC_INT",
        .lines =
            {
                {"DITIP", "DeclType", Text()},
                {"DIANN", "DeclYear", RoundedTo(0)},
                {"DIPRG", "LogNo", RoundedTo(0)},
                {"DICON", "CustSupp, CustSuppType", PartyByMark(SupplierType)},
                {"DIVAL", "FromDate", Day(NoDay)},
                {"DIVDA", "ToDate", Day(NoDay)},
                {"DIVIM", "LimitAmount", RoundedTo(2)},
                {"DIDLI", "CustomerDate", Day(NoDay)},
                {"DINLI", "CustomerNo", Text()},
                {"DIDRT", "DeclDate", Day(NoDay)},
                {"DIPRT", "TelProtocol", Text()},
            },
        .empties = DeletedImports("DIC_INT"),
        .keys = {"DICON", "DIANN", "DIPRG", "DINLI"},
    };
}

} // namespace

// --- Entry --------------------------------------------------------------------------------------------------------

const Origin& Entry() {
    static const Origin origin{
        "Mago NET",
        Module,
        {"SQL Server", sourceSettings::Server("MAGONET")},
        Buttons("YYYNN---"),
        Shown::Keep,
        {
            ProcedureOf(Button::Cli, FrameOf(Clienti()), {PartOf(Clienti()), PartOf(Fornitori())}),
            ProcedureOf(Button::Art, Articoli()),
            ProcedureOf(Button::Dis, Distinte()),
            ProcedureOf(std::nullopt, LettereIntento()),
        },
    };
    return origin;
}

} // namespace modImport_Mago
