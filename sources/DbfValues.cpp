#include "sources/DbfValues.h"

#include "sql/errors.h"

#include <QDateTime>
#include <QtEndian>

#include <charconv>
#include <cmath>

namespace sources {

namespace {

bool IsBlank(char byte) { return byte == ' ' || byte == '\0'; }

QByteArrayView WithoutTrailingBlanks(QByteArrayView bytes) {
    while (!bytes.isEmpty() && IsBlank(bytes.back())) {
        bytes.chop(1);
    }
    return bytes;
}

QByteArrayView WithoutBlanks(QByteArrayView bytes) {
    while (!bytes.isEmpty() && IsBlank(bytes.front())) {
        bytes = bytes.sliced(1);
    }
    return WithoutTrailingBlanks(bytes);
}

DbfValue Integer(qint64 value) { return {.kind = DbfValue::Kind::Integer, .text = {}, .integer = value}; }
DbfValue Real(double value) { return {.kind = DbfValue::Kind::Real, .text = {}, .real = value}; }

/// Whether all of the bytes were read as one number.
template<class Value>
bool Parse(QByteArrayView bytes, Value& value) {
    const char* end = bytes.data() + bytes.size();
    const auto result = std::from_chars(bytes.data(), end, value);
    return result.ec == std::errc() && result.ptr == end;
}

} // namespace

bool DbfValues::IsReadable(const DbfField& field) {
    const bool isDouble = field.type != 'B' || field.length == 8;
    return !field.isHidden && isDouble && QByteArrayView("CNFDTLIBYMV").contains(field.type);
}

QString DbfValues::DeclaredType(const DbfField& field) {
    switch (field.type) {
    case 'N':
    case 'F':
        return QStringLiteral("NUMERIC(%1,%2)").arg(field.length).arg(field.decimals);
    case 'Y':
        return QStringLiteral("NUMERIC(19,4)");
    case 'D':
        return QStringLiteral("DATE TEXT");
    case 'T':
        return QStringLiteral("DATETIME TEXT");
    case 'L':
        return QStringLiteral("BIT");
    case 'I':
        return QStringLiteral("INTEGER");
    case 'B':
        return QStringLiteral("FLOAT");
    case 'M':
        return QStringLiteral("TEXT");
    default:
        return QStringLiteral("CHAR(%1)").arg(field.length);
    }
}

DbfValue DbfValues::Read(const DbfField& field) {
    if (m_table.HasFlag(field.nullBit)) {
        return {};
    }
    try {
        return ReadRaw(field);
    } catch (ImportError& error) {
        error.AddContext(QStringLiteral("File '%1', riga %2, colonna '%3'")
                             .arg(m_table.FileName(), QString::number(m_table.RecordNumber()), field.name));
        throw;
    }
}

DbfValue DbfValues::ReadRaw(const DbfField& field) {
    const QByteArrayView bytes = m_table.Bytes(field);
    switch (field.type) {
    case 'N':
    case 'F':
        return Number(WithoutBlanks(bytes));
    case 'Y':
        return Real(static_cast<double>(qFromLittleEndian<qint64>(bytes.data())) / 10000.0);
    case 'D':
        return Date(WithoutBlanks(bytes));
    case 'T':
        return DateTime(bytes);
    case 'L':
        return Logical(WithoutBlanks(bytes));
    case 'I':
        return Integer(qFromLittleEndian<qint32>(bytes.data()));
    case 'B':
        return Double(bytes);
    case 'M':
        return Text(m_memo.Read(bytes));
    case 'V':
        // The last byte counts the text when it does not fill the column.
        return Text(m_table.HasFlag(field.lengthBit)
                        ? bytes.first(std::min<qsizetype>(static_cast<uchar>(bytes.back()), bytes.size() - 1))
                        : bytes);
    default:
        return Text(WithoutTrailingBlanks(bytes));
    }
}

DbfValue DbfValues::Scratch(QByteArray text) {
    m_text = std::move(text);
    return {.kind = DbfValue::Kind::Text, .text = m_text};
}

DbfValue DbfValues::Text(QByteArrayView bytes) {
    m_text.resize(0);
    if (!m_table.TextPage().AppendUtf8(bytes, m_text)) {
        throw ImportError(QStringLiteral("il testo non è scritto nella codepage %1; indicare la codepage della tabella")
                              .arg(m_table.TextPage().Name()));
    }
    return {.kind = DbfValue::Kind::Text, .text = m_text};
}

DbfValue DbfValues::Number(QByteArrayView bytes) {
    if (bytes.isEmpty()) {
        return {};
    }
    const QByteArrayView digits = bytes.front() == '+' ? bytes.sliced(1) : bytes;
    qint64 whole = 0;
    if (Parse(digits, whole)) {
        return Integer(whole);
    }
    double real = 0;
    // Words such as "inf" are numbers to the converter, but not to FoxPro.
    const bool startsLikeNumber = !digits.isEmpty() && QByteArrayView("0123456789.-").contains(digits.front());
    return startsLikeNumber && Parse(digits, real) && std::isfinite(real) ? Real(real) : Text(bytes);
}

DbfValue DbfValues::Logical(QByteArrayView bytes) {
    if (bytes.isEmpty() || bytes.front() == '?') {
        return {};
    }
    const bool isTrue = QByteArrayView("TtYy").contains(bytes.front());
    const bool isFalse = QByteArrayView("FfNn").contains(bytes.front());
    return isTrue || isFalse ? Integer(isTrue ? 1 : 0) : Text(bytes);
}

DbfValue DbfValues::Date(QByteArrayView bytes) {
    // Some programs write an empty date in zeros.
    if (bytes.isEmpty() || bytes == QByteArrayView("00000000")) {
        return {};
    }
    int number = 0;
    const bool isNumber = bytes.size() == 8 && bytes.front() != '-' && Parse(bytes, number);
    if (!isNumber || !QDate::isValid(number / 10000, number / 100 % 100, number % 100)) {
        return Text(bytes);
    }
    return {.kind = DbfValue::Kind::Text, .text = bytes};
}

DbfValue DbfValues::DateTime(QByteArrayView bytes) {
    constexpr int dayMilliseconds = 24 * 60 * 60 * 1000;
    const auto day = qFromLittleEndian<qint32>(bytes.data());
    const auto milliseconds = qFromLittleEndian<qint32>(bytes.data() + 4);
    if ((day == 0 && milliseconds == 0) || WithoutBlanks(bytes).isEmpty()) {
        return {};
    }
    const QDate date = QDate::fromJulianDay(day);
    if (date.year() < 1 || date.year() > 9999 || milliseconds < 0 || milliseconds >= dayMilliseconds) {
        return Scratch(QByteArray::number(day) + ':' + QByteArray::number(milliseconds));
    }
    // FoxPro counts in fractions of a day, so that a whole second may lack a millisecond.
    const QDateTime time = QDateTime(date, QTime(0, 0), Qt::UTC).addSecs((milliseconds + 500) / 1000);
    return Scratch(time.toString(QStringLiteral("yyyyMMdd hh:mm:ss")).toLatin1());
}

DbfValue DbfValues::Double(QByteArrayView bytes) {
    const auto value = qFromLittleEndian<double>(bytes.data());
    return std::isfinite(value) ? Real(value) : Scratch(QByteArray::number(value));
}

} // namespace sources
