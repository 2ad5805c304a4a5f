#include "adapters/contract/write/Bill.h"

#include "adapters/contract/map/lookups.h"
#include "adapters/contract/run/TargetRow.h"
#include "adapters/contract/write/noLongerThere.h"
#include "core/billCycles.h"
#include "core/qdxProduction_articles.h"
#include "core/qdxProduction_sheets.h"
#include "core/rowDigest.h"
#include "sql/mod_ovTools.h"

namespace contract {

using namespace schema::defaults;

namespace {

/// Sets what cost, mark-up and price a component's article has now.
void SetPrices(ImportRun& run, TargetRow& row, const QString& article) {
    const qdxProduction::ArticleAmounts amounts = qdxProduction::AmountsOf(run.GetSession(), article);
    row.Set("DCCOS", amounts.cost);
    row.Set("DCRIC", amounts.markUp);
    row.Set("DCPRZ", amounts.price);
}

void SetMore(TargetRow& row, const std::function<void(TargetRow&)>& more) {
    if (more) {
        more(row);
    }
}

} // namespace

std::vector<TableNeed> BillNeeds() {
    return {
        {"DIS_BAS", {"DBART", "DBREV", "DBMAN", "DBANN", "DBINV", "DBNOT", "IDOLD"}},
        {"DIS_FAS",
         {"IDDIS", "DLSEQ", "DLACT", "DLLAV", "DLTAP", "DLTUP", "DLTMP", "DLNUP", "DLCOS", "DLNOT", "DLFOR", "DLMAC"}},
        {"DIS_COM",
         {"IDDIS", "IDDBL", "IDDBF", "DCART", "DCPOS", "DCQTA", "DCCOS", "DCRIC", "DCPRZ", "DCCTL", "DCCOE", "DCNOT"}},
        LookedUp("ART_ICO", {"CDART", "ARCOS", "ARRIC", "ARPRZ"})};
}

Emptying BillEmptying() { return Deleted({"DIS_BAS", "DIS_COM", "DIS_FAS"}); }

bool BillWriter::HasArticle(const QString& article) const {
    return IsThere(m_run.GetSession(), "ART_ICO", "CDART", article);
}

qint64 BillWriter::Find(const BillHead& head) const {
    Session& session = m_run.GetSession();
    QString condition = Equals(session, "DBART", head.article);
    if (!head.revision.isNull()) {
        condition += QStringLiteral(" AND DBREV = ") +
                     mod_ovTools::FormatSqlValue(head.revision, DataType::Integer, session.Quadrix.ProviderType);
    }
    return IdWhere(session, "DIS_BAS", condition);
}

namespace {

QString KeyOf(const BillHead& head) { return (head.wholeKey.isEmpty() ? head.sourceKey : head.wholeKey).trimmed(); }

size_t DigestOf(const BillHead& head) { return qHash(KeyOf(head)); }

} // namespace

RowOutcome BillWriter::Begin(const BillHead& head, const std::function<void(TargetRow&)>& more) {
    Session& session = m_run.GetSession();
    const QDate today = session.UserManager.DataElaborazione;
    m_modules.Keep();
    m_quantities.clear();
    m_leftOut.clear();
    m_phases.clear();
    m_tellsNoPhase = false;
    m_firstPhase = 0;
    m_bill = Find(head);
    m_wasThere = m_bill != 0;
    m_replaces = m_wasThere && head.replaces;
    Claim(head);
    TargetRow row(m_run, "DIS_BAS");
    row.Set("IDOLD", head.sourceKey);
    if (head.note && (m_wasThere || !head.note->isEmpty())) {
        row.Set("DBNOT", head.note->isEmpty() ? QVariant() : QVariant(*head.note));
    }
    if (!head.active.isNull()) {
        row.Set("DBMAN", head.active);
    }
    if (m_bill != 0) {
        SetMore(row, more);
        row.Update(QStringLiteral("WHERE ") + Equals("RECORD_ID", m_bill));
        WithdrawOthers(head);
        return RowOutcome::Updated;
    }
    row.Set("DBART", head.article);
    row.Set("DBREV", head.revision.isNull() ? QVariant(BillRevision) : head.revision);
    row.Set("DBMAN", head.active.isNull() ? QVariant(BillActive) : head.active);
    row.Set("DTINS", today);
    row.Set("DBANN", false);
    row.Set("DBINV", today);
    SetMore(row, more);
    row.Insert();
    m_bill = m_run.LastId("DIS_BAS");
    KeepBegun(head);
    WithdrawOthers(head);
    return RowOutcome::Inserted;
}

/// Other revisions of the bill begun last that imports wrote are no longer in force; one that somebody has entered is
/// his.
void BillWriter::WithdrawOthers(const BillHead& head) {
    const bool isAlone = head.alone && (head.active.isNull() || mod_ovTools::ToBoolean(head.active));
    Session& session = m_run.GetSession();
    const QString others = Equals(session, "DBART", head.article) +
                           QStringLiteral(" AND RECORD_ID <> %1 AND DBMAN = 1 AND ").arg(m_bill) + OfImports(session);
    if (!isAlone || IdWhere(session, "DIS_BAS", others) == 0) {
        return;
    }
    TargetRow row(m_run, "DIS_BAS");
    row.Set("DBMAN", false);
    row.Update(QStringLiteral("WHERE ") + others);
    m_run.Restores(m_withdrawals);
    ++m_withdrawals;
}

void BillWriter::KeepBegun(const BillHead& head) {
    m_run.RestoresEntry(m_begun, m_bill);
    m_begun.insert(m_bill, DigestOf(head));
}

void BillWriter::Claim(const BillHead& head) {
    if (!m_wasThere) {
        return;
    }
    const auto begun = m_begun.constFind(m_bill);
    const QString other = begun != m_begun.cend() || m_run.HasWrittenBefore("DIS_BAS", m_bill)
                              ? LookUp(m_run.GetSession(), "DIS_BAS", "RECORD_ID", QString::number(m_bill), "IDOLD")
                              : QString();
    // Of a key that was cut a run that has broken off keeps the beginning alone.
    const bool isOther =
        begun != m_begun.cend() ? *begun != DigestOf(head) : !other.isEmpty() && other != head.sourceKey.trimmed();
    if (isOther && !head.replaces) {
        const QString revision =
            head.revision.isNull() ? QString() : QStringLiteral(", revisione %1,").arg(head.revision.toLongLong());
        throw ImportError(other == head.sourceKey.trimmed()
                              ? QStringLiteral("'%1', tagliato a '%2', è la chiave di un'altra distinta dell'origine")
                                    .arg(KeyOf(head), other)
                              : QStringLiteral("la distinta di '%1'%2 è già quella che l'origine chiama '%3'")
                                    .arg(head.article, revision, other));
    }
    KeepBegun(head);
}

/// With what the run wrote of it before.
double BillWriter::QuantityOf(const Component& component) {
    const QString article = mod_ovTools::UpperChars(component.article);
    double quantity = component.quantity;
    if (const auto before = m_quantities.constFind(article); before != m_quantities.cend()) {
        if (component.repeated == Repeated::Adds) {
            quantity += *before;
        } else {
            m_run.Log(QStringLiteral("COMPONENTE RIPETUTO: %1: '%2' c'è già, la quantità %3 sostituisce %4")
                          .arg(m_run.RowKey(), component.article, mod_ovTools::NumberText(quantity),
                               mod_ovTools::NumberText(*before)));
        }
    }
    m_quantities.insert(article, quantity);
    return quantity;
}

void BillWriter::Write(const Component& component, qint64 phase, const std::function<void(TargetRow&)>& more) {
    Session& session = m_run.GetSession();
    const bool addsToAnother =
        component.repeated == Repeated::Adds && m_quantities.contains(mod_ovTools::UpperChars(component.article));
    const bool mayBeThere = m_wasThere || m_quantities.contains(mod_ovTools::UpperChars(component.article));
    const double quantity = QuantityOf(component);
    const qint64 known = mayBeThere
                             ? IdWhere(session, "DIS_COM",
                                       Equals("IDDIS", m_bill) + QStringLiteral(" AND") + QStringLiteral("      ") +
                                           Equals(session, "DCART", component.article))
                             : 0;
    TargetRow row(m_run, "DIS_COM");
    row.Set("IDDIS", m_bill);
    if (known == 0 || !m_tellsNoPhase || !HangsOnPhase(known)) {
        row.Set("IDDBL", phase);
    }
    row.Set("DCART", component.article);
    row.Set("DCQTA", quantity);
    SetPrices(m_run, row, component.article);
    row.Set("DCCTL", component.subcontracted);
    row.Set("DCCOE", ComponentFactor);
    if (!addsToAnother || !component.note.isEmpty()) {
        row.Set("DCNOT", component.note);
    }
    if (!component.position.isNull() && !addsToAnother) {
        row.Set("DCPOS", component.position);
    }
    SetMore(row, more);
    if (known != 0) {
        row.Update(QStringLiteral("WHERE ") + Equals("RECORD_ID", known));
    } else {
        row.Insert();
        m_firstComponent = m_firstComponent == nullptr ? m_run.LastRow("DIS_COM") : m_firstComponent;
    }
}

/// Whether a component (RECORD_ID) hangs on a phase of the bill begun last.
bool BillWriter::HangsOnPhase(qint64 component) const {
    return IdWhere(m_run.GetSession(), "DIS_FAS",
                   Equals("IDDIS", m_bill) + u" AND RECORD_ID = (SELECT IDDBL FROM " + m_run.FullName("DIS_COM") +
                       u" WHERE " + Equals("RECORD_ID", component) + u')') != 0;
}

QString BillWriter::SheetOf(const QString& material, double thickness) {
    const std::pair key(material, thickness);
    const auto known = m_sheets.constFind(key);
    return known != m_sheets.cend()
               ? *known
               : *m_sheets.insert(key,
                                  qdxProduction::qdxGetCodiceLamieraEsterno(m_run.GetSession(), material, thickness));
}

void BillWriter::TellComponentsLeft() {
    if (!m_wasThere) {
        return;
    }
    Session& session = m_run.GetSession();
    QStringList left;
    QStringList leftOut;
    QList<qint64> ids;
    Recordset rows =
        session.Quadrix.ExecuteWC(u"SELECT DCART, RECORD_ID FROM " + m_run.FullName("DIS_COM") + u" WHERE " +
                                  Equals("IDDIS", m_bill) + u" AND " + OfImports(session) + u" ORDER BY RECORD_ID");
    for (; !rows.Eof(); rows.MoveNext()) {
        const QString article = mod_ovTools::ToText(rows.Fields(0).Value()).trimmed();
        if (const QString key = mod_ovTools::UpperChars(article); !m_quantities.contains(key)) {
            (m_leftOut.contains(key) ? leftOut : left).append(u'\'' + article + u'\'');
            ids.append(rows.Fields(1).Value().toLongLong());
        }
    }
    if (m_replaces) {
        DropReplacedComponents(ids);
        return;
    }
    for (const qint64 id : ids) {
        m_run.Remember(m_leftParts, id);
    }
    const auto ofBill = [this](const QStringList& articles) {
        return QString(m_run.RowKey() + u", " + articles.join(QStringLiteral(", ")));
    };
    TellNoLongerThere(m_run, QStringLiteral("COMPONENTI"), ofBill(left), left.size());
    TellNotRewritten(m_run, QStringLiteral("componenti"), ofBill(leftOut), leftOut.size());
}

void BillWriter::TellBillsLeft() {
    if (m_run.IsPart() || !m_modules.IsAlone(QStringLiteral("distinte"))) {
        return;
    }
    Session& session = m_run.GetSession();
    Recordset rows =
        session.Quadrix.ExecuteWC(u"SELECT RECORD_ID, DBART, DBREV, DBMAN FROM " + m_run.FullName("DIS_BAS") +
                                  u" WHERE " + OfImports(session) + u" ORDER BY RECORD_ID");
    for (const SourceRow row(rows); !rows.Eof(); rows.MoveNext()) {
        const QString article = row.Text("DBART");
        if (m_begun.contains(row.Value("RECORD_ID").toLongLong()) || m_met.contains(mod_ovTools::UpperChars(article))) {
            continue;
        }
        TellNotMetAgain(
            m_run, QStringLiteral("DISTINTE"),
            QStringLiteral("'%1', revisione %2%3")
                .arg(article, row.Text("DBREV"),
                     mod_ovTools::ToBoolean(row.Value("DBMAN")) ? QString() : QStringLiteral(", non in vigore")),
            1);
    }
}

void BillWriter::DropReplacedComponents(const QList<qint64>& left) {
    for (const qint64 id : left) {
        if (!m_leftParts.contains(id)) {
            m_run.DeleteRows("DIS_COM", Equals("RECORD_ID", id));
        }
    }
}

void BillWriter::LinkSubAssemblies() {
    ovConnection& quadrix = m_run.GetSession().Quadrix;
    const QString bills = m_run.FullName("DIS_BAS");
    // Also where this origin has none: revisions may have been made by hand or come from another one.
    const bool hasRevisions =
        quadrix.ExecuteCommand(QStringLiteral("SELECT COUNT(*) FROM (SELECT DBART FROM %1 GROUP BY DBART HAVING "
                                              "COUNT(*) > 1) R")
                                   .arg(bills)) > 0;
    const QString bill = hasRevisions
                             // The one in force that was written last; without one in force, the last.
                             ? QStringLiteral("COALESCE((SELECT MAX(RECORD_ID) FROM %2 WHERE DBART = %1.DCART AND "
                                              "DBMAN = 1), (SELECT MAX(RECORD_ID) FROM %2 WHERE DBART = %1.DCART))")
                             : QStringLiteral("(SELECT RECORD_ID FROM %2\rWHERE DBART = %1.DCART)");
    const QString components = m_run.FullName("DIS_COM");
    if (m_run.KeepsImages()) {
        TellLinks(bill.arg(components, bills));
    }
    quadrix.Execute(QStringLiteral("UPDATE %1\rSET IDDBF = ").arg(components) + bill.arg(components, bills));
    LogCycles();
}

/// Tells of the components whose link is about to change; those of this run go as a whole when it is taken back.
/// @param bill expression for the bill of a component
void BillWriter::TellLinks(const QString& bill) const {
    const QString column = QStringLiteral("IDDBF");
    const DataType type = schema::FindTable("DIS_COM")->FindColumn(column)->type;
    const qint64 own = m_firstComponent == nullptr ? 0 : *m_firstComponent;
    Recordset rows = m_run.GetSession().Quadrix.ExecuteWC(
        QStringLiteral("SELECT RECORD_ID, IDDBF, %1 BILL FROM %2").arg(bill, m_run.FullName("DIS_COM")) +
        (own == 0 ? QString() : QStringLiteral(" WHERE RECORD_ID < %1").arg(own)));
    for (; !rows.Eof(); rows.MoveNext()) {
        if (rows.Value("BILL").toLongLong() == rows.Value(column).toLongLong()) {
            continue;
        }
        RowDigest digest;
        digest.Add(rows.Value("BILL"), type);
        TargetChange change{TargetChange::Kind::Updated, m_run.FullName("DIS_COM"),
                            rows.Value("RECORD_ID").toLongLong()};
        change.before.insert(column, rows.Value(column));
        change.columns.append(column);
        change.digest = digest.Value();
        m_run.TellChange(std::move(change), [](TargetChange&) {});
    }
}

void BillWriter::LogCycles() {
    Session& session = m_run.GetSession();
    std::vector<qdxProduction::BillLink> links;
    {
        Recordset rows =
            session.Quadrix.ExecuteWC(QStringLiteral("SELECT IDDIS, IDDBF FROM ") + m_run.FullName("DIS_COM") +
                                      QStringLiteral(" WHERE IDDBF IS NOT NULL"));
        for (; !rows.Eof(); rows.MoveNext()) {
            links.push_back({rows.Fields(0).Value().toLongLong(), rows.Fields(1).Value().toLongLong()});
        }
    }
    qdxProduction::ForEachCycle(std::move(links), [&](const std::vector<qint64>& path) {
        QStringList articles;
        for (const qint64 bill : path) {
            articles.append(LookUp(session, "DIS_BAS", "RECORD_ID", QString::number(bill), "DBART"));
        }
        m_run.Log(QStringLiteral("CICLO NELLA DISTINTA: ") + articles.join(QStringLiteral(" > ")));
    });
}

void BillWriter::TellMissing(const QString& singleCode) const {
    m_run.GetSession().Person.Message("Impossibile trovare la Distinta Base " + singleCode, Icon::Exclamation);
}

QString BillWriter::Completion(QString text) const {
    text.replace("%1", QString::number(Bills()));
    text.replace("%2", QString::number(Phases()));
    text.replace("%3", QString::number(Components()));
    return text;
}

void ImportBills(ImportRun& run, const ImportRun::Loop& heads, const QString& singleCode, const QString& completion,
                 const std::function<RowOutcome(BillWriter&, const SourceRow&)>& bill) {
    BillWriter writer(run);
    bool found = false;
    const bool toTheEnd = run.Rows(heads, [&](const SourceRow& row) {
        found = true;
        return bill(writer, row);
    });
    if (!toTheEnd) {
        return;
    }
    if (run.IsSingle() && !found) {
        writer.TellMissing(singleCode);
        return;
    }
    writer.TellBillsLeft();
    writer.LinkSubAssemblies();
    run.Complete(writer.Completion(completion));
}

} // namespace contract
