#include "sources/layout/QueryPlan.h"

#include "sql/errors.h"
#include "sql/names.h"

#include <algorithm>
#include <optional>

namespace sources {

namespace {

/// Another text in place of a piece of the query.
struct Edit {
    qsizetype begin;
    qsizetype end;
    QString text;
};

/// A column that a mention may mean.
struct Meant {
    const TableUse* use;
    bool isCalled = false; ///< the source has another name for it, or does not have it
    QString inSource = {}; ///< empty: not there
};

class Planner {
public:
    Planner(const Layout& layout, const QString& query, const QVector<StatementToken>& tokens, Dialect dialect)
        : m_layout(layout),
          m_query(query),
          m_tokens(tokens),
          m_dialect(dialect),
          m_parts(ReadQuery(query, tokens)) {}

    QueryPlan Plan() {
        for (const QueryPart& part : m_parts) {
            for (const TableUse& use : part.tables) {
                PlanTable(use);
            }
            for (const Mention& mention : part.mentions) {
                if (!mention.column.isEmpty()) {
                    PlanMention(part, mention);
                }
            }
        }
        QueryPlan plan;
        if (!m_parts.empty()) {
            PlanMore(m_parts.front());
            plan.columns = ColumnsOf(m_parts.front());
        }
        plan.isSame = m_isSame;
        plan.text = m_isSame ? QString() : Text();
        return plan;
    }

private:
    // --- Tables

    void PlanTable(const TableUse& use) {
        const LayoutTable* table = TableOf(use);
        if (table == nullptr || !table->Changes()) {
            return;
        }
        m_isSame = false;
        if (!table->IsCalled() && table->filter.isEmpty()) {
            return;
        }
        QString text = TableText(table->inSource, m_dialect);
        if (!table->filter.isEmpty()) {
            text = QStringLiteral("(SELECT * FROM %1 WHERE %2)").arg(text, table->filter);
        }
        // The columns of the query go on being told by the name that it knows the table by.
        m_edits.push_back({use.begin, use.end, use.alias.isEmpty() ? QString(text + u' ' + use.written) : text});
    }

    const LayoutTable* TableOf(const TableUse& use) const {
        return use.derived < 0 ? m_layout.Find(use.name) : nullptr;
    }
    const QueryPart& Part(int index) const { return m_parts[static_cast<size_t>(index)]; }
    static QString QualifierOf(const TableUse& use) { return use.alias.isEmpty() ? use.written : use.alias; }

    // --- Columns

    void PlanMention(const QueryPart& part, const Mention& mention) {
        const auto meant = Meaning(part, mention);
        if (!meant || !meant->isCalled) {
            return;
        }
        if (meant->inSource.isEmpty()) {
            PlanMissing(part, mention, *meant);
            return;
        }
        QString text = Quoted(meant->inSource, m_dialect);
        if (mention.qualifier.isEmpty() && (part.parent >= 0 || part.tables.size() > 1)) {
            text = QualifierOf(*meant->use) + u'.' + text; // another table may have a column of that name
        }
        m_edits.push_back({mention.columnBegin, mention.end, text + NameFor(part, mention)});
    }

    void PlanMissing(const QueryPart& part, const Mention& mention, const Meant& meant) {
        if (mention.clause != Clause::Select) {
            throw ImportError(QStringLiteral("all'origine manca la colonna '%1.%2', di cui l'interrogazione non può "
                                             "fare a meno: %3")
                                  .arg(meant.use->name, mention.column, m_query.simplified()));
        }
        m_edits.push_back({mention.begin, mention.end, QStringLiteral("NULL") + NameFor(part, mention)});
    }

    /// " AS" and the logical name, where a query around this one asks for the column by it.
    QString NameFor(const QueryPart& part, const Mention& mention) const {
        const bool isInner = part.parent >= 0 || part.isUnion;
        const bool isItem = std::any_of(part.items.begin(), part.items.end(), [&](const SelectItem& item) {
            return item.mention >= 0 && &part.mentions[static_cast<size_t>(item.mention)] == &mention &&
                   item.alias.isEmpty();
        });
        return isInner && isItem ? QString(QStringLiteral(" AS ") + Quoted(mention.column, m_dialect)) : QString();
    }

    std::optional<Meant> Meaning(const QueryPart& part, const Mention& mention) const {
        return mention.qualifier.isEmpty() ? MeantBare(part, mention) : MeantOfTable(part, mention);
    }

    std::optional<Meant> MeantOfTable(const QueryPart& part, const Mention& mention) const {
        for (const QueryPart* scope = &part;; scope = &Part(scope->parent)) {
            for (const TableUse& use : scope->tables) {
                if (names::AreSame(Unquoted(QualifierOf(use)), mention.qualifier)) {
                    return ColumnOf(use, mention.column).value_or(Meant{&use});
                }
            }
            if (scope->parent < 0) {
                return std::nullopt;
            }
        }
    }

    std::optional<Meant> MeantBare(const QueryPart& part, const Mention& mention) const {
        const bool sorts = mention.clause == Clause::Order || mention.clause == Clause::Group;
        const bool isAlias = std::any_of(part.items.begin(), part.items.end(), [&](const SelectItem& item) {
            return names::AreSame(item.alias, mention.column);
        });
        if ((sorts && isAlias) || (mention.clause == Clause::Order && part.isUnion)) {
            return std::nullopt;
        }
        for (const QueryPart* scope = &part;; scope = &Part(scope->parent)) {
            std::vector<Meant> found;
            for (const TableUse& use : scope->tables) {
                if (const auto meant = ColumnOf(use, mention.column)) {
                    found.push_back(*meant);
                }
            }
            if (found.size() > 1 &&
                std::any_of(found.begin(), found.end(), [](const Meant& m) { return m.isCalled; })) {
                RaiseAmbiguous(mention, found);
            }
            if (!found.empty() || scope->parent < 0) {
                return found.empty() ? std::nullopt : std::optional(found.front());
            }
        }
    }

    [[noreturn]] void RaiseAmbiguous(const Mention& mention, const std::vector<Meant>& found) const {
        QStringList tables;
        for (const Meant& meant : found) {
            tables.append(QualifierOf(*meant.use));
        }
        throw ImportError(QStringLiteral("la colonna '%1' può essere di %2, e il tracciato la chiama in un altro modo: "
                                         "%3")
                              .arg(mention.column, tables.join(QStringLiteral(" o di ")), m_query.simplified()));
    }

    /// What a column of a table, or of a query in its place, is; none when the table is not known to have it.
    std::optional<Meant> ColumnOf(const TableUse& use, const QString& column) const {
        if (use.derived >= 0) {
            return ColumnOfInner(use, Part(use.derived), column);
        }
        const LayoutTable* table = TableOf(use);
        if (table == nullptr || !table->Knows(column)) {
            return std::nullopt;
        }
        const LayoutTable::Column* called = table->Find(column);
        return called == nullptr ? Meant{&use} : Meant{&use, true, called->inSource};
    }

    /// A query in parentheses names the columns of its list by their logical names; those of a "*" have their own.
    std::optional<Meant> ColumnOfInner(const TableUse& use, const QueryPart& inner, const QString& column) const {
        for (const SelectItem& item : inner.items) {
            const Mention* mention = item.mention < 0 ? nullptr : &inner.mentions[static_cast<size_t>(item.mention)];
            if (names::AreSame(item.alias.isEmpty() && mention != nullptr ? mention->column : item.alias, column)) {
                return Meant{&use};
            }
            if (mention == nullptr || !mention->column.isEmpty()) {
                continue;
            }
            for (const TableUse& innerUse : inner.tables) {
                if (const auto meant = ColumnOf(innerUse, column)) {
                    return Meant{&use, meant->isCalled, meant->inSource};
                }
            }
        }
        return std::nullopt;
    }

    // --- The result

    /// Columns that the layout reads beyond those of the query's own list.
    void PlanMore(const QueryPart& part) {
        const bool isPlain =
            !part.isUnion && !part.isDistinct && !part.isGrouped && !part.items.empty() &&
            std::all_of(part.items.begin(), part.items.end(), [](const SelectItem& item) { return item.mention >= 0; });
        for (const TableUse& use : part.tables) {
            const LayoutTable* table = TableOf(use);
            for (const QString& column : isPlain&& table != nullptr ? table->alsoRead : QStringList()) {
                if (!ListHas(part, use, column)) {
                    const qsizetype end = part.items.back().end;
                    const QString inSource = Quoted(table->InSource(column), m_dialect);
                    m_edits.push_back({end, end, QStringLiteral(", ") + QualifierOf(use) + u'.' + inSource});
                    m_more.push_back({column});
                }
            }
        }
    }

    static bool ListHas(const QueryPart& part, const TableUse& use, const QString& column) {
        return std::any_of(part.items.begin(), part.items.end(), [&](const SelectItem& item) {
            const Mention& mention = part.mentions[static_cast<size_t>(item.mention)];
            const bool isOfTable =
                mention.qualifier.isEmpty() || names::AreSame(mention.qualifier, Unquoted(QualifierOf(use)));
            return isOfTable && (mention.column.isEmpty() || names::AreSame(mention.column, column));
        });
    }

    std::vector<QueryPlan::Columns> ColumnsOf(const QueryPart& part) const {
        std::vector<QueryPlan::Columns> columns;
        for (const SelectItem& item : part.items) {
            const Mention* mention = item.mention < 0 ? nullptr : &part.mentions[static_cast<size_t>(item.mention)];
            if (mention == nullptr || !item.alias.isEmpty()) {
                columns.push_back({.name = item.alias, .isMissing = mention != nullptr && IsMissing(part, *mention)});
            } else if (!mention->column.isEmpty()) {
                columns.push_back({.name = mention->column, .isMissing = IsMissing(part, *mention)});
            } else {
                AddAll(part, *mention, columns);
            }
        }
        columns.insert(columns.end(), m_more.begin(), m_more.end());
        return columns;
    }

    /// Another part of a union may well have the column.
    bool IsMissing(const QueryPart& part, const Mention& mention) const {
        const auto meant = Meaning(part, mention);
        return !part.isUnion && meant && meant->isCalled && meant->inSource.isEmpty();
    }

    void AddAll(const QueryPart& part, const Mention& mention, std::vector<QueryPlan::Columns>& columns) const {
        for (const TableUse& use : part.tables) {
            if (mention.qualifier.isEmpty() || names::AreSame(mention.qualifier, Unquoted(QualifierOf(use)))) {
                QueryPlan::Columns all{{}, TableOf(use), {}, true};
                for (const TableUse& inner : use.derived < 0 ? std::vector<TableUse>() : Part(use.derived).tables) {
                    if (const LayoutTable* table = TableOf(inner)) {
                        all.inner.push_back(table);
                    }
                }
                columns.push_back(all);
            }
        }
    }

    /// The query with its edits, and a mark in place of each literal.
    QString Text() {
        for (const StatementToken& token : m_tokens) {
            if (token.kind == StatementToken::Kind::Literal) {
                m_edits.push_back({token.begin, token.end, QString(LiteralMark)});
            }
        }
        std::stable_sort(m_edits.begin(), m_edits.end(),
                         [](const Edit& left, const Edit& right) { return left.begin < right.begin; });
        QString text;
        qsizetype at = 0;
        for (const Edit& edit : m_edits) {
            text += QStringView(m_query).mid(at, edit.begin - at) + edit.text;
            at = edit.end;
        }
        return text + QStringView(m_query).mid(at);
    }

    const Layout& m_layout;
    const QString& m_query;
    const QVector<StatementToken>& m_tokens;
    Dialect m_dialect;
    std::deque<QueryPart> m_parts;
    std::vector<Edit> m_edits;
    std::vector<QueryPlan::Columns> m_more;
    bool m_isSame = true;
};

} // namespace

QueryPlan PlanOf(const Layout& layout, const QString& query, const QVector<StatementToken>& tokens, Dialect dialect) {
    return Planner(layout, query, tokens, dialect).Plan();
}

} // namespace sources
