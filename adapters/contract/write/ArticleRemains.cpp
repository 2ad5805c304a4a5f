#include "adapters/contract/write/ArticleRemains.h"

#include "adapters/contract/map/lookups.h"
#include "adapters/contract/write/noLongerThere.h"
#include "core/schemaDefaults.h"
#include "sql/codeAsked.h"
#include "sql/mod_ovTools.h"

namespace contract {

namespace {

const QString Suppliers = QStringLiteral("ART_FOR");
const QString Codes = QStringLiteral("ART_COD");
const QString Locations = QStringLiteral("UBI_ART");
const QString Languages = QStringLiteral("SYS_LNG");
const QString ArticleColumn = QStringLiteral("CDART");

QString KeyOf(const QString& article) { return mod_ovTools::UpperChars(article); }

bool IsSameText(const QString& one, const QString& other) { return one.compare(other, Qt::CaseInsensitive) == 0; }

size_t DigestOf(const QString& code) { return qHash(mod_ovTools::UpperChars(code)); }

} // namespace

void ArticleRemains::Begin(const Told& told) { m_told = m_run.IsPart() ? Told() : told; }

bool ArticleRemains::LooksAtAny() const {
    return m_told.suppliers || m_told.internalCodes || m_told.counterpartyCodes || m_told.texts || m_told.location;
}

void ArticleRemains::RowBegins(const QString& article) {
    m_modules.Keep();
    if (!LooksAtAny()) {
        return;
    }
    const QString key = KeyOf(article);
    ++m_begun[key];
    if (m_read.contains(key)) {
        return;
    }
    Remains remains{article};
    ReadSuppliers(remains);
    ReadCodes(remains);
    ReadTexts(remains);
    ReadLocations(remains);
    m_run.Remember(m_read, key);
    if (!remains.all.empty()) {
        m_left[key] = std::move(remains);
        m_run.WhenTakenBack([this, key] { m_left.erase(key); });
    }
}

void ArticleRemains::RowEnds(const QString& article) {
    const auto begun = m_begun.find(KeyOf(article));
    if (begun != m_begun.end() && --*begun == 0) {
        m_begun.erase(begun);
    }
}

void ArticleRemains::ReadSuppliers(Remains& into) const {
    Session& session = m_run.GetSession();
    if (!m_told.suppliers || session.Quadrix.IsAbsent(Suppliers, ArticleColumn, into.article)) {
        return;
    }
    Recordset rows = session.Quadrix.ExecuteWC(
        QStringLiteral("SELECT RECORD_ID, CDCON FROM %1 WHERE ").arg(m_run.FullName(Suppliers)) +
        Equals(session, ArticleColumn, into.article) + QStringLiteral(" AND ") + OfImports(session));
    for (const SourceRow row(rows); !rows.Eof(); rows.MoveNext()) {
        into.all.push_back({Kind::Supplier, row.Text("RECORD_ID"), row.Text("CDCON")});
    }
}

void ArticleRemains::ReadCodes(Remains& into) const {
    Session& session = m_run.GetSession();
    if ((!m_told.internalCodes && !m_told.counterpartyCodes) ||
        session.Quadrix.IsAbsent(Codes, ArticleColumn, into.article)) {
        return;
    }
    Recordset rows = session.Quadrix.ExecuteWC(
        QStringLiteral("SELECT RECORD_ID, CDCOD, COTIP, COCON FROM %1 WHERE ").arg(m_run.FullName(Codes)) +
        Equals(session, ArticleColumn, into.article) + QStringLiteral(" AND ") + OfImports(session));
    for (const SourceRow row(rows); !rows.Eof(); rows.MoveNext()) {
        AddCode(into, row);
    }
}

void ArticleRemains::AddCode(Remains& into, const SourceRow& row) const {
    const bool isInternal = row.Text("COTIP") == u"I";
    if (isInternal && m_told.internalCodes) {
        into.all.push_back({Kind::InternalCode, row.Text("RECORD_ID"), row.Text("CDCOD")});
    } else if (!isInternal && m_told.counterpartyCodes && !row.IsBlank("COCON")) {
        into.all.push_back({Kind::CounterpartyCode, row.Text("RECORD_ID"), row.Text("CDCOD"), row.Text("COCON")});
    }
}

void ArticleRemains::ReadCodesOfOthers() {
    Session& session = m_run.GetSession();
    Recordset rows = session.Quadrix.ExecuteWC(
        QStringLiteral("SELECT RECORD_ID, CDART, CDCOD, COTIP, COCON FROM %1 WHERE ").arg(m_run.FullName(Codes)) +
        OfImports(session) + QStringLiteral(" ORDER BY CDART, RECORD_ID"));
    for (const SourceRow row(rows); !rows.Eof(); rows.MoveNext()) {
        const QString article = row.Text(ArticleColumn);
        if (!m_read.contains(KeyOf(article))) {
            Remains& remains = m_left[KeyOf(article)];
            remains.article = article;
            AddCode(remains, row);
        }
    }
}

void ArticleRemains::ReadTexts(Remains& into) const {
    Session& session = m_run.GetSession();
    if (!m_told.texts || session.Quadrix.IsAbsent(Languages, QStringLiteral("LNKEY"), into.article)) {
        return;
    }
    Recordset rows = session.Quadrix.ExecuteWC(
        QStringLiteral("SELECT RECORD_ID, LNLNG FROM %1 WHERE ").arg(m_run.FullName(Languages)) +
        Equals(session, "LNTBL", m_run.FullName("ART_ICO")) + QStringLiteral(" AND LNFLD = 'ARDES' AND ") +
        Equals(session, "LNKEY", into.article) + QStringLiteral(" AND ") + OfImports(session));
    for (const SourceRow row(rows); !rows.Eof(); rows.MoveNext()) {
        if (row.Text("LNLNG") != schema::defaults::Language) {
            into.all.push_back({Kind::Text, row.Text("RECORD_ID"), row.Text("LNLNG")});
        }
    }
}

void ArticleRemains::ReadLocations(Remains& into) const {
    Session& session = m_run.GetSession();
    if (!m_told.location || session.Quadrix.IsAbsent(Locations, ArticleColumn, into.article)) {
        return;
    }
    Recordset rows = session.Quadrix.ExecuteWC(
        QStringLiteral("SELECT RECORD_ID, CDUBI, UADEF FROM %1 WHERE ").arg(m_run.FullName(Locations)) +
        Equals(session, ArticleColumn, into.article) + QStringLiteral(" AND ") + OfImports(session));
    for (const SourceRow row(rows); !rows.Eof(); rows.MoveNext()) {
        if (mod_ovTools::ToBoolean(row.Value("UADEF"))) {
            into.all.push_back({Kind::Location, row.Text("RECORD_ID"), row.Text("CDUBI")});
        }
    }
}

/// What the source shows is no remain.
template<class Condition>
void ArticleRemains::Found(const QString& article, Condition condition) {
    const auto left = m_left.find(KeyOf(article));
    if (left != m_left.end()) {
        std::erase_if(left->second.all, condition);
        if (left->second.all.empty()) {
            m_left.erase(left);
        }
    }
}

void ArticleRemains::Shows(const QString& article, const QString& code, const QString& counterparty) {
    const Kind kind = counterparty.isEmpty() ? Kind::InternalCode : Kind::CounterpartyCode;
    Found(article, [&](const Remain& one) {
        return one.kind == kind && IsSameCode(one.what, code) && IsSameText(one.counterparty, counterparty);
    });
    if (m_told.internalCodes && kind == Kind::InternalCode) {
        m_run.Remember(m_codes, DigestOf(code));
    }
}

void ArticleRemains::ShowsSupplier(const QString& article, const QString& supplier) {
    Found(article, [&](const Remain& one) { return one.kind == Kind::Supplier && IsSameText(one.what, supplier); });
}

void ArticleRemains::ShowsUnknownSupplier(const QString& article, const QString& ownCode) {
    Found(article, [&ownCode](const Remain& one) {
        return one.kind == Kind::Supplier || (one.kind == Kind::CounterpartyCode && IsSameCode(one.what, ownCode));
    });
}

void ArticleRemains::ShowsText(const QString& article, const QString& language) {
    Found(article, [&](const Remain& one) { return one.kind == Kind::Text && IsSameText(one.what, language); });
}

void ArticleRemains::ShowsLocation(const QString& article) {
    Found(article, [](const Remain& one) { return one.kind == Kind::Location; });
}

void ArticleRemains::Close() {
    if (m_told.ofAllArticles) {
        ReadCodesOfOthers();
    }
    const bool isAlone = !LooksAtAny() || m_modules.IsAlone(QStringLiteral("articoli"));
    for (const auto& [key, remains] : std::exchange(m_left, {})) {
        const bool isWhole = !m_begun.contains(key); // else a row that was given up may have shown it
        for (const Remain& remain : remains.all) {
            if (remain.kind == Kind::InternalCode && isWhole && m_codes.contains(DigestOf(remain.what))) {
                if (isAlone || m_read.contains(key)) {
                    TakeOff(remains.article, remain);
                } else {
                    TellOfTwo(remains.article, remain);
                }
            } else if (isAlone) {
                const bool loses = remain.kind == Kind::Supplier && isWhole && TakesMarkOff(remain);
                Tell(remains.article, remain, loses);
            }
        }
    }
}

namespace {

QString CodeText(const QString& code, const QString& counterparty) {
    return counterparty.isEmpty() ? QStringLiteral("'%1'").arg(code)
                                  : QStringLiteral("'%1' di '%2'").arg(code, counterparty);
}

} // namespace

/// Takes the mark of the preferred one off a link that only imports have written. @return whether it had it
bool ArticleRemains::TakesMarkOff(const Remain& supplier) const {
    const Session& session = m_run.GetSession();
    const QString marked =
        QStringLiteral("RECORD_ID = %1 AND COALESCE(AFABI, 0) <> 0 AND (COALESCE(USMDF, '') = '' OR ")
            .arg(supplier.id) +
        OfImports(session, "USMDF") + u')';
    if (IdWhere(m_run.GetSession(), Suppliers, marked) == 0) {
        return false;
    }
    TargetRow row(m_run, Suppliers);
    row.Set("AFABI", false);
    row.Update(QStringLiteral("WHERE RECORD_ID = ") + supplier.id);
    return true;
}

/// @param loses whether a supplier is the preferred one no more
void ArticleRemains::Tell(const QString& article, const Remain& remain, bool loses) const {
    const QString of = QStringLiteral("articolo '%1', ").arg(article);
    switch (remain.kind) {
    case Kind::Supplier:
        return TellNotMetAgain(m_run, QStringLiteral("FORNITORI"),
                               of + QStringLiteral("'%1'").arg(remain.what) +
                                   (loses ? QStringLiteral(", non più abituale") : QString()),
                               1);
    case Kind::InternalCode:
    case Kind::CounterpartyCode:
        return TellNotMetAgain(m_run, QStringLiteral("CODICI"), of + CodeText(remain.what, remain.counterparty), 1);
    case Kind::Text:
        return TellNotMetAgain(m_run, QStringLiteral("TESTI"), of + QStringLiteral("lingua '%1'").arg(remain.what), 1);
    case Kind::Location:
        return TellNotMetAgain(m_run, QStringLiteral("UBICAZIONI"), of + QStringLiteral("'%1'").arg(remain.what), 1);
    }
}

void ArticleRemains::TakeOff(const QString& article, const Remain& code) const {
    m_run.DeleteRows(Codes, QStringLiteral("RECORD_ID = ") + code.id);
    m_run.Log(QStringLiteral("CODICE TOLTO: articolo '%1': l'origine ha dato '%2' a un altro articolo")
                  .arg(article, code.what));
}

/// Of an article that no row has met, where another origin may have given it the code.
void ArticleRemains::TellOfTwo(const QString& article, const Remain& code) const {
    m_run.Log(QStringLiteral("CODICE DI DUE ARTICOLI: l'origine dà '%1' a un articolo, e '%2', che non ha mostrato, lo "
                             "ha già e lo tiene: può averlo da un'altra origine")
                  .arg(code.what, article));
}

} // namespace contract
