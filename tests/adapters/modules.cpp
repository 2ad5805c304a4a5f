#include "tests/adapters/modules.h"

#include "adapters/registry.h"
#include "tests/support/files.h"
#include "tests/support/rows.h"

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

const QMap<QString, const contract::Origin*>& FixtureOrigins() {
    static const auto modules = [] {
        QMap<QString, const contract::Origin*> map{{"modImport_Template", &modImport_Template::Entry()}};
        for (const auto* origins : {&registry::Origins(), &registry::SecondSources()}) {
            for (const contract::Origin* origin : *origins) {
                if (!origin->procedures.empty() && !map.contains(origin->module)) {
                    map.insert(origin->module, origin);
                }
            }
        }
        return map;
    }();
    return modules;
}

QStringList TestedModules() {
    const QString one = qEnvironmentVariable("QUADRIX_TEST_ORIGIN");
    if (one.isEmpty()) {
        return FixtureOrigins().keys();
    }
    if (!FixtureOrigins().contains(one)) {
        qFatal("QUADRIX_TEST_ORIGIN names no module: %s", qPrintable(one));
    }
    return {one};
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
