#include "core/passwordScrambling.h"

#include "sql/CodePage.h"
#include "sql/errors.h"

#include <QRandomGenerator>

#include <array>

namespace {

constexpr int Bytes = 256;

using Table = std::array<quint8, Bytes>;

/// What each byte becomes under a key.
Table Substitution(quint8 key) {
    Table table{};
    for (int index = 0; index < Bytes; ++index) {
        const int spread = index / 2 * 10 + index % 2;
        table[index] = static_cast<quint8>(spread % 255 + spread / 255);
    }
    constexpr int Half = Bytes / 2;
    for (int index = 0; index < Half; ++index) {
        std::swap(table[index], table[index + Half]);
        table[index] = static_cast<quint8>(table[index] + key);
        table[index + Half] = static_cast<quint8>(table[index + Half] + key);
    }
    return table;
}

Table Inverse(const Table& table) {
    Table inverse{};
    for (int index = 0; index < Bytes; ++index) {
        inverse[table[index]] = static_cast<quint8>(index);
    }
    return inverse;
}

QByteArray Replaced(QByteArray bytes, const Table& table) {
    for (char& byte : bytes) {
        byte = static_cast<char>(table[static_cast<quint8>(byte)]);
    }
    return bytes;
}

/// Which bytes a scrambled text may have. NUL ends a text, and the ends of a line end a setting.
using Allowed = bool (*)(quint8 byte);

bool IsStorable(quint8 byte) { return byte != 0 && byte != '\n' && byte != '\r'; }

bool IsPrintable(quint8 byte) { return byte >= ' ' && byte != 255; }

/// Tries every key once, from a random one on; empty when none gives allowed bytes alone.
QByteArray Scrambled(const QByteArray& bytes, Allowed allowed) {
    const int first = QRandomGenerator::global()->bounded(Bytes);
    for (int step = 0; step < Bytes; ++step) {
        const auto key = static_cast<quint8>((first + step) % Bytes);
        const QByteArray result = static_cast<char>(key) + Replaced(bytes, Substitution(key));
        if (std::all_of(result.cbegin(), result.cend(),
                        [allowed](char byte) { return allowed(static_cast<quint8>(byte)); })) {
            return result;
        }
    }
    return {};
}

/// A password of many different characters has no key that makes all of them printable.
QByteArray Scrambled(const QByteArray& bytes, bool printable) {
    QByteArray result = printable ? Scrambled(bytes, &IsPrintable) : QByteArray();
    if (result.isEmpty()) {
        result = Scrambled(bytes, &IsStorable);
    }
    if (result.isEmpty()) {
        throw ImportError(QStringLiteral("La password ha troppi caratteri diversi per essere mascherata"));
    }
    return result;
}

} // namespace

QString ScramblePassword(const QString& text, Scrambling direction, bool printable) {
    if (text.isEmpty()) {
        return text;
    }
    const CodePage page;
    const QByteArray bytes = EncodeText(text, page);
    if (direction == Scrambling::Scramble) {
        return DecodeText(Scrambled(bytes, printable), page);
    }
    const auto key = static_cast<quint8>(bytes.front());
    return DecodeText(Replaced(bytes, Inverse(Substitution(key))).mid(1), page);
}
