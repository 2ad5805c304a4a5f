#pragma once

#include "tests/adapters/golden.h"
#include "tests/adapters/modules.h"

/// A small source of one origin, the procedures that are run on it and what must come of it. A folder with:
/// - "source.sql": statements that make the source: a database of the server that the target is on, else, or where the
///   file begins with "-- a SQLite file", a SQLite file; or "tables/NAME.txt": FoxPro tables; or "files/": taken as
///   they are.
/// - "settings.ini" (may be missing): settings of the program, with "%SOURCE%" for the path of the source and "%FILES%"
///   for the folder that "files/" are copied into beside a "source.sql".
/// - "target.sql" (may be missing): what the company holds before.
/// - "run.txt": see `RunFile`.
/// - "expected.txt", and "statements.sql" of a module that is looked at closely: what must come out. They are written
///   when QUADRIX_REWRITE_GOLDEN is set.
class Fixture {
public:
    /// Changes values of a source.
    using SourceChange = std::function<void(ovConnection& source)>;

    /// Other names that a source has: of tables, and of columns as "table.column".
    using Names = QMap<QString, QString>;

    /// @param change done once where the source is a database, each time that it is opened where it is files; the
    /// texts of a database can be of any length then
    Fixture(QString folder, const contract::Origin& origin, TestTarget::On engine = TestTarget::On::Embedded,
            SourceChange change = {}, const Names& names = {});

    /// Runs every procedure of "run.txt".
    void Run();
    /// Runs the procedure of one line of "run.txt".
    void RunLine(const QString& line);
    const RunFile& File() const { return m_file; }
    QStringList Lines() const { return m_file.lines; }
    /// Every row of the target but for its RECORD_ID and the marks of who wrote it when, sorted: "TABLE COLUMN=value
    /// ..".
    QStringList Content();
    /// Opens the source, as the window does before a procedure; `open` stands in for what opens its files.
    void OpenSource(const ovConnection::FileOpener& open = {});
    /// Forgets what runs have learned about the open source, as opening it again does.
    void TakeLayout();
    /// Changes a source that is a database between two runs.
    void ChangeSource(const QString& statement);
    /// Gives the operator the answers and inputs of a line.
    void Answer(const QString& line);
    /// Runs the procedure of a line over the source that is open; nothing is kept for `Outcome`.
    void Call(const QString& line);
    /// Messages, account, log lines and the rows that are in the target and were not before.
    QString Outcome();
    /// Writes the layout file of the origin.
    void WriteLayout(const QString& text);
    /// Every statement, the source's in brackets: one a line, repeated ones counted.
    QString Statements() const { return golden::Short(m_statements); }
    const QVector<RunResult>& Results() { return m_target.Get().Results; }
    TestTarget& Target() { return m_target; }

    /// Content of a file of the folder, UTF-8; empty when it is missing.
    QString Read(const QString& name) const;
    /// Compares with a file of the folder, or rewrites it. Returns the first difference; empty when there is none.
    QString Compare(const QString& name, const QString& content) const;

private:
    void MakeSource();
    void See(const QString& statement);
    void FreeKeys();
    void SetSource(ovConnection& source) const;
    void AddStatement(const QString& statement);
    /// What the log has gained.
    QStringList NewLog();
    void RenameInFiles() const;
    void RenameInDatabase(ovConnection& source) const;
    /// What the source calls a table, or a column of it.
    QString Renamed(const QString& table, const QString& column = {}) const;
    /// @param but columns that are left out
    QStringList TargetRows(const QSet<QString>& but = {});

    QString m_folder;
    RunFile m_file;
    const contract::Origin& m_origin;
    TestTarget m_target;
    SourceChange m_change;
    Names m_names; ///< by name in upper case
    QString m_source;
    bool m_isServed = false; ///< whether the source is a database of the server
    QVector<golden::Run> m_statements;
    QString m_log;
    QMap<QString, QString> m_nextKeys; ///< on a server, by table
    bool m_tookBack = false;           ///< rows were taken back since the last transaction began
    QStringList m_tables;              ///< of the schema, that the target has
    QStringList m_before;
    QStringList m_outcome;
};
