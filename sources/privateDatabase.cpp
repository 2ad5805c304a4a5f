#include "sources/privateDatabase.h"

#include "sources/unreadable.h"
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

/// What SQLite takes, without the row number.
constexpr qsizetype MostOfSqlite = 1999;

} // namespace

PrivateDatabase::PrivateDatabase() {
    PrepareSqlite();
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

void PrivateDatabase::Load(const QString& table, const std::function<void()>& load) {
    m_isInterrupted = false;
    Run(QStringLiteral("SAVEPOINT load"));
    try {
        load();
    } catch (...) {
        // Without a journal nothing can be taken back: what was loaded is thrown away.
        const QByteArray drop = QStringLiteral("DROP TABLE IF EXISTS %1").arg(Quoted(table)).toUtf8();
        sqlite3_exec(m_database, drop.constData(), nullptr, nullptr, nullptr);
        sqlite3_exec(m_database, "RELEASE load", nullptr, nullptr, nullptr);
        throw;
    }
    Run(QStringLiteral("RELEASE load"));
}

void PrivateDatabase::AddIndex(const QString& table, const QString& column) {
    Run(QStringLiteral("CREATE INDEX %1 ON %2 (%3)")
            .arg(Quoted(table + QStringLiteral("__") + column), Quoted(table), Quoted(column)));
}

void PrivateDatabase::Analyze(const QString& table) {
    Run(QStringLiteral("PRAGMA analysis_limit = 1000; ANALYZE ") + Quoted(table));
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

PrivateTable::PrivateTable(PrivateDatabase& database, QString name, const QVector<ColumnInfo>& columns,
                           QString numberColumn)
    : m_database(database),
      m_name(std::move(name)),
      m_numberColumn(std::move(numberColumn)),
      m_columns(columns) {
    if (columns.size() > MostOfSqlite) {
        throw ImportError(QStringLiteral("ha %1 colonne, se ne leggono al massimo %2: togliere quelle che non servono")
                              .arg(columns.size())
                              .arg(MostOfSqlite));
    }
    database.Run(Statement());
    PrepareInsert();
}

/// The statement that makes the table.
QString PrivateTable::Statement() const {
    QStringList definitions{Quoted(m_numberColumn) + QStringLiteral(" INTEGER PRIMARY KEY")};
    for (const ColumnInfo& column : m_columns) {
        definitions.append(Definition(column));
    }
    return QStringLiteral("CREATE TABLE %1 (%2)").arg(Quoted(m_name), definitions.join(u','));
}

void PrivateTable::PrepareInsert() {
    const QString parameters = QStringLiteral(",?").repeated(m_columns.size());
    m_insert = Prepare(QStringLiteral("INSERT INTO %1 VALUES (?%2)").arg(Quoted(m_name), parameters));
}

PrivateTable::Prepared PrivateTable::Prepare(const QString& statement) const {
    sqlite3_stmt* handle = nullptr;
    Check(sqlite3_prepare_v2(m_database.m_database, statement.toUtf8().constData(), -1, &handle, nullptr));
    return Prepared(handle);
}

void PrivateTable::AddColumns(const QVector<ColumnInfo>& columns) {
    if (m_columns.size() + columns.size() > MostOfSqlite) {
        throw ImportError(QStringLiteral("ha più di %1 colonne: togliere quelle che non servono").arg(MostOfSqlite));
    }
    Retype(m_columns + columns); // rows that are there already are Null in them
    PrepareInsert();
}

void PrivateTable::Retype(const QVector<ColumnInfo>& columns) {
    m_insert.reset();
    m_columns = columns;
    const auto literal = [](QString text) -> QString {
        return u'\'' + text.replace(u'\'', QLatin1String("''")) + u'\'';
    };
    m_database.Run(QStringLiteral("PRAGMA writable_schema = ON"));
    m_database.Run(QStringLiteral("UPDATE sqlite_schema SET sql = %1 WHERE type = 'table' AND name = %2")
                       .arg(literal(Statement()), literal(m_name)));
    m_database.Run(QStringLiteral("PRAGMA writable_schema = RESET"));
}

void PrivateTable::NumbersToTexts(int column) {
    const QString name = Quoted(m_columns.at(column).name);
    m_database.Run(QStringLiteral("UPDATE %1 SET %2 = CAST(%2 AS TEXT) WHERE typeof(%2) IN ('integer', 'real')")
                       .arg(Quoted(m_name), name));
}

void PrivateTable::RemoveMark(int column, char mark, const std::function<bool(QByteArrayView text)>& isOne) {
    const QString name = Quoted(m_columns.at(column).name);
    const QString sign{QLatin1Char(mark)};
    const Prepared select =
        Prepare(QStringLiteral("SELECT %1, %2 FROM %3 WHERE typeof(%2) = 'text' AND instr(%2, '%4') > 0")
                    .arg(Quoted(m_numberColumn), name, Quoted(m_name), sign));
    std::vector<qint64> rows;
    int step = sqlite3_step(select.get());
    for (; step == SQLITE_ROW; step = sqlite3_step(select.get())) {
        const auto* text = reinterpret_cast<const char*>(sqlite3_column_text(select.get(), 1));
        if (isOne({text, sqlite3_column_bytes(select.get(), 1)})) {
            rows.push_back(sqlite3_column_int64(select.get(), 0));
        }
    }
    Check(step == SQLITE_DONE ? SQLITE_OK : step);
    const Prepared update = Prepare(QStringLiteral("UPDATE %1 SET %2 = REPLACE(%2, '%3', '') WHERE %4 = ?")
                                        .arg(Quoted(m_name), name, sign, Quoted(m_numberColumn)));
    for (const qint64 row : rows) {
        Check(sqlite3_bind_int64(update.get(), 1, row));
        step = sqlite3_step(update.get());
        Check(step == SQLITE_DONE ? SQLITE_OK : step);
        Check(sqlite3_reset(update.get()));
    }
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

void PrivateTable::SetUnreadable(int column, const QString& reason) {
    std::vector<PrivateDatabase::Unreadable>& all = m_database.m_unreadable;
    if (!m_unreadable.contains(column)) {
        m_unreadable.insert(column, all.size());
        all.push_back({m_name, m_columns.at(column).name, 0, reason});
    }
    ++all[m_unreadable.value(column)].rows;
    SetBytes(column, UnreadableValue(reason));
}

void PrivateTable::AddRow(qint64 number) {
    if (m_database.m_isInterrupted) {
        throw SqlError(QString(), QStringLiteral("lettura interrotta"), QStringLiteral("SQLITE_INTERRUPT"));
    }
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
