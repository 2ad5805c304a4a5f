// WinProgest: documents, a table of heads and one of rows for each kind. The rows of an order tell the row of the offer
// they come from, and so on down to the invoice.

#include "examples/amounts.h"
#include "examples/articles.h"
#include "examples/italian.h"
#include "examples/winprogest.h"

#include <QDate>

namespace examples::winprogest {

namespace {

constexpr quint64 ChainStream = 51;
constexpr quint64 RowStream = 52;
const QDate FirstDay(2022, 1, 3);
constexpr int Days = 1000;
constexpr int RowsPerChain = 10; ///< of the example's rows, for each chain of documents
constexpr int TwiceEvery = 97;   ///< one order in so many has the number of the one before

/// One kind of document.
struct Kind {
    const char* head;   ///< table of the heads
    const char* rows;   ///< table of the rows
    const char* suffix; ///< of the columns in which a row derived from such a document tells so; null for none
    int daysAfterOffer;
    const char* title;
};

constexpr int KindCount = 6;
enum KindIndex { Offer, Order, Delivery, Invoice, ProForma, Purchase };
constexpr Kind Kinds[KindCount] = {
    {"TESTOFF", "CORPOFF", "OFF", 0, "Offerte"},    {"TESTIMP", "CORPIMP", "IMP", 7, "Ordini"},
    {"TESTBO", "CORPBO", "BO", 20, "DDT"},          {"TESTFT", "CORPFT", nullptr, 30, "Fatture"},
    {"TESTFP", "CORPFP", nullptr, 10, "Pro forma"}, {"TESTORF", "CORPORF", nullptr, 8, "Ordini a fornitori"}};

/// The kinds that a kind may be derived from; the columns of each stand in its rows.
QVector<KindIndex> OriginsOf(KindIndex kind) {
    switch (kind) {
    case Order:
        return {Offer};
    case Delivery:
    case ProForma:
        return {Order};
    case Invoice:
        return {Delivery, Order};
    default:
        return {};
    }
}

/// The columns of a kind that tell a row's origin.
struct OriginColumns {
    QByteArray number;
    QByteArray day;
    QByteArray row;

    explicit OriginColumns(KindIndex kind)
        : number(QByteArray("NUM") + Kinds[kind].suffix),
          day(QByteArray("DAT") + Kinds[kind].suffix),
          row(QByteArray("RIG") + Kinds[kind].suffix) {}
};

QVector<Column> HeadColumns(KindIndex kind) {
    return {{"NUMDOC", 'N', 8},  {"DATDOC", 'D'},     {kind == Purchase ? "CODFOR" : "CODCLI", 'C', 8},
            {"RAGSOC", 'C', 40}, {"RIFCLI", 'C', 20}, {"DATRIF", 'D'},
            {"CODPAG", 'C', 4},  {"PORTO", 'C', 3},   {"SCOCAS", 'N', 6, 2},
            {"NOTE", 'M'}};
}

const QVector<Column> CommonRowColumns{
    {"NUMDOC", 'N', 8},  {"DATDOC", 'D'},     {"NRIGA", 'N', 5},      {"CODART", 'C', 20},    {"DESCR", 'C', 50},
    {"UM", 'C', 3},      {"QTA", 'N', 12, 3}, {"QTAEVA", 'N', 12, 3}, {"PREZZO", 'N', 14, 4}, {"SCO1", 'N', 6, 2},
    {"SCO2", 'N', 6, 2}, {"SCO3", 'N', 6, 2}, {"IVA", 'C', 3},        {"DATCON", 'D'},        {"TIPRIG", 'C', 1}};

/// A document that leads from an offer to an invoice.
struct Chain {
    qint64 number; ///< from 0
    QDate offered;
    qint64 partner; ///< number of the customer or supplier, from 0
    int rows;
    bool hasText; ///< a last row of text alone
};

/// The tables of one kind and what is counted in them.
class DocumentTable {
public:
    DocumentTable(Store& store, KindIndex kind)
        : m_kind(kind),
          m_sums(QString::fromLatin1(Kinds[kind].head)) {
        for (const KindIndex origin : OriginsOf(kind)) {
            m_origins.append(OriginColumns(origin));
        }
        QVector<Column> columns = CommonRowColumns;
        for (const OriginColumns& origin : std::as_const(m_origins)) {
            columns.append({origin.number, 'N', 8});
            columns.append({origin.day, 'D'});
            columns.append({origin.row, 'N', 5});
        }
        m_heads = store.Create(QLatin1String(Kinds[kind].head), HeadColumns(kind));
        m_rows = store.Create(QLatin1String(Kinds[kind].rows), columns);
    }

    TableWriter& Heads() { return *m_heads; }
    TableWriter& Rows() { return *m_rows; }
    DocumentSums& Sums() { return m_sums; }
    const QVector<OriginColumns>& Origins() const { return m_origins; }

    /// Counts a head, and whether its number is the only one of its year.
    void CountHead(qint64 number, int year) {
        m_sums.AddDocument();
        m_twice += number == m_lastNumber && year == m_lastYear ? 1 : 0;
        m_lastNumber = number;
        m_lastYear = year;
    }

    Totals Finish(Store& store) {
        m_heads->Finish();
        m_rows->Finish();
        const QStringList key{QStringLiteral("NUMDOC"), QStringLiteral("DATDOC")};
        store.AddIndex(QLatin1String(Kinds[m_kind].head), key);
        store.AddIndex(QLatin1String(Kinds[m_kind].rows), key);
        Totals totals = m_sums.Counted();
        totals.append(
            {Kinds[m_kind].head + QStringLiteral(": numeri che stanno due volte nell'anno"), QString::number(m_twice)});
        totals.append({Kinds[m_kind].rows + QStringLiteral(": righe con origine"), QString::number(derived)});
        return totals;
    }

    qint64 derived = 0; ///< rows that tell where they come from

private:
    KindIndex m_kind;
    QVector<OriginColumns> m_origins;
    std::unique_ptr<TableWriter> m_heads;
    std::unique_ptr<TableWriter> m_rows;
    DocumentSums m_sums;
    qint64 m_lastNumber = -1;
    int m_lastYear = 0;
    qint64 m_twice = 0;
};

/// Writes chains of documents.
class Documents {
public:
    Documents(Store& store, const Options& options)
        : m_store(store),
          m_options(options),
          m_codes(options.rows) {
        for (int kind = 0; kind < KindCount; ++kind) {
            m_tables.push_back(std::make_unique<DocumentTable>(store, static_cast<KindIndex>(kind)));
        }
    }

    Totals Write() {
        m_chains = std::max<qint64>(1, m_options.rows / RowsPerChain);
        for (qint64 number = 0; number < m_chains; ++number) {
            WriteChain(number);
        }
        Totals totals;
        for (const auto& table : m_tables) {
            totals += table->Finish(m_store);
        }
        return totals;
    }

private:
    void WriteChain(qint64 number) {
        Random random(m_options.seed, ChainStream, static_cast<quint64>(number));
        const Chain chain{number, FirstDay.addDays(number * Days / m_chains), random.Below(m_codes.Customers()),
                          static_cast<int>(random.Between(1, 6)), random.Chance(20)};
        const qint64 course = number % 10;
        WriteDocument(chain, Offer, {});
        if (course != 9) {
            WriteDocument(chain, Order, course == 4 ? QVector<KindIndex>() : QVector<KindIndex>{Offer});
        }
        if (course < 8) {
            WriteDocument(chain, Delivery, {Order});
        }
        if (course < 7) {
            // Some invoices are made from the order, without a delivery note.
            WriteDocument(chain, Invoice, {course == 2 ? Order : Delivery});
        }
        if (course == 3) {
            WriteDocument(chain, ProForma, {Order});
        }
        if (number % 3 == 0 && m_codes.Suppliers() > 0) {
            WriteDocument(chain, Purchase, {});
        }
    }

    static qint64 NumberOf(const Chain& chain, KindIndex kind) {
        const bool isTwice = kind == Order && chain.number % TwiceEvery == TwiceEvery - 1;
        return isTwice ? chain.number : chain.number + 1;
    }
    static QDate DayOf(const Chain& chain, KindIndex kind) { return chain.offered.addDays(Kinds[kind].daysAfterOffer); }

    void WriteDocument(const Chain& chain, KindIndex kind, const QVector<KindIndex>& origins) {
        DocumentTable& table = *m_tables[static_cast<std::size_t>(kind)];
        WriteHead(table, chain, kind);
        Random random(m_options.seed, RowStream, static_cast<quint64>(chain.number));
        for (int row = 1; row <= chain.rows; ++row) {
            SetKey(table.Rows(), chain, kind, row);
            SetOrigin(table, chain, origins, row);
            WriteRow(table, random, chain, kind);
        }
        if (chain.hasText) {
            SetKey(table.Rows(), chain, kind, chain.rows + 1);
            table.Rows().Set("DESCR", QStringLiteral("Consegna franco magazzino, entro metà mese"));
            table.Rows().Set("TIPRIG", QStringLiteral("D")).Add();
            table.Sums().AddTextRow();
        }
    }

    void WriteHead(DocumentTable& table, const Chain& chain, KindIndex kind) {
        TableWriter& head = table.Heads();
        Random random(m_options.seed, ChainStream + 100, static_cast<quint64>(chain.number));
        const qint64 supplier = m_codes.Suppliers() > 0 ? chain.partner % m_codes.Suppliers() : 0;
        const qint64 person = kind == Purchase ? m_codes.Customers() + supplier : chain.partner;
        const QDate day = DayOf(chain, kind);
        head.Set("NUMDOC", NumberOf(chain, kind)).Set("DATDOC", day);
        head.Set(kind == Purchase ? "CODFOR" : "CODCLI",
                 kind == Purchase ? m_codes.Supplier(supplier + 1) : m_codes.Customer(chain.partner + 1));
        head.Set("RAGSOC", italian::MakeIdentity(m_options.seed, person).name.left(40).trimmed());
        head.Set("RIFCLI", random.Chance(50) ? QStringLiteral("Vs. ord. %1").arg(random.Below(9999)) : QString());
        head.Set("DATRIF", random.Chance(50) ? QVariant(day.addDays(-2)) : QVariant());
        head.Set("CODPAG", random.Pick(arca2000::PaymentTerms()).code);
        head.Set("PORTO", random.Chance(50) ? QStringLiteral("FRA") : QStringLiteral("ASS"));
        head.Set("SCOCAS", 0.0)
            .Set("NOTE", random.Chance(8) ? QStringLiteral("Urgente, perché già in ritardo") : QString());
        head.Add();
        table.CountHead(NumberOf(chain, kind), day.year());
    }

    static void SetKey(TableWriter& rows, const Chain& chain, KindIndex kind, int row) {
        rows.Set("NUMDOC", NumberOf(chain, kind)).Set("DATDOC", DayOf(chain, kind)).Set("NRIGA", row);
    }

    static void SetOrigin(DocumentTable& table, const Chain& chain, const QVector<KindIndex>& origins, int row) {
        for (const KindIndex origin : origins) {
            const OriginColumns columns(origin);
            table.Rows().Set(columns.number, NumberOf(chain, origin)).Set(columns.day, DayOf(chain, origin));
            table.Rows().Set(columns.row, row);
            ++table.derived;
        }
    }

    void WriteRow(DocumentTable& table, Random& random, const Chain& chain, KindIndex kind) {
        TableWriter& row = table.Rows();
        const bool isUnknown = random.Chance(1);
        const qint64 article = random.Below(m_options.rows);
        const Amount amount = MakeAmount(random, true);
        row.Set("CODART", isUnknown ? UnknownArticleCode : ArticleCode(article)).Set("DESCR", ArticleName(random));
        row.Set("UM", QStringLiteral("NR")).Set("QTA", amount.quantity);
        row.Set("QTAEVA", kind == Offer || kind == Order ? amount.quantity / 2 : amount.quantity);
        row.Set("PREZZO", amount.price).Set("SCO1", amount.discounts[0]).Set("SCO2", amount.discounts[1]);
        row.Set("SCO3", amount.discounts[2]).Set("IVA", QStringLiteral("22"));
        row.Set("DATCON", DayOf(chain, kind).addDays(30)).Add();
        table.Sums().AddRow(amount, isUnknown);
    }

    Store& m_store;
    Options m_options;
    arca2000::Codes m_codes;
    qint64 m_chains = 1;
    std::vector<std::unique_ptr<DocumentTable>> m_tables;
};

} // namespace

Totals WriteDocuments(Store& store, const Options& options, QuadrixScript& script) {
    for (const auto* reason : {"OFFWP", "ORDWP", "DDTWP", "FATWP"}) {
        script.DocumentReason("VEN", reason, QLatin1String(reason).left(3));
    }
    for (const arca2000::PaymentTerm& term : arca2000::PaymentTerms()) {
        if (!term.code.startsWith(u"ZZ")) {
            script.Translate("TESTATE", "CODPAG", term.code, term.code);
        }
    }
    script.Translate("ARTICOLI", "IVA", "22", "022");
    script.DocumentReason("VEN", "PROWP", "FAT");
    script.DocumentReason("ACQ", "ORFWP", "ORD");
    return Documents(store, options).Write();
}

} // namespace examples::winprogest
