#include "adapters/contract/run/tiedRows.h"

namespace contract {

namespace {

QString WithoutBlanksBehind(QString text) {
    while (text.endsWith(u' ')) {
        text.chop(1);
    }
    return text;
}

} // namespace

QString TiedTo(const ovConnection& source, const QString& column, const SourceRow& row, const QString& of) {
    const QVariant value = row.Value(of.isEmpty() ? column : of);
    const QString literal = LiteralOf(source, value);
    if (const QString text = value.toString(); value.typeId() == QMetaType::QString && text.endsWith(u' ')) {
        return column + u" IN (" + literal + u", " + LiteralOf(source, WithoutBlanksBehind(text)) + u')';
    }
    return column + QStringLiteral(" = ") + literal;
}

} // namespace contract
