// Writes what a bill of materials has come to.

#include "core/amounts.h"
#include "core/modImport.h"
#include "core/ovDistinta.h"
#include "core/qdxProduction_articles.h"
#include "sql/mod_ovTools.h"
#include "sql/textLiteral.h"

#include <algorithm>

using namespace mod_ovTools;

namespace {

using Amount = ovDistinta::Amount;
using Componente = ovDistinta::Componente;

bool IsNews(const Amount& now, const Amount& before) { return now && now != before; }

/// Writes a component whose amounts are not those that stand in the database. One that is not known stays.
bool SaveComponent(const RecordMaker& begin, const Componente& part, const Componente& before) {
    if (!IsNews(part.cost, before.cost) && !IsNews(part.price, before.price) && part.markUp == before.markUp) {
        return false;
    }
    const auto row = begin(QStringLiteral("DIS_COM"));
    if (part.cost) {
        row->Set("DCCOS", *part.cost);
    }
    row->Set("DCRIC", part.markUp);
    if (part.price) {
        row->Set("DCPRZ", *part.price);
    }
    row->Update(QStringLiteral("WHERE RECORD_ID = %1").arg(part.id));
    return true;
}

void TellUnknown(Session& session, const QString& what, const ovDistinta::Nodo& node, const QStringList& lacking) {
    const QString reason = lacking.isEmpty() ? QStringLiteral("non contiene nulla")
                                             : QStringLiteral("manca per ") + lacking.join(QStringLiteral(", "));
    modImport::LogNote(session, QStringLiteral("%1: distinta '%2', revisione %3: %4")
                                    .arg(what, node.article, QString::number(node.revision), reason));
}

} // namespace

bool ovDistinta::SaveData() {
    const Nodo& node = NodeDistinta(m_root);
    bool isSaved = false;
    for (const Componente& before : LoadCollectionComp(node)) {
        const auto part = std::find_if(node.components.cbegin(), node.components.cend(),
                                       [&before](const Componente& one) { return one.id == before.id; });
        isSaved = (part != node.components.cend() && SaveComponent(m_begin, *part, before)) || isSaved;
    }
    if (!node.cost) {
        TellUnknown(m_session, QStringLiteral("COSTO NON CALCOLATO"), node, node.withoutCost);
    }
    if (!node.price) {
        TellUnknown(m_session, QStringLiteral("PREZZO NON CALCOLATO"), node, node.withoutPrice);
    }
    return SaveArticle(node) || isSaved;
}

bool ovDistinta::SaveArticle(const Nodo& node) const {
    const qdxProduction::ArticleAmounts now = qdxProduction::AmountsOf(m_session, node.article);
    const double cost = ToDouble(now.cost);
    const double price = ToDouble(now.price);
    const bool isOtherCost = IsNews(node.cost, cost);
    const bool isOtherPrice = IsNews(node.price, price);
    if ((!isOtherCost && !isOtherPrice) || !IsInForce(node)) {
        return false;
    }
    const auto row = m_begin(QStringLiteral("ART_ICO"));
    qdxProduction::qdxInsertUpdateArticolo(m_session, node.article, *row, [&] {
        const QDate today = m_session.UserManager.DataElaborazione;
        if (isOtherCost) {
            row->Set("ARCOS", *node.cost).Set("ARDUC", today);
        }
        if (isOtherPrice) {
            row->Set("ARPRZ", *node.price).Set("ARDUP", today);
        }
        row->Set("ARRIC", MarkUpOf(node.price.value_or(price), node.cost.value_or(cost)));
    });
    return true;
}

/// Of several revisions the one in force speaks for the article, the last of them; without one in force the last.
bool ovDistinta::IsInForce(const Nodo& node) const {
    const Recordset found = m_session.Quadrix.ExecuteWC(
        QStringLiteral("SELECT RECORD_ID FROM %1 WHERE DBART = %2 ORDER BY CASE WHEN DBMAN = 1 THEN 0 ELSE 1 END, "
                       "RECORD_ID DESC")
            .arg(m_session.Quadrix.GetFullTableName("DIS_BAS"), TextLiteral(m_session.Quadrix, node.article)));
    return found.Value("RECORD_ID").toLongLong() == node.id;
}
