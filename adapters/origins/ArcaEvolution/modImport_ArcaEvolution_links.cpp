// Documents of Arca Evolution: how they are told apart, and the links (DRORI) of their rows to those that they come
// from.

#include "adapters/origins/ArcaEvolution/modImport_ArcaEvolution_links.h"

#include "adapters/contract/map/lookups.h"
#include "adapters/contract/run/TargetRow.h"
#include "core/modImport.h"

using namespace contract;
using namespace contract::rules;

namespace modImport_ArcaEvolution {

QString MarkOf(const SourceRow& row) {
    static const QString sides = QStringLiteral("CF");
    const QString kind = row.Text("TipoDocumento").toUpper();
    if (kind == WorkMark || !QStringLiteral("POBFAN").contains(kind)) {
        return kind;
    }
    const QString side = row.Text("CliFor").toUpper();
    if (side.size() != 1 || !sides.contains(side)) {
        throw ImportError(QStringLiteral("'%1' non è C (cliente) né F (fornitore)").arg(side));
    }
    return kind + side;
}

const Family& FamilyOf(const SourceRow& row) {
    const QString mark = MarkOf(row);
    return mark == WorkMark ? WorkAccount : mark.endsWith(u'C') ? Sales : Purchases;
}

Rule SeriesOfNumber() {
    return {"ciò che segue la barra",
            [](const RuleInput& input) { return RuleValue(input.Text().section(u'/', 1).trimmed()); }};
}

Rule NumberBeforeSlash() {
    return {"le sole cifre prima della barra, come numero intero", [](const RuleInput& input) -> RuleValue {
                const QString text = input.Text();
                return DigitsAsNumber().apply(
                    {input.session, input.row, input.columns, input.facts, text.section(u'/', 0, 0)});
            }};
}

int YearOf(const SourceRow& row) {
    return row.IsBlank("EsAnno") ? DateOf(row, "DataDoc").toDate().year() : WholeNumberOf(row, "EsAnno");
}

QString PartyOf(Session& session, const QString& code) {
    const bool isCustomer = code.startsWith(u'C', Qt::CaseInsensitive);
    return LookUp(session, "CON_TRO", SourceCodeColumn(isCustomer), code, "CDCON");
}

namespace {

/// What tells a document of Quadrix from others, as far as the source's own number does.
struct DocumentNumber {
    QString cause;
    QString number; ///< empty: it has none
    QString series;
    int year;

    bool operator==(const DocumentNumber& other) const {
        return number == other.number && series == other.series && year == other.year;
    }
};

/// @param head with Cd_DO, NumeroDoc, EsAnno and DataDoc
DocumentNumber NumberOfHead(Session& session, const SourceRow& head) {
    DocumentNumber of{modImport::GetNewCode(session, "DO", "Cd_DO", head.Text("Cd_DO"), false),
                      {},
                      Field("NumeroDoc", SeriesOfNumber()).Text(session, head),
                      YearOf(head)};
    const QString before = head.Text("NumeroDoc").section(u'/', 0, 0);
    if (std::any_of(before.begin(), before.end(), [](QChar each) { return each.isDigit(); })) {
        of.number = Field("NumeroDoc", NumberBeforeSlash()).Text(session, head);
    }
    return of;
}

/// Whether the source has several documents of a counterparty and day that would be one in Quadrix, as 12 and 12BIS.
/// @param head with Cd_CF
bool HasTwin(Session& session, const SourceRow& head, const DocumentNumber& number) {
    ovConnection& source = session.SourceConnection();
    Recordset others = source.ExecuteWC(
        "SELECT NumeroDoc, EsAnno, DataDoc, Cd_DO FROM DOTes\rWHERE Cd_CF = " + LiteralOf(source, head.Value("Cd_CF")) +
        " AND DataDoc = " + LiteralOf(source, head.Value("DataDoc")) +
        " AND Cd_DO = " + LiteralOf(source, head.Value("Cd_DO")));
    int same = 0;
    for (const SourceRow other(others); !others.Eof(); others.MoveNext()) {
        same += NumberOfHead(session, other) == number ? 1 : 0;
    }
    return same > 1;
}

} // namespace

/// The Quadrix row of a row of the source, in the tables of a family; 0 when it is not there.
qint64 RowsUnderWay::OriginRow(const Family& family, qint64 sourceRow) {
    Session& session = m_run.GetSession();
    const Recordset found = session.SourceConnection().ExecuteWC(
        QStringLiteral("SELECT T.NumeroDoc, T.EsAnno, T.DataDoc, T.Cd_DO, T.Cd_CF, R.Riga FROM DORig R\rJOIN DOTes T "
                       "ON T.Id_DOTes = R.Id_DOTes\rWHERE R.Id_DORig = %1")
            .arg(sourceRow));
    if (found.Eof()) {
        return 0;
    }
    const SourceRow row(found);
    const DocumentNumber of = NumberOfHead(session, row);
    const QString party = modImport_ArcaEvolution::PartyOf(session, row.Text("Cd_CF"));
    if (of.cause.isEmpty() || of.number.isEmpty() || party.isEmpty()) { // its document is not imported
        return 0;
    }
    const DocumentWriter writer(m_run, family);
    const QString series = of.series.isEmpty() ? LookUp(session, "CAU_DOC", "CDCAD", of.cause, "CDSER") : of.series;
    const qint64 head = writer.Find(of.number, of.cause, of.year,
                                    QStringList{OfSeries(session, series), Equals(session, "DTCON", party),
                                                OnDay(session, "DTDAT", DateOf(row, "DataDoc"))}
                                        .join(QStringLiteral(" AND ")));
    return head == 0 || HasTwin(session, row, of) ? 0 : writer.FindRow(head, WholeNumberOf(row, "Riga"));
}

void RowsUnderWay::SetOrigin(const SourceRow& row, TargetRow& target) {
    const auto origin = static_cast<qint64>(NumberOf(row, "Id_DORig_Evade"));
    const qint64 originRow = origin == 0 ? 0 : OriginRow(*m_family, origin);
    m_missing = originRow == 0 ? origin : 0;
    if (originRow != 0) {
        target.Set("DRORI", originRow);
    }
}

void RowsUnderWay::Written(const SourceRow& row, const WrittenRow& written) {
    constexpr double noGift = 1;
    if (NumberOf(row, "Omaggio") > noGift) {
        m_gifts += row.IsBlank("PrezzoTotaleV") ? written.values.Amount() : NumberOf(row, "PrezzoTotaleV");
    }
    if (m_missing != 0) {
        m_openLinks.push_back({written.family, written.id, m_missing});
        m_run.WhenTakenBack([this] { m_openLinks.pop_back(); });
    }
}

/// Totals follow from the rows; those of the source stand in their place where it has them, as they are on the paper,
/// unless rows that it has no more still stand in the document.
void RowsUnderWay::SetTotals(const SourceRow& head, const WrittenDocument& document) {
    Session& session = m_run.GetSession();
    const Recordset found = session.SourceConnection().ExecuteWC(
        "SELECT * FROM DOTotali\rWHERE Id_DOTes = " + LiteralOf(session.SourceConnection(), head.Value("Id_DOTes")));
    SourceTotals totals{.gifts = m_gifts};
    if (document.rowsLeft == 0 && !found.Eof()) {
        const SourceRow row(found);
        totals.taxable = NumberOf(row, "TotImponibileV");
        totals.tax = NumberOf(row, "TotImpostaV");
        totals.total = NumberOf(row, "TotDocumentoV");
    }
    contract::SetTotals(m_run, document.family, document.id, totals);
}

/// Rows in front of an interruption whose origin has come behind it.
void RowsUnderWay::OpenLinksBefore() {
    Session& session = m_run.GetSession();
    Recordset rows = session.SourceConnection().ExecuteWC(
        "SELECT R.Id_DORig, R.Id_DORig_Evade, T.TipoDocumento, T.CliFor FROM DORig R\rJOIN DOTes T ON T.Id_DOTes = "
        "R.Id_DOTes\rWHERE R.Id_DORig_Evade <> 0 ORDER BY R.Id_DORig");
    for (const SourceRow row(rows); !rows.Eof(); rows.MoveNext()) {
        try {
            const Family& family = FamilyOf(row);
            const qint64 id = OriginRow(family, static_cast<qint64>(NumberOf(row, "Id_DORig")));
            if (m_run.HasWrittenBefore(family.row, id) &&
                LookUp(session, family.row, "RECORD_ID", QString::number(id), "DRORI").isEmpty()) {
                m_openLinks.push_back({family, id, static_cast<qint64>(NumberOf(row, "Id_DORig_Evade"))});
            }
        } catch (const ImportError&) { // its document has been given up
            continue;
        }
    }
}

void RowsUnderWay::LinkRest() {
    if (m_run.GoesOn()) {
        OpenLinksBefore();
    }
    for (const OpenLink& link : m_openLinks) {
        const qint64 origin = OriginRow(link.family, link.origin);
        if (origin == 0) {
            TellUnlinked(link);
            continue;
        }
        TargetRow target(m_run, link.family.row);
        target.Set("DRORI", origin);
        target.Update("WHERE " + Equals("RECORD_ID", link.row));
    }
}

void RowsUnderWay::TellUnlinked(const OpenLink& link) const {
    const Recordset found = m_run.GetSession().Quadrix.ExecuteWC(
        QStringLiteral("SELECT T.DTCAU, T.DTNUM, T.DTANN, R.DRNUM FROM %1 R JOIN %2 T ON T.RECORD_ID = R.IDTES WHERE ")
            .arg(m_run.FullName(link.family.row), m_run.FullName(link.family.head)) +
        Equals("R.RECORD_ID", link.row));
    const SourceRow row(found);
    m_run.Log(QStringLiteral("RIGA D'ORIGINE NON IMPORTATA: %1 %2/%3, DRNUM '%4': Id_DORig '%5'")
                  .arg(row.Text("DTCAU"), row.Text("DTNUM"), row.Text("DTANN"), row.Text("DRNUM"),
                       QString::number(link.origin)));
}

} // namespace modImport_ArcaEvolution
