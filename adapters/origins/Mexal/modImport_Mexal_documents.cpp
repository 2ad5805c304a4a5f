// Documents of Mexal, sales and purchases alike: DOC_TES holds the heads, DOC_RIG the rows; sign, series, number and
// account tell the documents apart, and the date those of different years.

#include "adapters/origins/Mexal/modImport_Mexal.h"

#include "adapters/contract/map/lookups.h"
#include "adapters/contract/write/OpenDocument.h"
#include "core/modImport.h"
#include "core/schemaDefaults.h"

using namespace contract;

namespace modImport_Mexal {

namespace {

// --- Source tables ------------------------------------------------------------------------------------------------

const QString DocTes = QStringLiteral("DOC_TES");
const QString DocRig = QStringLiteral("DOC_RIG");

/// What a sign becomes. Each has a cause of its own, as each counts from one; the causes are none of other origins,
/// whose orders may stand in the same company.
struct Kind {
    const char* sign;
    const char* cause;
    const char* type; ///< when CAU_DOC lacks the cause
    bool sales;
    bool open; ///< still to be delivered
};

const std::array<Kind, 7> Kinds{{
    {"OC", "ORDCM", "ORD", true, true},
    {"BC", "DDTCM", "DDT", true, false},
    {"FT", "FATCM", "FAT", true, false},
    {"PR", "OFFCM", "OFF", true, true},
    {"OF", "ORDFM", "ORD", false, true},
    {"BF", "DDTFM", "DDT", false, false},
    {"FF", "FATFM", "FAT", false, false},
}};

/// The kind of a sign; null for one that is not imported.
const Kind* KindOf(const QString& sign) {
    const auto found = std::find_if(Kinds.begin(), Kinds.end(), [&](const Kind& kind) {
        return sign.compare(QLatin1String(kind.sign), Qt::CaseInsensitive) == 0;
    });
    return found == Kinds.end() ? nullptr : &*found;
}

QStringList Causes() {
    QStringList causes;
    for (const Kind& kind : Kinds) {
        causes.append(QString::fromLatin1(kind.cause));
    }
    return causes;
}

/// What tells a document, over its head and its row under the names of a query.
QString SameDocument(const QString& head, const QString& row) {
    QStringList conditions;
    for (const char* column : {"[_MMSIG]", "[_MMSER]", "[_MMNUM]", "[_MMCLI]", "[_MMDAT]"}) {
        conditions.append(QStringLiteral("%1.%3 = %2.%3").arg(row, head, QLatin1String(column)));
    }
    return conditions.join(" AND ");
}

/// Signs of stock movements, which are no documents.
const QString NoMovements = QStringLiteral("[_MMSIG] NOT IN ('MF', 'MA')");

const QString Columns = QStringLiteral(
    "T.[_MMSIG], T.[_MMSER], T.[_MMNUM], T.[_MMDAT], T.[_MMCLI], T.[_MMPAG], T.[_MMVAL], T.[_MMNOT], T.[_MMRIF], "
    "R.[_MMRIG], R.[_MMART], R.[_MMDES], R.[_MMQTA], R.[_MMPRZ], R.[_MMSCO], R.[_MMALI], R.[_MMSCA], R.[_MMEVA]");

// --- Documents ----------------------------------------------------------------------------------------------------

QDate DayOf(const SourceRow& row, const QString& column) {
    const auto day = DayOfDigits(row.Text(column));
    if (!day) {
        throw ImportError(QStringLiteral("colonna '%1': '%2' non è una data gmmaaaa").arg(column, row.Text(column)));
    }
    return *day;
}

/// Writes the documents of both families.
class Documents {
public:
    Documents(ImportRun& run, const OpenDocument::Options& options, const QDate& from)
        : m_run(run),
          m_from(from),
          m_sales(run, Sales, options),
          m_purchases(run, Purchases, options) {}

    RowOutcome Row(const SourceRow& row);
    void End() {
        m_sales.End();
        m_purchases.End();
    }
    void TellLeft() const {
        for (const OpenDocument* each : {&m_sales, &m_purchases}) {
            each->TellDocumentsLeft(Causes(), m_from);
        }
    }
    int Count() const { return m_sales.Count() + m_purchases.Count(); }

private:
    OpenDocument::Head HeadOf(const SourceRow& row, const Kind& kind, OpenDocument& document);
    DocumentRow RowOf(const SourceRow& row, const Kind& kind);

    ImportRun& m_run;
    QDate m_from;
    OpenDocument m_sales;
    OpenDocument m_purchases;
};

OpenDocument::Head Documents::HeadOf(const SourceRow& row, const Kind& kind, OpenDocument& document) {
    Session& session = m_run.GetSession();
    const QString counterparty = GetControparteMexal(session, row.Text("_MMCLI"), kind.sales);
    if (counterparty.isEmpty()) {
        throw ImportError(
            QStringLiteral("colonna '_MMCLI': nessuna controparte ha il codice %1 '%2'")
                .arg(kind.sales ? QStringLiteral("cliente") : QStringLiteral("fornitore"), row.Text("_MMCLI")));
    }
    const QDate day = DayOf(row, "_MMDAT");
    const DocumentHead head{document.Writer().CauseOf(QString::fromLatin1(kind.cause), QString::fromLatin1(kind.type)),
                            row.Text("_MMSER"),
                            row.Text("_MMNUM"),
                            day,
                            day.year(),
                            counterparty,
                            LookUp(session, "CON_TRO", "CDCON", counterparty, "CORAS"),
                            kind.open ? schema::defaults::ToDeliver : schema::defaults::Delivered};
    const auto more = [&session, &row](TargetRow& target) {
        target.Set("DTRIC", row.Text("_MMRIF"));
        target.Set("DTNOT", row.Text("_MMNOT"));
        if (const QString term = modImport::GetNewCode(session, PiaCon, "_PCPAG", row.Text("_MMPAG"), true);
            !term.isEmpty()) {
            target.Set("DTMOP", term);
        }
        target.Set("DTVAL", CurrencyOfNumber(session, row.Text("_MMVAL")));
    };
    return {head, more, !head.series.isEmpty()};
}

DocumentRow Documents::RowOf(const SourceRow& row, const Kind& kind) {
    using namespace schema::defaults;
    DocumentRow values;
    values.number = static_cast<int>(NumberOf(row, "_MMRIG"));
    values.article = row.IsBlank("_MMART") ? QString() : ArticleOf(m_run, row.Text("_MMART"));
    values.type = values.article.isEmpty() ? DescriptionRow : NormalRow;
    values.description = row.Text("_MMDES");
    values.quantity = NumberOf(row, "_MMQTA");
    values.delivered = kind.open ? NumberOf(row, "_MMEVA") : values.quantity;
    values.price = NumberOf(row, "_MMPRZ");
    values.discounts = DiscountsOf(row, "_MMSCO");
    values.vatCode = VatCodeOf(m_run.GetSession(), ArtMag, "_ARIVA", row.Text("_MMALI"));
    values.state = !kind.open                           ? Delivered
                   : values.delivered <= 0              ? ToDeliver
                   : values.delivered < values.quantity ? PartlyDelivered
                                                        : Delivered;
    return values;
}

RowOutcome Documents::Row(const SourceRow& row) {
    const Kind* kind = KindOf(row.Text("_MMSIG"));
    if (kind == nullptr) {
        return m_run.Skip("genere di documento che non si importa");
    }
    if (DayOf(row, "_MMDAT") < m_from) {
        return m_run.Skip("documento anteriore alla data d'inizio");
    }
    OpenDocument& document = kind->sales ? m_sales : m_purchases;
    const QString key =
        QStringList{row.Text("_MMSIG"), row.Text("_MMSER"), row.Text("_MMNUM"), row.Text("_MMCLI"), row.Text("_MMDAT")}
            .join(u'/');
    return document.Row(
        key, [&] { return HeadOf(row, *kind, document); }, [&] { return RowOf(row, *kind); },
        [&row](TargetRow& target) {
            if (!row.IsBlank("_MMSCA")) {
                target.Set("DRCOR", DayOf(row, "_MMSCA"));
            }
        });
}

} // namespace

const Needs& DocumentiNeeds() {
    static const Needs needs = [] {
        Needs all{{},
                  {{DocTes, {"_MMSIG", "_MMSER", "_MMNUM", "_MMDAT", "_MMCLI", "_MMPAG", "_MMVAL", "_MMNOT", "_MMRIF"}},
                   {DocRig,
                    {"_MMSIG", "_MMSER", "_MMNUM", "_MMDAT", "_MMCLI", "_MMRIG", "_MMART", "_MMDES", "_MMQTA", "_MMPRZ",
                     "_MMSCO", "_MMALI", "_MMSCA", "_MMEVA"}}},
                  {}};
        for (const Family* family : {&Sales, &Purchases}) {
            const std::vector<TableNeed> writes = DocumentNeeds(*family);
            all.writes.insert(all.writes.end(), writes.begin(), writes.end());
            all.writes.push_back({family->head, {"DTRIC", "DTNOT", "DTMOP"}});
            all.writes.push_back({family->row, {"DRCOR"}});
        }
        return all;
    }();
    return needs;
}

void ImportDocumentiMEX(Session& session, const QString& singleCode, bool reset) {
    ImportRun run(session, Module, "ImportDocumentiMEX", singleCode);
    run.LogErrorsAs("Errore: ");
    run.Guard([&] {
        run.Announce("Inizio importazione Documenti da Mexal");
        run.Preflight(DocumentiNeeds());
        const DocumentSettings settings = ReadDocumentSettings(session);
        const TriggersOff triggers(run);
        RemoveImportedDocuments(run, reset, Causes());
        Documents documents(run, {settings.checkArticles, false}, settings.from);
        TellUnmatched(run, {DocRig, DocTes, SameDocument("O", "L"), "[_MMSIG]", "L." + NoMovements});
        TellUnmatched(run, {DocTes, DocRig, SameDocument("L", "O"), "[_MMSIG]", "L." + NoMovements});
        const QString from = "FROM DOC_TES T INNER JOIN DOC_RIG R ON " + SameDocument("T", "R") + " WHERE T." +
                             NoMovements + run.OnlyCode(" AND", "T.[_MMNUM]", singleCode);
        const ImportRun::Loop loop{
            "Documenti",
            DocTes,
            "_MMSIG, _MMSER, _MMNUM, _MMRIG",
            "SELECT COUNT(*) " + from,
            "SELECT " + Columns + " " + from +
                " ORDER BY T.[_MMSIG], T.[_MMSER], T.[_MMNUM], T.[_MMCLI], T.[_MMDAT], R.[_MMRIG]",
            {"_MMSIG", "_MMSER", "_MMNUM", "_MMCLI", "_MMDAT"}};
        const bool toTheEnd = run.Rows(
            loop, [&](const SourceRow& row) { return documents.Row(row); }, [&] { documents.End(); });
        if (toTheEnd) {
            documents.TellLeft();
            run.Complete(QStringLiteral("Documenti Mexal importati correttamente: %1").arg(documents.Count()));
        }
    });
}

} // namespace modImport_Mexal
