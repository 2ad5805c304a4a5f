#include "adapters/registry.h"
#include "app/connectSource.h"
#include "app/inspect_draft.h"
#include "tests/support/files.h"
#include "tests/support/QuadrixTest.h"
#include "tests/support/TestTarget.h"

#include <QTest>

using namespace inspection;

namespace {

/// Ways to call the columns of an ERP, as people and programs call them.
enum Style { Headings, Cut, EnglishHeadings, English, Prefixed };

/// What a column is called in each style, by the column of Quadrix that it feeds; the one that tells most comes first.
const QList<std::pair<QString, QStringList>>& Names() {
    static const QList<std::pair<QString, QStringList>> names{
        {"CON_TRO.CORAS", {"Rag. sociale", "RAGSOC1", "Company Name", "account_name", "cf_denominazione"}},
        {"CON_TRO.CORA2", {"Rag. sociale 2", "RAGSOC2", "Name 2", "account_name_2", "cf_denominazione2"}},
        {"CON_TRO.COCGE", {"Cod. cliente", "CODCLI", "Customer No.", "account_code", "cf_codice"}},
        {"CON_TRO.COFGE", {"Cod. fornitore", "CODFOR", "Vendor No.", "supplier_code", "cf_codfornitore"}},
        {"CON_TRO.COIND", {"Indirizzo", "INDIR", "Street", "address_line1", "cf_indirizzo"}},
        {"CON_TRO.COCAP", {"C.A.P.", "CAP1", "Post Code", "postal_code", "cf_cap"}},
        {"CON_TRO.COCIT", {"Città", "LOCAL", "Town", "city_name", "cf_localita"}},
        {"CON_TRO.COPRO", {"Prov.", "PROV1", "County", "state_code", "cf_provincia"}},
        {"CON_TRO.CONAZ", {"Nazione", "NAZ1", "Country/Region", "country_code", "cf_stato"}},
        {"CON_TRO.COIVA", {"P. IVA", "PARIVA", "VAT Reg. No.", "vat_id", "cf_partitaiva"}},
        {"CON_TRO.COFIS", {"Cod. fiscale", "CODFIS", "Fiscal Code", "tax_code", "cf_codfiscale"}},
        {"CON_TRO.CONOT", {"Annotazioni", "NOTE1", "Remarks", "comments", "cf_note"}},
        {"CON_TRO.COMOP", {"Cond. pagamento", "CODPAG", "Payment Terms", "payment_terms_code", "cf_pagamento"}},
        {"CON_TRO.COMOA", {"Pag. fornitore", "PAGFOR", "Terms", "vendor_payment_terms", "cf_pagfornitore"}},
        {"CON_TRO.COVAL", {"Divisa", "CODVAL", "Currency", "currency_code", "cf_valuta"}},
        {"CON_TRO.COAGE", {"Cod. agente", "CODAGE", "Salesperson", "sales_rep", "cf_agente"}},
        {"CON_TRO.COZON", {"Zona", "CODZON", "Territory", "sales_region", "cf_zona"}},
        {"CON_TRO.COABI", {"Cod. ABI", "ABI1", "Bank ABI", "abi_code", "cf_abi"}},
        {"CON_TRO.COCAB", {"Cod. CAB", "CAB1", "Bank CAB", "cab_code", "cf_cab"}},
        {"CON_TRO.COCOC", {"N. conto corrente", "CCORR", "Bank Account No.", "bank_account", "cf_contocorrente"}},
        {"CON_TRO.COIBA", {"Cod. IBAN", "IBAN1", "IBAN No.", "iban_code", "cf_iban"}},
        {"CON_TRO.COBIC", {"BIC/SWIFT", "SWIFT1", "SWIFT Code", "bic_code", "cf_bic"}},
        {"CON_TRO.COBAN", {"Banca appoggio", "CODBAN", "Bank Name", "bank", "cf_banca"}},
        {"CON_TRO.COSC1", {"Sconto %", "SCO1", "Line Discount", "discount_pct", "cf_sconto"}},
        {"CON_TRO.COLSC", {"Listino vendita", "CODLIS", "Price List", "price_list_code", "cf_listino"}},
        {"CON_TRO.COESE", {"Esenzione IVA", "CODESE", "VAT Exemption", "vat_exempt_code", "cf_esenzione"}},
        {"CON_TRO.COLNG", {"Lingua", "CODLIN", "Language", "language_code", "cf_lingua"}},
        {"CON_TRO.COFID", {"Fido", "IMPFID", "Credit Limit", "credit_limit", "cf_fido"}},
        {"CON_TRO.COPEC", {"Indirizzo PEC", "PEC1", "Certified Mail", "pec_address", "cf_pec"}},
        {"ART_ICO.CDEXT", {"Cod. articolo", "CODART", "Item No.", "item_code", "ar_codice"}},
        {"ART_ICO.ARDES", {"Descr. articolo", "DESART", "Item Description", "item_name", "ar_descrizione"}},
        {"ART_ICO.ARDE2", {"Descr. aggiuntiva", "DESART2", "Description 2", "item_name_2", "ar_descrizione2"}},
        {"ART_ICO.ARUMS", {"U.M.", "UNIMIS", "Unit of Measure", "base_uom", "ar_um"}},
        {"ART_ICO.ARUM2", {"U.M. 2", "UNIMIS2", "Alt. Unit of Measure", "second_uom", "ar_um2"}},
        {"ART_ICO.ARIVA", {"Aliquota IVA", "CODIVA", "VAT Rate", "vat_code", "ar_iva"}},
        {"ART_ICO.ARFAM", {"Famiglia", "CODFAM", "Product Family", "item_family", "ar_famiglia"}},
        {"ART_ICO.ARCLA", {"Classe", "CODCLA", "Class", "item_class", "ar_classe"}},
        {"ART_ICO.ARPSN", {"Peso netto kg", "PESNET", "Net Weight", "net_weight", "ar_pesonetto"}},
        {"ART_ICO.ARNOT", {"Annotazioni", "NOTART", "Notes", "remarks", "ar_note"}},
        {"ART_ICO.ARPRZ", {"Prezzo vendita", "PREVEN", "Sales Price", "unit_price", "ar_prezzo"}},
        {"ART_ICO.ARCOS", {"Costo std", "COSSTD", "Unit Cost", "standard_cost", "ar_costo"}},
        {"ART_ICO.ARSMN", {"Scorta minima", "SCOMIN", "Safety Stock", "min_stock", "ar_scortaminima"}},
        {"ART_ICO.ARLOR", {"Lotto riordino", "LOTRIO", "Order Lot Size", "reorder_qty", "ar_lottoriordino"}},
        {"ART_ICO.ARGGA", {"Giorni consegna", "GGCONS", "Lead Time", "lead_time_days", "ar_giorniconsegna"}},
        {"ART_ICO.ARDIS", {"N. disegno", "CODDIS", "Drawing No.", "drawing_number", "ar_disegno"}},
    };
    return names;
}

struct Renamed {
    const char* origin;
    const char* module;
    const char* table;
    Style style;
};

const Renamed Schemas[] = {
    {"Puzzle", "Puzzle", "clienti", EnglishHeadings}, {"Puzzle", "Puzzle", "fornitori", Cut},
    {"Memphis", "Memphis", "ANAGRAFICHE", English},   {"OS1", "OS1", "CLIFOR", Headings},
    {"Gescom", "Gescom", "ARCLFR", Prefixed},         {"Gemini", "Gemini", "CLIENTI", English},
    {"Brantel", "Brantel", "Articoli", Cut},          {"OS1", "OS1", "ARTICOLI", EnglishHeadings},
    {"Mago NET", "Mago", "MA_CustSupp", Headings},    {"SAM", "SAM", "Articoli", Prefixed},
};

/// The source of an origin's fixture, as it is and with other names.
class RenamedSource : public TestTarget {
public:
    explicit RenamedSource(const Renamed& schema)
        : m_schema(schema) {
        Run(QString::fromUtf8(ReadFile(QStringLiteral(QUADRIX_SOURCE_DIR "/tests/adapters/fixtures/modImport_") +
                                       m_schema.module + "/source.sql")));
    }
    ~RenamedSource() { CloseSource(Get()); }
    RenamedSource(const RenamedSource&) = delete;
    RenamedSource& operator=(const RenamedSource&) = delete;

    /// Gives each column whose meaning is known its name in the style; a name that is taken already is given to none.
    /// @return the names by logical column
    QMap<QString, QString> Rename() {
        const Inspection looked = Look();
        QMap<QString, QString> renamed;
        for (const Column& column : TableOf(looked).columns) {
            const auto known = std::find_if(Names().begin(), Names().end(),
                                            [&](const auto& each) { return column.feeds.contains(each.first); });
            if (known == Names().end() || column.IsMissing()) {
                continue;
            }
            const QString& name = known->second[m_schema.style];
            if (!renamed.values().contains(name) && TableOf(looked).Own(name) == nullptr) {
                renamed.insert(column.name, name);
                Run(QStringLiteral("ALTER TABLE \"%1\" RENAME COLUMN \"%2\" TO \"%3\"")
                        .arg(m_schema.table, column.inSource, name));
            }
        }
        return renamed;
    }
    Inspection Look() {
        Get().Source = std::make_unique<ovConnection>(); // whatever the origin opens otherwise
        Open(*Get().Source);
        Inspection looked = Inspect(Get(), *registry::Find(m_schema.origin));
        CloseSource(Get());
        return looked;
    }
    const Table& TableOf(const Inspection& looked) const {
        return *std::find_if(looked.tables.begin(), looked.tables.end(),
                             [this](const Table& table) { return table.name == QLatin1String(m_schema.table); });
    }

private:
    void Open(ovConnection& source) const {
        source.Embedded = true;
        source.DatabaseName = Folder.filePath("sorgente.sqlite");
        source.OpenConnection();
    }
    void Run(const QString& script) {
        ovConnection source;
        Open(source);
        source.ExecuteScript(script);
    }

    Renamed m_schema;
};

} // namespace

/// Sources whose columns are called otherwise than their origin calls them.
class TestRenamedSchemas : public QObject {
    Q_OBJECT

private slots:
    /// Most of the names that are meant stand in the first place, and none is taken unseen that is another.
    void SuggestsWhatIsMeant() {
        qsizetype all = 0;
        qsizetype right = 0;
        for (const Renamed& schema : Schemas) {
            RenamedSource source(schema);
            const QMap<QString, QString> renamed = source.Rename();
            const Inspection looked = source.Look();
            QStringList wrong;
            for (const Column& column : source.TableOf(looked).columns) {
                const QString name = renamed.value(column.name);
                const QString first = column.suggestions.empty() ? QString() : column.suggestions.front().name;
                if (!name.isEmpty() && first != name) {
                    wrong.append(name + " for " + column.name + ": " + (first.isEmpty() ? "none" : first));
                }
            }
            const QMap<QString, QString> equal = EqualNames(looked);
            for (const auto& [key, name] : equal.asKeyValueRange()) {
                const bool isOfTable = key.startsWith(QLatin1String(schema.table) + '.');
                QVERIFY2(!isOfTable || renamed.value(key.section('.', 1)) == name, qPrintable(key + '=' + name));
            }
            all += renamed.size();
            right += renamed.size() - wrong.size();
            qInfo("%s %s: %lld of %lld%s%s", schema.origin, schema.table,
                  static_cast<long long>(renamed.size() - wrong.size()), static_cast<long long>(renamed.size()),
                  wrong.isEmpty() ? "" : "; ", qPrintable(wrong.join("; ")));
        }
        qInfo("right: %lld of %lld", static_cast<long long>(right), static_cast<long long>(all));
        QVERIFY(all > 150);
        QVERIFY(right * 100 >= all * 80);
    }
};

QUADRIX_TEST(TestRenamedSchemas)
#include "test_renamedSchemas.moc"
