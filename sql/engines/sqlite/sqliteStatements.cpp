#include "sql/engines/sqlite/sqliteStatements.h"

#include "sql/engines/sqlite/sqliteError.h"
#include "sql/text/dialect.h"

#include <sqlite3.h>

#include <algorithm>
#include <cstring>
#include <utility>

namespace {

constexpr qsizetype MostKept = 256;

/// SQLite does not copy the texts: they live as long as the prepared statement holds them.
void BindText(sqlite3_stmt* statement, int place, const QByteArray& text) {
    sqlite3_bind_text64(statement, place, text.constData(), static_cast<sqlite3_uint64>(text.size()), SQLITE_STATIC,
                        SQLITE_UTF8);
}

/// A whole number beyond 64 bits goes as its digits: a text column keeps them all, as one of SQL Server does, and a
/// numeric column makes of them the nearest number that SQLite has.
void Bind(sqlite3_stmt* statement, int place, const StatementShape::Value& value) {
    using Kind = StatementShape::Value::Kind;
    switch (value.kind) {
    case Kind::Text:
    case Kind::Digits:
        BindText(statement, place, value.bytes);
        break;
    case Kind::Integer:
        sqlite3_bind_int64(statement, place, value.integer);
        break;
    case Kind::Decimal:
    case Kind::Float:
        sqlite3_bind_double(statement, place, value.real);
        break;
    case Kind::Null:
        sqlite3_bind_null(statement, place);
        break;
    }
}

void Bind(sqlite3_stmt* statement, const QVector<StatementShape::Value>& values) {
    int place = 0;
    for (const StatementShape::Value& value : values) {
        Bind(statement, ++place, value);
    }
}

PreparedStatement::Kind KindOf(const char* declaredType) {
    using Kind = PreparedStatement::Kind;
    if (declaredType == nullptr) {
        return Kind::Plain;
    }
    if (sqlite3_strnicmp(declaredType, "DATETIME", 8) == 0 || sqlite3_strnicmp(declaredType, "TIMESTAMP", 9) == 0) {
        return Kind::DateTime;
    }
    if (sqlite3_strnicmp(declaredType, "DATE", 4) == 0) {
        return Kind::Date;
    }
    return sqlite3_strnicmp(declaredType, "BIT", 3) == 0 ? Kind::Bit : Kind::Plain;
}

} // namespace

void PreparedStatement::Describe() {
    const int compilation = sqlite3_stmt_status(handle, SQLITE_STMTSTATUS_REPREPARE, 0);
    if (compilation == describedCompilation) {
        return;
    }
    const int count = sqlite3_column_count(handle);
    columns.clear();
    kinds.clear();
    positions.Clear();
    for (int column = 0; column < count; ++column) {
        columns.append(QString::fromUtf8(sqlite3_column_name(handle, column)));
        kinds.append(KindOf(sqlite3_column_decltype(handle, column)));
    }
    describedCompilation = compilation;
}

void GiveBackStatement::operator()(PreparedStatement* statement) const noexcept {
    SqliteStatements::GiveBack(statement);
}

SqliteStatement SqliteStatements::Prepare(const QString& statement) {
    return Prepare(StatementShape::Of(statement.toUtf8()));
}

SqliteStatement SqliteStatements::Prepare(StatementShape source) {
    PreparedStatement* prepared = m_kept.value(source.shape);
    if (prepared == nullptr || prepared->isTaken) {
        prepared = New(source, prepared == nullptr && source.isCommon);
        if (prepared == nullptr) {
            return {nullptr, {}};
        }
    }
    prepared->isTaken = true;
    prepared->lastUse = ++m_uses;
    prepared->source = std::move(source);
    Bind(prepared->handle, prepared->source.values);
    return SqliteStatement(prepared, {shared_from_this()});
}

/// Null for a text without a statement.
PreparedStatement* SqliteStatements::New(const StatementShape& source, bool isKept) {
    sqlite3_stmt* handle = Compile(source);
    if (handle == nullptr) {
        return nullptr;
    }
    auto* prepared = new PreparedStatement;
    prepared->handle = handle;
    prepared->isKept = isKept;
    if (isKept) {
        if (m_kept.size() >= MostKept) {
            ForgetOldest();
        }
        m_kept.insert(source.shape, prepared);
    }
    return prepared;
}

/// Rows of a table come in many shapes, as many as columns can be left out, but most in a few: these have to stay.
void SqliteStatements::ForgetOldest() noexcept {
    auto oldest = m_kept.end();
    for (auto each = m_kept.begin(); each != m_kept.end(); ++each) {
        const bool isOlder = oldest == m_kept.end() || (*each)->lastUse < (*oldest)->lastUse;
        oldest = isOlder && !(*each)->isTaken ? each : oldest;
    }
    if (oldest != m_kept.end()) {
        (*oldest)->isKept = false;
        GiveBack(*oldest);
        m_kept.erase(oldest);
    }
}

void SqliteStatements::GiveBack(PreparedStatement* statement) noexcept {
    if (statement->isKept) {
        sqlite3_reset(statement->handle);
        statement->isTaken = false;
        return;
    }
    sqlite3_finalize(statement->handle);
    delete statement;
}

void SqliteStatements::Clear() noexcept {
    for (PreparedStatement* statement : std::as_const(m_kept)) {
        statement->isKept = false;
        if (!statement->isTaken) {
            GiveBack(statement);
        }
    }
    m_kept.clear();
}

sqlite3_stmt* SqliteStatements::Compile(const StatementShape& source) {
    const QByteArray adapted = dialect::Adapt(QString::fromUtf8(source.shape), Dialect::Sqlite).toUtf8();
    sqlite3_stmt* handle = nullptr;
    const char* rest = nullptr;
    if (sqlite3_prepare_v2(m_database, adapted.constData(), static_cast<int>(adapted.size()) + 1, &handle, &rest) !=
        SQLITE_OK) {
        throw SqliteErrorOf(m_database, source.Text());
    }
    if (rest != nullptr && HasMore(rest)) {
        sqlite3_finalize(handle);
        throw SqlError(source.Text(), QStringLiteral("più istruzioni in un solo testo"),
                       QStringLiteral("SQLITE_MISUSE"));
    }
    return handle;
}

/// Whether another statement follows, so that it is not lost silently.
bool SqliteStatements::HasMore(const char* rest) const {
    while (*rest == ' ' || *rest == '\r' || *rest == '\n' || *rest == '\t' || *rest == ';') {
        ++rest;
    }
    if (*rest == '\0') {
        return false;
    }
    sqlite3_stmt* handle = nullptr;
    const int code = sqlite3_prepare_v2(m_database, rest, -1, &handle, nullptr);
    sqlite3_finalize(handle);
    return code != SQLITE_OK || handle != nullptr;
}
