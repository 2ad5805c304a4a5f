#include "core/rowDigest.h"

#include "sql/mod_ovTools.h"

namespace {

/// Digits that every engine keeps of a number.
constexpr int Digits = 12;

QString NormalForm(const QVariant& value, DataType type) {
    if (value.isNull()) {
        return {};
    }
    if (type == DataType::DateTime || type == DataType::Date) {
        const auto time = mod_ovTools::ReadDate(value);
        return time ? time->toString(QStringLiteral("yyyyMMddhhmmss")) : mod_ovTools::ToText(value);
    }
    if (!IsTextType(type)) {
        const auto number =
            value.typeId() == QMetaType::Bool ? std::optional<double>(value.toBool()) : mod_ovTools::ReadNumber(value);
        return number ? QString::number(*number, 'g', Digits) : mod_ovTools::ToText(value);
    }
    return mod_ovTools::ToText(value).trimmed();
}

} // namespace

void RowDigest::Add(const QVariant& value, DataType type) {
    Add(NormalForm(value, type));
    Add(u"\x1f");
}

void RowDigest::Add(QStringView text) {
    for (const QChar c : text) {
        m_hash = (m_hash ^ c.unicode()) * 0x100000001b3;
    }
}
