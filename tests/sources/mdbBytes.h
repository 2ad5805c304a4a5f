#pragma once

#include "tests/sources/rawBytes.h"

#include <QByteArray>
#include <QtEndian>
#include <QVector>

#include <numeric>

/// Access databases made byte by byte, in the format of Access 2000 to 2003: for values that no sample file holds, and
/// for damage.
namespace mdbBytes {

constexpr qsizetype PageSize = 4096;

inline QByteArray Utf16(const QString& text) {
    QByteArray bytes;
    for (const QChar character : text) {
        bytes += RawBytes(character.unicode());
    }
    return bytes;
}

/// A column; `length` 0 makes it one of variable length.
struct Column {
    QString name;
    int type;
    int length;
    int precision = 0;
    int scale = 0;
    bool isCalculated = false;
};

/// A value of a calculated column: behind a head that tells its length.
inline QByteArray Calculated(const QByteArray& value) {
    return QByteArray(16, '\x5a') + RawBytes(static_cast<qint32>(value.size())) + value + QByteArray(3, '\0');
}

/// A value as its bytes; a null byte array is Null.
using Row = QVector<QByteArray>;

struct Table {
    QString name;
    QVector<Column> columns;
    QVector<Row> rows;
    int announced = -1; ///< rows that the definition tells; -1: those that there are
    int objectType = 1; ///< as in the list of objects: 1 table, 6 linked table
    int flags = 0;
};

/// Puts rows into a page, from its end to its start.
inline QByteArray RowPage(int type, quint32 owner, const QVector<QByteArray>& rows) {
    QByteArray page(PageSize, '\0');
    page[0] = static_cast<char>(type);
    page[1] = 1;
    qToLittleEndian(owner, page.data() + 4);
    qToLittleEndian(static_cast<quint16>(rows.size()), page.data() + 12);
    qsizetype start = PageSize;
    for (qsizetype row = 0; row < rows.size(); ++row) {
        start -= rows.at(row).size();
        page.replace(start, rows.at(row).size(), rows.at(row));
        qToLittleEndian(static_cast<quint16>(start), page.data() + 14 + 2 * row);
    }
    return page;
}

inline QByteArray RowBytes(const Table& table, const Row& values) {
    QByteArray fixed;
    QByteArray variable;
    QVector<quint16> starts;
    QByteArray present((table.columns.size() + 7) / 8, '\0');
    for (int column = 0; column < table.columns.size(); ++column) {
        const QByteArray& value = values.at(column);
        const Column& definition = table.columns.at(column);
        if (!value.isNull()) {
            present[column / 8] = static_cast<char>(present.at(column / 8) | 1 << column % 8);
        }
        if (definition.length > 0) {
            fixed += value.isNull() ? QByteArray(definition.length, '\0') : value;
        } else if (definition.type != 1 || definition.isCalculated) {
            starts.prepend(static_cast<quint16>(variable.size()));
            variable += value;
        }
    }
    const auto before = static_cast<quint16>(2 + fixed.size());
    QByteArray row = RawBytes(static_cast<quint16>(table.columns.size())) + fixed + variable;
    row += RawBytes(static_cast<quint16>(before + variable.size()));
    for (const quint16 start : std::as_const(starts)) {
        row += RawBytes(static_cast<quint16>(before + start));
    }
    return row + RawBytes(static_cast<quint16>(starts.size())) + present;
}

/// The page that defines a table, whose usage map is that row of page 1.
inline QByteArray DefinitionPage(const Table& table, int mapRow) {
    const auto count = static_cast<quint16>(table.columns.size());
    QByteArray page(63, '\0');
    page[0] = 2;
    page[1] = 1;
    const auto announced = table.announced < 0 ? static_cast<int>(table.rows.size()) : table.announced;
    qToLittleEndian(announced, page.data() + 16);
    page[40] = 'N';
    qToLittleEndian(count, page.data() + 41);
    qToLittleEndian(count, page.data() + 45);
    qToLittleEndian(1 << 8 | mapRow, page.data() + 55);
    qToLittleEndian(1 << 8 | mapRow, page.data() + 59);
    quint16 variables = 0;
    quint16 fixed = 0;
    QByteArray names;
    for (quint16 column = 0; column < count; ++column) {
        const Column& definition = table.columns.at(column);
        const bool isFixed = definition.length > 0 || (definition.type == 1 && !definition.isCalculated);
        QByteArray entry(25, '\0');
        entry[0] = static_cast<char>(definition.type);
        qToLittleEndian(column, entry.data() + 5);
        qToLittleEndian(isFixed ? quint16(0) : variables++, entry.data() + 7);
        qToLittleEndian(column, entry.data() + 9);
        entry[11] = static_cast<char>(definition.precision);
        entry[12] = static_cast<char>(definition.scale);
        entry[15] = isFixed ? 3 : 2;
        entry[16] = definition.isCalculated ? '\xc0' : '\0';
        qToLittleEndian(isFixed ? fixed : quint16(0), entry.data() + 21);
        qToLittleEndian(static_cast<quint16>(isFixed ? definition.length : 100), entry.data() + 23);
        fixed = static_cast<quint16>(fixed + definition.length);
        page += entry;
        names += RawBytes(static_cast<quint16>(2 * definition.name.size())) + Utf16(definition.name);
    }
    qToLittleEndian(variables, page.data() + 43);
    page += names;
    qToLittleEndian(static_cast<quint32>(page.size()), page.data() + 8);
    return page.leftJustified(PageSize, '\0');
}

/// The usage map of a table whose rows stand in these pages, the first of which has the lowest number.
inline QByteArray UsageMap(const QVector<int>& pages) {
    const int start = pages.first() / 8 * 8;
    QByteArray map(5 + (pages.last() - start) / 8 + 1, '\0');
    qToLittleEndian(start, map.data() + 1);
    for (const int page : pages) {
        char& bits = map.data()[5 + (page - start) / 8];
        bits = static_cast<char>(bits | 1 << page % 8);
    }
    return map;
}

/// The rows of a table as they are spread over pages; an empty table has one without rows.
inline QVector<QVector<QByteArray>> Paged(const Table& table) {
    constexpr qsizetype Head = 14;
    QVector<QVector<QByteArray>> pages(1);
    qsizetype room = PageSize - Head;
    for (const Row& row : table.rows) {
        const QByteArray bytes = RowBytes(table, row);
        const qsizetype needed = bytes.size() + 2;
        if (needed > room) {
            pages.append(QVector<QByteArray>());
            room = PageSize - Head;
        }
        room -= needed;
        pages.last().append(bytes);
    }
    return pages;
}

/// Scrambles or unscrambles bytes as every file's header is.
inline void Scramble(QByteArray& bytes, qsizetype from, qsizetype length) {
    const QByteArray key = QByteArray::fromHex("c7da396b");
    std::array<unsigned char, 256> state{};
    std::iota(state.begin(), state.end(), static_cast<unsigned char>(0));
    for (size_t i = 0, j = 0; i < 256; ++i) {
        j = (j + state.at(i) + static_cast<unsigned char>(key.at(static_cast<int>(i % 4)))) % 256;
        std::swap(state.at(i), state.at(j));
    }
    for (size_t at = 0, i = 0, j = 0; at < static_cast<size_t>(length); ++at) {
        i = (i + 1) % 256;
        j = (j + state.at(i)) % 256;
        std::swap(state.at(i), state.at(j));
        const int mask = state.at(static_cast<size_t>(state.at(i) + state.at(j)) % 256);
        char& byte = bytes.data()[from + static_cast<qsizetype>(at)];
        byte = static_cast<char>(byte ^ mask);
    }
}

inline QByteArray HeaderPage() {
    QByteArray page(PageSize, '\0');
    page.replace(1, 19, QByteArray("\1\0\0Standard Jet DB\0", 19));
    page[0x14] = 1;
    qToLittleEndian(quint16(9), page.data() + 0x3c); // a code page that is none: texts are Unicode here
    Scramble(page, 0x18, 128);
    return page;
}

/// A whole database. `longValues` are the rows of the page that follows those of the tables (`LongValuePage`), which
/// memos and objects point to.
inline QByteArray Database(const QVector<Table>& tables, const QVector<QByteArray>& longValues = {}) {
    constexpr int Long = 4;
    constexpr int Short = 3;
    constexpr int Text = 10;
    constexpr int Ole = 11;
    Table objects{"MSysObjects",
                  {{"Id", Long, 4}, {"Type", Short, 2}, {"Flags", Long, 4}, {"Name", Text, 0}, {"LvProp", Ole, 0}},
                  {}};
    QVector<QByteArray> maps{UsageMap({3})};
    QByteArray pages;
    QByteArray furtherPages; // behind the long values
    int nextPage = 4 + 2 * static_cast<int>(tables.size()) + 1;
    for (int index = 0; index < tables.size(); ++index) {
        const Table& table = tables.at(index);
        const int definition = 4 + 2 * index;
        objects.rows.append({RawBytes(definition), RawBytes(static_cast<qint16>(table.objectType)),
                             RawBytes(table.flags), Utf16(table.name), QByteArray()});
        const auto owner = static_cast<quint32>(definition);
        QVector<int> numbers{definition + 1};
        const QVector<QVector<QByteArray>> paged = Paged(table);
        pages += DefinitionPage(table, index + 1) + RowPage(1, owner, paged.first());
        for (const QVector<QByteArray>& rows : paged.mid(1)) {
            numbers.append(nextPage++);
            furtherPages += RowPage(1, owner, rows);
        }
        maps.append(UsageMap(numbers));
    }
    QVector<QByteArray> objectRows;
    for (const Row& row : std::as_const(objects.rows)) {
        objectRows.append(RowBytes(objects, row));
    }
    return HeaderPage() + RowPage(1, 0, maps) + DefinitionPage(objects, 0) + RowPage(1, 2, objectRows) + pages +
           RowPage(1, 0x4c41564c, longValues) + furtherPages;
}

/// The head of a long value: in the row itself, in one row of a page, or in a chain of rows, each of which begins with
/// the place of the next one.
enum class Kept : quint32 { Inline = 0x80000000, OneRow = 0x40000000, Chain = 0 };
inline QByteArray LongValue(Kept kept, int length, quint32 pageAndRow, const QByteArray& inlineValue = {}) {
    return RawBytes(static_cast<quint32>(kept) | static_cast<quint32>(length)) + RawBytes(pageAndRow) +
           RawBytes(quint32(0)) + inlineValue;
}
/// Where a row of the page of long values is, in a database of so many tables.
inline quint32 LongValueRow(int tables, int row) { return static_cast<quint32>((4 + 2 * tables) << 8 | row); }

} // namespace mdbBytes
