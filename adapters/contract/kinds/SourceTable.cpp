#include "adapters/contract/kinds/SourceTable.h"

#include "sql/statementTokens.h"
#include "sql/variantText.h"

#include <QSet>

#include <algorithm>
#include <utility>

namespace contract {

namespace {

QString AliasOf(qsizetype join) { return QStringLiteral("J%1").arg(join + 1); }

/// "J1.A = T.B AND ...".
QString Condition(const std::vector<Tie>& ties, const QString& alias) {
    QStringList parts;
    for (const Tie& tie : ties) {
        parts.append(tie.Condition(alias, QStringLiteral("T")));
    }
    return parts.join(QStringLiteral(" AND "));
}

/// What stands behind FROM.
QString FromOf(const SourceTable& source) {
    QString from = source.table;
    from += source.joins.empty() ? QString() : QStringLiteral(" T");
    for (size_t i = 0; i < source.joins.size(); ++i) {
        const Join& join = source.joins[i];
        const QString alias = AliasOf(static_cast<qsizetype>(i));
        from += QStringLiteral("\r%1 JOIN %2 %3 ON %4")
                    .arg(join.isOptional ? QStringLiteral("LEFT") : QStringLiteral("INNER"), join.table, alias,
                         Condition(join.on, alias)) +
                (join.where.isEmpty() ? QString() : QString(" AND " + join.where));
    }
    return from;
}

/// The columns of the joins, behind those of the first table.
QString JoinColumns(const SourceTable& source) {
    QString columns;
    for (size_t i = 0; i < source.joins.size(); ++i) {
        for (const QString& column : source.joins[i].columns) {
            const QString quoted = source.key.contains(u'[') ? QString(u'[' + column + u']') : column;
            columns += QStringLiteral(", %1.%2").arg(AliasOf(static_cast<qsizetype>(i)), quoted);
        }
    }
    return columns;
}

/// Columns that a condition names: for table T also those without an alias.
QStringList ColumnsIn(const QString& condition, const QString& alias) {
    using Kind = StatementToken::Kind;
    static const QSet<QString> words{"AND", "OR", "NOT", "IN", "IS", "NULL", "LIKE", "BETWEEN", "EXISTS"};
    QStringList columns;
    QString qualifier;
    const QVector<StatementToken> tokens = TokensOf(condition);
    for (qsizetype i = 0; i < tokens.size(); ++i) {
        const QString text = condition.mid(tokens[i].begin, tokens[i].end - tokens[i].begin);
        const QString next = i + 1 < tokens.size() ? condition.mid(tokens[i + 1].begin, 1) : QString();
        const bool isName =
            tokens[i].kind == Kind::Name || (tokens[i].kind == Kind::Word && !words.contains(text.toUpper()));
        if (isName && next != u"." && next != u"(" && (qualifier.isEmpty() ? alias == u"T" : qualifier == alias)) {
            columns.append(tokens[i].kind == Kind::Name ? text.mid(1, text.size() - 2) : text);
        }
        qualifier = isName ? (next == u"." ? text : QString()) : text == u"." ? qualifier : QString();
    }
    return columns;
}

Needs FieldNeeds(const QString& table, const std::vector<Field>& fields) {
    Needs needs;
    QStringList columns;
    for (const Field& field : fields) {
        columns += field.Columns();
        needs.reads = needs.reads + field.Reads();
        const std::vector<CodeUse> codes = field.Codes();
        needs.codes.insert(needs.codes.end(), codes.begin(), codes.end());
    }
    columns.removeDuplicates();
    if (!columns.isEmpty()) {
        needs.reads.push_back({table, columns});
    }
    return needs;
}

/// One column without alias, brackets and the DESC behind it; between brackets stands a name whatever it holds.
QStringView BareColumn(QStringView column) {
    if (const qsizetype open = column.indexOf(u'['); open >= 0) {
        return column.mid(open + 1, column.indexOf(u']', open) - open - 1);
    }
    column = column.mid(column.indexOf(u'.') + 1);
    const qsizetype blank = column.indexOf(u' ');
    return blank < 0 ? column : column.first(blank);
}

QStringList TiedColumns(const std::vector<Tie>& ties, bool ofOther) {
    QStringList columns;
    for (const Tie& tie : ties) {
        columns += BareColumns(ofOther ? tie.Other() : tie.column);
    }
    return columns;
}

} // namespace

QString Tie::Condition(const QString& alias, const QString& otherAlias) const {
    const QString own = alias + u'.' + column;
    const QString its = otherAlias + u'.' + Other();
    return tiesNulls ? QStringLiteral("(%1 = %2 OR (%1 IS NULL AND %2 IS NULL))").arg(own, its)
                     : QString(own + u" = " + its);
}

QStringList BareColumns(const QString& columns) {
    QStringList bare;
    for (const QStringView column : QStringView(columns).split(u", ", Qt::SkipEmptyParts)) {
        bare.append(BareColumn(column).toString());
    }
    return bare;
}

QString SourceTable::Qualified(const QString& columns) const {
    if (joins.empty()) {
        return columns;
    }
    QStringList qualified;
    for (const QString& column : columns.split(QStringLiteral(", "), Qt::SkipEmptyParts)) {
        const Join* join = JoinOf(BareColumns(column));
        const QString alias = join == nullptr ? QStringLiteral("T") : AliasOf(join - joins.data());
        qualified.append(column.contains(u'.') ? column : QString(alias + u'.' + column));
    }
    return qualified.join(QStringLiteral(", "));
}

ImportRun::Loop SourceTable::Loop(const ImportRun& run, const QString& step, const QString& further,
                                  const QString& singleCode) const {
    QStringList conditions{where, further, run.OnlyCode({}, Qualified(key), singleCode).trimmed()};
    conditions.removeAll(QString());
    const QString condition =
        conditions.isEmpty() ? QString() : QString("\rWHERE " + conditions.join(QStringLiteral(" AND ")));
    const QString values = apart.isEmpty() ? key : QString(key + QStringLiteral(", ") + apart);
    const QString counted = distinct ? QString(u"DISTINCT " + Qualified(values)) : QStringLiteral("*");
    const QString all = joins.empty() ? QStringLiteral("*") : QStringLiteral("T.*");
    const QString from = QStringLiteral(" FROM ") + FromOf(*this) + condition;
    return {step,
            table,
            BareColumns(naming.isEmpty() ? key : naming).join(QStringLiteral(", ")),
            apart.isEmpty() ? QStringLiteral("SELECT COUNT(%1)").arg(counted) + from
                            : QStringLiteral("SELECT COUNT(*) FROM (SELECT %1%2) D").arg(counted, from),
            QStringLiteral("SELECT ") + (distinct ? counted : all) + JoinColumns(*this) + from +
                (order.isEmpty() ? QString() : QString("\rORDER BY " + Qualified(order))),
            group,
            groupOf};
}

void SourceTable::CheckPartner(const SourceRow& row, const QStringList& columns) const {
    const Join* join = JoinOf(columns);
    if (join == nullptr ||
        !std::ranges::all_of(join->columns, [&row](const QString& one) { return row.IsBlank(one); })) {
        return;
    }
    QStringList wanted;
    for (const Tie& tie : join->on) {
        wanted.append(QStringLiteral("colonna '%1': '%2' non è in %3.%4")
                          .arg(tie.Other(), row.Text(tie.Other()), join->table, tie.column));
    }
    throw ImportError(wanted.join(QStringLiteral("; ")));
}

Needs SourceTable::OwnNeeds() const {
    QStringList columns = BareColumns(key) + BareColumns(apart) + BareColumns(order) + BareColumns(naming) + group +
                          ColumnsIn(where, QStringLiteral("T"));
    Needs needs;
    for (size_t i = 0; i < joins.size(); ++i) {
        const Join& join = joins[i];
        columns += TiedColumns(join.on, true);
        const QString alias = AliasOf(static_cast<qsizetype>(i));
        needs.reads.push_back({join.table, TiedColumns(join.on, false) + join.columns + ColumnsIn(where, alias) +
                                               ColumnsIn(join.where, alias)});
    }
    columns.removeIf([this](const QString& column) { return JoinOf({column}) != nullptr; });
    columns.removeDuplicates();
    needs.reads.insert(needs.reads.begin(), {table, columns});
    return needs;
}

const Join* SourceTable::JoinOf(const QStringList& columns) const {
    const auto join = std::find_if(joins.begin(), joins.end(), [&columns](const Join& one) {
        return std::any_of(columns.begin(), columns.end(),
                           [&one](const QString& column) { return one.columns.contains(column, Qt::CaseInsensitive); });
    });
    return join == joins.end() ? nullptr : &*join;
}

Needs SourceTable::NeedsOf(const std::vector<Field>& fields) const {
    Needs needs;
    for (const Field& field : fields) {
        const Join* join = JoinOf(field.Columns());
        needs = needs + FieldNeeds(join == nullptr ? table : join->table, {field});
    }
    return needs;
}

std::vector<Mapping> SourceTable::Mappings(const QString& target, const std::vector<MapLine>& lines) const {
    std::vector<Mapping> mappings;
    for (const MapLine& line : lines) {
        const Join* join = JoinOf(line.sources);
        const QString& from = join == nullptr ? table : join->table;
        auto mapping = std::find_if(mappings.begin(), mappings.end(),
                                    [&from](const Mapping& one) { return one.sourceTable == from; });
        if (mapping == mappings.end()) {
            mapping = mappings.insert(mappings.end(), Mapping{target, from, {}});
            mapping->isOfKeys = distinct;
        }
        mapping->lines.push_back(line);
    }
    return mappings;
}

/// Many rows ask it with other values: they stand apart from its words.
SqlText ChildTable::QueryOf(Session& session, const SourceRow& parent) const {
    SqlText query(session.SourceConnection().ProviderType);
    query += u"SELECT * FROM ";
    query += table;
    QStringView lead = u"\rWHERE ";
    for (const Tie& tie : on) {
        query += std::exchange(lead, u"\r  AND ");
        query += tie.column;
        const QVariant value = parent.Value(BareColumn(tie.Other()));
        if (value.isNull() && tie.tiesNulls) {
            query += u" IS NULL";
        } else {
            query += u" = ";
            query.Add(TextAsIs(value), TypeOf(value));
        }
    }
    if (!where.isEmpty()) {
        query += lead;
        query += SqlText::Of(where, session.SourceConnection().ProviderType);
    }
    if (!order.isEmpty()) {
        query += u"\rORDER BY ";
        query += order;
    }
    return query;
}

namespace {

bool IsLacking(Session& session, const ChildTable& rows) {
    return rows.isOptional && session.SourceConnection().GetColumns(rows.table).isEmpty();
}

/// What is logged meanwhile names the child behind the row that it belongs to, and an error gains its name.
void Hand(Session& session, const ChildTable& table, const SourceRow& child,
          const std::function<void(const SourceRow&)>& work) {
    std::optional<ovErrors::Row> underWay;
    if (session.Errors.InRow()) {
        underWay.emplace(session.Errors, [&] { return table.Name(child); });
    }
    try {
        work(child);
    } catch (ImportError& error) {
        error.AddContext(table.Name(child));
        throw;
    }
}

} // namespace

void ChildTable::ForEach(Session& session, const SourceRow& parent,
                         const std::function<void(const SourceRow&)>& work) const {
    if (table.isEmpty()) {
        work(parent);
        return;
    }
    if (IsLacking(session, *this)) {
        return;
    }
    Recordset rows = session.SourceConnection().ExecuteWC(QueryOf(session, parent));
    for (const SourceRow child(rows); !rows.Eof(); rows.MoveNext()) {
        Hand(session, *this, child, work);
    }
}

void ChildTable::First(Session& session, const SourceRow& parent,
                       const std::function<void(const SourceRow&)>& work) const {
    if (table.isEmpty()) {
        work(parent);
        return;
    }
    if (IsLacking(session, *this)) {
        return;
    }
    const Recordset rows = session.SourceConnection().ExecuteWC(QueryOf(session, parent));
    if (rows.Eof()) {
        return;
    }
    Hand(session, *this, SourceRow(rows), work);
}

QString ChildTable::Name(const SourceRow& row) const {
    QStringList columns = BareColumns(naming.isEmpty() ? order : naming);
    if (columns.isEmpty()) {
        columns = TiedColumns(on, false);
    }
    return NameOf(row, table, columns.join(QStringLiteral(", ")));
}

Needs ChildTable::OwnNeeds(const QString& parent) const {
    if (table.isEmpty()) {
        return {};
    }
    return {{},
            {{.table = table,
              .columns = TiedColumns(on, false) + BareColumns(order) + BareColumns(naming) +
                         ColumnsIn(where, QStringLiteral("T")),
              .mayLack = isOptional},
             {parent, TiedColumns(on, true)}},
            {}};
}

Needs ChildTable::NeedsOf(const QString& parent, const std::vector<Field>& fields) const {
    return isOptional ? Needs() : FieldNeeds(table.isEmpty() ? parent : table, fields);
}

} // namespace contract
