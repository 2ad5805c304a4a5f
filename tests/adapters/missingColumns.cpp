#include "tests/adapters/missingColumns.h"

#include "tests/adapters/partedColumn.h"

namespace {

const QString NothingWritten = QStringLiteral("Non è stato scritto nulla");

/// The columns of the tables that a line of a rehearsal reads, each of which can be taken away.
class SourceColumns {
public:
    explicit SourceColumns(Rehearsal& stage)
        : m_stage(stage) {
        for (const QString& table : TablesRead()) {
            for (const ColumnInfo& column : Source().GetColumns(table)) {
                m_columns[table].append(column.name);
                if (column.name != "_RIGA" && column.name != "_PADRE") { // the reader of the file makes it
                    m_all.append(table + '.' + column.name);
                }
            }
        }
    }

    const QStringList& All() const { return m_all; }
    /// Runs the line without some columns.
    const RunResult& RunWithout(const QStringList& columns) {
        QMap<QString, QStringList> taken;
        for (const QString& column : columns) {
            const auto [table, name] = PartedColumn(Source(), column);
            taken[table].append(name);
        }
        for (const auto& [table, names] : taken.asKeyValueRange()) {
            Change(ViewWithout(table, names));
        }
        if (m_stage.Get().Source) {
            m_stage.TakeLayout();
        }
        const RunResult& result = m_stage.Run({});
        for (const QString& table : taken.keys()) {
            Change(QString("DROP VIEW temp.[%1]").arg(table));
        }
        return result;
    }

private:
    ovConnection& Source() { return *m_stage.Get().Source; }

    /// What stands before the table, with other names for the columns that are taken away: SQLite reads the whole
    /// schema several times to rename a column itself.
    QString ViewWithout(const QString& table, const QStringList& taken) const {
        QStringList columns;
        for (const QString& column : m_columns.value(table)) {
            columns.append('[' + column + ']' + (taken.contains(column) ? " AS [TOLTA_" + column + ']' : QString()));
        }
        return QString("CREATE TEMP VIEW [%1] AS SELECT %2 FROM main.[%1]").arg(table, columns.join(", "));
    }
    void Change(const QString& statement) {
        Source().ReadOnly = false;
        Source().Execute(statement);
        Source().ReadOnly = true;
    }
    QStringList TablesRead() {
        if (!m_stage.Get().Source) {
            return {}; // the procedure has closed it: it opens its own
        }
        QString statements;
        Source().Trace = [&statements](const QString& statement) { statements += statement + '\n'; };
        m_stage.Run({});
        Source().Trace = {};
        QStringList tables = Source().GetTables();
        tables.removeIf([&](const QString& table) { return !statements.contains(table, Qt::CaseInsensitive); });
        return tables;
    }

    Rehearsal& m_stage;
    QMap<QString, QStringList> m_columns; ///< of each table
    QStringList m_all;
};

bool EndsBefore(const RunResult& result) {
    return result.outcome == RunResult::Outcome::Failed && result.errors.join(' ').contains(NothingWritten) &&
           result.tables.isEmpty() && result.emptied.isEmpty();
}

/// Whether the log tells that the column is not there, and what is not filled in for it.
bool IsTold(Rehearsal& stage, const QString& column) {
    const QString log = stage.Log();
    return log.contains("COLONNE CHE MANCANO NELL'ORIGINE: ") && log.contains(column, Qt::CaseInsensitive);
}

/// Whether two rows differ in values only that one of them lacks.
bool LacksValues(const QString& whole, const QString& row) {
    const QStringList left = whole.split('|');
    const QStringList right = row.split('|');
    if (left.size() != right.size()) {
        return false;
    }
    for (qsizetype i = 0; i < left.size(); ++i) {
        const QString& value = right.at(i);
        if (left.at(i) != value && value != "NULL" && !value.isEmpty() && value != "0") {
            return false;
        }
    }
    return true;
}

/// Whether a run without a column left what the whole source leaves, but for values of the column.
bool IsSameWithout(Rehearsal& stage, const RunResult& result) {
    const QStringList rows = stage.Rows();
    if (result.outcome != stage.Clean.outcome || result.givenUpCount != stage.Clean.givenUpCount ||
        rows.size() != stage.CleanRows.size()) {
        return false;
    }
    for (qsizetype i = 0; i < rows.size(); ++i) {
        if (!LacksValues(stage.CleanRows.at(i), rows.at(i))) {
            return false;
        }
    }
    return true;
}

} // namespace

QString WrongWithoutColumns(Rehearsal& stage) {
    SourceColumns source(stage);
    const QString told = source.RunWithout(source.All()).errors.join('\n');
    QStringList named;
    QStringList others;
    for (const QString& column : source.All()) {
        (told.contains("'" + column + "'", Qt::CaseInsensitive) ? named : others).append(column);
    }
    QStringList wrong;
    // One run for all that no check names: they are hardly ever needed.
    if (source.RunWithout(others).outcome != stage.Clean.outcome || stage.Rows() != stage.CleanRows) {
        named += others;
    }
    for (const QString& column : std::as_const(named)) {
        const RunResult& result = source.RunWithout({column});
        if (!stage.Lets("optional " + column) && !EndsBefore(result) && !IsTold(stage, column) &&
            !IsSameWithout(stage, result)) {
            QStringList rows = stage.Rows();
            rows.removeIf([&](const QString& row) { return stage.CleanRows.contains(row); });
            wrong.append(column + ": " +
                         result.errors.value(0, "it goes on, and other rows come of it: " + rows.value(0)));
        }
    }
    return wrong.isEmpty() ? QString() : "without a column of the source:\n" + wrong.join('\n');
}
