#include "sources/layout/Layout.h"

#include "sources/layout/QueryPlan.h"

namespace sources {

namespace {

constexpr qsizetype MostPlans = 2000; ///< more forms of queries than the modules have

/// A query apart from its literals.
struct Form {
    QString text;
    QVector<QStringView> literals;
};

Form FormOf(const QString& query, const QVector<StatementToken>& tokens) {
    Form form;
    qsizetype at = 0;
    for (const StatementToken& token : tokens) {
        if (token.kind == StatementToken::Kind::Literal) {
            form.text += QStringView(query).mid(at, token.begin - at) + LiteralMark;
            form.literals.append(QStringView(query).mid(token.begin, token.end - token.begin));
            at = token.end;
        }
    }
    form.text += QStringView(query).mid(at);
    return form;
}

QString Filled(const QString& text, const QVector<QStringView>& literals) {
    QString filled;
    qsizetype at = 0;
    for (const QStringView literal : literals) {
        const qsizetype mark = text.indexOf(LiteralMark, at);
        filled += QStringView(text).mid(at, mark - at) + literal;
        at = mark + 1;
    }
    return filled + QStringView(text).mid(at);
}

} // namespace

Layout::Layout() = default;
Layout::~Layout() = default;

LayoutTable& Layout::Known(const QString& table) {
    m_plans.clear();
    m_isLeft.clear();
    LayoutTable& known = m_tables[table.toUpper()];
    if (known.name.isEmpty()) {
        known.name = table;
        known.inSource = QStringList{table};
    }
    return known;
}

void Layout::Know(const QString& table, const QStringList& columns) {
    LayoutTable& known = Known(table);
    for (const QString& column : columns) {
        known.Know(column);
    }
}

void Layout::CallTable(const QString& table, const QString& name) { Known(table).Call(NameParts(name)); }

void Layout::CallColumn(const QString& table, const QString& column, const QString& name) {
    Known(table).CallColumn({column, name});
}

void Layout::Filter(const QString& table, const QString& condition) { Known(table).filter = condition; }

void Layout::ReadAlso(const QString& table, const QString& column) {
    QStringList& also = Known(table).alsoRead;
    if (!also.contains(column, Qt::CaseInsensitive)) {
        also.append(column);
    }
}

const LayoutTable* Layout::Find(const QString& table) const {
    const auto found = m_tables.constFind(table.toUpper());
    return found == m_tables.constEnd() ? nullptr : &*found;
}

QStringList Layout::InSource(const QStringList& names) const {
    QStringList inSource;
    for (const QString& name : names) {
        const qsizetype dot = name.lastIndexOf(u'.');
        const LayoutTable* whole = Find(name);
        const LayoutTable* table = whole != nullptr || dot < 0 ? whole : Find(name.left(dot));
        const QString column = whole != nullptr || dot < 0 ? QString() : name.mid(dot + 1);
        if (table == nullptr) {
            inSource.append(name);
        } else if (column.isEmpty()) {
            inSource.append(table->inSource.last());
        } else {
            inSource.append(table->inSource.last() + u'.' + table->InSource(column));
        }
    }
    return inSource;
}

std::unique_ptr<Cursor> Layout::Query(const QString& query, Engine& engine, const Run& run) {
    const QVector<StatementToken> tokens = TokensOf(query);
    const Form form = FormOf(query, tokens);
    auto plan = m_plans.value(form.text);
    if (!plan) {
        plan = std::make_shared<const QueryPlan>(PlanOf(*this, query, tokens, engine.TextDialect()));
        if (m_plans.size() >= MostPlans) {
            m_plans.clear();
        }
        m_plans.insert(form.text, plan);
    }
    return plan->isSame ? run(query) : NamedCursor(run(Filled(plan->text, form.literals)), plan, engine);
}

bool Layout::LeavesAsItIs(const SqlText& query, Engine& engine) {
    const QByteArray& shape = query.Shape().shape;
    auto known = m_isLeft.constFind(shape);
    if (known == m_isLeft.constEnd()) {
        if (m_isLeft.size() >= MostPlans) {
            m_isLeft.clear();
        }
        const QString text = query.Text();
        known = m_isLeft.insert(shape, PlanOf(*this, text, TokensOf(text), engine.TextDialect()).isSame);
    }
    return *known;
}

QVector<ColumnInfo> Layout::Columns(const QString& table, Engine& engine) {
    const LayoutTable* known = Find(table);
    if (known == nullptr) {
        return engine.Columns(table);
    }
    const QVector<ColumnInfo> own = known->ColumnsOfSource(engine);
    QStringList ownNames;
    for (const ColumnInfo& column : own) {
        ownNames.append(column.name);
    }
    const LayoutTable::Names names = known->NamesOf(ownNames);
    QVector<ColumnInfo> columns;
    for (qsizetype i = 0; i < own.size(); ++i) {
        columns.append({names.names[i], own[i].type});
    }
    for (const LayoutTable::Names::More& more : names.more) {
        if (more.position >= 0) {
            columns.append({more.name, own[more.position].type});
        }
    }
    return columns;
}

QStringList Layout::Tables(Engine& engine) {
    QStringList tables;
    for (const QString& own : engine.Tables()) {
        const qsizetype before = tables.size();
        for (const LayoutTable& table : std::as_const(m_tables)) {
            if (table.IsCalled() && table.inSource.last().compare(own, Qt::CaseInsensitive) == 0) {
                tables.append(table.name);
            }
        }
        if (tables.size() == before) {
            tables.append(own);
        }
    }
    return tables;
}

} // namespace sources
