#include "sources/workbook/captions.h"

#include <QRegularExpression>

#include <algorithm>

namespace sources {

namespace {

bool IsDigit(QChar c) { return c.isDigit(); }

} // namespace

QString TextOf(const SheetCell& cell) {
    if (cell.kind != SheetCell::Kind::Number) {
        return QString::fromUtf8(cell.text).simplified();
    }
    const auto padded = cell.format != nullptr ? cell.format->Padded(cell.number) : std::nullopt;
    return padded ? QString::fromUtf8(*padded) : QString::number(cell.number, 'g', 15);
}

bool IsBlank(const SheetCell& cell) {
    return cell.kind == SheetCell::Kind::EmptyText ||
           (cell.kind == SheetCell::Kind::Text && QByteArrayView(cell.text).trimmed().isEmpty());
}

bool HasDigit(const SheetCell& cell) { return std::ranges::any_of(TextOf(cell), IsDigit); }

bool IsCaption(const SheetCell& cell) {
    const QString text = TextOf(cell);
    const auto digits = std::ranges::count_if(text, IsDigit);
    const auto letters = std::ranges::count_if(text, [](QChar c) { return c.isLetter(); });
    return cell.kind == SheetCell::Kind::Text && (digits == 0 || digits < letters);
}

bool SaysCode(const QString& text) {
    static const QRegularExpression word(
        QStringLiteral("(?<!\\p{L})(?i:cod|codice|codici|code)(?!\\p{L})|^[Cc]od(ice)?(?=\\p{Lu})"));
    return word.match(text).hasMatch() && std::ranges::none_of(text, IsDigit);
}

bool NamesCodes(const QString& text) {
    static const QRegularExpression words(
        QStringLiteral(
            "^(?:[\\s._/-]*(?:codici|codice|code|cod|articoli|articolo|art|prodotti|prodotto|clienti|cliente|"
            "cli|fornitori|fornitore|forn|id|sigla|numero|num|nr|n°))+[\\s.:]*$"),
        QRegularExpression::CaseInsensitiveOption);
    return SaysCode(text) || words.match(text).hasMatch();
}

} // namespace sources
