#include "adapters/contract/kinds/documentsKind.h"

namespace contract {

namespace {

void AddLine(std::vector<MapLine>& lines, const QString& target, const Field& field) {
    if (field.IsSet()) {
        lines.push_back(field.LineTo(target));
    }
}

std::vector<MapLine> LinesOf(const DocumentHeadFields& head, const Field& cause) {
    std::vector<MapLine> lines;
    AddLine(lines, "DTCAU", cause);
    AddLine(lines, "DTANN", head.year);
    AddLine(lines, "DTSER", head.series);
    AddLine(lines, "DTNUM", head.number);
    AddLine(lines, "DTDAT", head.day);
    AddLine(lines, "DTSTA", head.state);
    AddLine(lines, "DTCON", head.counterparty);
    AddLine(lines, "DTRAS", head.name);
    return head.lines.Over(lines);
}

std::vector<MapLine> LinesOf(const DocumentRowFields& row) {
    std::vector<MapLine> lines;
    AddLine(lines, "DRNUM", row.number);
    AddLine(lines, "DRTIP", row.type);
    AddLine(lines, "DRART", row.article);
    AddLine(lines, "DRDES", row.description);
    AddLine(lines, "DRUMS", row.unit);
    AddLine(lines, "DRQTR", row.quantity);
    AddLine(lines, "DRQT2", row.quantity2);
    AddLine(lines, "DRQTE", row.delivered);
    AddLine(lines, "DRPRZ", row.price);
    static const std::array<QString, 3> discounts{"DRSCO", "DRSC2", "DRSC3"};
    for (size_t i = 0; i < std::min(discounts.size(), row.discounts.size()); ++i) {
        AddLine(lines, discounts[i], row.discounts[i]);
    }
    AddLine(lines, "DRIVA", row.vatCode);
    AddLine(lines, "DRSTA", row.state);
    return row.lines.Over(lines);
}

/// The columns that a joined query reads of the rows: those that the heads do not have already.
QStringList RowColumns(const Documents& declared) {
    QStringList columns = Mapping{{}, {}, LinesOf(declared.row)}.SourceColumns() + BareColumns(declared.rows.order) +
                          BareColumns(declared.rows.naming);
    std::vector<TableNeed> reads = declared.further.reads;
    if (declared.production) {
        reads = reads + declared.production->rows.OwnNeeds(declared.rows.table).reads;
    }
    for (const TableNeed& need : reads) {
        columns += need.table == declared.rows.table ? need.columns : QStringList();
    }
    columns.removeDuplicates();
    return columns;
}

/// The columns of a head that rows name, as the source's statements have them.
QStringList TiesOf(const Documents& declared) {
    QStringList ties;
    for (const Tie& tie : declared.rows.on) {
        ties.append(tie.Other());
    }
    return declared.reading == Reading::OneTable ? QStringList() : ties;
}

/// The source of a joined query. Heads that have a number in common do not mix their rows.
SourceTable JoinedSource(const Documents& declared) {
    SourceTable source = declared.source;
    const ChildTable& rows = declared.rows;
    QStringList order = source.order.split(QStringLiteral(", "), Qt::SkipEmptyParts);
    const QStringList orderOfRows = rows.order.split(QStringLiteral(", "), Qt::SkipEmptyParts);
    order.removeIf([&](const QString& column) { return orderOfRows.contains(column); });
    for (const QString& tie : TiesOf(declared)) {
        if (!order.contains(tie)) {
            order.append(tie);
        }
        if (const QStringList bare = BareColumns(tie); !source.group.contains(bare.first())) {
            source.group += bare;
        }
    }
    source.order = (order + orderOfRows).join(QStringLiteral(", "));
    source.joins.push_back({rows.table, rows.on, RowColumns(declared), false});
    QStringList conditions{source.where, rows.where};
    conditions.removeAll(QString());
    source.where = conditions.join(QStringLiteral(" AND "));
    return source;
}

/// The columns of a table that a mapping or a hook may write or not.
QStringList FurtherColumns(const Documents& declared, const QString& table, const Mapping& mapping) {
    QStringList columns = mapping.TargetColumns();
    for (const TableNeed& need : declared.further.writes) {
        columns += need.table == table ? need.columns : QStringList();
    }
    columns.removeDuplicates();
    return columns;
}

} // namespace

QStringList CausesOf(const std::vector<DocumentKind>& kinds) {
    QStringList causes;
    for (const DocumentKind& kind : kinds) {
        causes.append(kind.cause);
    }
    causes.removeDuplicates();
    causes.removeAll(QString()); // the documents tell them
    return causes;
}

std::vector<Family> FamiliesOf(const std::vector<DocumentKind>& kinds) {
    std::vector<Family> families;
    for (const DocumentKind& kind : kinds) {
        if (std::none_of(families.begin(), families.end(),
                         [&kind](const Family& one) { return one.number == kind.family.number; })) {
            families.push_back(kind.family);
        }
    }
    return families;
}

DocumentRow IdentityOf(Session& session, const DocumentRowFields& fields, const SourceRow& row) {
    DocumentRow values;
    values.number = fields.number.WholeNumber(session, row);
    values.isNumbered = !fields.number.IsBlank(row);
    if (!values.isNumbered) {
        values.article = fields.article.Text(session, row);
    }
    return values;
}

DocumentsKind::DocumentsKind(Documents documents)
    : declared(std::move(documents)),
      headCondition(declared.source.where),
      rowCondition(declared.rows.where),
      ties(TiesOf(declared)) {
    if (declared.reading == Reading::Joined) {
        declared.source = JoinedSource(declared);
    } else {
        declared.rows.where.remove("J1.");
    }
    const QString& heads = declared.source.table;
    const QString& rows = declared.rows.table.isEmpty() ? heads : declared.rows.table;
    for (const Family& family : FamiliesOf(declared.kinds)) {
        pages.push_back({family.head, heads, LinesOf(declared.head, declared.cause)});
        pages.push_back({family.row, rows, LinesOf(declared.row)});
    }
    head = {pages.front().targetTable, heads, declared.head.lines.Over({})};
    row = {pages.at(1).targetTable, rows, declared.row.lines.Over({})};
    furtherOfHead = FurtherColumns(declared, head.targetTable, head);
    furtherOfRow = FurtherColumns(declared, row.targetTable, row);
    if (declared.production) {
        production.emplace(*declared.production);
    }
}

contract::Needs DocumentsKind::Needs() const {
    contract::Needs needs = declared.source.NeedsOf({declared.kind});
    for (const Mapping& page : pages) {
        needs = needs + NeedsOf(page);
    }
    if (declared.reading != Reading::OneTable) {
        needs = needs + declared.rows.OwnNeeds(declared.source.table);
    }
    for (const Family& family : FamiliesOf(declared.kinds)) {
        needs.writes = needs.writes + DocumentNeeds(family);
    }
    if (production) {
        needs = needs + production->NeedsUnder(pages.back().sourceTable);
    }
    return needs + declared.further;
}

const DocumentKind* DocumentsKind::KindOf(const QString& mark) const {
    const auto& kinds = declared.kinds;
    const auto found = std::find_if(kinds.begin(), kinds.end(), [&mark](const DocumentKind& kind) {
        return kind.marks.isEmpty() || kind.marks.contains(mark, Qt::CaseInsensitive);
    });
    return found == kinds.end() ? nullptr : &*found;
}

Frame FrameOf(const Documents& declared) {
    return Over(declared.frame, {.announcement = "Inizio importazione Documenti",
                                 .errors = "Errore: ",
                                 .step = "Documenti",
                                 .completion = "Documenti importati correttamente: %1"});
}

std::vector<Field> DiscountFields(const QString& column) {
    return {{column, rules::Discount(1)}, {column, rules::Discount(2)}, {column, rules::Discount(3)}};
}

QString EveryRow(const ovConnection& /*source*/, const QDate& /*from*/) { return {}; }

} // namespace contract
