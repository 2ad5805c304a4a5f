#include "tests/adapters/modules.h"

#include "adapters/registry.h"
#include "tests/support/files.h"
#include "tests/support/rows.h"

#include <QDir>

namespace modImport_Template {
const contract::Origin& Entry();
}

namespace {

void AddModulesOnEngines(const std::function<bool(const QString& module)>& isOnServers) {
    Columns<QString, TestTarget::On>("module", "engine");
    const std::vector<std::pair<QString, TestTarget::On>> engines{{"", TestTarget::On::Embedded},
                                                                  {" on MariaDB", TestTarget::On::MariaDbAgain},
                                                                  {" over ODBC", TestTarget::On::OdbcAgain}};
    for (const auto& [name, engine] : engines) {
        for (const QString& module : TestedModules()) {
            if (engine == TestTarget::On::Embedded || isOnServers(module)) {
                Row(qPrintable(module + name), module, engine);
            }
        }
    }
}

} // namespace

std::vector<const contract::Origin*> OriginsWithModule() {
    std::vector<const contract::Origin*> origins = registry::All();
    std::erase_if(origins, [](const contract::Origin* origin) { return origin->procedures.empty(); });
    origins.push_back(&modImport_Template::Entry());
    return origins;
}

const QMap<QString, const contract::Origin*>& FixtureOrigins() {
    static const auto fixtures = [] {
        QMap<QString, const contract::Origin*> map;
        const QStringList folders =
            QDir(FixtureFolder({})).entryList({"modImport_*"}, QDir::Dirs | QDir::NoDotAndDotDot, QDir::Name);
        for (const QString& folder : folders) {
            const QString name = RunFile::Of(FixtureFolder(folder)).words.value("origin");
            for (const contract::Origin* origin : OriginsWithModule()) {
                const bool isOf = name.isEmpty() ? origin->module == folder : origin->name == name;
                if (isOf && !map.contains(folder)) {
                    map.insert(folder, origin);
                }
            }
        }
        return map;
    }();
    return fixtures;
}

QStringList TestedModules() {
    const QString one = qEnvironmentVariable("QUADRIX_TEST_ORIGIN");
    QStringList fixtures;
    for (const auto& [fixture, origin] : FixtureOrigins().asKeyValueRange()) {
        if (one.isEmpty() || origin->module == one || fixture == one) {
            fixtures.append(fixture);
        }
    }
    if (fixtures.isEmpty()) {
        qFatal("QUADRIX_TEST_ORIGIN names no module: %s", qPrintable(one));
    }
    return fixtures;
}

QString FixtureFolder(const QString& module) {
    return QStringLiteral(QUADRIX_SOURCE_DIR "/tests/adapters/fixtures/") + module;
}

RunFile RunFile::Of(const QString& folder) {
    RunFile file;
    for (const QString& line : QString::fromUtf8(ReadFile(folder + "/run.txt")).split('\n', Qt::SkipEmptyParts)) {
        const qsizetype colon = line.indexOf(": ");
        if (line.startsWith('#')) {
            continue;
        }
        if (colon < 0) {
            file.lines.append(line);
        } else {
            file.words.insert(line.left(colon), line.mid(colon + 2));
        }
    }
    return file;
}

void EachModule() {
    Columns<QString>("module");
    for (const QString& module : TestedModules()) {
        Row(qPrintable(module), module);
    }
}

void ModulesOnEngines() {
    AddModulesOnEngines([](const QString&) { return true; });
}

void CloseModulesOnEngines() {
    AddModulesOnEngines([](const QString& module) { return RunFile::Of(FixtureFolder(module)).IsClose(); });
}
