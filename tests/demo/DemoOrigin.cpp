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
const QString SolutionSettings = "Solution.ini";

/// The example of an origin; empty when there is none, or when its rows name counterparties or articles that another
/// origin brings.
QString ExampleOf(const contract::Origin& origin) {
    static const QStringList leanOnOthers{"modImport_WinProgest", "modImport_Lantek30"};
    if (leanOnOthers.contains(origin.module)) {
        return {};
    }
    for (const examples::Example& example : examples::Examples()) {
        if (example.origin == origin.name) {
            return example.name;
        }
    }
    return {};
}

/// The tables of an example and, of a database, their columns as "TABLE.COLUMN", in capitals.
QSet<QString> NamesOf(const QString& path) {
    QSet<QString> names;
    if (QFileInfo(path).isDir()) {
        for (const QFileInfo& file : QDir(path).entryInfoList(QDir::Files)) {
            names.insert(file.baseName().toUpper());
        }
        return names;
    }
    ovConnection database;
    for (const QString& table : OpenEmbedded(database, path).GetTables()) {
        names.insert(table.toUpper());
        for (const ColumnInfo& column : database.GetColumns(table)) {
            names.insert(QString(table + '.' + column.name).toUpper());
        }
    }
    return names;
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
    const bool isServer = origin.source.prepare.place == Place::Server || !Read(fixture, SolutionSettings).isEmpty();
    return isServer ? Format::SqliteFile : Format::AccessFile;
}

/// The settings that name a source, with "%SOURCE%" for its path.
QString SettingsFor(const contract::Origin& origin, const QString& fixture) {
    const Place place = origin.source.prepare.place;
    const QString own = Read(fixture, "settings.ini");
    if (place == Place::Chosen || !Read(fixture, SolutionSettings).isEmpty()) {
        return own;
    }
    const QString settings = own.isEmpty() ? "[IMPORT]\r\nDatabasename=%SOURCE%\r\n" : own;
    return place == Place::DataSource ? QString(settings + "DSN=%SOURCE%\r\n") : settings;
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

/// Whether a line has what a procedure asks for, beside what the opening of its source does.
bool TellsInputs(const contract::Procedure& procedure, const QStringList& words) {
    const auto isText = [](const contract::AnswerNeed& need) { return need.kind == contract::AnswerKind::Text; };
    return std::count_if(procedure.asks.begin(), procedure.asks.end(), isText) <= ListOf(words, "inputs").size();
}

/// A statement of what a company holds before, for another company. A row takes the place of the one of its key, which
/// another source may have brought: into a table that all companies share, or where a code may come once.
QString ForCompany(QString statement, const QString& company) {
    static const QRegularExpression insert("^INSERT INTO (\\w+) (\\([^)]*\\)) (VALUES .*);$");
    const QRegularExpressionMatch match = insert.match(statement);
    const schema::Table* table = schema::FindTable(match.captured(1).remove("X01_"));
    statement.replace("X01_", company + '_');
    if (table == nullptr || table->key.isEmpty() || (!table->shared && table->CodeColumn().isEmpty())) {
        return statement;
    }
    const QString key = table->key.join(", ");
    const QString name = match.captured(1).replace("X01_", company + '_');
    return QString("WITH N%1 AS (%2) DELETE FROM %3 WHERE (%4) IN (SELECT %4 FROM N);\n")
               .arg(match.captured(2), match.captured(3), name, key) +
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
        if (auto line = LineOf(procedure); line && TellsInputs(procedure, line->words)) {
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
    if (example.isEmpty() || m_sources.size() != 1 ||
        FormatOf(m_origin, m_sources.first().fixture) == Format::OdbcSource) {
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
    const QSet<QString> there = NamesOf(path);
    const bool tellsColumns = QFileInfo(path).isFile();
    const auto isThere = [&there](const QString& name) { return there.contains(name.toUpper()); };
    for (const Line& line : m_lines) {
        for (const auto& table : contract::NeededTables::Read(line.procedure->needs).Tables()) {
            const bool hasColumns =
                !tellsColumns || std::all_of(table.necessary.begin(), table.necessary.end(),
                                             [&](const QString& column) { return isThere(table.name + '.' + column); });
            if (table.isNecessary && !(isThere(table.name) && hasColumns)) {
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
        settings += filled(SettingsFor(*source.origin, source.fixture));
        if (const QString solution = Read(source.fixture, SolutionSettings); !solution.isEmpty()) {
            WriteFile(m_folder + '/' + SolutionSettings, filled(solution).toLatin1());
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

/// A procedure by its name, or by its button where two have the same name.
QString DemoOrigin::DataOf(const contract::Procedure& procedure) const {
    const auto same = std::count_if(m_origin.procedures.begin(), m_origin.procedures.end(),
                                    [&](const auto& other) { return other.name == procedure.name; });
    return same > 1 && procedure.button ? contract::ButtonName(*procedure.button) : procedure.name;
}

QString DemoOrigin::ImportOf(const Line& line) const {
    QStringList options = AnswersOf(line) + FilesOf(line);
    if (!line.procedure->destroys.isEmpty()) {
        options.append("--yes");
    }
    return (QStringList{m_folder, m_company, m_origin.name, line.procedure->name, DataOf(*line.procedure)} + options)
        .join('\t');
}

/// What the opening of the source asks for and the line does not tell is left empty.
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
