#include "tests/demo/DemoOrigin.h"

#include "core/Schema.h"
#include "examples/examples.h"
#include "sql/errors.h"
#include "tests/adapters/fixtureFiles.h"
#include "tests/demo/accessCopy.h"
#include "tests/support/embedded.h"
#include "tests/support/files.h"
#include "tests/support/ScriptedOperator.h"

#include <QDir>
#include <QRegularExpression>

namespace {

using contract::Place;

/// "name=a,b" of a line of run.txt.
QStringList ListOf(const QStringList& words, const QString& name) {
    for (const QString& word : words) {
        if (word.startsWith(name + '=')) {
            return word.mid(name.size() + 1).split(',');
        }
    }
    return {};
}

constexpr qint64 ExampleRows = 50;

/// The example of an origin, which is called as its module; empty when there is none.
QString ExampleOf(const contract::Origin& origin) {
    const QString name = origin.module == "modImport_VS" ? "visualspace" : origin.module.section('_', 1).toLower();
    for (const examples::Example& example : examples::Examples()) {
        if (example.name == name) {
            return name;
        }
    }
    return {};
}

/// The tables of an example, in capitals.
QStringList TablesOf(const QString& path) {
    QStringList tables;
    if (QFileInfo(path).isDir()) {
        for (const QFileInfo& file : QDir(path).entryInfoList(QDir::Files)) {
            tables.append(file.baseName().toUpper());
        }
        return tables;
    }
    ovConnection database;
    for (const QString& table : OpenEmbedded(database, path).GetTables()) {
        tables.append(table.toUpper());
    }
    return tables;
}

QString Read(const QString& fixture, const QString& file) {
    return QString::fromUtf8(ReadFile(FixtureFolder(fixture) + '/' + file));
}

/// What the settings of an origin name as its database.
enum class Format { SqliteFile, AccessFile, OdbcSource };

Format FormatOf(const contract::Origin& origin, const QString& fixture) {
    const bool isAsked = origin.source.prepare.place == Place::Asked;
    if (isAsked && origin.source.kind == "ODBC") {
        return Format::OdbcSource;
    }
    const bool isServer = origin.source.prepare.place == Place::Server || !Read(fixture, "Solution.ini").isEmpty();
    return isServer ? Format::SqliteFile : Format::AccessFile;
}

/// The name of the ODBC data source that an origin opens whatever the settings say, which are completed.
QString DataSourceName(const contract::Origin& origin, const QString& settings) {
    ScriptedOperator person;
    Session session(person);
    session.Config.SetConfigFile(settings);
    ovConnection source;
    origin.source.prepare(session, source);
    static const QRegularExpression named("Data Source=([^;]+)");
    return named.match(source.ConnectionString).captured(1);
}

/// A statement of what a company holds before, for another company. A row of a table that all companies share takes
/// the place of the one of its key, which another origin may have brought.
QString ForCompany(QString statement, const QString& company) {
    static const QRegularExpression insert("^INSERT INTO (\\w+) (\\([^)]*\\)) (VALUES .*);$");
    const QRegularExpressionMatch match = insert.match(statement);
    const schema::Table* table = schema::FindTable(match.captured(1));
    statement.replace("X01_", company + '_');
    if (table == nullptr || !table->shared || table->key.isEmpty()) {
        return statement;
    }
    const QString key = table->key.join(", ");
    return QString("WITH N%1 AS (%2) DELETE FROM %3 WHERE (%4) IN (SELECT %4 FROM N);\n")
               .arg(match.captured(2), match.captured(3), table->name, key) +
           statement;
}

} // namespace

DemoOrigin::DemoOrigin(const contract::Origin& origin, QString folder, QString company)
    : m_origin(origin),
      m_folder(std::move(folder)),
      m_company(std::move(company)) {
    Choose();
}

/// Each procedure once, in the order in which the tests run them.
void DemoOrigin::Choose() {
    for (const contract::Procedure& procedure : m_origin.procedures) {
        if (auto line = LineOf(procedure)) {
            m_lines.push_back(*line);
        } else {
            m_withoutSource.append(procedure.name);
        }
    }
    std::stable_sort(m_lines.begin(), m_lines.end(), [](const Line& left, const Line& right) {
        return std::tie(left.source, left.place) < std::tie(right.source, right.place);
    });
}

/// The run of all rows; of several the one that begins with a reset, which has usable answers.
std::optional<DemoOrigin::Line> DemoOrigin::LineOf(const contract::Procedure& procedure) {
    const contract::Origin* opened = contract::SourceOf(m_origin, procedure);
    const contract::Origin& origin = opened == nullptr ? m_origin : *opened;
    for (const auto& [fixture, of] : FixtureOrigins().asKeyValueRange()) {
        if (of->module != origin.module) {
            continue;
        }
        std::optional<Line> found;
        const QStringList lines = RunFile::Of(FixtureFolder(fixture)).lines;
        for (qsizetype place = 0; place < lines.size(); ++place) {
            const QStringList words = lines.at(place).split(' ', Qt::SkipEmptyParts);
            if (words.first() != procedure.name || !ListOf(words, "code").isEmpty()) {
                continue;
            }
            if (!found) {
                found = Line{&procedure, SourceAt(fixture, origin), place, words};
            } else if (words.contains("reset") && !found->words.contains("reset")) {
                found->words = words;
            }
        }
        if (found) {
            return found;
        }
    }
    return std::nullopt;
}

qsizetype DemoOrigin::SourceAt(const QString& fixture, const contract::Origin& origin) {
    for (qsizetype i = 0; i < m_sources.size(); ++i) {
        if (m_sources.at(i).fixture == fixture) {
            return i;
        }
    }
    m_sources.append({fixture, &origin});
    return m_sources.size() - 1;
}

void DemoOrigin::Write() {
    if (!MakeExample()) {
        for (Source& source : m_sources) {
            MakeSource(source);
        }
    }
    WriteSettings();
    WriteTargetRows();
    for (const Line& line : m_lines) {
        m_imports.append(ImportOf(line));
    }
}

/// Makes the example in the place of the one source; false when it will not do.
bool DemoOrigin::MakeExample() {
    const QString example = ExampleOf(m_origin);
    if (example.isEmpty() || m_sources.size() != 1) {
        return false;
    }
    Source& source = m_sources.first();
    const QString folder = m_folder + '/' + example;
    examples::Options options;
    options.rows = ExampleRows;
    options.folder = folder;
    options.company = m_company;
    examples::Make(example, options);
    const QStringList databases = QDir(folder).entryList({"*.db"}, QDir::Files);
    const QString path = databases.isEmpty() ? folder : folder + '/' + databases.first();
    if (!HasEverything(path)) {
        QDir(folder).removeRecursively();
        return false;
    }
    source.path = path;
    source.files = folder;
    source.preparation = folder + "/quadrix.sql";
    return true;
}

bool DemoOrigin::HasEverything(const QString& path) const {
    const QStringList there = TablesOf(path);
    for (const Line& line : m_lines) {
        for (const auto& table : contract::NeededTables::Read(line.procedure->needs).Tables()) {
            if (table.isNecessary && !there.contains(table.name.toUpper())) {
                return false;
            }
        }
    }
    return true;
}

void DemoOrigin::MakeSource(Source& source) {
    const QString folder = m_folder + '/' + source.fixture;
    source.files = folder + "/files";
    CopyFiles(FixtureFolder(source.fixture) + "/files", source.files);
    if (const QString script = Read(source.fixture, "source.sql"); !script.isEmpty()) {
        source.path = folder + "/sorgente";
        WriteDatabase(source, script);
        return;
    }
    source.path = source.files;
    MakeFoxProTables(FixtureFolder(source.fixture) + "/tables", source.files,
                     [](const QString& table, const QString& column) { return column.isEmpty() ? table : column; });
}

void DemoOrigin::WriteDatabase(Source& source, const QString& script) {
    const Format format = FormatOf(*source.origin, source.fixture);
    ovConnection database;
    if (format == Format::AccessFile) {
        OpenEmbedded(database).ExecuteScript(script);
        const QString folder = QFileInfo(source.path).path();
        const bool isInFolder = source.origin->source.prepare.place == Place::Folder;
        const QString file =
            isInFolder ? QString(folder + '/' + source.origin->name + ".mdb") : QString(source.path + ".mdb");
        WriteFile(file, AccessCopy(database));
        source.path = isInFolder ? folder : file;
        return;
    }
    source.path += ".db";
    OpenEmbedded(database, source.path).ExecuteScript(script);
    if (format == Format::OdbcSource) {
        m_dataSource = QString("[%1]\nDriver=SQLite3\nDatabase=%2\n")
                           .arg(DataSourceName(*source.origin, m_folder + "/Quadrix.ini"), source.path);
    }
}

void DemoOrigin::WriteSettings() const {
    QString settings = "[DATABASE]\r\nProvider=SQLITE\r\nDatabaseName=../quadrix.db\r\n";
    for (const Source& source : m_sources) {
        const auto filled = [&source](QString text) {
            return text.replace("%SOURCE%", source.path).replace("%FILES%", source.files);
        };
        QString own = Read(source.fixture, "settings.ini");
        if (own.isEmpty() && &source == &m_sources.first()) {
            own = "[IMPORT]\r\nDatabasename=%SOURCE%\r\n";
        }
        if (source.origin->source.prepare.place == Place::DataSource) {
            own += "DSN=%SOURCE%\r\n";
        }
        settings += filled(own);
        if (const QString solution = Read(source.fixture, "Solution.ini"); !solution.isEmpty()) {
            WriteFile(m_folder + "/Solution.ini", filled(solution).toLatin1());
        }
    }
    WriteFile(m_folder + "/Quadrix.ini", settings.toLatin1());
}

void DemoOrigin::WriteTargetRows() const {
    QString script = "BEGIN;\n";
    for (const Source& source : m_sources) {
        script += QString::fromUtf8(ReadFile(source.preparation));
        const QString before = source.preparation.isEmpty() ? Read(source.fixture, "target.sql") : QString();
        for (const QString& statement : before.split('\n')) {
            script += ForCompany(statement, m_company) + '\n';
        }
    }
    WriteFile(m_folder + "/quadrix.sql", QString(script + "COMMIT;\n").toUtf8());
}

QString DemoOrigin::ImportOf(const Line& line) const {
    QStringList options = AnswersOf(line) + FilesOf(line);
    if (!line.procedure->destroys.isEmpty()) {
        options.append("--yes");
    }
    return (QStringList{m_folder, m_company, m_origin.name, line.procedure->name} + options).join('\t');
}

/// An input that the line does not tell is left as it is shown.
QStringList DemoOrigin::AnswersOf(const Line& line) const {
    QStringList options;
    for (const QString& answer : ListOf(line.words, "answers")) {
        options.append(answer == "si" ? "--answer=yes" : "--answer=no");
    }
    QStringList inputs = ListOf(line.words, "inputs");
    for (const contract::AnswerNeed& need : contract::AnswersNeeded(m_origin, {line.procedure})) {
        if (need.kind == contract::AnswerKind::Text) {
            options.append("--input=" + (inputs.isEmpty() ? QString() : inputs.takeFirst()));
        }
    }
    return options;
}

QStringList DemoOrigin::FilesOf(const Line& line) const {
    const Source& source = m_sources.at(line.source);
    QStringList names = ListOf(line.words, "files");
    if (names.isEmpty() && source.path == source.files && source.origin->source.prepare.place == Place::Chosen) {
        names = QDir(source.files).entryList(QDir::Files).mid(0, 1);
    }
    QStringList options;
    for (const QString& name : names) {
        options.append("--file=" + source.files + '/' + name);
    }
    return options;
}
