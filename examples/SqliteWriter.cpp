#include "examples/SqliteWriter.h"

#include <QDateTime>
#include <QFile>
#include <QStringList>

#include <sqlite3.h>

namespace examples {

namespace {

QString Quoted(const QString& name) { return u'"' + name + u'"'; }

/// The type of a column as a server would declare it.
QString TypeOf(const Column& column) {
    switch (column.type) {
    case 'N':
    case 'F':
        return column.decimals == 0 ? QStringLiteral("INT")
                                    : QStringLiteral("DECIMAL(%1,%2)").arg(column.length).arg(column.decimals);
    case 'Y':
        return QStringLiteral("DECIMAL(19,4)");
    case 'D':
    case 'T':
        return QStringLiteral("DATETIME TEXT");
    case 'L':
        return QStringLiteral("BIT");
    case 'I':
        return QStringLiteral("INT");
    case 'B':
        return QStringLiteral("FLOAT");
    case 'M':
        return QStringLiteral("NTEXT COLLATE NOCASE");
    default:
        return QStringLiteral("NVARCHAR(%1) COLLATE NOCASE").arg(column.length);
    }
}

[[noreturn]] void Fail(sqlite3* database) {
    throw ExampleError(QStringLiteral("database SQLite: ") + QString::fromUtf8(sqlite3_errmsg(database)));
}

class SqliteTable final : public TableWriter {
public:
    SqliteTable(sqlite3* database, const QString& name, const QVector<Column>& columns)
        : TableWriter(name, columns),
          m_database(database) {
        const QString parameters = QStringLiteral("?,").repeated(columns.size()).chopped(1);
        const QByteArray insert = QStringLiteral("INSERT INTO %1 VALUES (%2)").arg(Quoted(name), parameters).toUtf8();
        Check(sqlite3_prepare_v2(database, insert.constData(), -1, &m_insert, nullptr));
    }
    ~SqliteTable() override { sqlite3_finalize(m_insert); }
    SqliteTable(const SqliteTable&) = delete;
    SqliteTable& operator=(const SqliteTable&) = delete;

    void Finish() override {
        sqlite3_finalize(m_insert);
        m_insert = nullptr;
    }

protected:
    void Write(const QVector<QVariant>& row, bool isDeleted) override {
        if (isDeleted) {
            return;
        }
        for (int index = 0; index < row.size(); ++index) {
            Bind(index + 1, Columns()[index], row[index]);
        }
        if (sqlite3_step(m_insert) != SQLITE_DONE) {
            Fail(m_database);
        }
        sqlite3_reset(m_insert);
        sqlite3_clear_bindings(m_insert);
    }

private:
    void Bind(int parameter, const Column& column, const QVariant& value) {
        if (value.isNull()) {
            return;
        }
        switch (value.userType()) {
        case QMetaType::QDate:
        case QMetaType::QDateTime:
            return BindText(parameter, value.toDateTime().toString(QStringLiteral("yyyyMMdd hh:mm:ss")));
        case QMetaType::QString:
            return BindText(parameter, value.toString());
        case QMetaType::Double:
            // As many decimals as the column has, as a server keeps it.
            return Check(sqlite3_bind_double(m_insert, parameter,
                                             QByteArray::number(value.toDouble(), 'f', column.decimals).toDouble()));
        default:
            return Check(sqlite3_bind_int64(m_insert, parameter, value.toLongLong()));
        }
    }

    void BindText(int parameter, const QString& text) {
        const QByteArray utf8 = text.toUtf8();
        Check(
            sqlite3_bind_text(m_insert, parameter, utf8.constData(), static_cast<int>(utf8.size()), SQLITE_TRANSIENT));
    }

    void Check(int code) const {
        if (code != SQLITE_OK) {
            Fail(m_database);
        }
    }

    sqlite3* m_database;
    sqlite3_stmt* m_insert = nullptr;
};

} // namespace

SqliteFile::SqliteFile(const QString& path) {
    if (QFile::exists(path) && !QFile::remove(path)) {
        throw ExampleError(QStringLiteral("il file '%1' non si può sostituire").arg(path));
    }
    if (sqlite3_open(path.toUtf8().constData(), &m_database) != SQLITE_OK) {
        const QString message = QString::fromUtf8(sqlite3_errmsg(m_database));
        sqlite3_close(m_database);
        throw ExampleError(QStringLiteral("File '%1': %2").arg(path, message));
    }
    Run(QStringLiteral("PRAGMA journal_mode = OFF"));
    Run(QStringLiteral("PRAGMA synchronous = OFF"));
    Run(QStringLiteral("BEGIN"));
}

SqliteFile::~SqliteFile() { sqlite3_close_v2(m_database); }

std::unique_ptr<TableWriter> SqliteFile::Create(const QString& table, const QVector<Column>& columns) {
    QStringList definitions;
    for (const Column& column : columns) {
        definitions.append(Quoted(QLatin1String(column.name)) + u' ' + TypeOf(column));
    }
    Run(QStringLiteral("CREATE TABLE %1 (%2)").arg(Quoted(table), definitions.join(QStringLiteral(", "))));
    return std::make_unique<SqliteTable>(m_database, table, columns);
}

void SqliteFile::AddIndex(const QString& table, const QStringList& columns) {
    QStringList names;
    for (const QString& column : columns) {
        names.append(Quoted(column));
    }
    m_indexes.append(QStringLiteral("CREATE INDEX %1 ON %2 (%3)")
                         .arg(Quoted(table + u'_' + columns.join(u'_')), Quoted(table), names.join(u',')));
}

void SqliteFile::Finish() {
    for (const QString& index : std::as_const(m_indexes)) {
        Run(index);
    }
    Run(QStringLiteral("COMMIT"));
}

void SqliteFile::Run(const QString& statement) {
    if (sqlite3_exec(m_database, statement.toUtf8().constData(), nullptr, nullptr, nullptr) != SQLITE_OK) {
        Fail(m_database);
    }
}

} // namespace examples
