#include "adapters/contract/write/Document.h"

#include "adapters/contract/map/lookups.h"
#include "adapters/contract/map/wholeNumbers.h"
#include "adapters/contract/run/askedDay.h"
#include "adapters/contract/run/SourceLayout.h"
#include "adapters/contract/run/SourceRow.h"
#include "adapters/contract/run/TargetRow.h"
#include "adapters/contract/write/noLongerThere.h"
#include "core/modImport.h"
#include "core/modMain.h"
#include "core/qdxProduction.h"
#include "core/schemaDefaults.h"
#include "sql/codeAsked.h"
#include "sql/mod_ovTools.h"

namespace contract {

using namespace schema::defaults;

namespace {

const std::array<const Family*, 3> Families{&Sales, &Purchases, &WorkAccount};

QString TextOf(const Recordset& rows, const QString& column) {
    return mod_ovTools::ToText(rows.Value(column)).trimmed();
}

/// The day from which on documents are imported.
QDate StartDateOf(Session& session) {
    if (session.DocumentsFrom.isValid()) {
        return session.DocumentsFrom;
    }
    const QString text = modMain::GetAppConfig(session, "IMPORT", "DOC_DateStart", "01/01/2017");
    const auto from = mod_ovTools::ReadDate(text);
    if (!from) {
        throw ImportError(
            QStringLiteral("impostazione DOC_DateStart della sezione IMPORT: '%1' non è una data, scriverla gg/mm/aaaa")
                .arg(text));
    }
    return from->date();
}

} // namespace

std::vector<TableNeed> DocumentNeeds(const Family& family) {
    return {
        {family.head,
         {"DTCAU", "DTANN", "DTSER", "DTNUM", "DTDAT", "DTTPD", "DTSTA", "DTANL", "DTCON",
          "DTRAS", "DTRSS", "DTVIA", "DTCAP", "DTCIT", "DTPRO", "DTCAM", "DTTPM", "DTMAG",
          "DTESR", "DTVAL", "DTCMB", "DTMER", "DTSCT", "DTIMP", "DTIVA", "DTTOT"},
         {},
         true},
        {family.row,
         {"IDTES", "DRNUM", "DRTIP", "DRART", "DRDES", "DRUMS", "DRUM2", "DRQTR", "DRQT2", "DRQTE", "DRSTA", "DRQTD",
          "DRPRZ", "DRPR2", "DRPRA", "DRSCO", "DRSC2", "DRSC3", "DRTOT", "DRTTA", "DRIVA", "DRCAM", "DRTPM", "DRMAG"},
         {},
         true},
        {family.dueDate, {"IDTES"}, {}, true}};
}

const QStringList& DocumentRowTables() {
    static const QStringList tables{Sales.row, Purchases.row, WorkAccount.row};
    return tables;
}

Emptying DocumentEmptying(const QStringList& causes) {
    QStringList quoted;
    for (QString cause : causes) {
        quoted.append(u'\'' + cause.replace(u'\'', QLatin1String("''")) + u'\'');
    }
    const QString ofCauses = quoted.isEmpty() ? QString() : QString("DTCAU IN (" + quoted.join(u',') + u')');
    Emptying emptying;
    for (const Family* family : Families) {
        emptying = emptying + DeletedImports(family->head, ofCauses) +
                   DeletedOrphans({family->row, family->dueDate}, "IDTES", family->head);
    }
    return emptying;
}

DocumentSettings ReadDocumentSettings(Session& session) {
    return {StartDateOf(session), modMain::IsAppConfigOn(session, "IMPORT", "DOC_CheckArticoli", "1")};
}

QDate AskStartDate(ImportRun& run) {
    return AskDay(run, StartDateQuestion, ReadDocumentSettings(run.GetSession()).from);
}

bool AskSkipImported(ImportRun& run) { return run.Ask(SkipImportedQuestion); }

void TellUnmatched(ImportRun& run, const Joined& joined) {
    if (run.IsSingle()) {
        return;
    }
    ovConnection& source = run.GetSession().SourceConnection();
    const QString from = QStringLiteral(" FROM %1 L LEFT JOIN %2 O ON %3 WHERE O.%4 IS NULL%5")
                             .arg(joined.table, joined.other, joined.on, joined.blank,
                                  joined.where.isEmpty() ? QString() : QString(" AND " + joined.where));
    const qint64 count = source.ExecuteCommand(QStringLiteral("SELECT COUNT(*)") + from);
    if (count == 0) {
        return;
    }
    const QString columns = joined.naming.join(QStringLiteral(", L."));
    const Recordset first = source.ExecuteWC(u"SELECT L.*" + from + u" ORDER BY L." + columns);
    const QString names = joined.naming.join(QStringLiteral(", ")).remove(u'[').remove(u']');
    run.Log(
        QStringLiteral("RIGHE SENZA CORRISPONDENZA: %1 di '%2' non ne hanno in '%3', non si importano; la prima: %4")
            .arg(count)
            .arg(joined.table, joined.other, NameOf(SourceRow(first), joined.table, names)));
}

QStringList WrittenColumns(const Session& session, const Mapping& mapping) {
    QStringList columns = mapping.TargetColumns();
    for (const MapLine& added : AddedLines(session, mapping)) {
        columns.append(added.target);
    }
    return columns;
}

QStringList EmptiedColumns(Session& session, const Mapping& mapping, const QStringList& further) {
    QStringList columns = further + WrittenColumns(session, mapping);
    const QStringList lacking = mapping.LackingColumns(session);
    columns.removeIf([&lacking](const QString& column) { return lacking.contains(column); });
    return columns;
}

void EmptyOthers(TargetRow& row, const QStringList& columns) {
    for (const QString& column : columns) {
        if (row.Value(column).isNull()) {
            row.Set(column, QVariant());
        }
    }
}

namespace {

QString DocumentName(const QString& cause, const QString& number, const QString& year, const QString& party) {
    return QStringLiteral("%1 %2/%3 di '%4'").arg(cause, number, year, party);
}

/// What is left of a quantity, which is negative for what comes back.
double Remaining(const DocumentRow& row) {
    const double rest = row.quantity - row.delivered;
    return row.quantity < 0 ? std::min(0.0, rest) : std::max(0.0, rest);
}

} // namespace

QString NameOf(const DocumentHead& head) {
    return DocumentName(head.cause.code, head.number, QString::number(head.year), head.name);
}

QString OfSeries(const Session& session, const QString& series) {
    return series.isEmpty() ? QStringLiteral("(DTSER IS NULL OR DTSER = '')") : Equals(session, "DTSER", series);
}

double DocumentRow::Amount() const {
    return RoundedTo(mod_ovTools::ApplyDiscounts(quantity, price, discounts[0], discounts[1], discounts[2]), 2);
}

const Cause& DocumentWriter::CauseOf(const QString& code, const QString& typeWhenMissing) {
    const auto known = m_causes.constFind(code);
    if (known != m_causes.cend()) {
        return *known;
    }
    Cause cause{code, typeWhenMissing, Warehouse, {}, {}};
    Recordset rows =
        m_run.GetSession().Quadrix.ExecuteWC(QStringLiteral("SELECT * FROM ") + m_run.FullName("CAU_DOC") +
                                             QStringLiteral(" WHERE ") + Equals(m_run.GetSession(), "CDCAD", code));
    if (!StepToCode(rows, "CDCAD", code)) {
        m_run.Log(QStringLiteral("CAUSALE NON TROVATA: %1: '%2' manca in CAU_DOC, si usa il tipo '%3'")
                      .arg(m_run.RowKey(), code, typeWhenMissing));
    } else {
        cause = {code,
                 TextOf(rows, "CDCAT"),
                 TextOf(rows, "CDMAG"),
                 TextOf(rows, "CDCAM"),
                 TextOf(rows, "CDTPM"),
                 TextOf(rows, "CDTIP"),
                 TextOf(rows, "CDSER")};
    }
    m_run.RestoresEntry(m_causes, code);
    return *m_causes.insert(code, cause);
}

qint64 DocumentWriter::Find(const QString& number, const QString& cause, int year, const QString& further) const {
    const auto whole = ReadWholeNumber(number);
    if (!whole) { // no document has it: whoever writes it is told
        return 0;
    }
    QString condition = Equals("DTNUM", *whole) + QStringLiteral("  AND ") + Equals(m_run.GetSession(), "DTCAU", cause);
    if (year != 0) {
        condition += QStringLiteral(" AND ") + Equals("DTANN", year);
    }
    if (!further.isEmpty()) {
        condition += QStringLiteral(" AND ") + further;
    }
    return IdOfCode(m_run.GetSession().Quadrix, m_family.head, condition, "DTCAU", cause);
}

TargetRow DocumentWriter::Head(const DocumentHead& head) const {
    TargetRow row(m_run, m_family.head);
    row.Set("DTCAU", head.cause.code);
    row.Set("DTANN", head.year);
    row.Set("DTSER", head.series);
    row.Set("DTNUM", head.number);
    row.Set("DTDAT", head.day);
    row.Set("DTTPD", head.cause.type);
    row.Set("DTSTA", head.state);
    row.Set("DTANL", NotCancelled);
    row.Set("DTCON", head.counterparty);
    row.Set("DTRAS", head.name);
    SetAddress(row, head);
    row.Set("DTCAM", head.cause.reason);
    row.Set("DTTPM", head.cause.movement);
    row.Set("DTMAG", head.cause.warehouse);
    row.Set("DTESR", head.year);
    row.Set("DTVAL", schema::defaults::Currency);
    row.Set("DTCMB", ExchangeRate);
    return row;
}

void DocumentWriter::SetAddress(TargetRow& row, const DocumentHead& head) const {
    const Recordset found = m_run.GetSession().Quadrix.ExecuteWC(
        QStringLiteral("SELECT * FROM ") + m_run.FullName("CON_TRO") + QStringLiteral(" WHERE ") +
        Equals(m_run.GetSession(), "CDCON", head.counterparty));
    if (found.Eof()) {
        throw ImportError(
            QStringLiteral("la controparte '%1' del documento '%2' non c'è").arg(head.counterparty, head.number));
    }
    row.Set("DTRSS", DestinationName(head, TextOf(found, "CORAS")));
    row.Set("DTVIA", TextOf(found, "COIND"));
    row.Set("DTCAP", TextOf(found, "COCAP"));
    row.Set("DTCIT", TextOf(found, "COCIT"));
    row.Set("DTPRO", TextOf(found, "COPRO"));
}

QString DocumentWriter::DestinationName(const DocumentHead& head, const QString& counterpartyName) const {
    if (!modImport::IsWarehouseDestination(m_family.number, modImport::GetDocTypeIndex(head.cause.type))) {
        return counterpartyName;
    }
    return LookUp(m_run.GetSession(), "MAG_AZZ", "CDMAG", head.cause.warehouse, "MADES");
}

/// Amounts in a foreign currency would count as so many euro.
void DocumentWriter::TellExchangeRate(const TargetRow& head) const {
    const QString currency = mod_ovTools::ToText(head.Value("DTVAL")).trimmed();
    const bool isForeign = !currency.isEmpty() && currency.compare(Currency, Qt::CaseInsensitive) != 0;
    if (isForeign && mod_ovTools::ToDouble(head.Value("DTCMB")) == ExchangeRate) {
        m_run.Log(QStringLiteral("CAMBIO MANCANTE: %1: '%2', scritto 1").arg(m_run.RowKey(), currency));
    }
}

qint64 DocumentWriter::Insert(TargetRow& head) {
    TellExchangeRate(head);
    head.Insert();
    const qint64 id = m_run.LastId(m_family.head);
    Saw(id);
    return id;
}

void DocumentWriter::Update(TargetRow& head, qint64 id) {
    Saw(id);
    TellExchangeRate(head);
    head.Update(QStringLiteral("WHERE ") + Equals("RECORD_ID", id));
}

TargetRow DocumentWriter::Row(qint64 head, const DocumentHead& of, const DocumentRow& row) const {
    const Recordset article = m_run.GetSession().Quadrix.ExecuteWC(
        QStringLiteral("SELECT ARDES, ARUMS, ARUM2, ARIVA FROM ") + m_run.FullName("ART_ICO") +
        QStringLiteral(" WHERE ") + Equals(m_run.GetSession(), "CDART", row.article));
    const auto fromArticle = [&](const QString& own, const QString& column) {
        return own.isEmpty() && !article.Eof() ? TextOf(article, column) : own;
    };
    if (article.Eof() && !row.article.isEmpty()) {
        m_run.Log(QStringLiteral("ARTICOLO NON TROVATO: %1: '%2'").arg(m_run.RowKey(), row.article));
    }
    TargetRow target(m_run, m_family.row);
    target.Set("IDTES", head);
    target.Set("DRNUM", row.number);
    target.Set("DRTIP", row.type);
    target.Set("DRART", row.article);
    target.Set("DRDES", fromArticle(row.description, "ARDES"));
    target.Set("DRUMS", fromArticle(row.unit, "ARUMS"));
    target.Set("DRUM2", fromArticle({}, "ARUM2"));
    target.Set("DRQTR", row.quantity);
    target.Set("DRQT2", row.quantity2);
    target.Set("DRQTE", row.delivered);
    target.Set("DRSTA", row.state);
    target.Set("DRQTD", Remaining(row));
    target.Set("DRPRZ", row.price);
    target.Set("DRPR2", row.price);
    target.Set("DRPRA", row.price);
    target.Set("DRSCO", row.discounts[0]);
    target.Set("DRSC2", row.discounts[1]);
    target.Set("DRSC3", row.discounts[2]);
    target.Set("DRTOT", row.Amount());
    target.Set("DRTTA", row.Amount());
    target.Set("DRIVA", VatOf(row, fromArticle({}, "ARIVA")));
    target.Set("DRCAM", of.cause.reason);
    target.Set("DRTPM", of.cause.movement);
    target.Set("DRMAG", of.cause.warehouse);
    return target;
}

void DocumentWriter::Keep(TargetRow& target, qint64 id, DocumentRow row, const QStringList& lacking) const {
    static const QString price = QStringLiteral("DRPRZ");
    static const QString delivered = QStringLiteral("DRQTE");
    static const QString state = QStringLiteral("DRSTA");
    if (lacking.isEmpty()) {
        return;
    }
    const Recordset rows = m_run.GetSession().Quadrix.ExecuteWC(
        QStringLiteral("SELECT DRART, DRPRZ, DRSCO, DRSC2, DRSC3, DRQTE FROM ") + m_run.FullName(m_family.row) +
        QStringLiteral(" WHERE ") + Equals("RECORD_ID", id));
    const SourceRow there(rows);
    if (!IsSameCode(there.Text("DRART"), row.article)) {
        return; // what it has is another article's
    }
    const auto keep = [&](double& value, const QString& column) {
        value = lacking.contains(column) ? mod_ovTools::ToDouble(there.Value(column)) : value;
    };
    const bool isOpen = row.delivered != row.quantity;
    const bool isAmountOfRow = target.Value("DRTOT").toDouble() == row.Amount();
    const bool isRestOfRow = target.Value("DRQTD").toDouble() == Remaining(row);
    keep(row.price, price);
    keep(row.discounts[0], "DRSCO");
    keep(row.discounts[1], "DRSC2");
    keep(row.discounts[2], "DRSC3");
    for (const QString& column : lacking) {
        if (column != state && (isOpen || column != delivered)) { // those follow from the quantities
            target.Unset(column);
        }
    }
    if (lacking.contains(price)) {
        target.Unset("DRPR2");
        target.Unset("DRPRA");
    }
    if (isAmountOfRow) {
        target.Set("DRTOT", row.Amount());
        target.Set("DRTTA", row.Amount());
    }
    if (isOpen && lacking.contains(delivered)) {
        keep(row.delivered, delivered);
        if (!row.tellsState) {
            target.Unset(state);
        }
        if (isRestOfRow) {
            target.Set("DRQTD", Remaining(row));
        }
    }
}

/// A row of goods without a code would count as free of tax.
QString DocumentWriter::VatOf(const DocumentRow& row, const QString& ofArticle) const {
    const bool isOfGoods = row.type != DescriptionRow && row.quantity != 0 && !row.IsText();
    if (!row.vatCode.isEmpty() || !isOfGoods) {
        return row.vatCode;
    }
    if (row.article.isEmpty()) {
        m_run.Log(QStringLiteral("RIGA SENZA CODICE IVA: %1: non ha nemmeno un articolo").arg(m_run.RowKey()));
    } else if (ofArticle.isEmpty()) {
        m_run.Log(QStringLiteral("RIGA SENZA CODICE IVA: %1: nemmeno l'articolo '%2' ne ha uno")
                      .arg(m_run.RowKey(), row.article));
    } else if (row.tellsVat) {
        m_run.Log(QStringLiteral("CODICE IVA DELL'ARTICOLO: %1: '%2' di '%3', la riga non ne ha")
                      .arg(m_run.RowKey(), ofArticle, row.article));
    }
    return ofArticle;
}

/// The first row of a head and number that counts.
template<class Condition>
qint64 DocumentWriter::FirstRow(qint64 head, int number, const QSet<qint64>& but, Condition counts) const {
    Recordset rows = m_run.GetSession().Quadrix.ExecuteWC(
        QStringLiteral("SELECT RECORD_ID, DRART, USINS, USMDF FROM ") + m_run.FullName(m_family.row) +
        QStringLiteral(" WHERE ") + Equals("IDTES", head) + QStringLiteral(" AND ") + Equals("DRNUM", number) +
        QStringLiteral(" ORDER BY RECORD_ID"));
    for (const SourceRow row(rows); !rows.Eof(); rows.MoveNext()) {
        if (const qint64 id = row.Value("RECORD_ID").toLongLong(); !but.contains(id) && counts(row)) {
            return id;
        }
    }
    return 0;
}

qint64 DocumentWriter::FindRow(qint64 head, int number, const QSet<qint64>& but) const {
    const qint64 imported = FindImportedRow(head, number, but);
    return imported != 0 ? imported : FirstRow(head, number, but, [](const SourceRow&) { return true; });
}

qint64 DocumentWriter::FindImportedRow(qint64 head, int number, const QSet<qint64>& but,
                                       const std::optional<QString>& article) const {
    return FirstRow(head, number, but, [&article](const SourceRow& row) {
        return IsImportUser(row.Text("USINS")) ||
               (article && IsImportUser(row.Text("USMDF")) && IsSameCode(row.Text("DRART"), *article));
    });
}

qint64 DocumentWriter::TellRowsLeft(qint64 head, const QString& name, const QSet<qint64>& written,
                                    LeftOutRows leftOut) const {
    Session& session = m_run.GetSession();
    QStringList left;
    QStringList notRewritten;
    Recordset rows = session.Quadrix.ExecuteWC(u"SELECT RECORD_ID, DRNUM, DRART FROM " + m_run.FullName(m_family.row) +
                                               u" WHERE " + Equals("IDTES", head) + u" AND " + OfImports(session) +
                                               u" ORDER BY DRNUM, RECORD_ID");
    for (; !rows.Eof(); rows.MoveNext()) {
        if (!written.contains(rows.Fields(0).Value().toLongLong())) {
            const int number = rows.Value("DRNUM").toInt();
            const QString article = TextOf(rows, "DRART");
            const bool isLeftOut = leftOut.numbers.contains(number) || leftOut.articles.removeOne(article.toUpper());
            const QString ofArticle = number == 0 && !article.isEmpty() ? " (" + article + ')' : QString();
            (isLeftOut ? notRewritten : left).append(u'\'' + TextOf(rows, "DRNUM") + u'\'' + ofArticle);
        }
    }
    const auto ofDocument = [&name](const QStringList& numbers) {
        return QStringLiteral("%1, DRNUM %2").arg(name, numbers.join(QStringLiteral(", ")));
    };
    TellNoLongerThere(m_run, QStringLiteral("RIGHE"), ofDocument(left), left.size());
    TellNotRewritten(m_run, QStringLiteral("righe"), ofDocument(notRewritten), notRewritten.size());
    return left.size() + notRewritten.size();
}

void DocumentWriter::TellDocumentsLeft(const QStringList& causes, const QDate& from, const QString& others) const {
    if (m_run.IsPart() || causes.isEmpty()) {
        return;
    }
    Session& session = m_run.GetSession();
    QStringList quoted;
    for (const QString& cause : causes) {
        quoted.append(m_run.Quoted(cause));
    }
    Recordset heads = session.Quadrix.ExecuteWC(
        u"SELECT RECORD_ID, DTCAU, DTANN, DTNUM, DTRAS FROM " + m_run.FullName(m_family.head) + u" WHERE " +
        OfImports(session) + u" AND DTCAU IN (" + quoted.join(u',') + u") AND DTDAT >= " +
        mod_ovTools::FormatSqlValue(from, DataType::DateTime, session.Quadrix.ProviderType) + u" ORDER BY RECORD_ID");
    for (; !heads.Eof(); heads.MoveNext()) {
        if (!m_seen.contains(heads.Value("RECORD_ID").toLongLong())) {
            const QString name = DocumentName(TextOf(heads, "DTCAU"), TextOf(heads, "DTNUM"), TextOf(heads, "DTANN"),
                                              TextOf(heads, "DTRAS"));
            TellNotMetAgain(m_run, QStringLiteral("DOCUMENTI"),
                            others.isEmpty() ? name : QStringLiteral("%1, se non viene %2").arg(name, others), 1);
        }
    }
}

void DocumentWriter::Total(qint64 head) const {
    TargetRow totals(m_run, m_family.head);
    qdxProduction::qdxDocAggiornaTotale(m_run.GetSession(), m_family.head, head, totals);
}

void SetTotals(ImportRun& run, const Family& family, qint64 head, const SourceTotals& totals) {
    const std::array<std::pair<QString, std::optional<double>>, 4> columns{
        {{"DTMER", totals.goods}, {"DTIMP", totals.taxable}, {"DTIVA", totals.tax}, {"DTTOT", totals.total}}};
    const Recordset found =
        run.GetSession().Quadrix.ExecuteWC(u"SELECT DTOMA, DTMER, DTIMP, DTIVA, DTTOT FROM " +
                                           run.FullName(family.head) + u" WHERE " + Equals("RECORD_ID", head));
    TargetRow target(run, family.head);
    target.Set("DTOMA", totals.gifts);
    QVariantMap before{{"DTOMA", found.Value("DTOMA")}};
    QStringList others;
    for (const auto& [column, total] : columns) {
        if (!total) {
            continue;
        }
        target.Set(column, *total);
        before.insert(column, found.Value(column));
        const QString ofRows = QString::number(mod_ovTools::ToDouble(found.Value(column)), 'f', 2);
        if (const QString ofSource = QString::number(*total, 'f', 2); ofRows != ofSource) {
            others.append(QStringLiteral("%1 %2 dalle righe, %3 nell'origine").arg(column, ofRows, ofSource));
        }
    }
    if (!others.isEmpty()) {
        run.Log(QStringLiteral("TOTALE DIVERSO: %1: %2").arg(run.RowKey(), others.join(QStringLiteral("; "))));
    }
    target.UpdateDerived(head, before);
}

} // namespace contract
