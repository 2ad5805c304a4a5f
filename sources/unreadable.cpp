#include "sources/unreadable.h"

namespace sources {

namespace {

/// No text begins so, and no function of SQL that keeps the start of a text changes it.
const QByteArray Mark = QByteArrayLiteral("\x01\x02\x7f#!#\x7f\x02\x01");

} // namespace

QByteArray UnreadableValue(const QString& reason) { return Mark + reason.toUtf8(); }

std::optional<QString> ReasonOfUnreadable(const QVariant& value) {
    if (value.typeId() == QMetaType::QByteArray) {
        const QByteArray bytes = value.toByteArray();
        return bytes.startsWith(Mark) ? std::optional(QString::fromUtf8(bytes.mid(Mark.size()))) : std::nullopt;
    }
    if (value.typeId() == QMetaType::QString) {
        const QString text = value.toString();
        return text.startsWith(QLatin1String(Mark)) ? std::optional(text.mid(Mark.size())) : std::nullopt;
    }
    return std::nullopt;
}

} // namespace sources
