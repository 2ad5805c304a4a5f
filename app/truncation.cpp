#include "app/truncation.h"

#include "app/emptying.h"
#include "app/hangingRows.h"
#include "sql/mod_ovTools.h"
#include "sql/textLiteral.h"

namespace modImport {

namespace {

const QString ArticleTable = QStringLiteral("ART_ICO");
const QString LanguageTable = QStringLiteral("SYS_LNG");

/// The condition on the texts of the articles; those of other tables stay.
QString OfArticles(const ovConnection& connection) {
    const QString owner = connection.GetFullTableName(ArticleTable);
    return QStringLiteral("LNTBL = ") + TextLiteral(connection, owner);
}

void TruncateAll(Session& session, EmptyingResult& result) {
    const Operator::Busy busy(session.Person);
    result.told = hangingRows::LeftTexts(session, TruncatedTables());
    ovConnection& connection = session.Quadrix;
    for (const QString& table : TruncatedTables()) {
        const QString name = connection.GetFullTableName(table);
        session.Observer->TableIsEmptied(name);
        result.tables.append({name, connection.Execute(QStringLiteral("TRUNCATE TABLE ") + name)});
        if (table == ArticleTable) {
            session.Observer->TableIsEmptied(LanguageTable, OfArticles(connection));
            result.tables.append(
                {LanguageTable, connection.Execute(QStringLiteral("DELETE SYS_LNG WHERE ") + OfArticles(connection))});
        }
    }
}

} // namespace

const QStringList& TruncatedTables() {
    static const QStringList tables{// recordings and groupings
                                    "RIL_PRE", "RIL_PRS", "RIL_TEM", "RIL_TER", "RAG_LAV", "RAG_LAR",
                                    // production orders
                                    "ORD_FAP", "ORD_FAS", "ORD_COP", "ORD_COM", "ORD_PRO", "ORD_REV",
                                    // bills of materials
                                    "DIS_FAP", "DIS_FAS", "DIS_COP", "DIS_COM", "DIS_BAS",
                                    // accounting movements and due dates
                                    "MOV_COR", "MOV_CON", "SCA_MOV",
                                    // purchase, subcontracting, intra-company and sales documents
                                    "DOC_ACX", "DOC_ACR", "DOC_ACD", "DOC_ACQ", "DOC_CTX", "DOC_CTR", "DOC_CTD",
                                    "DOC_CTL", "DOC_ICX", "DOC_ICR", "DOC_ICD", "DOC_ICO", "DOC_VEX", "DOC_VER",
                                    "DOC_VED", "DOC_VEN",
                                    // warehouse locations, handling units, valuations and stock movements
                                    "UBI_MAG", "UDC_MAG", "UDC_ART", "UDC_MOV", "UBI_MOV", "UBI_MOA", "VAL_MAR",
                                    "VAL_MAG", "MOV_MAX", "MOV_MAR", "MOV_MAG", "MOV_LOG",
                                    // articles
                                    "ART_SAL", "ART_COD", "ART_FOR", "ART_KIT", "ART_FMT", "ART_ICO",
                                    // counterparties
                                    "CON_SED", "CON_RIF", "NUM_TEL", "IND_WEB", "CON_TRO"};
    return tables;
}

std::vector<contract::RowsToDelete> RowsOfTruncation(const Session& session) {
    std::vector<contract::RowsToDelete> rows;
    for (const QString& table : TruncatedTables()) {
        rows.push_back({session.Quadrix.GetFullTableName(table)});
        if (table == ArticleTable) {
            rows.push_back({LanguageTable, OfArticles(session.Quadrix)});
        }
    }
    return rows;
}

EmptyingResult TruncateDatabase(Session& session) {
    return EmptyAndKeep(session,
                        {.companies = {session.UserManager.Azienda()},
                         .name = QStringLiteral("svuotamento delle tabelle"),
                         .module = QStringLiteral("modImport"),
                         .procedure = QStringLiteral("TruncateDatabase")},
                        [&session](EmptyingResult& result) { TruncateAll(session, result); });
}

} // namespace modImport
