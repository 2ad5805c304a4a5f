#pragma once

#include "adapters/contract/run/Origin.h"
#include "tests/support/TestTarget.h"

/// The modules, each with an origin that stands for it: those of the list, and the template.
const QMap<QString, const contract::Origin*>& FixtureOrigins();
/// Folder of the fixture of a module.
QString FixtureFolder(const QString& module);
/// The data of a test: each module on each engine, as columns "module" and "engine".
void ModulesOnEngines();

/// A small source of one origin, the procedures that are run on it and what must come of it. A folder with:
/// - "source.sql": statements that make the source: a database of the server that the target is on, else, or where the
///   file begins with "-- a SQLite file", a SQLite file; or "tables/NAME.txt": FoxPro tables, the first line
///   "name C 6|price N 10 2|...", then one row a line with "|" between values ("*" in front: a deleted row; "\n" in a
///   memo is a line break); or "files/": taken as they are.
/// - "settings.ini" (may be missing): settings of the program, with "%SOURCE%" for the path of the source and "%FILES%"
///   for the folder that "files/" are copied into beside a "source.sql".
/// - "target.sql" (may be missing): what the company holds before.
/// - "run.txt": a line for each procedure: "NAME [reset] [code=X] [answers=si,no,..] [inputs=A,..]".
/// - "expected.txt" and "statements.sql": what must come out. They are written when QUADRIX_REWRITE_GOLDEN is set.
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
    /// The lines of "run.txt", without its comments.
    QStringList Lines() const;
    /// Every row of the target but for its RECORD_ID and the marks of who wrote it when, sorted: "TABLE COLUMN=value
    /// ..".
    QStringList Content();
    /// Opens the source, as the window does before a procedure; `open` stands in for what opens its files.
    void OpenSource(const ovConnection::FileOpener& open = {});
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
    /// Every statement, the source's as comments.
    const QString& Statements() const { return m_statements; }
    const QVector<RunResult>& Results() { return m_target.Get().Results; }
    TestTarget& Target() { return m_target; }

    /// Content of a file of the folder, UTF-8; empty when it is missing.
    QString Read(const QString& name) const;
    /// Compares with a file of the folder, or rewrites it. Returns the first difference; empty when there is none.
    QString Compare(const QString& name, const QString& content) const;

private:
    void MakeSource();
    void SetSource(ovConnection& source) const;
    void CopyFiles(const QString& to) const;
    void RenameInFiles() const;
    void RenameInDatabase(ovConnection& source) const;
    /// What the source calls a table, or a column of it.
    QString Renamed(const QString& table, const QString& column = {}) const;
    void MakeFoxProTables(const QString& from, const QString& to) const;
    /// @param but columns that are left out
    QStringList TargetRows(const QSet<QString>& but = {});

    QString m_folder;
    const contract::Origin& m_origin;
    TestTarget m_target;
    SourceChange m_change;
    Names m_names; ///< by name in upper case
    QString m_source;
    bool m_isServed = false; ///< whether the source is a database of the server
    QString m_statements;
    QStringList m_before;
    QStringList m_outcome;
};
