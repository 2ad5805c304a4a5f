#include "tests/adapters/Fixture.h"

#include "adapters/contract/run/SourceLayout.h"
#include "core/Schema.h"
#include "sources/fileSource.h"
#include "sql/CodePage.h"
#include "sql/mod_ovTools.h"
#include "tests/adapters/fixtureFiles.h"
#include "tests/adapters/golden.h"
#include "tests/support/files.h"
#include "tests/support/procedures.h"
#include "tests/support/writtenStatements.h"

#include <QDir>
#include <QRegularExpression>
#include <QSet>

namespace {

const QString SourceDatabase = TestTarget::OfThisProgram("quadrix_source");

/// "name=a,b" of a line of run.txt.
QStringList ListOf(const QStringList& words, const QString& name) {
    for (const QString& word : words) {
        if (word.startsWith(name + '=')) {
            return word.mid(name.size() + 1).split(',');
        }
    }
    return {};
}

QString OutcomeText(RunResult::Outcome outcome) {
    switch (outcome) {
    case RunResult::Outcome::Done:
        return "done";
    case RunResult::Outcome::Failed:
        return "failed";
    case RunResult::Outcome::Cancelled:
        break;
    }
    return "cancelled";
}

} // namespace

Fixture::Fixture(QString folder, const contract::Origin& origin, TestTarget::On engine, SourceChange change,
                 const Names& names)
    : m_folder(std::move(folder)),
      m_file(RunFile::Of(m_folder)),
      m_origin(origin),
      m_target(engine),
      m_change(std::move(change)) {
    for (const auto& [name, renamed] : names.asKeyValueRange()) {
        m_names.insert(name.toUpper(), renamed);
    }
    MakeSource();
    const auto write = [this](const QString& name, QString text) {
        text.replace("%SOURCE%", m_source).replace("%FILES%", m_target.Folder.filePath("files"));
        WriteFile(m_target.Folder.filePath(name), text.toLatin1());
    };
    const QString own = Read("settings.ini");
    write("Quadrix.ini", own.isEmpty() ? "[IMPORT]\r\nDatabasename=%SOURCE%\r\n" : own);
    write("Solution.ini", Read("Solution.ini"));
    m_target.Get().Config.SetConfigFile(m_target.Folder.filePath("Quadrix.ini"));
    m_target.Db().ExecuteScript(Read("target.sql"));
    m_before = TargetRows();
    m_target.Db().Trace = [this](const QString& statement) { See(statement); };
}

/// Keeps what is run. When rows are committed depends on the clock too: that is left out.
void Fixture::See(const QString& statement) {
    static const QStringList ofTime{"BEGIN", "BEGIN TRANSACTION", "COMMIT", "SAVEPOINT QDX_ROW"};
    if (statement == "BEGIN") {
        FreeKeys();
    }
    m_tookBack = m_tookBack || statement.startsWith("ROLLBACK");
    if (!ofTime.contains(statement) && !statement.startsWith("ROLLBACK")) {
        AddStatement(statement);
    }
}

/// The keys of rows that were taken back are free again on the embedded database, but not on a server.
void Fixture::FreeKeys() {
    const auto trace = std::exchange(m_target.Db().Trace, {});
    const auto nextKeys = [this] {
        QMap<QString, QString> next;
        Recordset tables = m_target.Db().ExecuteWC("SELECT TABLE_NAME, AUTO_INCREMENT FROM information_schema.TABLES "
                                                   "WHERE TABLE_SCHEMA = DATABASE() AND AUTO_INCREMENT IS NOT NULL");
        for (; !tables.Eof(); tables.MoveNext()) {
            next[tables.Fields(0).Value().toString()] = tables.Fields(1).Value().toString();
        }
        return next;
    };
    QMap<QString, QString> next = nextKeys();
    if (std::exchange(m_tookBack, false)) {
        for (auto key = m_nextKeys.cbegin(); key != m_nextKeys.cend(); ++key) {
            if (next.value(key.key()) != key.value()) { // it cannot fall below that of the rows that are there
                m_target.Execute(QString("ALTER TABLE %1 AUTO_INCREMENT = %2").arg(key.key(), key.value()));
            }
        }
        next = nextKeys();
    }
    m_nextKeys = next;
    m_target.Db().Trace = trace;
}

QString Fixture::Read(const QString& name) const { return QString::fromUtf8(ReadFile(m_folder + '/' + name)); }

void Fixture::MakeSource() {
    if (QString script = Read("source.sql"); !script.isEmpty()) {
        m_source = m_target.Folder.filePath("source.sqlite");
        m_isServed = !m_target.Way().isEmpty() && !script.startsWith("-- a SQLite file");
        if (m_isServed) {
            TestTarget::MakeDatabase(SourceDatabase);
            WriteFile(m_source, {}); // the settings name it
        }
        ovConnection source;
        SetSource(source);
        source.OpenConnection();
        if (m_change) {
            static const QRegularExpression sized("VARCHAR\\(\\d+\\)");
            source.ExecuteScript(script.replace(sized, "TEXT"));
            m_change(source);
        } else {
            source.ExecuteScript(script);
        }
        RenameInDatabase(source);
        CopyFiles(m_folder + "/files", m_target.Folder.filePath("files"));
        return;
    }
    m_source = m_target.Folder.filePath("source");
    CopyFiles(m_folder + "/files", m_source);
    RenameInFiles();
    MakeFoxProTables(m_folder + "/tables", m_source,
                     [this](const QString& table, const QString& column) { return Renamed(table, column); });
}

/// Where the target is a server, so is the source. What the settings say of another way to it is forgotten.
void Fixture::SetSource(ovConnection& source) const {
    source.DSN.clear();
    source.ConnectionString.clear();
    if (!m_isServed) {
        source.Embedded = true;
        source.DatabaseName = m_source;
        if (source.ProviderType == Provider::Oracle) {
            source.ProviderType = Provider::SqlServer; // its dates are those that a SQLite file knows
        }
        return;
    }
    source.Embedded = false;
    MariaDbServer().Set(source, m_target.Way(), SourceDatabase);
}

QString Fixture::Renamed(const QString& table, const QString& column) const {
    return column.isEmpty() ? m_names.value(table.toUpper(), table)
                            : m_names.value((table + '.' + column).toUpper(), column);
}

/// The text files that are tables, and their first lines.
void Fixture::RenameInFiles() const {
    const QDir folder(m_source);
    for (const QString& file : m_names.isEmpty() ? QStringList() : folder.entryList({"*.CSV"}, QDir::Files)) {
        const QString table = QFileInfo(file).baseName();
        QString text = QString::fromLatin1(ReadFile(folder.filePath(file)));
        const QString head = text.section('\n', 0, 0);
        QStringList names = head.trimmed().split(';');
        for (QString& name : names) {
            name = Renamed(table, name);
        }
        WriteFile(folder.filePath(file), (names.join(';') + text.mid(head.trimmed().size())).toLatin1());
        QFile::rename(folder.filePath(file), folder.filePath(Renamed(table) + ".CSV"));
    }
}

void Fixture::RenameInDatabase(ovConnection& source) const {
    QMap<QString, QString> last; // tables keep their names until their columns are done
    for (const auto& [name, renamed] : m_names.asKeyValueRange()) {
        if (source.GetColumns(name.section('.', 0, 0)).isEmpty()) {
            continue; // of a procedure that the fixture does not run
        }
        if (name.contains('.')) {
            source.Execute(QString("ALTER TABLE [%1] RENAME COLUMN [%2] TO [%3]")
                               .arg(name.section('.', 0, 0), name.section('.', 1), renamed));
        } else {
            last.insert(name, renamed);
        }
    }
    for (const auto& [name, renamed] : last.asKeyValueRange()) {
        source.Execute(QString("ALTER TABLE [%1] RENAME TO [%2]").arg(name, renamed));
    }
}

void Fixture::WriteLayout(const QString& text) {
    const QString folder = m_target.Folder.filePath("Tracciati");
    QDir().mkpath(folder);
    WriteFile(sources::LayoutFile::PathOf(folder, m_origin.name), text.toUtf8());
}

void Fixture::Run() {
    for (const QString& line : m_file.lines) {
        RunLine(line);
    }
}

QStringList Fixture::Content() {
    QStringList rows = TargetRows({"RECORD_ID", "DTINS", "USMDF", "DTMDF"});
    rows.sort();
    return rows;
}

void Fixture::OpenSource(const ovConnection::FileOpener& open) {
    Session& session = m_target.Get();
    session.Source = std::make_unique<ovConnection>();
    session.Source->Errors = &session.Errors;
    session.Source->OpenFiles = open ? open : sources::OpenFileSource;
    const bool isScript = !Read("source.sql").isEmpty();
    const bool isChosen = !isScript && m_origin.source.prepare.place == contract::Place::Chosen;
    if (isChosen && m_target.Person.Files.empty()) { // the line has not told which
        const QDir files(m_source);
        m_target.Person.Files.push_back(files.filePath(files.entryList(QDir::Files).value(0)));
    }
    if (!m_origin.source.prepare(session, *session.Source)) {
        throw ImportError("L'origine non si è aperta");
    }
    if (m_isServed || (isScript && !session.Source->Embedded)) {
        SetSource(*session.Source);
    }
    contract::SourceLayout::Take(session, m_origin, *session.Source);
    session.Source->OpenConnection();
    if (m_change && Read("source.sql").isEmpty()) {
        m_change(*session.Source);
    }
    session.Source->ReadOnly = true;
    if (session.Source->ProviderType == Provider::SqlServer) {
        session.Source->Written = WrittenStatements();
    }
    session.Source->Trace = [this](const QString& statement) { AddStatement('(' + statement + ')'); };
}

void Fixture::TakeLayout() {
    Session& session = m_target.Get();
    session.Source->Layout.reset();
    contract::SourceLayout::Take(session, m_origin, *session.Source);
}

void Fixture::ChangeSource(const QString& statement) {
    ovConnection source;
    SetSource(source);
    source.OpenConnection();
    if (source.Execute(statement) == 0) {
        throw ImportError("La sorgente non è cambiata: " + statement);
    }
}

void Fixture::Answer(const QString& line) {
    const QStringList words = line.split(' ', Qt::SkipEmptyParts);
    for (const QString& answer : ListOf(words, "answers")) {
        m_target.Person.Answers.push_back(answer == "si");
    }
    for (const QString& input : ListOf(words, "inputs")) {
        m_target.Person.Inputs.emplace_back(input);
    }
    for (const QString& file : ListOf(words, "files")) {
        const QDir files(Read("source.sql").isEmpty() ? m_source : m_target.Folder.filePath("files"));
        m_target.Person.Files.push_back(files.filePath(file));
    }
}

void Fixture::Call(const QString& line) {
    const QStringList words = line.split(' ', Qt::SkipEmptyParts);
    RunProcedure(m_target.Get(), m_origin, words.first(), ListOf(words, "code").value(0), words.contains("reset"));
}

void Fixture::RunLine(const QString& line) {
    Session& session = m_target.Get();
    m_statements.append({line, {}});
    m_target.Person.Events.clear();
    session.Errors.Action = ErrorAction::Ignore;
    Answer(line);
    OpenSource();
    Call(line);
    session.Source.reset();
    if (m_tookBack &&
        !m_target.Way().isEmpty()) { // what is emptied before the next transaction leaves no trace of them
        FreeKeys();
    }
    session.Layout.reset();
    const RunResult& result = session.Results.last();
    m_outcome.append("== " + line + '\n' + OutcomeText(result.outcome) +
                     QString(": rows %1 = inserted %2 + updated %3 + skipped %4 + given up %5 + not reached %6")
                         .arg(result.sourceRows)
                         .arg(result.inserted)
                         .arg(result.updated)
                         .arg(result.skipped)
                         .arg(result.givenUpCount)
                         .arg(result.notReached));
    m_outcome += result.errors;
    m_outcome += m_target.Person.Events.filter(QRegularExpression("^(\\[|\\?|>|file|error|reported)"));
    m_outcome += NewLog();
}

QStringList Fixture::NewLog() {
    // The last line tells again what the account tells.
    static const QRegularExpression ending("[^\n]* - Fine [^\n]*\n?");
    const QString log = DecodeText(m_target.Log(), CodePage()).remove('\r');
    const QString added = log.startsWith(m_log) ? log.mid(m_log.size()) : log;
    m_log = log;
    const QString told = QString(added).remove(ending).trimmed();
    return told.isEmpty() ? QStringList() : QStringList{"-- log", told};
}

void Fixture::AddStatement(const QString& statement) {
    if (!m_statements.isEmpty()) {
        m_statements.last().statements.append(QString(statement).replace(m_target.Folder.path(), "%FOLDER%"));
    }
}

QStringList Fixture::TargetRows(const QSet<QString>& but) {
    if (m_tables.isEmpty()) {
        for (const schema::Table& table : schema::Tables()) {
            if (!m_target.Db().GetColumns(m_target.Db().GetFullTableName(table.name)).isEmpty()) {
                m_tables.append(table.name);
            }
        }
    }
    QStringList lines;
    for (const QString& table : std::as_const(m_tables)) {
        Recordset rows =
            m_target.Db().ExecuteWC("SELECT * FROM " + m_target.Db().GetFullTableName(table) + " ORDER BY RECORD_ID");
        for (; !rows.Eof(); rows.MoveNext()) {
            QString line = table;
            for (int i = 0; i < rows.Columns().size(); ++i) {
                const QVariant value = rows.Fields(i).Value();
                if (!value.isNull() && mod_ovTools::ToText(value) != "" && !but.contains(rows.Columns().at(i))) {
                    line += ' ' + rows.Columns().at(i) + '=' + mod_ovTools::ToText(value);
                }
            }
            lines.append(line);
        }
    }
    return lines;
}

QString Fixture::Outcome() {
    m_target.Db().Trace = {};
    const QSet<QString> before(m_before.begin(), m_before.end());
    QStringList outcome = m_outcome;
    outcome.append("== rows");
    for (const QString& row : TargetRows()) {
        if (!before.contains(row)) {
            outcome.append(row);
        }
    }
    return outcome.join('\n').replace(m_target.Folder.path(), "%FOLDER%") + '\n';
}

QString Fixture::Compare(const QString& name, const QString& content) const {
    if (qEnvironmentVariableIsSet("QUADRIX_REWRITE_GOLDEN")) {
        WriteFile(m_folder + '/' + name, content.toUtf8());
        return {};
    }
    return golden::FirstDifference(name, Read(name), content);
}
