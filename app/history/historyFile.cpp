#include "app/history/historyFile.h"

#include "sql/ownFile.h"
#include "sql/Transaction.h"

#include <QDir>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QLocale>

#include <array>

namespace history {

namespace {

constexpr int TellsTouched = 1; ///< version of a file whose procedures tell the tables that they have touched

const QStringList& Tables() {
    static const QStringList tables{
        // NOLINTNEXTLINE(bugprone-suspicious-missing-comma): each goes over several lines
        "CREATE TABLE IF NOT EXISTS runs (id INTEGER PRIMARY KEY AUTOINCREMENT, started TEXT, ended TEXT, worker TEXT, "
        "version TEXT, company TEXT, company_name TEXT, origin TEXT, data TEXT, work TEXT, source TEXT, layout TEXT, "
        "code TEXT, options TEXT, trial INTEGER, ending INTEGER, log_file TEXT, log TEXT, partial INTEGER, resumes "
        "INTEGER, target INTEGER)",
        // databases of Quadrix that runs have written to
        "CREATE TABLE IF NOT EXISTS written_databases (id INTEGER PRIMARY KEY AUTOINCREMENT, place TEXT, identity "
        "INTEGER)",
        "CREATE TABLE IF NOT EXISTS procedures (id INTEGER PRIMARY KEY AUTOINCREMENT, run INTEGER, module TEXT, "
        "name TEXT, result TEXT, reached_loop INTEGER, reached_rows INTEGER, reached_last TEXT, undone TEXT, origin "
        "TEXT, reached_change INTEGER)", // the last change in front of what was reached
        "CREATE INDEX IF NOT EXISTS procedures_run ON procedures (run)",
        "CREATE TABLE IF NOT EXISTS notes (id INTEGER PRIMARY KEY, procedure INTEGER, kind TEXT, source_row TEXT, "
        "note TEXT, done INTEGER DEFAULT 0)",
        "CREATE INDEX IF NOT EXISTS notes_procedure ON notes (procedure, kind)",
        "CREATE TABLE IF NOT EXISTS rejects (id INTEGER PRIMARY KEY, procedure INTEGER, source_row TEXT, "
        "source_table TEXT, source_key TEXT, number INTEGER, reason TEXT, row_values TEXT, "
        "done INTEGER DEFAULT 0, loop INTEGER, place INTEGER)",
        "CREATE INDEX IF NOT EXISTS rejects_procedure ON rejects (procedure)",
        "CREATE INDEX IF NOT EXISTS rejects_row ON rejects (source_row)",
        "CREATE TABLE IF NOT EXISTS imported_rejects (reject INTEGER, run INTEGER, mended TEXT, PRIMARY KEY (reject, "
        "run))",
        "CREATE TABLE IF NOT EXISTS open_codes (id INTEGER PRIMARY KEY, list TEXT, field TEXT, code TEXT, "
        "UNIQUE (list, field, code))",
        "CREATE TABLE IF NOT EXISTS waiting_rows (id INTEGER PRIMARY KEY, procedure INTEGER, code INTEGER, "
        "source_row TEXT)",
        "CREATE INDEX IF NOT EXISTS waiting_rows_code ON waiting_rows (procedure, code)",
        "CREATE TABLE IF NOT EXISTS changes (id INTEGER PRIMARY KEY, procedure INTEGER, kind INTEGER, "
        "target_table TEXT, target_id INTEGER, before TEXT, columns INTEGER, digest INTEGER, inserted TEXT, places "
        "TEXT)",
        "CREATE INDEX IF NOT EXISTS changes_procedure ON changes (procedure)",
        // rows that it had deleted, and that its taking back has not brought back under their numbers
        "CREATE TABLE IF NOT EXISTS left_away (id INTEGER PRIMARY KEY, procedure INTEGER, target_table TEXT, target_id "
        "INTEGER, before TEXT)",
        "CREATE TABLE IF NOT EXISTS column_lists (id INTEGER PRIMARY KEY, names TEXT UNIQUE)",
        // tables of the target that a procedure has written rows of, or emptied: whole (null), or of rows of those
        // numbers
        "CREATE TABLE IF NOT EXISTS touched_tables (procedure INTEGER, target_table TEXT, emptied INTEGER, "
        "emptied_rows TEXT, PRIMARY KEY (procedure, target_table, emptied))",
        "CREATE INDEX IF NOT EXISTS touched_tables_table ON touched_tables (target_table, emptied)",
    };
    return tables;
}

/// A value and what kind of value it is; a number as its text, of which no digit is lost.
QJsonArray TypedText(const QVariant& value) {
    if (value.isNull()) {
        return {};
    }
    const QString kind = QString::fromLatin1(value.metaType().name());
    if (value.typeId() == QMetaType::QByteArray) {
        return {kind, QString::fromLatin1(value.toByteArray().toBase64())};
    }
    if (value.typeId() == QMetaType::Double) {
        return {kind, QString::number(value.toDouble(), 'g', QLocale::FloatingPointShortest)};
    }
    const bool isTime = value.typeId() == QMetaType::QDateTime;
    return {kind, isTime ? value.toDateTime().toString(Qt::ISODateWithMs) : value.toString()};
}

QVariant ValueOf(const QJsonArray& typed) {
    if (typed.isEmpty()) {
        return {};
    }
    const QString text = typed.at(1).toString();
    const QMetaType type = QMetaType::fromName(typed.at(0).toString().toLatin1());
    if (type.id() == QMetaType::QByteArray) {
        return QByteArray::fromBase64(text.toLatin1());
    }
    if (type.id() == QMetaType::QDateTime) {
        return QDateTime::fromString(text, Qt::ISODateWithMs);
    }
    QVariant value(text);
    return value.convert(type) ? value : QVariant(text);
}

/// The tables that the procedures of a file have touched which did not tell them apart from what they wrote; rows that
/// went with them are not imported any more. Nothing is done twice.
void FillTouched(ovConnection& file) {
    Transaction transaction(file);
    file.Execute(
        QStringLiteral("INSERT OR IGNORE INTO touched_tables (procedure, target_table, emptied) SELECT DISTINCT "
                       "procedure, target_table, 0 FROM changes WHERE kind IN (%1, %2)")
            .arg(static_cast<int>(TargetChange::Kind::Inserted))
            .arg(static_cast<int>(TargetChange::Kind::Updated)));
    file.Execute(QStringLiteral("INSERT OR IGNORE INTO touched_tables (procedure, target_table, emptied) SELECT P.id, "
                                "json_extract(E.value, '$[0]'), 1 FROM procedures P JOIN runs R ON R.id = P.run, "
                                "json_each(P.result, '$.emptied') E WHERE R.trial = 0 AND P.result IS NOT NULL"));
    file.Execute(QString(u"DELETE FROM imported_rejects WHERE run IN (SELECT P.run" + EmptiedBehind() + u')'));
    file.Execute(QStringLiteral("PRAGMA user_version = %1").arg(TellsTouched));
    transaction.Keep();
}

/// A row given up was kept as imported by one run alone.
void KeepEveryImport(ovConnection& file) {
    if (file.ExecuteCommand(QStringLiteral("SELECT COUNT(*) FROM pragma_table_info('imported_rejects') WHERE pk > 0")) >
        1) {
        return;
    }
    Transaction transaction(file);
    file.Execute(QStringLiteral("ALTER TABLE imported_rejects RENAME TO imported_once"));
    file.Execute(
        QStringLiteral("CREATE TABLE imported_rejects (reject INTEGER, run INTEGER, mended TEXT, PRIMARY KEY (reject, "
                       "run))"));
    file.Execute(QStringLiteral("INSERT INTO imported_rejects SELECT reject, run, mended FROM imported_once"));
    file.Execute(QStringLiteral("DROP TABLE imported_once"));
    transaction.Keep();
}

/// Adds what tables have gained since a file was made.
void BringUpToDate(ovConnection& file) {
    static constexpr std::array<std::array<const char*, 3>, 11> gained{{{"changes", "inserted", "TEXT"},
                                                                        {"changes", "places", "TEXT"},
                                                                        {"runs", "partial", "INTEGER"},
                                                                        {"runs", "resumes", "INTEGER"},
                                                                        {"runs", "target", "INTEGER"},
                                                                        {"touched_tables", "emptied_rows", "TEXT"},
                                                                        {"procedures", "origin", "TEXT"},
                                                                        {"procedures", "reached_change", "INTEGER"},
                                                                        {"rejects", "loop", "INTEGER"},
                                                                        {"rejects", "place", "INTEGER"},
                                                                        {"imported_rejects", "mended", "TEXT"}}};
    for (const auto& [table, column, type] : gained) {
        if (file.ExecuteWC(Statement("SELECT 1 FROM pragma_table_info(?) WHERE name = ?",
                                     {QString::fromLatin1(table), QString::fromLatin1(column)}))
                .Eof()) {
            file.Execute(QStringLiteral("ALTER TABLE %1 ADD COLUMN %2 %3")
                             .arg(QLatin1String(table), QLatin1String(column), QLatin1String(type)));
        }
    }
    if (!file.GetColumns(QStringLiteral("codes")).isEmpty()) { // they stood there with their list and field in each row
        Transaction transaction(file);
        file.Execute(QStringLiteral("INSERT OR IGNORE INTO open_codes (list, field, code) SELECT DISTINCT list, field, "
                                    "code FROM codes"));
        file.Execute(QStringLiteral("INSERT INTO waiting_rows (procedure, code, source_row) SELECT C.procedure, O.id, "
                                    "C.source_row FROM codes C JOIN open_codes O ON O.list IS C.list AND O.field IS "
                                    "C.field AND O.code IS C.code ORDER BY C.id"));
        file.Execute(QStringLiteral("DROP TABLE codes"));
        transaction.Keep();
    }
    KeepEveryImport(file);
}

} // namespace

QString EmptiedBehind() {
    // What another company has emptied of a table of all companies may be of its own alone: the texts by language are.
    return QStringLiteral(
        " FROM procedures P JOIN runs R ON R.id = P.run JOIN touched_tables W ON W.procedure = P.id AND W.emptied = "
        "0 JOIN touched_tables E ON E.target_table = W.target_table AND E.emptied = 1 JOIN procedures L ON L.id = "
        "E.procedure AND L.run > P.run JOIN runs S ON S.id = L.run WHERE COALESCE(S.target = R.target, 1) = 1 AND "
        "(S.company = R.company OR (SUBSTR(W.target_table, 1, LENGTH(R.company) + 1) <> R.company || '_' AND "
        "W.target_table <> 'SYS_LNG'))");
}

QString FilePath(const QString& settingsFile) {
    return QFileInfo(settingsFile).absoluteDir().filePath(QStringLiteral("Cronologia.sqlite"));
}

std::unique_ptr<ovConnection> Open(const QString& path) {
    if (const QString obstacle = ownFile::Obstacle(path); !obstacle.isEmpty()) {
        throw ImportError(QStringLiteral("Cronologia '%1': %2").arg(path, obstacle));
    }
    auto file = std::make_unique<ovConnection>();
    file->Embedded = true;
    file->ProviderType = Provider::SqlServer;
    file->DatabaseName = path;
    file->OpenConnection();
    for (const QString& table : Tables()) {
        file->Execute(table);
    }
    BringUpToDate(*file);
    if (file->ExecuteCommand(QStringLiteral("PRAGMA user_version")) < TellsTouched) {
        FillTouched(*file);
    }
    return file;
}

SqlText Statement(QAnyStringView words, const QVariantList& values) {
    const QByteArray shape = words.visit([](auto view) {
        if constexpr (std::is_same_v<decltype(view), QStringView>) {
            return view.toUtf8();
        } else {
            return QByteArray(view.data(), view.size());
        }
    });
    SqlText statement(Provider::SqlServer, shape, values.size());
    for (const QVariant& value : values) {
        const bool isText = value.typeId() == QMetaType::QString && !value.isNull();
        isText ? statement.FillText(value.toString()) : static_cast<void>(statement.Fill(value, DataType::Long));
    }
    return statement;
}

QString TimeText(const QDateTime& time) { return time.toString(QStringLiteral("yyyy-MM-dd hh:mm:ss")); }

QDateTime TimeOf(const QVariant& value) {
    return QDateTime::fromString(value.toString(), QStringLiteral("yyyy-MM-dd hh:mm:ss"));
}

QString ValuesText(const QStringList& names, const QVector<QVariant>& values) {
    QJsonArray json;
    for (qsizetype i = 0; i < names.size(); ++i) {
        json.append(QJsonArray{names.at(i), TypedText(values.at(i))});
    }
    return QString::fromUtf8(QJsonDocument(json).toJson(QJsonDocument::Compact));
}

QVector<NamedValue> ValuesOf(const QString& text) {
    QVector<NamedValue> values;
    const QJsonArray all = QJsonDocument::fromJson(text.toUtf8()).array();
    for (const auto& each : all) {
        values.append({each.toArray().at(0).toString(), ValueOf(each.toArray().at(1).toArray())});
    }
    return values;
}

QString LockPath(const QString& path, qint64 run) {
    return QStringLiteral("%1.%2.lock").arg(path, QString::number(run));
}

QString PartialPath(const QString& path, qint64 run) {
    return QStringLiteral("%1.%2.parziale").arg(path, QString::number(run));
}

} // namespace history
