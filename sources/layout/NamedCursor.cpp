#include "sources/layout/QueryPlan.h"

#include "sql/errors.h"

#include <algorithm>

namespace sources {

namespace {

/// Gives the columns of a result their logical names, one piece of the list after the other.
class Namer {
public:
    Namer(const QueryPlan& plan, const QStringList& columns, Engine& engine)
        : m_plan(plan),
          m_columns(columns),
          m_engine(engine) {}

    LayoutTable::Names Names() {
        for (const QueryPlan::Columns& columns : m_plan.columns) {
            columns.isAll ? AddAll(columns) : AddOne(columns);
        }
        if (m_result.names.size() != m_columns.size()) {
            throw ImportError(QStringLiteral("l'origine ha dato %1 colonne dove il tracciato ne aspettava %2 (%3)")
                                  .arg(m_columns.size())
                                  .arg(m_result.names.size())
                                  .arg(m_columns.join(QStringLiteral(", "))));
        }
        return m_result;
    }

    /// Of the names, and of the further ones behind them.
    std::vector<bool> AreMissing() const {
        std::vector<bool> all = m_isMissing;
        for (const LayoutTable::Names::More& more : m_result.more) {
            all.push_back(more.position < 0);
        }
        return all;
    }

private:
    void AddOne(const QueryPlan::Columns& column) {
        const qsizetype at = m_result.names.size();
        m_result.names.append(column.name.isEmpty() ? m_columns.value(at) : column.name);
        m_isMissing.push_back(column.isMissing);
    }

    void AddAll(const QueryPlan::Columns& columns) {
        const qsizetype at = m_result.names.size();
        QStringList own = m_columns.mid(at, CountOf(columns));
        std::vector<const LayoutTable*> tables = columns.inner;
        if (columns.table != nullptr) {
            tables.push_back(columns.table);
        }
        for (const LayoutTable* table : tables) {
            const LayoutTable::Names names = table->NamesOf(own);
            own = names.names;
            for (const LayoutTable::Names::More& more : names.more) {
                m_result.more.append({more.name, more.position < 0 ? -1 : static_cast<int>(at) + more.position});
            }
        }
        m_result.names += own;
        m_isMissing.resize(static_cast<size_t>(m_result.names.size()));
    }

    /// How many columns of the result are those of a table: what the others leave, unless there are several tables.
    qsizetype CountOf(const QueryPlan::Columns& columns) const {
        const auto tables = std::count_if(m_plan.columns.begin(), m_plan.columns.end(),
                                          [](const QueryPlan::Columns& each) { return each.isAll; });
        if (tables == 1) {
            return m_columns.size() - static_cast<qsizetype>(m_plan.columns.size() - 1);
        }
        if (columns.table == nullptr) {
            throw ImportError(QStringLiteral("un'interrogazione con il tracciato dell'origine non può leggere tutte le "
                                             "colonne di più tabelle senza nome"));
        }
        return columns.table->ColumnsOfSource(m_engine).size();
    }

    const QueryPlan& m_plan;
    const QStringList& m_columns;
    Engine& m_engine;
    LayoutTable::Names m_result;
    std::vector<bool> m_isMissing;
};

/// The columns get their names behind the first step: a statement that is used again knows them only then, when they
/// have changed since.
class RenamedCursor final : public Cursor {
public:
    RenamedCursor(std::unique_ptr<Cursor> cursor, std::shared_ptr<const QueryPlan> plan, Engine& engine)
        : m_cursor(std::move(cursor)),
          m_plan(std::move(plan)),
          m_engine(engine) {}

    bool Next() override {
        if (!m_cursor->Next()) {
            return false; // most look-ups find nothing, and nobody asks what it is called
        }
        Name();
        return true;
    }
    const QStringList& Columns() const override {
        Name();
        return m_columns;
    }
    QVariant Value(int column) const override {
        const qsizetype own = m_columns.size() - m_plan->names.more.size();
        if (column < own) {
            return m_cursor->Value(column);
        }
        const int position = m_plan->names.more[column - own].position;
        return position < 0 ? QVariant() : m_cursor->Value(position);
    }
    bool HasMissing() const override {
        Name();
        return m_hasMissing;
    }
    bool IsMissing(int column) const override { return HasMissing() && m_plan->isMissing[static_cast<size_t>(column)]; }

private:
    void Name() const {
        if (!m_columns.isEmpty()) {
            return;
        }
        if (m_plan->columnsOfSource.isEmpty() || m_plan->columnsOfSource != m_cursor->Columns()) {
            Namer namer(*m_plan, m_cursor->Columns(), m_engine);
            m_plan->names = namer.Names();
            m_plan->isMissing = namer.AreMissing();
            m_plan->columnsOfSource = m_cursor->Columns();
        }
        m_columns = m_plan->names.names;
        m_hasMissing = std::find(m_plan->isMissing.begin(), m_plan->isMissing.end(), true) != m_plan->isMissing.end();
        for (const LayoutTable::Names::More& more : m_plan->names.more) {
            m_columns.append(more.name);
        }
    }

    std::unique_ptr<Cursor> m_cursor;
    std::shared_ptr<const QueryPlan> m_plan;
    Engine& m_engine;
    mutable QStringList m_columns;
    mutable bool m_hasMissing = false;
};

} // namespace

std::unique_ptr<Cursor> NamedCursor(std::unique_ptr<Cursor> cursor, std::shared_ptr<const QueryPlan> plan,
                                    Engine& engine) {
    return std::make_unique<RenamedCursor>(std::move(cursor), std::move(plan), engine);
}

} // namespace sources
