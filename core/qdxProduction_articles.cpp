#include "core/qdxProduction_articles.h"

#include "sql/codeAsked.h"
#include "sql/mod_ovTools.h"
#include "sql/textLiteral.h"
#include "sql/variantText.h"

namespace qdxProduction {

namespace {

const QString Articles = QStringLiteral("ART_ICO");
const QString CodeColumn = QStringLiteral("CDART");

QString OfCode(const Session& session, const QString& code) {
    return QStringLiteral("WHERE CDART = ") + TextLiteral(session.Quadrix, code);
}

} // namespace

bool qdxInsertUpdateArticolo(Session& session, const QString& code, Record& article,
                             const std::function<void()>& fill) {
    const QDate today = session.UserManager.DataElaborazione;
    if (HasOwnCode(session.Quadrix, Articles, CodeColumn, code)) {
        article.Set(QStringLiteral("DTMDF"), today);
        fill();
        article.Update(OfCode(session, code));
        return false;
    }
    article.Set(CodeColumn, code);
    article.Set(QStringLiteral("DTINS"), today);
    article.Set(QStringLiteral("ARANN"), false);
    article.Set(QStringLiteral("ARINV"), today);
    fill();
    article.Insert();
    return true;
}

ArticleAmounts AmountsOf(Session& session, const QString& code) {
    const Recordset found = session.Quadrix.ExecuteWC(
        QStringLiteral("SELECT * FROM ") + session.Quadrix.GetFullTableName(Articles) + u' ' + OfCode(session, code));
    if (found.Eof()) {
        throw ImportError(QStringLiteral("l'articolo '%1' non c'è").arg(code));
    }
    return {found.Value("ARCOS"), found.Value("ARRIC"), found.Value("ARPRZ")};
}

} // namespace qdxProduction
