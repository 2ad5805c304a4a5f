#include "core/passwordScrambling.h"

#include "sql/CodePage.h"
#include "sql/errors.h"

#include <QRandomGenerator>

#include <array>

namespace {

constexpr int Bytes = 256;
constexpr int MostAttempts = 20000; ///< far beyond the number of keys: each of them has been drawn by then

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

bool IsAllowed(quint8 byte, bool printable) { return printable ? byte >= 32 && byte != 255 : byte != 0; }

bool AreAllowed(const QByteArray& bytes, bool printable) {
    return std::all_of(bytes.cbegin(), bytes.cend(),
                       [printable](char byte) { return IsAllowed(static_cast<quint8>(byte), printable); });
}

QByteArray Scrambled(const QByteArray& bytes, bool printable) {
    for (int attempt = 0; attempt < MostAttempts; ++attempt) {
        const auto key = static_cast<quint8>(QRandomGenerator::global()->bounded(1, Bytes));
        const QByteArray result = static_cast<char>(key) + Replaced(bytes, Substitution(key));
        if (AreAllowed(result, printable)) {
            return result;
        }
    }
    throw ImportError(QStringLiteral("La password è troppo lunga per essere mascherata"));
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
