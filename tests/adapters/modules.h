#pragma once

#include "adapters/contract/run/Origin.h"
#include "tests/support/TestTarget.h"

/// Every origin that has procedures, and that of the template.
std::vector<const contract::Origin*> OriginsWithModule();
/// The fixtures, by their folder, each with the origin that it runs: the one that its "run.txt" names, else the first
/// of the module that the folder is named after.
const QMap<QString, const contract::Origin*>& FixtureOrigins();
/// The fixtures that are run: those of the module that QUADRIX_TEST_ORIGIN names, else all.
QStringList TestedModules();
/// Folder of a fixture.
QString FixtureFolder(const QString& module);

/// The "run.txt" of a fixture.
struct RunFile {
    /// A line for each procedure: "NAME [reset] [code=X] [answers=si,no,..] [inputs=A,..] [files=A,..]".
    QStringList lines;
    /// What is said of the tests, each with its reason behind ": ":
    /// - "keeps rows NAME", "gives place NAME": what a fault may leave of a procedure: rows that the row that was given
    ///   up needed; the place of that row, which another one takes in the second run
    /// - "optional TABLE.COLUMN": of the source; without it other rows may come
    /// - "origin": not a reason but the name of the origin, for one that is not the first of its module
    /// - "closely": the module stands for others of its kind: its statements are kept, and it is tried at every place
    QMap<QString, QString> words;

    bool IsClose() const { return words.contains("closely"); }
    static RunFile Of(const QString& folder);
};

/// The data of a test: each module, as column "module".
void EachModule();
/// The data of a test: each module on each engine, as columns "module" and "engine".
void ModulesOnEngines();
/// The same, on the servers only those that are looked at closely.
void CloseModulesOnEngines();
