#include "sources/fileTables.h"

#include "sources/layout/queryParts.h"
#include "sources/unreadable.h"
#include "sql/errors.h"
#include "sql/names.h"

#include <QRegularExpression>
#include <QSet>

#include <algorithm>

namespace sources {

namespace {

bool IsPartOfName(QChar character) { return character.isLetterOrNumber() || character == u'_'; }

/// Whether a statement names a table, as a word of its own. Every query passes here for each table that is not read
/// yet: few of its words begin with the right letter.
bool Names(QStringView statement, QStringView table) {
    const QChar first = table.isEmpty() ? QChar() : table.front().toLower();
    for (qsizetype at = 0; at + table.size() <= statement.size(); ++at) {
        const QChar c = statement[at];
        if (c != first && c.toLower() != first) {
            continue;
        }
        const qsizetype end = at + table.size();
        const bool starts = at == 0 || !IsPartOfName(statement[at - 1]);
        if (starts && (end == statement.size() || !IsPartOfName(statement[end])) &&
            statement.sliced(at, table.size()).compare(table, Qt::CaseInsensitive) == 0) {
            return true;
        }
    }
    return false;
}

/// The rows of a query, some of whose values the file does not give.
class CheckedCursor final : public Cursor {
public:
    explicit CheckedCursor(std::unique_ptr<Cursor> cursor)
        : m_cursor(std::move(cursor)) {}
    bool Next() override { return m_cursor->Next(); }
    const QStringList& Columns() const override { return m_cursor->Columns(); }
    int IndexOf(QAnyStringView name) const override { return m_cursor->IndexOf(name); }
    QVariant Value(int column) const override {
        QVariant value = m_cursor->Value(column);
        if (const auto reason = ReasonOfUnreadable(value)) {
            throw ImportError(*reason);
        }
        return value;
    }

private:
    std::unique_ptr<Cursor> m_cursor;
};

/// Whether a mention is all of a column of the result, may be without the blanks around it: who asks for the value is
/// told then that it cannot be read.
bool IsShownAsItIs(const QString& statement, const std::deque<QueryPart>& parts, const QueryPart& part, int mention) {
    const bool isDerived =
        part.parent >= 0 &&
        std::ranges::any_of(parts[static_cast<size_t>(part.parent)].tables, [&](const TableUse& table) {
            return table.derived >= 0 && &parts[static_cast<size_t>(table.derived)] == &part;
        });
    if (part.parent >= 0 && !isDerived) {
        return false;
    }
    const auto item = std::ranges::find(part.items, mention, &SelectItem::mention);
    if (item != part.items.end()) {
        return !isDerived || item->alias.isEmpty();
    }
    static const QRegularExpression before("(,|\\bSELECT|\\bDISTINCT)\\s*([LR]?TRIM\\s*\\(\\s*)+$",
                                           QRegularExpression::CaseInsensitiveOption);
    static const QRegularExpression behind("^(\\s*\\))+\\s*(AS\\b|,|FROM\\b|$)",
                                           QRegularExpression::CaseInsensitiveOption);
    const Mention& shown = part.mentions[static_cast<size_t>(mention)];
    return !isDerived && shown.clause == Clause::Select && before.match(statement.left(shown.begin)).hasMatch() &&
           behind.match(statement.mid(shown.end)).hasMatch();
}

/// Whether a mention is one of a column of that table, as far as its qualifier tells.
bool IsOf(const std::deque<QueryPart>& parts, const Mention& mention, const PrivateDatabase::Unreadable& column) {
    if (!names::AreSame(mention.column, column.column)) {
        return false;
    }
    const auto isAnother = [&](const TableUse& table) {
        const QString& called = table.alias.isEmpty() ? table.name : table.alias;
        return table.derived < 0 && names::AreSame(called, mention.qualifier) &&
               !names::AreSame(table.name, column.table);
    };
    return std::ranges::none_of(parts,
                                [&](const QueryPart& part) { return std::ranges::any_of(part.tables, isAnother); });
}

/// A value that cannot be read is unequal to all others, and 0 to a function: its row would be missing, or wrong,
/// without a word. Raises its reason for a query that decides or reckons by its column; an order loses nothing.
void RefuseUses(const QString& statement, const std::vector<PrivateDatabase::Unreadable>& unreadable) {
    const std::deque<QueryPart> parts = ReadQuery(statement, TokensOf(statement));
    for (const QueryPart& part : parts) {
        for (int index = 0; index < static_cast<int>(part.mentions.size()); ++index) {
            const Mention& mention = part.mentions[static_cast<size_t>(index)];
            const auto column = std::ranges::find_if(unreadable, [&](const PrivateDatabase::Unreadable& each) {
                return IsOf(parts, mention, each) && Names(statement, each.table);
            });
            if (column == unreadable.end() || mention.clause == Clause::Order ||
                IsShownAsItIs(statement, parts, part, index)) {
                continue;
            }
            throw ImportError(
                QStringLiteral("%1; l'importazione sceglie o calcola in base a questa colonna (valori che non si "
                               "leggono: %2): correggerli nel file")
                    .arg(column->first, QString::number(column->rows)));
        }
    }
}

/// The private database of a file source, which grows by the tables that are asked for.
class FileTablesEngine final : public Engine {
public:
    FileTablesEngine(QString where, std::vector<FileTable> tables, const QStringList& wanted)
        : m_where(std::move(where)),
          m_pending(std::move(tables)) {
        KeepWanted(wanted);
        for (const FileTable& table : m_pending) {
            m_names += table.isListed ? QStringList(table.name) : QStringList();
        }
    }

    Dialect TextDialect() const override { return Dialect::Sqlite; }
    qint64 Run(const QString& statement) override {
        LoadNamed(statement);
        return m_database.Reader().Run(statement);
    }
    std::unique_ptr<Cursor> Query(const QString& statement) override {
        LoadNamed(statement);
        const auto& unreadable = m_database.UnreadableColumns();
        if (unreadable.empty()) {
            return m_database.Reader().Query(statement);
        }
        RefuseUses(statement, unreadable);
        return std::make_unique<CheckedCursor>(m_database.Reader().Query(statement));
    }
    std::unique_ptr<Cursor> QueryApart(const SqlText& query) override {
        const QByteArray& shape = query.Shape().shape;
        if (!m_loadedFor.contains(shape)) {
            LoadNamed(query.Text());
            m_loadedFor.insert(shape);
        }
        return m_database.UnreadableColumns().empty() ? m_database.Reader().QueryApart(query) : Query(query.Text());
    }
    void Begin() override { m_database.Reader().Begin(); }
    void Commit() override { m_database.Reader().Commit(); }
    void RollBack() override { m_database.Reader().RollBack(); }
    bool TransactionStands(bool afterFailure) override { return m_database.Reader().TransactionStands(afterFailure); }
    void SetMark() override { m_database.Reader().SetMark(); }
    void RollBackToMark() override { m_database.Reader().RollBackToMark(); }
    void Interrupt() noexcept override {
        m_database.InterruptLoad();
        m_database.Reader().Interrupt();
    }
    qint64 LastInsertId() override { return m_database.Reader().LastInsertId(); }
    QStringList Tables() override { return m_names; }
    QVector<ColumnInfo> Columns(const QString& table) override {
        LoadIf([&](const FileTable& pending) { return names::AreSame(pending.name, table); });
        return m_database.Reader().Columns(table);
    }
    void SetTriggersEnabled(const QString&, bool) override {} // tables of a file have none
    // Nobody else sees the private database.
    bool TakeLock(const QString&, const QString&) override { return true; }
    QString LockHolder(const QString&) override { return {}; }
    void ReleaseLock(const QString&) noexcept override {}

private:
    void KeepWanted(const QStringList& wanted) {
        if (wanted.isEmpty()) {
            return;
        }
        for (const QString& name : wanted) {
            const bool isThere = std::any_of(m_pending.cbegin(), m_pending.cend(),
                                             [&](const FileTable& table) { return names::AreSame(table.name, name); });
            m_missing += isThere ? QStringList() : QStringList(name);
        }
        if (m_missing.size() == wanted.size()) {
            throw ImportError(QStringLiteral("%1 non contiene nessuna delle tabelle da leggere (%2): controllare il "
                                             "percorso nelle impostazioni dell'origine")
                                  .arg(m_where, wanted.join(QStringLiteral(", "))));
        }
        std::erase_if(m_pending,
                      [&](const FileTable& table) { return !wanted.contains(table.name, Qt::CaseInsensitive); });
    }

    void LoadNamed(const QString& statement) {
        for (const QString& name : std::as_const(m_missing)) {
            if (Names(statement, name)) {
                throw ImportError(
                    QStringLiteral("%1 non contiene la tabella '%2': copiarla dall'origine").arg(m_where, name));
            }
        }
        LoadIf([&](const FileTable& table) { return Names(statement, table.name); });
    }

    template<class Condition>
    void LoadIf(const Condition& condition) {
        for (auto table = m_pending.begin(); table != m_pending.end();) {
            if (!condition(*table)) {
                ++table;
                continue;
            }
            Load(*table);
            table = m_pending.erase(table);
        }
    }

    /// A table whose file has failed stays pending with its error: half of it is never read.
    void Load(FileTable& table) {
        try {
            m_database.Load(table.name, [&] { table.load(m_database); });
        } catch (const ImportError& error) {
            table.load = [error](PrivateDatabase&) { throw error; };
            throw;
        }
    }

    QString m_where;
    std::vector<FileTable> m_pending; ///< not read yet
    QSet<QByteArray> m_loadedFor;     ///< shapes of queries whose tables are read
    QStringList m_missing;            ///< wanted tables that the source does not have
    QStringList m_names;
    PrivateDatabase m_database;
};

} // namespace

std::unique_ptr<Engine> OpenFileTables(const QString& where, std::vector<FileTable> tables,
                                       const ConnectionSettings& settings) {
    return std::make_unique<FileTablesEngine>(where, std::move(tables), settings.tables);
}

QFileInfoList FilesOf(const QString& folder, const QString& what) {
    const QDir dir(folder);
    if (folder.isEmpty() || !dir.exists()) {
        throw ImportError(QStringLiteral("la cartella '%1' %2 non esiste o non si può leggere; "
                                         "controllare il percorso nelle impostazioni dell'origine")
                              .arg(folder, what));
    }
    return dir.entryInfoList(QDir::Files | QDir::Hidden, QDir::Name);
}

std::unique_ptr<Engine> OpenFolderTables(const QString& folder, const QMap<QString, QStringList>& files,
                                         const FileLoader& load, const ConnectionSettings& settings) {
    std::vector<FileTable> tables;
    for (auto file = files.cbegin(); file != files.cend(); ++file) {
        const QString& name = file.key();
        const QStringList& paths = file.value();
        tables.push_back({name, [name, paths, load](PrivateDatabase& database) {
                              if (paths.size() > 1) {
                                  throw ImportError(
                                      QStringLiteral("la tabella '%1' sta in due file, '%2' e '%3': toglierne uno")
                                          .arg(name, paths[0], paths[1]));
                              }
                              load(database, name, paths.first());
                          }});
    }
    return OpenFileTables(QStringLiteral("la cartella '%1'").arg(folder), std::move(tables), settings);
}

void AddLookupIndexes(PrivateDatabase& database, const QString& table, const QVector<ColumnInfo>& columns,
                      const QStringList& lookupColumns) {
    for (const ColumnInfo& column : columns) {
        if (lookupColumns.contains(table + u'.' + column.name, Qt::CaseInsensitive)) {
            database.AddIndex(table, column.name);
        }
    }
    database.Analyze(table);
}

} // namespace sources
