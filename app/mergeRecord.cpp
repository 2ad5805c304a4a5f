#include "app/mergeRecord.h"

#include "app/mergeText.h"
#include "core/createDatabase.h"
#include "core/Schema.h"
#include "core/worker.h"
#include "sql/mod_ovTools.h"
#include "sql/ovQueryConstructor.h"
#include "sql/textLiteral.h"

namespace merge {

namespace {

const QString Table = QStringLiteral("SYS_FUS");

QString Worker() {
    static const int size = schema::FindTable(Table)->FindColumn("FUUTE")->size;
    return WorkerText().left(size);
}

ovQueryConstructor NewQuery(const Session& session) {
    ovQueryConstructor query;
    query.ProviderType = session.Quadrix.ProviderType;
    query.SetTable(Table);
    return query;
}

ovQueryConstructor NewMerge(const Session& session, const Companies& companies) {
    ovQueryConstructor query = NewQuery(session);
    query.AddUpdateField("FUPAR", companies.from, DataType::NVarChar);
    query.AddUpdateField("FUDES", companies.to, DataType::NVarChar);
    query.AddUpdateField("FUINI", session.Now(), DataType::DateTime);
    query.AddUpdateField("FUUTE", Worker(), DataType::NVarChar);
    return query;
}

/// The company of a code; without its name when it is no longer there.
modMain::Company Named(Session& session, const QString& code) {
    const auto companies = modMain::GetCompanies(session);
    const auto known = std::find_if(companies.begin(), companies.end(), [&code](const modMain::Company& company) {
        return company.code.compare(code, Qt::CaseInsensitive) == 0;
    });
    return known == companies.end() ? modMain::Company{code, {}} : *known;
}

QDateTime MomentOf(const Recordset& rows, const char* column) {
    return mod_ovTools::ReadDate(rows.Value(QLatin1String(column))).value_or(QDateTime());
}

bool IsThere(ovConnection& quadrix) { return quadrix.GetTables().contains(Table, Qt::CaseInsensitive); }

QString FieldText(const Recordset& rows, const char* column) {
    return mod_ovTools::ToText(rows.Value(QLatin1String(column))).trimmed();
}

/// The references of a company with their codes; none when nobody can tell: it lacks one, or the dictionary is empty.
std::optional<References> ReadReferences(Session& session, const QString& company) {
    try {
        References references(session, {company, {}});
        references.Check();
        references.ReadCodes();
        return references.AreKnown() ? std::optional(std::move(references)) : std::nullopt;
    } catch (const ImportError&) {
        return std::nullopt;
    }
}

/// Earlier releases noted a merge before it did anything.
bool HasDoneNothing(Session& session, const Recordset& merge) {
    if (MomentOf(merge, "FUFIN").isValid()) {
        return false;
    }
    const auto references = ReadReferences(session, FieldText(merge, "FUPAR"));
    return references && !references->MayBeRepointed();
}

} // namespace

Records::Records(Session& session)
    : m_session(session),
      m_isOff(session.Quadrix.InTransaction()) {}

std::optional<modMain::EarlierMerge> Records::LastOf(const QString& company) const {
    if (!IsThere(m_session.Quadrix)) {
        return std::nullopt;
    }
    Recordset rows =
        m_session.Quadrix.ExecuteWC(u"SELECT * FROM " + Table + u"\rWHERE FUPAR = " +
                                    TextLiteral(m_session.Quadrix, company) + u"\rORDER BY RECORD_ID DESC");
    while (!rows.Eof() && HasDoneNothing(m_session, rows)) {
        rows.MoveNext();
    }
    if (rows.Eof() || FieldText(rows, "FUPAR") == FieldText(rows, "FUDES")) {
        return std::nullopt;
    }
    return modMain::EarlierMerge{rows.Value("RECORD_ID").toLongLong(),
                                 Named(m_session, FieldText(rows, "FUPAR")),
                                 Named(m_session, FieldText(rows, "FUDES")),
                                 MomentOf(rows, "FUINI"),
                                 MomentOf(rows, "FUFIN"),
                                 FieldText(rows, "FUUTE")};
}

void Records::Prepare() {
    if (m_isOff || IsThere(m_session.Quadrix)) {
        return;
    }
    try {
        CreateSharedTable(m_session.Quadrix, Table);
    } catch (Error& error) {
        error.AddContext(QStringLiteral("La fusione con i riferimenti si annota nella tabella %1, che non c'è e non si "
                                        "può creare; farla creare da chi ha il diritto di creare tabelle e ripetere. "
                                        "Non è stato scritto nulla")
                             .arg(Table));
        throw;
    }
}

void Records::TakeUp(const modMain::EarlierMerge& interrupted) { m_id = m_isOff ? 0 : interrupted.id; }

void Records::Begin(const Companies& companies) {
    if (m_isOff || m_id != 0) {
        return;
    }
    m_session.Quadrix.Execute(NewMerge(m_session, companies).MakeStatement(StatementKind::Insert));
    m_id = m_session.Quadrix.LastInsertId();
}

void Records::Forget(const QString& company) {
    if (m_isOff || !LastOf(company)) {
        return;
    }
    const auto references = ReadReferences(m_session, company);
    if (references && !references->HasCodes()) {
        ovQueryConstructor query = NewMerge(m_session, {company, company});
        query.AddUpdateField("FUFIN", m_session.Now(), DataType::DateTime);
        m_session.Quadrix.Execute(query.MakeStatement(StatementKind::Insert));
    }
}

void Records::End() {
    if (m_id == 0) {
        return;
    }
    ovQueryConstructor query = NewQuery(m_session);
    query.AddUpdateField("FUFIN", m_session.Now(), DataType::DateTime);
    query.AddUpdateField("FUUTE", Worker(), DataType::NVarChar);
    query.WhereString = QStringLiteral("WHERE RECORD_ID = %1").arg(m_id);
    m_session.Quadrix.Execute(query.MakeStatement(StatementKind::Update));
}

QStringList MergedInto(ovConnection& quadrix, const QString& company) {
    QStringList merged; // not a company that was forgotten, which is its own last
    if (!IsThere(quadrix)) {
        return merged;
    }
    Recordset rows = quadrix.ExecuteWC(
        QStringLiteral("SELECT FUPAR, FUDES FROM %1\rWHERE FUFIN IS NOT NULL\rORDER BY RECORD_ID").arg(Table));
    for (; !rows.Eof(); rows.MoveNext()) {
        const QString from = mod_ovTools::ToText(rows.Fields(0).Value()).trimmed();
        merged.removeAll(from);
        if (mod_ovTools::ToText(rows.Fields(1).Value()).trimmed().compare(company, Qt::CaseInsensitive) == 0) {
            merged.append(from);
        }
    }
    return merged;
}

QString MergedText(Session& session, const QString& company) {
    const auto last = Records(session).LastOf(company);
    return last ? modMain::ForeignCodesText(*last) +
                      QStringLiteral(", e quelle che si importano adesso avrebbero i propri")
                : QString();
}

} // namespace merge
