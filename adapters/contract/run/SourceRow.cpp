#include "adapters/contract/run/SourceRow.h"

#include "adapters/contract/map/emptyDays.h"
#include "sources/privateDatabase.h"
#include "sql/mod_ovTools.h"
#include "sql/variantText.h"

namespace contract {

QString SourceRow::Text(QAnyStringView column) const {
    const QVariant value = Value(column);
    if (value.typeId() != QMetaType::QString) {
        return mod_ovTools::ToText(value).trimmed();
    }
    const auto& text = *static_cast<const QString*>(value.constData());
    const bool isTrimmed = text.isEmpty() || !(text.front().isSpace() || text.back().isSpace());
    return isTrimmed ? text : text.trimmed();
}

namespace {

/// The text of a column that a row is named by; of one that cannot be read it says so.
QString NamingText(const SourceRow& row, QAnyStringView column) {
    try {
        return row.Text(column);
    } catch (const ImportError&) {
        return QStringLiteral("(non leggibile)");
    }
}

} // namespace

const QStringList& RowNumberColumns() {
    static const QStringList columns{sources::RecordNumberColumn, sources::RowNumberColumn};
    return columns;
}

QString NameOf(const SourceRow& row, const QString& table, const QString& keyColumn) {
    constexpr qsizetype usual = 96;
    QString name;
    name.reserve(usual);
    name += u"tabella '" + table + u'\'';
    for (const QString& number : RowNumberColumns()) {
        if (row.HasColumn(number)) {
            name += QStringLiteral(", riga ") + row.Text(number);
        }
    }
    for (const QStringView column : QStringView(keyColumn).tokenize(u", ")) {
        name += u", " + column + u" '" + NamingText(row, column) + u'\'';
    }
    return name;
}

QString GroupText(const SourceRow& row, const QStringList& columns) {
    QString text;
    for (const QString& column : columns) {
        text += NamingText(row, column) + u'\x1f';
    }
    text.chop(1);
    return text;
}

QVariant DateOf(const SourceRow& row, const QString& column) {
    if (row.IsBlank(column)) {
        return {};
    }
    if (const auto date = mod_ovTools::ReadDate(row.Value(column))) {
        return *date;
    }
    throw ImportError(QStringLiteral("colonna '%1': '%2' non è una data").arg(column, row.Text(column)));
}

std::optional<QDate> DayOfDigits(const QString& digits) {
    constexpr int yearSize = 4;
    constexpr int monthSize = 2;
    constexpr int fullSize = 8;
    const bool isNumber = std::all_of(digits.begin(), digits.end(), [](QChar c) { return c >= u'0' && c <= u'9'; });
    if (!isNumber || digits.size() < fullSize - 1 || digits.size() > fullSize) {
        return std::nullopt;
    }
    const QString dayAndMonth = digits.chopped(yearSize);
    const QDate day(digits.right(yearSize).toInt(), dayAndMonth.right(monthSize).toInt(),
                    dayAndMonth.chopped(monthSize).toInt());
    return day.isValid() ? std::optional(day) : std::nullopt;
}

DataType TypeOf(const QVariant& value) {
    switch (value.typeId()) {
    case QMetaType::QString:
        return DataType::NVarChar;
    case QMetaType::QDate:
        return DataType::Date;
    case QMetaType::QDateTime:
        return DataType::DateTime;
    case QMetaType::Bool:
        return DataType::Bit;
    default:
        return DataType::Double;
    }
}

QString LiteralOf(const ovConnection& source, const QVariant& value) {
    return mod_ovTools::FormatSqlValue(TextAsIs(value), TypeOf(value), source.ProviderType);
}

QString DayColumn(const ovConnection& source, const QString& column) {
    static const QString two = QStringLiteral("[0-9][0-9]");
    static const QString digits = two + two + two + two;
    static const QString dashed = two + two + u'-' + two + u'-' + two;
    return source.Embedded ? QStringLiteral("CASE WHEN %1 GLOB '%2*' OR %1 GLOB '%3' OR %1 GLOB '%3[ T]*' THEN "
                                            "SUBSTR(REPLACE(%1, '-', ''), 1, 8) END")
                                 .arg(column, dashed, digits)
                           : column;
}

QString NoDayOr(const ovConnection& source, const QString& column, const QString& compared, const QDate& day) {
    const QString isBlank = source.Embedded ? QStringLiteral(" OR TRIM(%1) = ''").arg(column) : QString();
    const QString told = DayColumn(source, column);
    const QString isNone = QStringLiteral(" OR %1 <= %2").arg(told, LiteralOf(source, LatestEmptyDay));
    return QStringLiteral("(%1 IS NULL%2%3 OR %4 %5 %6)")
        .arg(column, isBlank, compared.startsWith(u'>') ? isNone : QString(), told, compared, LiteralOf(source, day));
}

void ForEachChild(Session& session, const QString& query, const QString& table, const QString& keyColumn,
                  const std::function<void(const SourceRow&)>& work) {
    ovConnection& source = session.SourceConnection();
    Recordset rows = source.ExecuteWC(SqlText::Of(query, source.ProviderType)); // the same for other values
    for (const SourceRow row(rows); !rows.Eof(); rows.MoveNext()) {
        try {
            work(row);
        } catch (ImportError& error) {
            error.AddContext(NameOf(row, table, keyColumn));
            throw;
        }
    }
}

} // namespace contract
