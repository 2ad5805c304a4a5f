#include "adapters/contract/write/ArticleRecoding.h"

#include "adapters/contract/map/lookups.h"
#include "adapters/contract/run/otherCompanies.h"
#include "adapters/contract/run/TargetRow.h"
#include "adapters/contract/write/SheetFormat.h"
#include "core/Schema.h"
#include "sql/Transaction.h"

namespace contract {

namespace {

const QString ArticleTable = QStringLiteral("ART_ICO");
const QString OwnColumn = QStringLiteral("CDART");

struct CodeReference {
    QString table;  ///< bare name
    QString column; ///< that holds codes of articles
    QString where;  ///< condition on its rows; empty for all
};

/// Beside the article itself and the texts of languages, which hang on the physical name of its table.
const std::vector<CodeReference>& CodeReferences() {
    static const std::vector<CodeReference> references = [] {
        std::vector<CodeReference> found;
        for (const schema::Table& table : schema::Tables()) {
            for (const schema::Column& column : table.columns) {
                const bool isCode = column.refersToColumn.isEmpty() ||
                                    column.refersToColumn.compare(OwnColumn, Qt::CaseInsensitive) == 0;
                if (column.refersTo == ArticleTable && isCode && column.conditionColumn.isEmpty() && !table.shared) {
                    found.push_back({table.name, column.name, {}});
                }
            }
        }
        found.push_back({"IMA_GES", "TBKEY", "TBNAM = 'ART_ICO'"});
        found.push_back({"FLD_VAL", "FLKEY", "FLTAB = 'ART_ICO'"});
        return found;
    }();
    return references;
}

/// Gives the rows of a reference that hold a code another one.
/// @param more sets further columns of theirs
void Move(ImportRun& run, const CodeReference& reference, const QString& from, const QString& to,
          const std::function<void(TargetRow&)>& more = {}) {
    const QString where = Equals(run.GetSession(), reference.column, from) +
                          (reference.where.isEmpty() ? QString() : QString(" AND " + reference.where));
    if (IdWhere(run.GetSession(), reference.table, where) == 0) {
        return;
    }
    TargetRow row(run, reference.table);
    row.Set(reference.column, to);
    if (more) {
        more(row);
    }
    row.Update("WHERE " + where);
}

const CodeReference Attachments{"SYS_ATT", "ATKEY", "ATTBL IN ('ART_ICO', 'DIS_BAS')"};

bool IsOfOthers(Session& session, const QString& article) {
    const QStringList others = TablesOfOthers(session, ArticleTable);
    return std::any_of(others.begin(), others.end(), [&](const QString& table) {
        return session.Quadrix.ExecuteCommand(QStringLiteral("SELECT COUNT(*) FROM %1 WHERE ").arg(table) +
                                              Equals(session, OwnColumn, article)) != 0;
    });
}

/// Attachments of a code that another company has too are its as well: they stay, and the new code gets the same.
void MoveAttachments(ImportRun& run, const QString& from, const QString& to) {
    Session& session = run.GetSession();
    if (!IsOfOthers(session, from)) {
        Move(run, Attachments, from, to);
        return;
    }
    std::vector<TargetRow> copies;
    Recordset rows = session.Quadrix.ExecuteWC("SELECT * FROM SYS_ATT WHERE " + Equals(session, "ATKEY", from) +
                                               " AND " + Attachments.where + " ORDER BY RECORD_ID");
    for (; !rows.Eof(); rows.MoveNext()) {
        TargetRow& copy = copies.emplace_back(run, Attachments.table);
        for (const schema::Column& column : schema::FindTable(Attachments.table)->columns) {
            if (column.name.startsWith(u"AT")) { // the others are of the row itself
                copy.Set(column.name, rows.Value(column.name));
            }
        }
        copy.Set(Attachments.column, to);
    }
    rows.Close();
    for (TargetRow& copy : copies) {
        copy.Insert();
    }
}

} // namespace

std::vector<TableNeed> RecodingNeeds() {
    std::vector<TableNeed> needs{{ArticleTable, {OwnColumn, "ARDES", "ARCDR"}},
                                 {"SYS_LNG", {"LNTBL", "LNKEY"}},
                                 {Attachments.table, {Attachments.column}}};
    for (const CodeReference& one : CodeReferences()) {
        needs.push_back({one.table, {one.column}});
    }
    return needs;
}

void RecodeArticle(ImportRun& run, const QString& from, const QString& to) {
    Transaction asOne(run.GetSession().Quadrix); // one that only some of the tables know by its new code would be two
    const QString description = LookUp(run.GetSession(), ArticleTable, OwnColumn, from, "ARDES");
    Move(run, {ArticleTable, OwnColumn, {}}, from, to,
         [&](TargetRow& row) { row.Set("ARCDR", SearchText(to, description)); });
    for (const CodeReference& one : CodeReferences()) {
        Move(run, one, from, to);
    }
    MoveAttachments(run, from, to);
    Move(run, {"SYS_LNG", "LNKEY", "LNTBL = " + run.Quoted(run.FullName(ArticleTable))}, from, to);
    asOne.Keep();
}

} // namespace contract
