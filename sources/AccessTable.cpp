#include "sources/AccessTable.h"

#include "sql/errors.h"
#include "sql/numberText.h"

#include <QDateTime>
#include <QtEndian>

#include <array>
#include <charconv>
#include <cmath>

namespace sources {

namespace {

constexpr int GuidSize = 16;
constexpr int NumericSize = 17;
constexpr int BigInteger = 0x13;        ///< "Numero grande", which the library does not name
constexpr int CalculatedHead = 20;      ///< bytes in front of the value of a calculated column
constexpr unsigned OffsetMask = 0x1fff; ///< of a row's place in its page, without its marks
constexpr quint32 LengthMask = 0x3fffffff;

template<class Value>
Value Read(QByteArrayView bytes) {
    return qFromLittleEndian<Value>(bytes.data());
}

/// A text that the library has allocated.
QString Owned(char* text) {
    const std::unique_ptr<char, decltype(&g_free)> owner(text, &g_free);
    return QString::fromLatin1(text);
}

/// The number that a person entered: 0.1 as a float of four bytes is 0.1, not the 0.100000001490116 that it is near to.
double Shortest(float value) {
    std::array<char, 32> text{};
    const auto end = std::to_chars(text.data(), text.data() + text.size(), value).ptr;
    double number = 0;
    std::from_chars(text.data(), end, number);
    return number;
}

void SetNumber(PrivateTable& target, int column, const QString& text) {
    const QVariant number = NumberOfText(text);
    if (number.userType() == QMetaType::LongLong) {
        target.SetInteger(column, number.toLongLong());
    } else if (number.userType() == QMetaType::Double) {
        target.SetReal(column, number.toDouble());
    } else {
        target.SetText(column, text.toLatin1());
    }
}

/// The type that the values of a column are kept under; empty for one that is not read. A decimal's would turn a text
/// of many digits into a number with fewer, was it not for the "BLOB".
QString DeclaredType(const MdbColumn& column, bool isUnicode) {
    switch (column.col_type) {
    case MDB_BOOL:
        return QStringLiteral("BIT");
    case MDB_BYTE:
    case MDB_INT:
    case MDB_LONGINT:
    case BigInteger:
        return QStringLiteral("INTEGER");
    case MDB_MONEY:
        return QStringLiteral("BLOB NUMERIC(19,4)");
    case MDB_NUMERIC:
        return QStringLiteral("BLOB NUMERIC(%1,%2)").arg(column.col_prec).arg(column.col_scale);
    case MDB_FLOAT:
    case MDB_DOUBLE:
        return QStringLiteral("FLOAT");
    case MDB_DATETIME:
        return QStringLiteral("DATETIME TEXT");
    case MDB_TEXT:
        return QStringLiteral("VARCHAR(%1)").arg(isUnicode ? column.col_size / 2 : column.col_size);
    case MDB_MEMO:
        return QStringLiteral("TEXT");
    case MDB_REPID:
        return QStringLiteral("CHAR(36)");
    case MDB_BINARY:
    case MDB_OLE:
        return QStringLiteral("BLOB");
    default:
        return {};
    }
}

/// The page of the texts of Access 97; later ones are Unicode, whatever page their file tells.
bool TellsPage(const MdbFile& file) { return file.jet_version == MDB_VER_JET3 && file.code_page != 0; }

QString PageOf(const MdbFile& file, const QString& codePage) {
    return TellsPage(file) ? QString::number(file.code_page) : codePage;
}

} // namespace

AccessTable::AccessTable(AccessDatabase& database, const AccessDatabase::Entry& entry,
                         const ConnectionSettings& settings)
    : m_handle(database.Handle()),
      m_isUnicode(m_handle->f->jet_version != MDB_VER_JET3),
      m_page(PageOf(*m_handle->f, PlainPage(settings))),
      m_untold(settings, m_isUnicode || TellsPage(*m_handle->f), database.FileName(), m_page.Name()),
      m_oddities(settings, QStringLiteral("file '%1', tabella '%2'").arg(database.FileName(), entry.name)),
      m_table(ReadAccessDefinition(entry.entry)),
      m_chunk(MDB_BIND_SIZE, '\0') {
    if (m_table == nullptr) {
        throw ImportError(QStringLiteral("la definizione della tabella è danneggiata: riparare il file con Access "
                                         "('Compatta e ripristina database')"));
    }
    ReadColumns();
}

MdbColumn& AccessTable::ColumnAt(int index) const {
    return *static_cast<MdbColumn*>(g_ptr_array_index(m_table->columns, index));
}

void AccessTable::ReadColumns() {
    for (int index = 0; index < static_cast<int>(m_table->num_cols); ++index) {
        const QString type = DeclaredType(ColumnAt(index), m_isUnicode);
        if (!type.isEmpty()) {
            m_columns.append({QString::fromUtf8(ColumnAt(index).name), type});
            m_indexes.append(index);
        } else {
            m_oddities.Add(QStringLiteral("COLONNA NON LETTA"), QString::fromUtf8(ColumnAt(index).name), 0,
                           QStringLiteral("è di un tipo che non si legge (allegati, elenchi di valori, data estesa)"));
        }
    }
    m_calculated = CalculatedColumns();
}

/// Reads on in the definition of a table, which may go on in further pages.
bool AccessTable::ReadDefinition(int& at, QByteArray& bytes) {
    constexpr int nextPageAt = 4;
    constexpr int head = 8; // of a further page
    for (char& byte : bytes) {
        if (at >= m_handle->fmt->pg_size) {
            const auto next = qFromLittleEndian<quint32>(m_handle->pg_buf + nextPageAt);
            if (next == 0 || mdb_read_pg(m_handle, next) == 0) {
                return false;
            }
            at = head;
        }
        byte = static_cast<char>(m_handle->pg_buf[at++]);
    }
    return true;
}

/// The library leaves out the mark of a column that it is calculated.
QSet<int> AccessTable::CalculatedColumns() {
    constexpr qsizetype marksAt = 16;
    constexpr int calculated = 0xc0;
    QSet<int> numbers;
    const MdbFormatConstants& format = *m_handle->fmt;
    QByteArray entry(format.tab_col_entry_size, '\0');
    int at = format.tab_cols_start_offset + static_cast<int>(m_table->num_real_idxs) * format.tab_ridx_entry_size;
    if (!m_isUnicode || entry.size() <= marksAt || mdb_read_pg(m_handle, m_table->entry->table_pg) == 0) {
        return numbers;
    }
    for (unsigned column = 0; column < m_table->num_cols && ReadDefinition(at, entry); ++column) {
        if ((entry.at(marksAt) & calculated) == calculated) {
            numbers.insert(qFromLittleEndian<quint16>(entry.constData() + format.col_num_offset));
        }
    }
    return numbers;
}

/// The place of a value in the row under way, without the head that calculated ones have.
MdbField AccessTable::ValueOf(int column) const {
    const int index = m_indexes.at(column);
    MdbField field = m_fields.at(static_cast<size_t>(index));
    const int type = ColumnAt(index).col_type;
    if (!m_calculated.contains(ColumnAt(index).col_num) || field.is_null != 0 || type == MDB_MEMO || type == MDB_OLE) {
        return field;
    }
    constexpr int lengthAt = 16;
    const QByteArrayView bytes = Bytes(field);
    const int length = bytes.size() >= CalculatedHead ? Read<qint32>(bytes.sliced(lengthAt)) : -1;
    if (length < 0 || length > bytes.size() - CalculatedHead || type == MDB_NUMERIC) {
        throw ImportError(QStringLiteral("il valore calcolato non si legge (%1 byte)").arg(field.siz));
    }
    field.start += CalculatedHead;
    field.siz = length;
    return field;
}

void AccessTable::CopyRows(PrivateTable& target) {
    m_row = 0;
    mdb_rewind_table(m_table.get());
    while (mdb_fetch_row(m_table.get()) != 0) {
        ++m_row;
        CopyRow(target);
        target.AddRow(m_row);
    }
    if (m_row > m_table->num_rows) {
        m_oddities.Add(
            QStringLiteral("RIGHE NON ANNUNCIATE"), QString(), 0,
            QStringLiteral("la definizione annuncia %1 righe, se ne leggono %2").arg(m_table->num_rows).arg(m_row));
    }
    m_oddities.Tell();
    if (m_row < m_table->num_rows) {
        throw ImportError(QStringLiteral("dovrebbe avere %1 righe, se ne leggono %2: riparare il file con Access "
                                         "('Compatta e ripristina database')")
                              .arg(m_table->num_rows)
                              .arg(m_row));
    }
}

void AccessTable::CopyRow(PrivateTable& target) {
    int start = 0;
    size_t length = 0;
    mdb_find_row(m_handle, static_cast<int>(m_table->cur_row) - 1, &start, &length);
    mdb_crack_row(m_table.get(), static_cast<int>(static_cast<unsigned>(start) & OffsetMask), length, m_fields.data());
    for (int column = 0; column < m_columns.size(); ++column) {
        try {
            CopyValue(target, column, ValueOf(column));
        } catch (const ImportError& error) {
            m_oddities.SpoilValue(target, column, m_row, error.Message());
        }
    }
}

/// The library takes the place of a value as the row tells it.
QByteArrayView AccessTable::Bytes(const MdbField& field) const {
    if (field.start < 0 || field.siz < 0 || field.start + field.siz > m_handle->fmt->pg_size) {
        throw ImportError(QStringLiteral("il valore è danneggiato (%1 byte)").arg(field.siz));
    }
    return {reinterpret_cast<const char*>(m_handle->pg_buf) + field.start, field.siz};
}

QByteArrayView AccessTable::Fixed(const MdbField& field, qsizetype size) const {
    const QByteArrayView bytes = Bytes(field);
    if (bytes.size() != size) {
        throw ImportError(QStringLiteral("il valore è danneggiato (%1 byte invece di %2)").arg(field.siz).arg(size));
    }
    return bytes;
}

void AccessTable::CopyValue(PrivateTable& target, int column, const MdbField& field) {
    MdbColumn& definition = ColumnAt(m_indexes.at(column));
    const bool isCalculated = m_calculated.contains(definition.col_num);
    if (definition.col_type == MDB_BOOL && !isCalculated) {
        target.SetInteger(column, field.is_null != 0 ? 0 : 1); // the mark of Null is the value
        return;
    }
    if (field.is_null != 0) {
        return;
    }
    switch (definition.col_type) {
    case MDB_BOOL:
        target.SetInteger(column, Read<quint8>(Fixed(field, 1)) != 0 ? 1 : 0);
        break;
    case BigInteger:
        target.SetInteger(column, Read<qint64>(Fixed(field, 8)));
        break;
    case MDB_BYTE:
        target.SetInteger(column, Read<quint8>(Fixed(field, 1)));
        break;
    case MDB_INT:
        target.SetInteger(column, Read<qint16>(Fixed(field, 2)));
        break;
    case MDB_LONGINT:
        target.SetInteger(column, Read<qint32>(Fixed(field, 4)));
        break;
    case MDB_MONEY:
        Fixed(field, 8);
        SetNumber(target, column, Owned(mdb_money_to_string(m_handle, field.start)));
        break;
    case MDB_NUMERIC:
        Fixed(field, NumericSize);
        SetNumber(target, column,
                  Owned(mdb_numeric_to_string(m_handle, field.start, definition.col_scale, definition.col_prec)));
        break;
    case MDB_FLOAT:
        target.SetReal(column, Shortest(Read<float>(Fixed(field, 4))));
        break;
    case MDB_DOUBLE:
        target.SetReal(column, Read<double>(Fixed(field, 8)));
        break;
    case MDB_DATETIME:
        CopyDateTime(target, column, Read<double>(Fixed(field, 8)));
        break;
    case MDB_REPID:
        Fixed(field, GuidSize);
        target.SetText(column,
                       Owned(mdb_uuid_to_string_fmt(m_handle->pg_buf, field.start, MDB_NOBRACES_4_2_2_2_6)).toLatin1());
        break;
    case MDB_BINARY:
        target.SetBytes(column, Bytes(field));
        break;
    case MDB_OLE:
        target.SetBytes(column, LongValue(definition, field));
        break;
    case MDB_MEMO:
        CopyText(target, column, LongValue(definition, field).mid(isCalculated ? CalculatedHead : 0));
        break;
    default:
        CopyText(target, column, Bytes(field));
    }
}

void AccessTable::CopyText(PrivateTable& target, int column, QByteArrayView bytes) {
    QByteArray utf8;
    if (!m_isUnicode) {
        if (!m_page.AppendUtf8(bytes, utf8)) {
            throw ImportError(QStringLiteral("il testo non è in %1").arg(m_page.Name()));
        }
    } else if (!bytes.isEmpty()) {
        // Compressed, each byte is a character, which takes up to three bytes, and the library wants one more.
        utf8.resize(bytes.size() * 3 + 1);
        utf8.resize(mdb_unicode2ascii(m_handle, bytes.data(), static_cast<size_t>(bytes.size()), utf8.data(),
                                      static_cast<size_t>(utf8.size())));
    }
    m_untold.Look(utf8, m_row, m_columns.at(column).name);
    target.SetText(column, utf8);
}

/// Days count from 30 December 1899; of a day before it the time of day counts forward all the same.
void AccessTable::CopyDateTime(PrivateTable& target, int column, double days) {
    constexpr double SecondsOfDay = 86400;
    constexpr double FirstDay = -657434;  // 1 January 100
    constexpr double EndOfDays = 2958466; // the day after 31 December 9999
    if (!(days > FirstDay - 1 && days < EndOfDays)) {
        throw ImportError(QStringLiteral("il valore %1 non è una data").arg(days));
    }
    const double day = std::trunc(days);
    const auto seconds = static_cast<qint64>(std::round(std::abs(days - day) * SecondsOfDay));
    const QDateTime moment =
        QDateTime(QDate(1899, 12, 30).addDays(static_cast<qint64>(day)), QTime(0, 0), Qt::UTC).addSecs(seconds);
    target.SetText(column, moment.toString(QStringLiteral("yyyyMMdd hh:mm:ss")).toLatin1());
}

/// A long value stands behind its head in the row, or in one row of another page, or in a chain of them.
QByteArray AccessTable::LongValue(MdbColumn& column, const MdbField& field) {
    const QByteArrayView bytes = Bytes(field);
    if (bytes.size() < MDB_MEMO_OVERHEAD) {
        throw ImportError(QStringLiteral("il valore è danneggiato (%1 byte)").arg(field.siz));
    }
    std::array<char, MDB_MEMO_OVERHEAD> head{};
    std::copy_n(bytes.begin(), head.size(), head.begin());
    const auto length = static_cast<qsizetype>(Read<quint32>(head) & LengthMask);
    column.cur_value_start = field.start;
    column.cur_value_len = field.siz;
    column.bind_ptr = m_chunk.data();
    QByteArray value;
    for (size_t part = mdb_ole_read(m_handle, &column, head.data(), MDB_BIND_SIZE); part > 0 && value.size() <= length;
         part = mdb_ole_read_next(m_handle, &column, head.data())) {
        value.append(m_chunk.constData(), static_cast<qsizetype>(part));
    }
    column.bind_ptr = nullptr;
    if (value.size() != length) {
        throw ImportError(QStringLiteral("il testo o l'oggetto è danneggiato (%1 byte, se ne leggono %2)")
                              .arg(length)
                              .arg(value.size()));
    }
    return value;
}

} // namespace sources
