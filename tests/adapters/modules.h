#pragma once

#include "adapters/contract/run/Origin.h"
#include "tests/support/TestTarget.h"

/// The modules, each with an origin that stands for it: those of the list, and the template.
const QMap<QString, const contract::Origin*>& FixtureOrigins();
/// The names of the modules that are tested: the one that QUADRIX_TEST_ORIGIN names, else all.
QStringList TestedModules();
/// Folder of the fixture of a module.
QString FixtureFolder(const QString& module);
/// The data of a test: each module, as column "module".
void EachModule();
/// The data of a test: each module on each engine, as columns "module" and "engine".
void ModulesOnEngines();
