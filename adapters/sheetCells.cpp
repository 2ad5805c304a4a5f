#include "adapters/sheetCells.h"

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

// What people write for a yes and a no.
const QStringList YesWords{"1", "-1", "true", "vero", QStringLiteral("sì"), "si", "s", "yes", "y", "x"};
const QStringList NoWords{"0", "false", "falso", "no", "n"};

bool YesOrNo(const QVariant& value) {
    const QString text = mod_ovTools::ToText(value).trimmed().normalized(QString::NormalizationForm_C);
    if (const auto number = mod_ovTools::ReadNumber(text); number == 0 || number == 1) {
        return number == 1;
    }
    const bool isYes = YesWords.contains(text, Qt::CaseInsensitive);
    if (!isYes && !text.isEmpty() && !NoWords.contains(text, Qt::CaseInsensitive)) {
        throw ImportError(QStringLiteral("'%1' non è né un sì (%2) né un no (%3)")
                              .arg(text, YesWords.join(QStringLiteral(", ")), NoWords.join(QStringLiteral(", "))));
    }
    return isYes;
}

QVariant ValueAs(const QVariant& value, DataType type) {
    switch (type) {
    case DataType::Date:
    case DataType::DateTime:
        return mod_ovTools::ToText(value).trimmed().isEmpty() ? QString() : DateText(value);
    case DataType::Integer:
    case DataType::Long:
    case DataType::Double:
    case DataType::TinyInt:
        return Number(value);
    case DataType::Bit:
        return YesOrNo(value) ? 1.0 : 0.0;
    default:
        return mod_ovTools::NzText(value.isNull() ? value : mod_ovTools::ToText(value));
    }
}

} // namespace

QVariant GetXlsValue(const contract::SourceRow& row, const QString& column, DataType type) {
    try {
        return ValueAs(row.Value(column), type);
    } catch (ImportError& error) {
        error.AddContext(QStringLiteral("colonna '%1'").arg(column));
        throw;
    }
}

bool IsYes(const contract::SourceRow& row, const QString& column) {
    return GetXlsValue(row, column, DataType::Bit).toBool();
}

int GetColumn(ovConnection& source, const QString& table, const QString& field) {
    constexpr qsizetype searched = 200;
    const QVector<ColumnInfo> columns = source.GetColumns(table);
    // The first column of the table is the number of the row.
    for (qsizetype column = 1; column < columns.size() && column <= searched; ++column) {
        if (columns[column].name.trimmed().compare(field.trimmed(), Qt::CaseInsensitive) == 0) {
            return static_cast<int>(column);
        }
    }
    return 0;
}

} // namespace sheetCells
