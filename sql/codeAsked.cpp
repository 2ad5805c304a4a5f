#include "sql/codeAsked.h"

#include "sql/mod_ovTools.h"
#include "sql/textLiteral.h"
#include "sql/variantText.h"

#include <algorithm>

namespace {

bool IsAscii(const QString& text) {
    constexpr char16_t firstFurther = 0x80;
    return std::none_of(text.begin(), text.end(), [](QChar c) { return c >= firstFurther; });
}

QString Comparable(QString text) {
    while (text.endsWith(u' ')) {
        text.chop(1);
    }
    return mod_ovTools::UpperChars(text);
}

} // namespace

bool IsSameCode(const QString& left, const QString& right) { return Comparable(left) == Comparable(right); }

bool IsCodeAsked(const QVariant& found, const QString& asked) {
    if (found.typeId() != QMetaType::QString) {
        return true;
    }
    const QString text = found.toString();
    return (IsAscii(text) && IsAscii(asked)) || IsSameCode(text, asked);
}

bool StepToCode(Recordset& rows, QAnyStringView column, const QString& asked) {
    while (!rows.Eof() && !IsCodeAsked(rows.Value(column), asked)) {
        rows.MoveNext();
    }
    return !rows.Eof();
}

qint64 IdOfCode(ovDatabase& database, const QString& table, const QString& condition, const QString& column,
                const QString& code) {
    Recordset rows = database.ExecuteWC(QStringLiteral("SELECT RECORD_ID, %1 FROM ").arg(column) +
                                        database.GetFullTableName(table) + QStringLiteral(" WHERE ") + condition);
    return StepToCode(rows, column, code) ? rows.Fields(0).Value().toLongLong() : 0;
}

bool HasOwnCode(ovDatabase& database, const QString& table, const QString& column, const QString& code) {
    if (database.IsAbsent(table, column, code)) {
        return false;
    }
    const Recordset rows =
        database.ExecuteWC(QStringLiteral("SELECT %1 FROM ").arg(column) + database.GetFullTableName(table) +
                           QStringLiteral(" WHERE %1 = ").arg(column) + TextLiteral(database, code));
    if (!rows.Eof()) {
        CheckCodeAsked(rows.Fields(0).Value(), code);
    }
    return !rows.Eof();
}

void CheckCodeAsked(const QVariant& found, const QString& asked) {
    if (!IsCodeAsked(found, asked)) {
        throw ImportError(QStringLiteral("il codice '%1' è per il database lo stesso di '%2', che è un altro")
                              .arg(asked, found.toString()));
    }
}
