#include "adapters/contract/kinds/childRules.h"

#include "sql/mod_ovTools.h"

namespace contract::rules {

namespace {

QString TableOf(const QString& parent, const ChildTable& rows) { return rows.table.isEmpty() ? parent : rows.table; }

/// A rule whose value is in columns of the rows alone.
Rule FoundIn(const QString& parent, const ChildTable& rows, const QStringList& columns, Rule rule) {
    rule.isElsewhere = true;
    return AlsoIn({{TableOf(parent, rows), columns}}, std::move(rule));
}

/// What the rows need, and columns of theirs that the rule can do without.
std::vector<TableNeed> ReadsOf(const QString& parent, const ChildTable& rows, const QStringList& columns) {
    std::vector<TableNeed> reads = rows.OwnNeeds(parent).reads;
    reads.push_back({.table = TableOf(parent, rows), .columns = {}, .optional = columns, .mayLack = rows.isOptional});
    return reads;
}

/// The rows in words: "TABLE with CONDITION by ORDER".
QString WordsOf(const ChildTable& rows) {
    const QString which = rows.where.isEmpty() ? QString() : QString(" con " + rows.where);
    const QString order = rows.order.isEmpty() ? QString() : QString(" in ordine di " + rows.order);
    return rows.table + which + order;
}

} // namespace

Rule OfFirst(const QString& parent, const ChildTable& rows, const QString& columns, const Rule& rule) {
    const QStringList names = columns.split(QStringLiteral(", "));
    Rule whole =
        Around(rule, QStringLiteral("%1 della sua prima riga di %2: %3").arg(columns, WordsOf(rows), rule.text),
               [rows, line = MapLine({}, columns, rule)](const RuleInput& input) {
                   RuleValue value;
                   rows.First(input.session, input.row,
                              [&](const SourceRow& first) { value = line.ValueOf(input.session, first, input.facts); });
                   return value;
               });
    whole.reads = ReadsOf(parent, rows, names) + rule.reads;
    whole.vital = 0; // they are the first of its row
    return FoundIn(parent, rows, names, std::move(whole));
}

Rule NamedBy(const QString& parent, const ChildTable& rows, const QString& column, const QVariant& yes,
             const QVariant& no) {
    return FoundIn(parent, rows, {column},
                   {QStringLiteral("\"%1\" se è %2 della sua prima riga di %3, altrimenti \"%4\"")
                        .arg(mod_ovTools::ToText(yes), column, WordsOf(rows), mod_ovTools::ToText(no)),
                    [rows, column, yes, no](const RuleInput& input) {
                        bool isNamed = false;
                        rows.First(input.session, input.row, [&](const SourceRow& first) {
                            isNamed = first.Text(column).compare(input.Text(), Qt::CaseInsensitive) == 0;
                        });
                        return RuleValue(isNamed ? yes : no);
                    },
                    Side::Both, ReadsOf(parent, rows, {column})});
}

Rule OnLines() {
    return {"ognuno su una riga", [](const RuleInput& input) {
                QStringList lines;
                for (const QString& column : input.columns) {
                    lines.append(input.row.Text(column));
                }
                lines.removeAll(QString());
                return RuleValue(lines.join(u'\n'));
            }};
}

Rule WithLines(const QString& parent, const ChildTable& rows, const QString& column) {
    return AlsoIn({{TableOf(parent, rows), {column}}},
                  {QStringLiteral("testo, e %1 di ognuna delle sue righe di %2, una per riga").arg(column, rows.table),
                   [rows, column](const RuleInput& input) -> RuleValue {
                       QStringList lines{input.Text()};
                       rows.ForEach(input.session, input.row,
                                    [&](const SourceRow& line) { lines.append(line.Text(column)); });
                       lines.removeAll(QString());
                       return lines.isEmpty() ? RuleValue() : RuleValue(lines.join(u'\n'));
                   },
                   Side::Both, ReadsOf(parent, rows, {column})});
}

Rule FirstNotZeroOf(const std::vector<Rule>& rules) {
    QStringList texts;
    Rule whole({}, [rules](const RuleInput& input) -> RuleValue {
        for (const Rule& rule : rules) {
            const QVariant value = rule.apply(input).value_or(QVariant());
            if (value.toDouble() != 0) {
                return value;
            }
        }
        return QVariant(0);
    });
    whole.isElsewhere = true;
    for (const Rule& rule : rules) {
        texts.append(rule.text);
        whole.reads = whole.reads + rule.reads;
        whole.elsewhere = whole.elsewhere + rule.elsewhere;
        whole.isElsewhere = whole.isElsewhere && rule.isElsewhere;
    }
    whole.text = QStringLiteral("il primo diverso da zero: ") + texts.join(QStringLiteral("; "));
    return whole;
}

} // namespace contract::rules
