#include "sql/engines/sqlite/sqliteCursor.h"

#include "sql/engines/sqlite/sqliteError.h"

#include <QDateTime>

#include <sqlite3.h>

namespace {

/// The number that a part of a text is; 0, which no part of a day is, when it holds anything but digits.
int NumberIn(QStringView text, qsizetype start, qsizetype digits) {
    int number = 0;
    for (const QChar c : text.sliced(start, digits)) {
        if (c < u'0' || c > u'9') {
            return 0;
        }
        number = number * 10 + (c.unicode() - u'0');
    }
    return number;
}

/// "2024-03-05" or "20240305" at the start of a text; an invalid date when it is neither.
QDate ReadDay(QStringView text) {
    if (text.size() >= 10 && text.at(4) == u'-') {
        return text.at(7) == u'-' ? QDate(NumberIn(text, 0, 4), NumberIn(text, 5, 2), NumberIn(text, 8, 2)) : QDate();
    }
    return text.size() >= 8 ? QDate(NumberIn(text, 0, 4), NumberIn(text, 4, 2), NumberIn(text, 6, 2)) : QDate();
}

/// The text as a date, or the text itself when it is none.
QVariant AsDate(const QString& text) {
    const bool whole = text.size() == 10 || text.size() == 8;
    const QDate day = whole ? ReadDay(text) : QDate();
    return day.isValid() ? QVariant(day) : QVariant(text);
}

/// The time of day as written, kept as UTC so that no clock change can move it.
QVariant AsDateTime(const QString& text) {
    const QDate day = ReadDay(text);
    if (!day.isValid()) {
        return text;
    }
    const int dayLength = text.at(4) == u'-' ? 10 : 8;
    if (text.size() == dayLength) {
        return QDateTime(day, QTime(0, 0), Qt::UTC);
    }
    const QTime time = QTime::fromString(text.mid(dayLength + 1), Qt::ISODate);
    return time.isValid() ? QVariant(QDateTime(day, time, Qt::UTC)) : QVariant(text);
}

} // namespace

SqliteCursor::SqliteCursor(sqlite3* database, SqliteStatement statement)
    : m_database(database),
      m_statement(std::move(statement)) {}

const QStringList& SqliteCursor::Columns() const {
    static const QStringList none;
    if (m_statement == nullptr) {
        return none;
    }
    if (!m_hasRow) {
        m_statement->Describe();
    }
    return m_statement->columns;
}

int SqliteCursor::IndexOf(QAnyStringView name) const {
    return m_statement == nullptr ? -1 : m_statement->positions.Of(name, Columns());
}

bool SqliteCursor::Next() {
    if (m_statement == nullptr || m_done) {
        return false;
    }
    const int code = sqlite3_step(m_statement->handle);
    if (code == SQLITE_ROW) {
        if (!m_hasRow) { // most look-ups never need it: they find no row; between rows nothing is compiled anew
            m_statement->Describe();
            m_hasRow = true;
        }
        return true;
    }
    if (code != SQLITE_DONE) {
        throw SqliteErrorOf(m_database, m_statement->source.Text());
    }
    m_done = true;
    sqlite3_reset(m_statement->handle);
    return false;
}

QVariant SqliteCursor::Value(int column) const {
    sqlite3_stmt* statement = m_statement->handle;
    switch (sqlite3_column_type(statement, column)) {
    case SQLITE_INTEGER: {
        const qint64 number = sqlite3_column_int64(statement, column);
        return m_statement->kinds.at(column) == PreparedStatement::Kind::Bit ? QVariant(number != 0) : QVariant(number);
    }
    case SQLITE_FLOAT:
        return sqlite3_column_double(statement, column);
    case SQLITE_TEXT: {
        const auto* utf8 = reinterpret_cast<const char*>(sqlite3_column_text(statement, column));
        QString text = QString::fromUtf8(utf8, sqlite3_column_bytes(statement, column));
        switch (m_statement->kinds.at(column)) {
        case PreparedStatement::Kind::Date:
            return AsDate(text);
        case PreparedStatement::Kind::DateTime:
            return AsDateTime(text);
        default:
            return text;
        }
    }
    case SQLITE_BLOB: {
        const auto* bytes = static_cast<const char*>(sqlite3_column_blob(statement, column));
        return QByteArray(bytes, sqlite3_column_bytes(statement, column));
    }
    default:
        return {};
    }
}
