#include "app/codes/CodeLists.h"

#include "adapters/contract/map/codesOfRule.h"
#include "adapters/registry.h"
#include "core/Schema.h"
#include "sql/names.h"

#include <algorithm>
#include <optional>

namespace codes {

namespace {

int MostCharacters() { return schema::FindTable(QStringLiteral("SYS_IMP"))->FindColumn(QStringLiteral("TBNEW"))->size; }

/// Where a translated code goes, as the schema tells it.
struct Destination {
    const schema::Table* table;
    const schema::Column* column; ///< null where the schema does not know it

    explicit Destination(const contract::CodeUse& need)
        : table(schema::FindTable(need.table)),
          column(table == nullptr ? nullptr : table->FindColumn(need.column)) {}

    /// Whether an import makes what bears the code: it is that of the table itself, or of an article, which is imported
    /// under the code that the list tells.
    bool IsMadeByImports() const {
        return column != nullptr && column->holdsCodes &&
               (column->refersTo.isEmpty() || column->refersTo == u"ART_ICO");
    }
    /// The table whose codes the column holds.
    std::optional<BaseTable> Base(const QString& told) const {
        if (!told.isEmpty()) {
            return BaseTable{told, schema::FindTable(told)->key.front()};
        }
        const bool isReference = column != nullptr && !column->refersTo.isEmpty() && column->conditionColumn.isEmpty();
        return isReference ? std::optional(BaseTable{column->refersTo, column->refersToColumn}) : std::nullopt;
    }
};

/// A list under construction.
struct Draft {
    CodeList list;
    bool isMadeByImports = false;

    void Add(const contract::Origin& origin, const contract::CodeUse& need) {
        names::AddOnce(list.origins, origin.name);
        const Destination to(need);
        if (to.column != nullptr) {
            names::AddOnce(list.feeds, to.table->name + u'.' + to.column->name);
            list.size = to.column->size > 0 ? std::min(list.size, to.column->size) : list.size;
        }
        isMadeByImports = isMadeByImports || to.IsMadeByImports();
        if (const auto base = to.Base(need.codeTable);
            base && std::find(list.bases.begin(), list.bases.end(), *base) == list.bases.end()) {
            list.bases.push_back(*base);
        }
    }
};

} // namespace

QString KeyOf(const QString& table, const QString& field) {
    return QString(table.left(NameLength) + QChar(0) + field.left(NameLength)).toUpper();
}

CodeLists::CodeLists() {
    QHash<QString, Draft> drafts;
    for (const contract::Origin* origin : registry::All()) {
        for (const contract::Procedure& procedure : origin->procedures) {
            for (const contract::CodeUse& need : contract::CodesOf(procedure.needs)) {
                Draft& draft = drafts[KeyOf(need.list, need.field)];
                if (draft.list.table.isEmpty()) {
                    draft.list = {.table = need.list, .field = need.field, .size = MostCharacters()};
                }
                draft.Add(*origin, need);
            }
        }
    }
    for (auto draft = drafts.begin(); draft != drafts.end(); ++draft) {
        if (draft->isMadeByImports) { // it need not be there yet
            draft->list.bases.clear();
        }
        m_lists.insert(draft.key(), draft->list);
        m_declared.insert(draft.key());
    }
}

QStringList CodeLists::Names() const {
    QStringList names;
    for (const QString& key : m_declared) {
        names.append(m_lists.value(key).Name());
    }
    return names;
}

const CodeList& CodeLists::Of(const QString& table, const QString& field) {
    const QString key = KeyOf(table, field);
    const auto known = m_lists.constFind(key);
    if (known != m_lists.constEnd()) {
        return *known;
    }
    CodeList list{.table = table, .field = field, .size = MostCharacters()};
    const schema::Table* named = schema::FindTable(table);
    if (named != nullptr && named->shared && named->CodeColumn().compare(field, Qt::CaseInsensitive) == 0) {
        list.bases.push_back({named->name, named->CodeColumn()});
        list.size = named->FindColumn(field)->size;
    }
    return *m_lists.insert(key, list);
}

} // namespace codes
