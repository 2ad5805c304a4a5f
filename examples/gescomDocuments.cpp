// Gescom: delivery notes, one row of RIEMOV for each row of a document.

#include "examples/gescom.h"

#include "examples/amounts.h"
#include "examples/articles.h"

#include <QDate>

#include <array>

namespace examples::gescom {

namespace {

constexpr quint64 DocumentStream = 81;
const QDate FirstDay(2022, 1, 3);
constexpr int Days = 1000;
constexpr int RowsPerDocument = 3; ///< of the example's rows, for each document

/// What a kind of movement becomes.
struct Family {
    const char* reason; ///< Quadrix document reason
    const char* title;
    char partner; ///< C customer, F supplier
};
constexpr std::array<Family, 4> Families{{{"DTGES", "BV (DOC_VEN, DTGES)", 'C'},
                                          {"DAGES", "97 (DOC_ACQ, DAGES)", 'F'},
                                          {"RSGES", "LE e LEB (DOC_CTL, RSGES)", 'F'},
                                          {nullptr, "altri movimenti, che non si importano", 'C'}}};

struct Movement {
    const char* kind;
    std::size_t family;
};

Movement MovementOf(qint64 document) {
    switch (document % 12) {
    case 1:
    case 6:
        return {"97", 1};
    case 2:
        return {"LE", 2};
    case 7:
        return {"LEB", 2};
    case 11:
        return {"RV", 3};
    default:
        return {"BV", 0};
    }
}

/// Writes the documents.
class Documents {
public:
    Documents(Store& store, const Options& options)
        : m_options(options),
          m_codes(options.rows),
          m_rows(store.Create(QStringLiteral("RIEMOV"), {{"RDRIEMOV", 'N', 10},
                                                         {"CSRIEMOV", 'C', 3},
                                                         {"DTRIEMOV", 'T'},
                                                         {"ESRIEMOV", 'N', 4},
                                                         {"CLRIEMOV", 'C', m_codes.Length()},
                                                         {"FLRIEMOV", 'C', 1},
                                                         {"RGRIEMOV", 'N', 5},
                                                         {"CDRIEMOV", 'C', 20},
                                                         {"QSRIEMOV", 'N', 12, 3},
                                                         {"QTRIEMOV", 'N', 12, 3},
                                                         {"IRRIEMOV", 'N', 14, 4}})),
          m_movements(store.Create(QStringLiteral("MOVMAG"),
                                   {{"NDMOVMAG", 'N', 10}, {"ARMOVMAG", 'C', 20}, {"FSMOVMAG", 'C', 6}})) {
        for (const Family& family : Families) {
            m_sums.emplace_back(QString::fromUtf8(family.title));
        }
    }

    Totals Write(Store& store) {
        m_documents = std::max<qint64>(1, m_options.rows / RowsPerDocument);
        for (qint64 document = 0; document < m_documents; ++document) {
            WriteDocument(document);
        }
        m_rows->Finish();
        m_movements->Finish();
        store.AddIndex(m_rows->Name(), {QStringLiteral("RDRIEMOV")});
        store.AddIndex(m_movements->Name(), {QStringLiteral("NDMOVMAG"), QStringLiteral("ARMOVMAG")});
        Totals totals{{"RIEMOV: righe", QString::number(m_rows->Count())}};
        for (const DocumentSums& sums : m_sums) {
            totals += sums.Counted();
        }
        return totals;
    }

private:
    void WriteDocument(qint64 document) {
        Random random(m_options.seed, DocumentStream, static_cast<quint64>(document));
        const Movement movement = MovementOf(document);
        DocumentSums& sums = m_sums[movement.family];
        sums.AddDocument();
        // Each family counts its documents by itself: the same number stands in several of them.
        const qint64 number = sums.Documents();
        const QString partner = PartnerOf(random, Families[movement.family].partner);
        const QDateTime moment(FirstDay.addDays(document * Days / m_documents), QTime(8, 30), Qt::UTC);
        const qint64 rows = random.Between(1, 6);
        const QChar flag = partner.startsWith(u'5') ? u'F' : u'C';
        for (qint64 row = 1; row <= rows; ++row) {
            const Amount amount = MakeAmount(random, false);
            const bool isUnknown = random.Chance(1);
            const QString article = isUnknown ? UnknownArticleCode : ArticleCode(random.Below(m_options.rows));
            m_rows->Set("RDRIEMOV", number).Set("CSRIEMOV", QString(QLatin1String(movement.kind)));
            m_rows->Set("DTRIEMOV", moment).Set("ESRIEMOV", moment.date().year()).Set("CLRIEMOV", partner);
            m_rows->Set("FLRIEMOV", QString(flag)).Set("RGRIEMOV", row).Set("CDRIEMOV", article);
            m_rows->Set("QSRIEMOV", amount.quantity).Set("QTRIEMOV", amount.quantity).Set("IRRIEMOV", amount.price);
            m_rows->Add();
            sums.AddRow(amount, isUnknown);
            WritePhase(random, movement, number, article);
        }
    }

    QString PartnerOf(Random& random, char kind) {
        const bool isSupplier = kind == 'F' && m_codes.Suppliers() > 0;
        return isSupplier ? m_codes.Supplier(1 + random.Below(m_codes.Suppliers()))
                          : m_codes.Customer(1 + random.Below(m_codes.Customers()));
    }

    /// The work phase of a row of work for account.
    void WritePhase(Random& random, const Movement& movement, qint64 number, const QString& article) {
        if (movement.family == 2 && random.Chance(70)) {
            m_movements->Set("NDMOVMAG", number).Set("ARMOVMAG", article).Set("FSMOVMAG", random.Pick(Phases())).Add();
        }
    }

    Options m_options;
    Codes m_codes;
    std::unique_ptr<TableWriter> m_rows;
    std::unique_ptr<TableWriter> m_movements;
    std::vector<DocumentSums> m_sums;
    qint64 m_documents = 1;
};

} // namespace

Totals WriteDocuments(Store& store, const Options& options, QuadrixScript& script) {
    script.DocumentReason("VEN", "DTGES", "DDT");
    script.DocumentReason("ACQ", "DAGES", "DDT");
    script.DocumentReason("CTL", "RSGES", "DTL");
    script.VatCode("22", "IVA 22%", 22);
    return Documents(store, options).Write(store);
}

} // namespace examples::gescom
