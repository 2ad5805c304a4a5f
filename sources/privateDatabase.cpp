#include "sources/privateDatabase.h"

#include "sql/errors.h"

#include <sqlite3.h>

namespace sources {

namespace {

QString Quoted(QString name) { return u'"' + name.replace(u'"', QLatin1String("\"\"")) + u'"'; }

/// Columns that hold texts compare without case, as everywhere in the program: a code is found whatever way it is
/// written.
QString Definition(const ColumnInfo& column) {
    const bool isText = column.type.contains(u"CHAR") || column.type == u"TEXT";
    return Quoted(column.name) + u' ' + column.type + (isText ? QStringLiteral(" COLLATE NOCASE") : QString());
}

/// The first parameter is the row number.
constexpr int FirstParameter = 2;

} // namespace

PrivateDatabase::PrivateDatabase() {
    // A database without a name is SQLite's own temporary file: it exists for this connection alone.
    const int code =
        sqlite3_open_v2("", &m_database, SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE | SQLITE_OPEN_NOMUTEX, nullptr);
    m_reader = AdoptSqlite(m_database);
    if (code != SQLITE_OK) {
        Fail();
    }
    Run(QStringLiteral("PRAGMA journal_mode = OFF"));
    Run(QStringLiteral("PRAGMA synchronous = OFF"));
    Run(QStringLiteral("PRAGMA cache_size = -8192"));
}

void PrivateDatabase::Load(const std::function<void()>& load) {
    Run(QStringLiteral("SAVEPOINT load"));
    try {
        load();
    } catch (...) {
        // Without a journal nothing can be taken back; what was loaded is never asked for.
        sqlite3_exec(m_database, "RELEASE load", nullptr, nullptr, nullptr);
        throw;
    }
    Run(QStringLiteral("RELEASE load"));
}

void PrivateDatabase::AddIndex(const QString& table, const QString& column) {
    Run(QStringLiteral("CREATE INDEX %1 ON %2 (%3)")
            .arg(Quoted(table + QStringLiteral("__") + column), Quoted(table), Quoted(column)));
}

void PrivateDatabase::Run(const QString& statement) {
    if (sqlite3_exec(m_database, statement.toUtf8().constData(), nullptr, nullptr, nullptr) != SQLITE_OK) {
        Fail();
    }
}

void PrivateDatabase::Fail() const {
    const int code = sqlite3_errcode(m_database);
    const bool wantsRoom = code == SQLITE_FULL || code == SQLITE_IOERR || code == SQLITE_CANTOPEN;
    const QString advice = code == SQLITE_TOOBIG ? QStringLiteral("un campo è più lungo di un miliardo di byte")
                           : wantsRoom
                               ? QStringLiteral("controllare lo spazio libero nella cartella dei file temporanei")
                               : QStringLiteral("la tabella ha una forma che un database non può tenere");
    throw ImportError(QStringLiteral("i dati di origine non si possono preparare nel database temporaneo (%1): %2")
                          .arg(QString::fromUtf8(sqlite3_errmsg(m_database)), advice));
}

void PrivateTable::Finalize::operator()(sqlite3_stmt* statement) const noexcept { sqlite3_finalize(statement); }

PrivateTable::PrivateTable(PrivateDatabase& database, const QString& name, const QVector<ColumnInfo>& columns)
    : m_database(database) {
    QStringList definitions{Quoted(RecordNumberColumn) + QStringLiteral(" INTEGER PRIMARY KEY")};
    QStringList parameters{QStringLiteral("?")};
    for (const ColumnInfo& column : columns) {
        definitions.append(Definition(column));
        parameters.append(QStringLiteral("?"));
    }
    database.Run(QStringLiteral("CREATE TABLE %1 (%2)").arg(Quoted(name), definitions.join(u',')));
    const QByteArray insert =
        QStringLiteral("INSERT INTO %1 VALUES (%2)").arg(Quoted(name), parameters.join(u',')).toUtf8();
    sqlite3_stmt* handle = nullptr;
    Check(sqlite3_prepare_v2(database.m_database, insert.constData(), -1, &handle, nullptr));
    m_insert.reset(handle);
}

void PrivateTable::SetText(int column, QByteArrayView utf8) {
    Check(sqlite3_bind_text64(m_insert.get(), column + FirstParameter, utf8.data() == nullptr ? "" : utf8.data(),
                              static_cast<sqlite3_uint64>(utf8.size()), SQLITE_TRANSIENT, SQLITE_UTF8));
}

void PrivateTable::SetInteger(int column, qint64 value) {
    Check(sqlite3_bind_int64(m_insert.get(), column + FirstParameter, value));
}

void PrivateTable::SetReal(int column, double value) {
    Check(sqlite3_bind_double(m_insert.get(), column + FirstParameter, value));
}

void PrivateTable::SetBytes(int column, QByteArrayView bytes) {
    Check(sqlite3_bind_blob64(m_insert.get(), column + FirstParameter, bytes.data() == nullptr ? "" : bytes.data(),
                              static_cast<sqlite3_uint64>(bytes.size()), SQLITE_TRANSIENT));
}

void PrivateTable::AddRow(qint64 number) {
    Check(sqlite3_bind_int64(m_insert.get(), 1, number));
    if (sqlite3_step(m_insert.get()) != SQLITE_DONE) {
        m_database.Fail();
    }
    Check(sqlite3_reset(m_insert.get()));
    Check(sqlite3_clear_bindings(m_insert.get()));
}

void PrivateTable::Check(int code) const {
    if (code != SQLITE_OK) {
        m_database.Fail();
    }
}

} // namespace sources
