#include "sql/CodePage.h"

#include "sql/errors.h"

#include <QHash>
#include <QStringConverter>

namespace {

// The upper halves of the pages that Italian programs write stand here, because not every build of Qt brings ICU.
constexpr auto Windows1252 =
    u"\u20ac\u0081\u201a\u0192\u201e\u2026\u2020\u2021\u02c6\u2030\u0160\u2039\u0152\u008d\u017d\u008f"
    u"\u0090\u2018\u2019\u201c\u201d\u2022\u2013\u2014\u02dc\u2122\u0161\u203a\u0153\u009d\u017e\u0178";
constexpr auto Ibm850 = u"ÇüéâäàåçêëèïîìÄÅÉæÆôöòûùÿÖÜø£Ø×ƒáíóúñÑªº¿®¬½¼¡«»░▒▓│┤ÁÂÀ©╣║╗╝¢¥┐└┴┬├─┼ãÃ╚╔╩╦╠═╬¤"
                        u"ðÐÊËÈıÍÎÏ┘┌█▄¦Ì▀ÓßÔÒõÕµþÞÚÛÙýÝ¯´\u00ad±‗¾¶§÷¸°¨·¹³²■\u00a0";
constexpr auto Ibm437 = u"ÇüéâäàåçêëèïîìÄÅÉæÆôöòûùÿÖÜ¢£¥₧ƒáíóúñÑªº¿⌐¬½¼¡«»░▒▓│┤╡╢╖╕╣║╗╝╜╛┐└┴┬├─┼╞╟╚╔╩╦╠═╬╧"
                        u"╨╤╥╙╘╒╓╫╪┘┌█▄▌▐▀αßΓπΣσµτΦΘΩδ∞φε∩≡±≥≤⌠⌡÷≈°∙·√ⁿ²■\u00a0";

/// The name that a converter knows for what a person or a file may write: the number alone, or with "cp", "ibm" or
/// "windows" before it.
QString ConverterName(const QString& name) {
    QString text = name.trimmed().toLower();
    for (const auto* prefix : {"windows-", "cp-", "cp", "ibm-", "ibm"}) {
        if (text.startsWith(QLatin1String(prefix))) {
            text = text.mid(static_cast<int>(qstrlen(prefix)));
            break;
        }
    }
    bool isNumber = false;
    const int number = text.toInt(&isNumber);
    if (text.isEmpty()) {
        return QStringLiteral("windows-1252");
    }
    if (!isNumber) {
        return name.trimmed();
    }
    if (number == 65001) {
        return QStringLiteral("UTF-8");
    }
    const bool isWindows = (number >= 1250 && number <= 1258) || (number >= 932 && number <= 950) || number == 874;
    return (isWindows ? QStringLiteral("windows-%1") : QStringLiteral("IBM%1")).arg(number);
}

/// Characters 128 to 255 of a page that stands here; empty for another.
QString KnownUpperHalf(const QString& name) {
    if (name == u"windows-1252") {
        QString upper = QString::fromUtf16(Windows1252);
        for (ushort code = 0xa0; code <= 0xff; ++code) {
            upper += QChar(code);
        }
        return upper;
    }
    if (name == u"IBM850") {
        return QString::fromUtf16(Ibm850);
    }
    return name == u"IBM437" ? QString::fromUtf16(Ibm437) : QString();
}

/// Characters 128 to 255 of a page that the converters of Qt know; empty when one of them is not a byte of its own.
QString ConvertedUpperHalf(const QByteArray& name) {
    QString upper;
    for (int code = 0x80; code <= 0xff; ++code) {
        QStringDecoder decoder(name.constData(), QStringDecoder::Flag::Stateless);
        const char byte = static_cast<char>(code);
        const QString text = decoder(QByteArrayView(&byte, 1));
        if (text.size() != 1 || decoder.hasError() || text[0].unicode() < 0x80 ||
            text[0] == QChar::ReplacementCharacter) {
            return {};
        }
        upper += text;
    }
    return upper;
}

/// Whether a page uses one byte for each character: those of the Far East and the Unicode ones do not.
bool IsSingleByte(const QString& name) {
    static const QStringList wide{QStringLiteral("windows-932"), QStringLiteral("windows-936"),
                                  QStringLiteral("windows-949"), QStringLiteral("windows-950")};
    return !wide.contains(name) && !name.startsWith(u"utf", Qt::CaseInsensitive);
}

} // namespace

/// The characters of a page with one byte each, ready for both directions.
struct CodePage::Table {
    std::array<char16_t, 256> characters{};
    std::array<std::array<char, 3>, 256> utf8{};
    std::array<qsizetype, 256> utf8Length{};
    QHash<char16_t, char> bytes;

    explicit Table(const QString& upper) {
        for (size_t code = 0; code < 256; ++code) {
            const QChar character =
                code < 0x80 ? QChar(static_cast<ushort>(code)) : upper[static_cast<int>(code) - 0x80];
            characters[code] = character.unicode();
            bytes.insert(character.unicode(), static_cast<char>(code));
            const QByteArray encoded = QString(character).toUtf8();
            std::copy(encoded.cbegin(), encoded.cend(), utf8[code].begin());
            utf8Length[code] = encoded.size();
        }
    }
};

CodePage::CodePage(const QString& name)
    : m_name(ConverterName(name)) {
    QString upper = KnownUpperHalf(m_name);
    const QByteArray latin = m_name.toLatin1();
    if (upper.isEmpty() && !QStringDecoder(latin.constData()).isValid()) {
        throw ImportError(QStringLiteral("la codepage '%1' non è conosciuta: indicarne un'altra, per esempio cp1252 "
                                         "(Windows) o cp850 (DOS)")
                              .arg(name));
    }
    if (upper.isEmpty() && IsSingleByte(m_name)) {
        upper = ConvertedUpperHalf(latin);
    }
    if (upper.size() == 0x80) {
        m_table = std::make_shared<const Table>(upper);
    }
}

bool CodePage::AppendUtf8(QByteArrayView bytes, QByteArray& utf8) const {
    if (m_table == nullptr) {
        QStringDecoder decoder(m_name.toLatin1().constData(), QStringDecoder::Flag::Stateless);
        const QString text = decoder(bytes);
        utf8 += text.toUtf8();
        return !decoder.hasError() && !text.contains(QChar::ReplacementCharacter);
    }
    const qsizetype start = utf8.size();
    utf8.resize(start + bytes.size() * 3);
    char* out = utf8.data() + start;
    for (const char byte : bytes) {
        const auto code = static_cast<unsigned char>(byte);
        if (code < 0x80) {
            *out++ = byte;
        } else {
            out = std::copy_n(m_table->utf8[code].begin(), m_table->utf8Length[code], out);
        }
    }
    utf8.resize(out - utf8.constData());
    return true;
}

QString DecodeText(QByteArrayView bytes, const CodePage& page) {
    if (page.m_table == nullptr) {
        QStringDecoder decoder(page.m_name.toLatin1().constData(), QStringDecoder::Flag::Stateless);
        return decoder(bytes);
    }
    QString text(bytes.size(), Qt::Uninitialized);
    std::transform(bytes.begin(), bytes.end(), text.begin(),
                   [&](char byte) { return QChar(page.m_table->characters[static_cast<unsigned char>(byte)]); });
    return text;
}

QByteArray EncodeText(const QString& text, const CodePage& page, QString* lost) {
    QStringEncoder encoder(page.m_name.toLatin1().constData(), QStringEncoder::Flag::Stateless);
    // The bytes of one character; none when the page does not have it.
    const auto bytesOf = [&](char32_t code) -> std::optional<QByteArray> {
        if (page.m_table != nullptr) {
            const auto known = code <= 0xffff ? page.m_table->bytes.constFind(static_cast<ushort>(code))
                                              : page.m_table->bytes.constEnd();
            return known == page.m_table->bytes.constEnd() ? std::nullopt : std::optional(QByteArray(1, known.value()));
        }
        const QString character = QString::fromUcs4(&code, 1);
        const QByteArray encoded = encoder(character);
        return DecodeText(encoded, page) == character ? std::optional(encoded) : std::nullopt;
    };
    QByteArray bytes;
    bytes.reserve(text.size());
    QString missing;
    const uint plain =
        page.m_table != nullptr || page.m_name == u"UTF-8" ? 0x80 : 0; // below it a character is its byte
    for (const uint code : text.toUcs4()) {
        if (code < plain) {
            bytes += static_cast<char>(code);
        } else if (const auto encoded = bytesOf(code)) {
            bytes += *encoded;
        } else {
            const QString character = QString::fromUcs4(reinterpret_cast<const char32_t*>(&code), 1);
            bytes += '?';
            missing += missing.contains(character) ? QString() : character;
        }
    }
    if (lost != nullptr) {
        *lost = missing;
    } else if (!missing.isEmpty()) {
        throw ImportError(QStringLiteral("il carattere '%1' non esiste nella codepage %2").arg(missing, page.m_name));
    }
    return bytes;
}
