#include "adapters/sheetCells.h"

#include "sources/workbook/Workbook.h"
#include "sql/errors.h"
#include "sql/mod_ovTools.h"

namespace sheetCells {

namespace {

QString DateText(const QVariant& value) {
    const auto moment = mod_ovTools::ReadDate(value);
    if (!moment) {
        throw ImportError(QStringLiteral("'%1' non è una data").arg(mod_ovTools::ToText(value)));
    }
    const bool isWhole = moment->time() == QTime(0, 0);
    return moment->toString(isWhole ? QStringLiteral("yyyyMMdd") : QStringLiteral("yyyyMMdd hh:mm:ss"));
}

double Number(const QVariant& value) {
    const auto number = mod_ovTools::ReadNumber(mod_ovTools::NzNumber(value));
    if (!number) {
        throw ImportError(QStringLiteral("'%1' non è un numero").arg(mod_ovTools::ToText(value)));
    }
    return *number;
}

} // namespace

QVariant ValueAs(const QVariant& value, DataType type) {
    switch (type) {
    case DataType::Date:
    case DataType::DateTime:
        return mod_ovTools::ToText(value).trimmed().isEmpty() ? QString() : DateText(value);
    case DataType::Integer:
    case DataType::Long:
    case DataType::Double:
    case DataType::Bit:
    case DataType::TinyInt:
        return Number(value);
    default:
        return mod_ovTools::NzText(value.isNull() ? value : mod_ovTools::ToText(value));
    }
}

QVariant GetXlsValue(ovConnection& source, const QString& table, qint64 row, int column, DataType type) {
    const QString letters = sources::ColumnLetters(column - 1);
    const auto columns = source.GetColumns(table);
    const bool isThere = std::any_of(columns.begin(), columns.end(),
                                     [&letters](const ColumnInfo& info) { return info.name == letters; });
    if (!isThere) { // nothing stands in the whole column
        return ValueAs({}, type);
    }
    const Recordset cell =
        source.ExecuteWC(QStringLiteral("SELECT [%1] FROM [%2] WHERE _RIGA = %3").arg(letters, table).arg(row));
    try {
        return ValueAs(cell.Eof() ? QVariant() : cell.Fields(0).Value(), type);
    } catch (ImportError& error) {
        error.AddContext(QStringLiteral("tabella '%1', riga %2, colonna '%3'").arg(table).arg(row).arg(letters));
        throw;
    }
}

int GetColumn(ovConnection& source, const QString& table, const QString& field) {
    constexpr int searched = 200;
    const Recordset header = source.ExecuteWC(QStringLiteral("SELECT * FROM [%1] WHERE _RIGA = 1").arg(table));
    const QString wanted = field.trimmed().toUpper();
    // The first column of the table is the number of the row.
    for (int column = 1; !header.Eof() && column < header.Columns().size() && column <= searched; ++column) {
        if (mod_ovTools::ToText(header.Fields(column).Value()).trimmed().toUpper() == wanted) {
            return column;
        }
    }
    return 0;
}

} // namespace sheetCells
