#include "tests/demo/accessCopy.h"

#include "sql/errors.h"
#include "sql/mod_ovTools.h"
#include "tests/sources/mdbBytes.h"

#include <QDateTime>

#include <optional>

namespace {

/// A type of Access: its number, the bytes of a value of fixed length, and a value as its bytes; null when it cannot
/// hold it.
struct Type {
    int number;
    int length;
    std::optional<QByteArray> (*bytes)(const QVariant& value);
};

/// A flag is there or not there: its value are no bytes.
std::optional<QByteArray> FlagBytes(const QVariant& value) {
    const QString text = mod_ovTools::ToText(value);
    if (text != "0" && text != "1") {
        return std::nullopt;
    }
    return text == "1" ? QByteArray("") : QByteArray();
}

std::optional<QByteArray> LongBytes(const QVariant& value) {
    bool isNumber = false;
    const qint32 number = mod_ovTools::ToText(value).toInt(&isNumber);
    return isNumber ? std::optional(RawBytes(number)) : std::nullopt;
}

std::optional<QByteArray> DoubleBytes(const QVariant& value) {
    bool isNumber = false;
    const double number = mod_ovTools::ToText(value).toDouble(&isNumber);
    return isNumber ? std::optional(RawBytes(number)) : std::nullopt;
}

/// Days since 30 December 1899, with their fraction.
std::optional<QByteArray> DayBytes(const QVariant& value) {
    if (value.userType() != QMetaType::QDateTime) {
        return std::nullopt;
    }
    constexpr double SecondsOfDay = 86400;
    const QDateTime start(QDate(1899, 12, 30), QTime(0, 0), Qt::UTC);
    return RawBytes(static_cast<double>(start.secsTo(value.toDateTime())) / SecondsOfDay);
}

std::optional<QByteArray> TextBytes(const QVariant& value) {
    constexpr int Longest = 255;
    const QString text = mod_ovTools::ToText(value);
    if (text.size() > Longest) {
        return std::nullopt;
    }
    return text.isEmpty() ? QByteArray("") : mdbBytes::Utf16(text);
}

std::optional<QByteArray> MemoBytes(const QVariant& value) {
    const QByteArray text = mdbBytes::Utf16(mod_ovTools::ToText(value));
    return mdbBytes::LongValue(mdbBytes::Kept::Inline, static_cast<int>(text.size()), 0, text);
}

const Type Flag{1, 0, FlagBytes};
const Type Long{4, 4, LongBytes};
const Type Double{7, 8, DoubleBytes};
const Type Day{8, 8, DayBytes};
const Type Text{10, 0, TextBytes};
const Type Memo{12, 0, MemoBytes};

const Type& DeclaredAs(const QString& declared) {
    static const std::vector<std::pair<const char*, const Type*>> words{
        {"BIT", &Flag},      {"INT", &Long},     {"DEC", &Double}, {"NUM", &Double},
        {"DOUBLE", &Double}, {"FLOAT", &Double}, {"DATE", &Day},   {"TEXT", &Memo},
    };
    for (const auto& [word, type] : words) {
        if (declared.startsWith(QLatin1String(word), Qt::CaseInsensitive)) {
            return *type;
        }
    }
    return Text;
}

/// The values of a column as their bytes; null when the type cannot hold them all.
std::optional<QVector<QByteArray>> BytesOf(const QVector<QVariant>& values, const Type& type) {
    QVector<QByteArray> all;
    for (const QVariant& value : values) {
        const auto bytes = value.isNull() ? QByteArray() : type.bytes(value);
        if (!bytes) {
            return std::nullopt;
        }
        all.append(*bytes);
    }
    return all;
}

void AddColumn(mdbBytes::Table& table, const ColumnInfo& column, const QVector<QVariant>& values) {
    for (const Type* type : {&DeclaredAs(column.type), &Text, &Memo}) {
        if (const auto all = BytesOf(values, *type)) {
            table.columns.append({column.name, type->number, type->length});
            for (qsizetype row = 0; row < values.size(); ++row) {
                table.rows[row].append(all->at(row));
            }
            return;
        }
    }
}

mdbBytes::Table CopyOf(ovConnection& database, const QString& name) {
    const QVector<ColumnInfo> columns = database.GetColumns(name);
    QVector<QVector<QVariant>> values(columns.size());
    for (Recordset rows = database.ExecuteWC("SELECT * FROM [" + name + ']'); !rows.Eof(); rows.MoveNext()) {
        for (int column = 0; column < columns.size(); ++column) {
            values[column].append(rows.Fields(column).Value());
        }
    }
    mdbBytes::Table table{name, {}, {}};
    table.rows.resize(values.first().size());
    for (int column = 0; column < columns.size(); ++column) {
        AddColumn(table, columns.at(column), values.at(column));
    }
    return table;
}

/// The definition of a table and each of its rows have a page at the most.
void RequireRoom(const mdbBytes::Table& table) {
    constexpr qsizetype Head = 16;
    const auto isTooLong = [&table](const mdbBytes::Row& row) {
        return mdbBytes::RowBytes(table, row).size() > mdbBytes::PageSize - Head;
    };
    if (mdbBytes::DefinitionPage(table, 0).size() > mdbBytes::PageSize ||
        std::any_of(table.rows.begin(), table.rows.end(), isTooLong)) {
        throw ImportError("La tabella " + table.name + " non entra in un file Access");
    }
}

} // namespace

QByteArray AccessCopy(ovConnection& database) {
    QVector<mdbBytes::Table> tables;
    for (const QString& name : database.GetTables()) {
        tables.append(CopyOf(database, name));
        RequireRoom(tables.last());
    }
    return mdbBytes::Database(tables);
}
