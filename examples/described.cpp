#include "examples/described.h"

#include "examples/SqliteWriter.h"

namespace examples::described {

namespace {

QVariant ValueOf(const Table& table, const Field& field, const Options& options, qint64 row) {
    return field.rule ? field.rule({options, row, StreamOf(table.name.toLatin1() + '.' + field.column.name)})
                      : QVariant();
}

/// @param odd what the row differs by; null for a row that follows the rules
void AddRow(TableWriter& writer, const Table& table, const Options& options, qint64 row, const OddRow* odd) {
    for (const Field& field : table.fields) {
        writer.Set(field.column.name.constData(), ValueOf(table, field, options, row));
    }
    if (odd != nullptr) {
        for (const auto& [column, value] : *odd) {
            writer.Set(column, value);
        }
    }
    writer.Add();
}

qint64 WriteTable(Store& store, const Table& table, const Options& options) {
    QVector<Column> columns;
    for (const Field& field : table.fields) {
        columns.append(field.column);
    }
    const auto writer = store.Create(table.name, columns);
    qint64 row = 0;
    for (const qint64 count = table.rows(options); row < count; ++row) {
        AddRow(*writer, table, options, row, nullptr);
    }
    for (const OddRow& odd : table.odd) {
        AddRow(*writer, table, options, row++, &odd);
    }
    writer->Finish();
    for (const QStringList& index : table.indexes) {
        store.AddIndex(table.name, index);
    }
    return row;
}

} // namespace

quint64 StreamOf(const QByteArray& name) {
    // FNV-1a
    quint64 hash = 0xcbf29ce484222325U;
    for (const char character : name) {
        hash = (hash ^ static_cast<quint8>(character)) * 0x100000001b3U;
    }
    return hash;
}

Totals Write(Store& store, const QVector<Table>& tables, const Options& options, const QuadrixScript& script) {
    Totals totals;
    for (const Table& table : tables) {
        if (IsAsked(options, table.group)) {
            totals.append({table.name + QStringLiteral(": righe"), QString::number(WriteTable(store, table, options))});
        }
    }
    store.Finish();
    script.Write(options.folder);
    return totals;
}

Totals Write(const QString& file, const QVector<Table>& tables, const Options& options, const QuadrixScript& script) {
    SqliteFile store(options.folder + u'/' + file);
    return Write(store, tables, options, script);
}

void Prepare(QuadrixScript& script, const Table& table, const Options& options) {
    QStringList columns;
    for (const Field& field : table.fields) {
        columns.append(QString::fromLatin1(field.column.name));
    }
    QVector<QStringList> rows;
    for (qint64 row = 0; row < table.rows(options); ++row) {
        QStringList values;
        for (const Field& field : table.fields) {
            values.append(ValueOf(table, field, options, row).toString());
        }
        rows.append(values);
    }
    script.Rows(table.name, columns, rows);
}

} // namespace examples::described
