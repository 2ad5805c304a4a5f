#include "sql/visibleText.h"

#include <algorithm>

namespace {

bool IsHidden(QChar character) {
    const char16_t code = character.unicode();
    if (code >= 0x20 && code < 0x7f) {
        return false;
    }
    const bool isControl = code < 0x20 || (code >= 0x7f && code < 0xa0);
    const bool isLineEnd = code == 0x2028 || code == 0x2029;
    const bool isDirection = code == 0x200e || code == 0x200f || code == 0x061c || (code >= 0x202a && code <= 0x202e) ||
                             (code >= 0x2066 && code <= 0x2069);
    return isControl || isLineEnd || isDirection;
}

QString Escape(QChar character) {
    switch (character.unicode()) {
    case u'\n':
        return QStringLiteral("\\n");
    case u'\r':
        return QStringLiteral("\\r");
    case u'\t':
        return QStringLiteral("\\t");
    default:
        break;
    }
    constexpr char16_t oneByte = 0x100;
    const bool isShort = character.unicode() < oneByte;
    return (isShort ? QStringLiteral("\\x%1") : QStringLiteral("\\u%1"))
        .arg(character.unicode(), isShort ? 2 : 4, 16, QChar(u'0'));
}

/// Whether a hidden character belongs to how the program itself lays a text out.
bool IsLayout(const QString& text, qsizetype index) {
    const QChar character = text[index];
    return character == u'\n' || character == u'\t' ||
           (character == u'\r' && index + 1 < text.size() && text[index + 1] == u'\n');
}

QString Visible(const QString& text, bool (*stays)(const QString& text, qsizetype index)) {
    if (std::none_of(text.cbegin(), text.cend(), IsHidden)) {
        return text;
    }
    QString result;
    for (qsizetype index = 0; index < text.size(); ++index) {
        const QChar character = text[index];
        result += !IsHidden(character) || stays(text, index) ? QString(character) : Escape(character);
    }
    return result;
}

} // namespace

QString VisibleLine(const QString& text) {
    return Visible(text, [](const QString&, qsizetype) { return false; });
}

QString VisibleText(const QString& text) { return Visible(text, IsLayout); }
