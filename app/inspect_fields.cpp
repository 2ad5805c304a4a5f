#include "app/inspect_fields.h"

#include "core/nearNames.h"

#include <QDate>
#include <QRegularExpression>
#include <QSet>

#include <algorithm>

namespace inspection {

namespace {

constexpr qsizetype LeastValues = 3; ///< so many different values are no chance

struct TableKind {
    const char* name;
    QStringList spellings;
};

const std::vector<TableKind>& TableKinds() {
    static const std::vector<TableKind> kinds{
        {"clienti e fornitori",
         {"ANAGRAFICA", "ANAGRAFICHE", "ANAGRAFE", "CLIENTEFORNITORE", "CLIENTI", "FORNITORI", "CLIENTIFORNITORI",
          "CUSTOMER", "CUSTOMERS", "SUPPLIERS", "VENDORS", "PARTNERS", "PARTNER", "SOGGETTI", "BUSINESSPARTNERS"}},
        {"articoli",
         {"ARTICOLO", "ARTICOLI", "ARTICLES", "ITEM", "ITEMS", "PRODOTTI", "PRODUCT", "PRODUCTS", "PARTS", "MATERIALI",
          "MATERIALS"}},
        {"prezzi", {"LISTINO", "LISTINI", "PREZZI", "PRICES", "PRICELISTS", "PRICELIST"}},
        {"distinte base",
         {"DISTINTA", "DISTINTE", "DISTINTABASE", "DISTINTEBASE", "BOM", "BOMS", "BILLOFMATERIALS", "COMPONENTI",
          "COMPONENTS", "STRUCTURE"}},
        {"sedi",
         {"SEDI", "DESTINAZIONI", "DESTINAZIONE", "DESTINAZIONIMERCE", "BRANCHES", "SHIPTO", "DELIVERYADDRESSES",
          "ADDRESSES", "INDIRIZZI"}},
        {"documenti",
         {"DOCUMENTI", "DOCUMENTO", "TESTATE", "TESTATADOCUMENTO", "DOCUMENTS", "ORDINI", "ORDERS", "INVOICES"}},
        {"righe dei documenti", {"RIGHE", "RIGHEDOCUMENTO", "DOCUMENTORIGA", "LINES", "ORDERLINES", "DETTAGLIO"}},
        {"giacenze", {"SALDI", "GIACENZE", "STOCK", "INVENTORY", "ESISTENZE", "ONHAND"}},
        {"piano dei conti",
         {"PIANODEICONTI", "PIANOCONTI", "CONTI", "ACCOUNTS", "CHARTOFACCOUNTS", "SOTTOCONTI", "LEDGER"}},
        {"pagamenti", {"PAGAMENTO", "PAGAMENTI", "PAYMENTS", "PAYMENTTERMS", "CONDIZIONIPAGAMENTO"}},
        {"ubicazioni", {"UBICAZIONI", "UBICAZIONE", "LOCATIONS", "BINS"}},
        {"codici IVA", {"IVA", "ALIQUOTE", "CODICIIVA", "VATCODES", "TAXCODES", "VATRATES"}},
        {"vettori", {"VETTORI", "CARRIERS", "TRASPORTATORI", "CORRIERI"}},
        {"contatti", {"CONTATTI", "CONTACTS", "REFERENTI", "PERSONE"}},
    };
    return kinds;
}

/// Whether a word says little of what a column is about where another one stands beside it: "CITY_NAME" is a city.
bool IsGeneric(const QString& word) {
    static const QSet<QString> generic{"CODE", "CODICE", "ID",     "KEY",  "CHIAVE", "NAME",        "NOME",
                                       "NO",   "NUMBER", "NUMERO", "DATE", "DATA",   "DESCRIPTION", "DESCRIZIONE",
                                       "TEXT", "TESTO",  "TYPE",   "TIPO", "IMPORTO"};
    return generic.contains(word);
}

/// How much of a name a spelling is: 0 nothing, else the more the larger. A run of whole words counts, and that with
/// which the name ends before that with which it begins.
qsizetype Share(const QStringList& words, const QString& spelling) {
    qsizetype share = 0;
    for (qsizetype from = 0; from < words.size(); ++from) {
        QString run;
        for (qsizetype to = from; to < words.size() && run.size() < spelling.size(); ++to) {
            run += words[to];
            if (run == spelling) {
                const bool isWhole = from == 0 && to == words.size() - 1;
                const qsizetype size = !isWhole && IsGeneric(run) ? 1 : run.size();
                share = std::max(share, 4 * size + (isWhole ? 3 : to == words.size() - 1 ? 1 : 0));
            }
        }
    }
    return share;
}

/// The entry of a list whose spelling is the largest share of a name; null when none is any.
template<class Entry>
const Entry* EntryOf(const std::vector<Entry>& entries, const QString& name) {
    const QStringList words = WordsOfName(name);
    const Entry* best = nullptr;
    qsizetype most = 0;
    for (const Entry& entry : entries) {
        for (const QString& spelling : entry.spellings) {
            if (const qsizetype share = Share(words, spelling); share > most) {
                most = share;
                best = &entry;
            }
        }
    }
    return best;
}

// --- Looks

bool Matches(const QString& value, const QString& pattern) {
    return QRegularExpression(QRegularExpression::anchoredPattern(pattern)).match(value).hasMatch();
}

/// Eleven digits, the last of which checks the others.
bool IsVatNumber(const QString& value) {
    constexpr int digits = 11;
    const QString number = value.startsWith(QLatin1String("IT")) ? value.mid(2) : value;
    if (!Matches(number, QStringLiteral("[0-9]{11}"))) {
        return false;
    }
    int sum = 0;
    for (int i = 0; i < digits; ++i) {
        const int digit = number[i].digitValue() * (i % 2 == 0 ? 1 : 2);
        sum += digit > 9 ? digit - 9 : digit;
    }
    return sum % 10 == 0 && number.count(u'0') != digits;
}

bool IsTaxCode(const QString& value) {
    return Matches(value, QStringLiteral("[A-Z]{6}[0-9LMNP-V]{2}[A-EHLMPRST][0-9LMNP-V]{2}[A-Z][0-9LMNP-V]{3}[A-Z]")) ||
           IsVatNumber(value);
}

bool IsProvince(const QString& value) {
    static const QString provinces = QStringLiteral(
        " AG AL AN AO AP AQ AR AT AV BA BG BI BL BN BO BR BS BT BZ CA CB CE CH CI CL CN CO CR CS CT CZ EN FC FE FG FI "
        "FM FO FR GE GO GR IM IS KR LC LE LI LO LT LU MB MC ME MI MN MO MS MT NA NO NU OG OR OT PA PC PD PE PG PI PN "
        "PO PR PS PT PU PV PZ RA RC RE RG RI RM RN RO SA SI SO SP SR SS SU SV TA TE TN TO TP TR TS TV UD VA VB VC VE "
        "VI VR VS VT VV ");
    return value.size() == 2 && provinces.contains(u' ' + value.toUpper() + u' ');
}

bool IsDate(const QString& value) {
    static const QStringList formats{"yyyy-MM-dd", "dd/MM/yyyy", "d/M/yyyy", "dd-MM-yyyy", "dd.MM.yyyy", "yyyyMMdd"};
    const QString day = value.section(u'T', 0, 0).section(u' ', 0, 0);
    return std::any_of(formats.begin(), formats.end(), [&day](const QString& format) {
        const QDate date = QDate::fromString(day, format);
        return date.isValid() && date.year() > 1900 && date.year() < 2100;
    });
}

/// A number that is dialled: begins as one does and is no amount, no code of a fixed length with letters.
bool IsTelephone(const QString& value) {
    const qsizetype digits = std::count_if(value.begin(), value.end(), [](QChar c) { return c.isDigit(); });
    return digits >= 6 && digits <= 15 && Matches(value, QStringLiteral("(\\+|00|0|3)[0-9 ./\\-()]+"));
}

struct LookKind {
    Look look;
    const char* text;
    bool (*isIt)(const QString& value);
};

/// The surest first.
const std::vector<LookKind>& LookKinds() {
    static const std::vector<LookKind> kinds{
        {Look::Email, "indirizzo e-mail",
         [](const QString& value) { return Matches(value, QStringLiteral("[^@\\s]+@[^@\\s]+\\.[^@\\s]+")); }},
        {Look::Iban, "IBAN",
         [](const QString& value) {
             return Matches(QString(value).remove(u' '), QStringLiteral("[A-Z]{2}[0-9]{2}[A-Z0-9]{11,30}"));
         }},
        {Look::VatNumber, "partita IVA", IsVatNumber},
        {Look::TaxCode, "codice fiscale", IsTaxCode},
        {Look::Date, "data", IsDate},
        {Look::PostCode, "CAP", [](const QString& value) { return Matches(value, QStringLiteral("[0-9]{5}")); }},
        {Look::Province, "sigla di provincia", IsProvince},
        {Look::Telephone, "numero di telefono", IsTelephone},
    };
    return kinds;
}

} // namespace

const std::vector<Field>& Fields() {
    static const std::vector<Field> fields{
        {"codice",
         {"CODICE",          "CODE",         "ID",         "KEY",         "CHIAVE",         "CODICECLIENTE",
          "CODICEFORNITORE", "CUSTOMERCODE", "CUSTOMERID", "CUSTOMERNO",  "CUSTOMERNUMBER", "SUPPLIERCODE",
          "SUPPLIERID",      "VENDORCODE",   "VENDORNO",   "PARTNERCODE", "ACCOUNTCODE",    "CODICEANAGRAFICA",
          "CODICESOGGETTO",  "SOTTOCONTO",   "CONTO"},
         {"CON_TRO.CDCON", "CON_TRO.COCGE", "CON_TRO.COFGE"}},
        {"codice articolo",
         {"CODICEARTICOLO", "CODART", "ARTICOLO", "ARTICLE", "ARTICLECODE", "ITEM", "ITEMCODE", "ITEMNO", "ITEMNUMBER",
          "SKU", "PRODUCT", "PRODUCTCODE", "PRODUCTID", "PARTNUMBER", "PARTNO", "PRODOTTO", "CODICEPRODOTTO",
          "MATERIALE", "CODICEMATERIALE"},
         {"ART_ICO.CDART", "ART_ICO.CDEXT", "ART_ICO.IDEST"}},
        {"ragione sociale",
         {"RAGIONESOCIALE", "RAGIONE", "RAGSOC", "DENOMINAZIONE", "NOME", "NAME", "COMPANYNAME", "COMPANY",
          "CUSTOMERNAME", "NOMINATIVO", "INTESTAZIONE", "BUSINESSNAME", "DITTA", "SUPPLIERNAME", "VENDORNAME"},
         {"CON_TRO.CORAS", "CON_TRO.CORA2", "CON_SED.SERAS"}},
        {"descrizione",
         {"DESCRIZIONE", "DESCRI", "DESCRIPTION", "TESTO", "ITEMNAME", "PRODUCTNAME", "DESCRIZIONEARTICOLO",
          "ITEMDESCRIPTION", "DENOMINAZIONE", "SHORTTEXT"},
         {"ART_ICO.ARDES", "ART_ICO.ARDE2", "ART_ICO.ARDEC", "PIA_CON.PCDES"}},
        {"partita IVA",
         {"PARTITAIVA", "VAT", "VATNUMBER", "VATNO", "VATID", "VATCODE", "TAXID", "PIVA", "VATREGISTRATION"},
         {"CON_TRO.COIVA"},
         Look::VatNumber},
        {"codice fiscale",
         {"CODICEFISCALE", "FISCALE", "TAXCODE", "FISCALCODE", "CF"},
         {"CON_TRO.COFIS"},
         Look::TaxCode},
        {"indirizzo",
         {"INDIRIZZO", "INDIRI", "VIA", "ADDRESS", "STREET", "ADDRESS1", "STREETADDRESS", "RECAPITO"},
         {"CON_TRO.COIND", "CON_SED.SEIND"}},
        {"CAP",
         {"CAP", "ZIP", "ZIPCODE", "POSTCODE", "POSTALCODE", "CODICEAVVIAMENTOPOSTALE"},
         {"CON_TRO.COCAP", "CON_SED.SECAP"},
         Look::PostCode},
        {"città",
         {"CITTA", "CITTÀ", "LOCALITA", "LOCALITÀ", "COMUNE", "CITY", "TOWN", "PLACE"},
         {"CON_TRO.COCIT", "CON_SED.SECIT"}},
        {"provincia",
         {"PROVINCIA", "PROVINCE", "STATE", "SIGLAPROVINCIA", "PR", "COUNTY"},
         {"CON_TRO.COPRO", "CON_SED.SEPRO"},
         Look::Province},
        {"nazione",
         {"NAZIONE", "PAESE", "STATO", "COUNTRY", "COUNTRYCODE", "CODICENAZIONE", "CODICEPAESE", "CODICESTATO"},
         {"CON_TRO.CONAZ"}},
        {"telefono",
         {"TELEFONO", "PHONE", "TELEPHONE", "PHONENUMBER", "TELEFONO1", "PHONE1"},
         {"NUM_TEL.NRNUM"},
         Look::Telephone},
        {"cellulare", {"CELLULARE", "CEL", "CELL", "MOBILE", "MOBILEPHONE", "CELLPHONE"}, {}, Look::Telephone},
        {"fax", {"FAX", "TELEFAX", "FAXNUMBER"}, {}, Look::Telephone},
        {"e-mail", {"EMAIL", "MAIL", "POSTAELETTRONICA", "EMAILADDRESS", "PEC"}, {"CON_TRO.COPEC"}, Look::Email},
        {"sito web", {"WEB", "SITO", "SITOWEB", "WEBSITE", "URL", "HOMEPAGE"}, {}},
        {"note",
         {"NOTE", "NOTES", "ANNOTAZIONI", "REMARKS", "COMMENT", "COMMENTS", "OSSERVAZIONI", "MEMO"},
         {"CON_TRO.CONOT", "ART_ICO.ARNOT"}},
        {"pagamento",
         {"PAGAMENTO", "CODICEPAGAMENTO", "MODALITAPAGAMENTO", "CONDIZIONIPAGAMENTO", "PAYMENT", "PAYMENTTERMS",
          "PAYMENTCODE", "TERMS"},
         {"CON_TRO.COMOP", "CON_TRO.COMOA"}},
        {"valuta", {"VALUTA", "DIVISA", "CURRENCY", "CURRENCYCODE"}, {"CON_TRO.COVAL"}},
        {"agente", {"AGENTE", "CODICEAGENTE", "AGENT", "SALESMAN", "SALESPERSON", "REP"}, {"CON_TRO.COAGE"}},
        {"zona",
         {"ZONA", "AREA", "ZONE", "REGION", "TERRITORY", "TERRITORIO", "DISTRICT", "CODICEZONA"},
         {"CON_TRO.COZON"}},
        {"sconto", {"SCONTO", "SCONTO1", "DISCOUNT", "REBATE"}, {"CON_TRO.COSC1", "CON_TRO.COSF1"}},
        {"ABI", {"ABI", "CODICEABI"}, {"CON_TRO.COABI"}},
        {"CAB", {"CAB", "CODICECAB"}, {"CON_TRO.COCAB"}},
        {"IBAN", {"IBAN", "CODICEIBAN"}, {"CON_TRO.COIBA"}, Look::Iban},
        {"BIC", {"BIC", "SWIFT"}, {"CON_TRO.COBIC"}},
        {"banca", {"BANCA", "BANK", "CODICEBANCA", "BANKNAME"}, {"CON_TRO.COBAN"}},
        {"tipo", {"TIPO", "TYPE", "KIND", "FLAG", "CATEGORIA", "CATEGORY", "TIPOCONTO", "TIPOSOGGETTO"}, {}},
        {"unità di misura",
         {"UNITAMISURA", "UNITADIMISURA", "UNITA", "UNIT", "UOM", "UNITOFMEASURE"},
         {"ART_ICO.ARUMS"}},
        {"codice IVA", {"IVA", "CODICEIVA", "ALIQUOTA", "ALIQUOTAIVA", "VATRATE", "TAX", "TAXRATE"}, {"ART_ICO.ARIVA"}},
        {"esenzione IVA",
         {"ESENZIONE", "ESENZIONEIVA", "CODICEESENZIONE", "IVAESENTE", "EXEMPTION", "VATEXEMPTION", "VATEXEMPT",
          "TAXEXEMPT", "TAXEXEMPTION", "NONIMPONIBILE", "TITOLOESENZIONE"},
         {"CON_TRO.COESE"}},
        {"lingua", {"LINGUA", "CODICELINGUA", "LANGUAGE", "LANGUAGECODE", "LANG", "IDIOMA"}, {"CON_TRO.COLNG"}},
        {"fido",
         {"FIDO", "FIDOMASSIMO", "LIMITEFIDO", "LIMITECREDITO", "AFFIDAMENTO", "CREDIT", "CREDITLIMIT", "CREDITLINE"},
         {"CON_TRO.COFID"}},
        {"conto corrente",
         {"CONTOCORRENTE", "NUMEROCONTO", "NUMEROCONTOCORRENTE", "NUMEROCC", "CONTOBANCARIO", "BANKACCOUNT",
          "BANKACCOUNTNUMBER", "BANKACCOUNTNO", "ACCOUNTNUMBER"},
         {"CON_TRO.COCOC"}},
        {"classe",
         {"CLASSE", "CLASS", "CLASSEARTICOLO", "TIPOARTICOLO", "TIPOLOGIA", "ITEMTYPE", "ITEMCLASS", "PRODUCTTYPE"},
         {"ART_ICO.ARCLA"}},
        {"scorta minima",
         {"SCORTA", "SCORTAMINIMA", "SCORTASICUREZZA", "SOTTOSCORTA", "PUNTORIORDINO", "SAFETYSTOCK", "MINSTOCK",
          "MINIMUMSTOCK", "REORDERPOINT", "REORDERLEVEL"},
         {"ART_ICO.ARSMN"}},
        {"lotto di riordino",
         {"LOTTO", "LOTTORIORDINO", "LOTTOMINIMO", "LOTTOECONOMICO", "LOTSIZE", "ORDERLOT", "REORDERQUANTITY",
          "REORDERQTY", "ORDERQUANTITY", "MINORDERQTY"},
         {"ART_ICO.ARLOR"}},
        {"giorni di consegna",
         {"GIORNICONSEGNA", "GIORNIAPPROVVIGIONAMENTO", "TEMPOCONSEGNA", "TEMPOAPPROVVIGIONAMENTO", "LEADTIME",
          "LEADTIMEDAYS", "DELIVERYTIME", "DELIVERYDAYS"},
         {"ART_ICO.ARGGA"}},
        {"disegno",
         {"DISEGNO", "NUMERODISEGNO", "CODICEDISEGNO", "DRAWING", "DRAWINGNUMBER", "DRAWINGNO"},
         {"ART_ICO.ARDIS"}},
        {"prezzo",
         {"PREZZO", "PRICE", "UNITPRICE", "PREZZO1", "IMPORTO", "PREZZOVENDITA", "PREZZOBASE", "SALESPRICE",
          "LISTPRICE"},
         {"LIS_ARS.SCPRZ", "ART_ICO.ARPRZ"}},
        {"costo", {"COSTO", "COST", "UNITCOST", "STANDARDCOST", "COSTOSTANDARD", "ULTIMOCOSTO"}, {"ART_ICO.ARCOS"}},
        {"quantità", {"QUANTITA", "QUANTITÀ", "QUANTITY", "QTY", "GIACENZA", "ESISTENZA", "ONHAND"}, {}},
        {"fornitore", {"FORNITORE", "SUPPLIER", "VENDOR", "CODICEFORNITORE", "SUPPLIERCODE", "VENDORCODE"}, {}},
        {"cliente", {"CLIENTE", "CUSTOMER", "CODICECLIENTE", "CUSTOMERCODE", "CUSTOMERID"}, {}},
        {"peso", {"PESO", "WEIGHT", "PESONETTO", "NETWEIGHT", "PESOUNITARIO", "UNITWEIGHT"}, {"ART_ICO.ARPSN"}},
        {"peso lordo", {"PESOLORDO", "LORDO", "GROSSWEIGHT"}, {"ART_ICO.ARPSL"}},
        {"famiglia", {"FAMIGLIA", "FAMILY", "GRUPPO", "GROUP", "PRODUCTGROUP", "MERCEOLOGICO"}, {"ART_ICO.ARFAM"}},
        {"ubicazione", {"UBICAZIONE", "LOCATION", "BIN", "SHELF", "SCAFFALE", "POSIZIONE"}, {}},
        {"magazzino", {"MAGAZZINO", "WAREHOUSE", "STORE", "DEPOSITO"}, {}},
        {"codice a barre", {"BARRE", "CODICEABARRE", "BARCODE", "EAN", "EAN13", "GTIN", "CODICEBARRE"}, {}},
        {"referente", {"REFERENTE", "CONTATTO", "CONTACT", "CONTACTNAME", "PERSONA"}, {"CON_RIF.RFNOM"}},
        {"data", {"DATA", "DATE", "DAY", "GIORNO", "DATADOCUMENTO", "DOCUMENTDATE"}, {}, Look::Date},
        {"data di creazione",
         {"CREATO", "DATACREAZIONE", "CREATED", "CREATEDAT", "CREATIONDATE", "DATAINSERIMENTO"},
         {"CON_TRO.DTINS", "ART_ICO.DTINS"},
         Look::Date},
        {"numero", {"NUMERO", "NUMBER", "NO", "PROGRESSIVO", "NUMERODOCUMENTO", "DOCUMENTNUMBER"}, {"CON_SED.CDSED"}},
        {"riga", {"RIGA", "LINE", "ROW", "LINENO", "LINENUMBER", "NUMERORIGA", "POS", "SEQUENCE"}, {}},
        {"articolo padre", {"PADRE", "PARENT", "PARENTITEM", "ASSEMBLY", "CODICEPADRE", "ASSIEME"}, {}},
        {"componente", {"FIGLIO", "COMPONENTE", "COMPONENT", "CHILD", "COMPONENTITEM", "CODICEFIGLIO"}, {}},
        {"listino", {"LISTINO", "CODLIS", "CODICELISTINO", "PRICELIST", "LIST"}, {"CON_TRO.COLSC", "CON_TRO.COLSF"}},
    };
    return fields;
}

const Field* FieldOfName(const QString& name) { return EntryOf(Fields(), name); }

const Field* FieldOfTargets(const QStringList& targets) {
    for (const Field& field : Fields()) {
        if (std::any_of(field.targets.begin(), field.targets.end(),
                        [&targets](const QString& target) { return targets.contains(target); })) {
            return &field;
        }
    }
    return nullptr;
}

QString KindOfTable(const QString& name) {
    const TableKind* kind = EntryOf(TableKinds(), name);
    return kind == nullptr ? QString() : QString::fromUtf8(kind->name);
}

bool HasLook(const QString& value, Look look) {
    return std::any_of(LookKinds().begin(), LookKinds().end(),
                       [&](const LookKind& kind) { return kind.look == look && kind.isIt(value.trimmed()); });
}

Look LookOf(const QStringList& values) {
    QSet<QString> distinct;
    for (const QString& value : values) {
        distinct.insert(value.trimmed());
    }
    distinct.remove(QString());
    if (distinct.size() < LeastValues) {
        return Look::None;
    }
    for (const LookKind& kind : LookKinds()) {
        if (std::all_of(distinct.begin(), distinct.end(), kind.isIt)) {
            return kind.look;
        }
    }
    return Look::None;
}

QString LookText(Look look) {
    for (const LookKind& kind : LookKinds()) {
        if (kind.look == look) {
            return QString::fromUtf8(kind.text);
        }
    }
    return {};
}

} // namespace inspection
