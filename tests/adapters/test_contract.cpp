#include "tests/adapters/Fixture.h"
#include "tests/support/FaultyEngine.h"
#include "tests/support/QuadrixTest.h"
#include "tests/support/rows.h"

#include "adapters/contract/map/codesOfRule.h"
#include "adapters/contract/run/Account.h"
#include "core/Schema.h"

#include <QDir>
#include <QRegularExpression>
#include <QTest>

#include <algorithm>
#include <numeric>

namespace {

const QString ProjectFolder = QStringLiteral(QUADRIX_SOURCE_DIR);

QStringList FoldersOf(const QString& folder) {
    return QDir(ProjectFolder + folder).entryList(QDir::Dirs | QDir::NoDotAndDotDot, QDir::Name);
}

const contract::Procedure& ProcedureOf(const QString& module, const QString& name) {
    const std::vector<contract::Procedure>& all = FixtureOrigins().value(module)->procedures;
    return *std::find_if(all.begin(), all.end(), [&name](const auto& each) { return each.name == name; });
}

/// What SYS_IMP tells a list of codes by.
QString ListKey(const QString& table, const QString& field) {
    constexpr int size = 20;
    return QString(table.trimmed().left(size) + '.' + field.trimmed().left(size)).toUpper();
}

const QSet<QString>& DeclaredLists() {
    static const QSet<QString> declared = [] {
        QSet<QString> lists;
        for (const contract::Origin* origin : OriginsWithModule()) {
            for (const contract::Procedure& procedure : origin->procedures) {
                for (const contract::CodeUse& use : contract::CodesOf(procedure.needs)) {
                    lists.insert(ListKey(use.list, use.field));
                }
            }
        }
        return lists;
    }();
    return declared;
}

/// The questions and prompts since the script began anew.
QStringList Asked(const ScriptedOperator& person) {
    QStringList asked;
    for (const QString& event : person.Events) {
        if (event.startsWith("? ")) {
            asked.append(event.mid(2).section(" = ", 0, -2));
        } else if (event.startsWith("> ")) {
            asked.append(event.mid(2));
        }
    }
    return asked;
}

} // namespace

/// What holds for every origin that has a module.
class TestContract : public QObject {
    Q_OBJECT
    Q_CLASSINFO("about", "origins")

private slots:
    void FilesAndListAgree() {
        QStringList folders = FoldersOf("/adapters/origins");
        for (QString& folder : folders) {
            QVERIFY2(QFile::exists(ProjectFolder + "/adapters/origins/" + folder + "/modImport_" + folder + ".cpp"),
                     qPrintable(folder));
            folder.prepend("modImport_");
        }
        QSet<QString> modules;
        for (const contract::Origin* origin : OriginsWithModule()) {
            modules.insert(origin->module);
        }
        QCOMPARE(QSet<QString>(folders.begin(), folders.end()), modules);
    }

    /// A fixture that names no origin would never be run, and a procedure without one never be tried.
    void EveryProcedureIsOfAFixture() {
        QCOMPARE(FoldersOf("/tests/adapters/fixtures"), FixtureOrigins().keys());
        QSet<QString> tried;
        for (const auto& [fixture, origin] : FixtureOrigins().asKeyValueRange()) {
            for (const contract::Procedure& procedure : origin->procedures) {
                tried.insert(procedure.name);
            }
        }
        for (const contract::Origin* origin : OriginsWithModule()) {
            for (const contract::Procedure& procedure : origin->procedures) {
                QVERIFY2(tried.contains(procedure.name), qPrintable(origin->name + ": " + procedure.name));
            }
        }
    }

    void MappingsFitTheSchema() {
        for (const contract::Origin* origin : OriginsWithModule()) {
            for (const contract::Procedure& procedure : origin->procedures) {
                const QString name = origin->module + "::" + procedure.name;
                const contract::Needs& needs = procedure.needs;
                QVERIFY2(!needs.mappings.empty() || !needs.reads.empty() || !needs.writes.empty(), qPrintable(name));
                for (const contract::Mapping* mapping : procedure.needs.mappings) {
                    const schema::Table* table = schema::FindTable(mapping->targetTable);
                    QVERIFY2(table != nullptr, qPrintable(name + " " + mapping->targetTable));
                    QSet<QString> seen;
                    for (const QString& column : mapping->TargetColumns()) {
                        QVERIFY2(table->FindColumn(column) != nullptr, qPrintable(name + " " + column));
                        QVERIFY2(!seen.contains(column), qPrintable(name + " maps twice " + column));
                        seen.insert(column);
                    }
                }
                for (const contract::TableNeed& need : procedure.needs.writes) {
                    const schema::Table* table = schema::FindTable(need.table);
                    QVERIFY2(table != nullptr, qPrintable(name + " " + need.table));
                    for (const QString& column : need.columns) {
                        QVERIFY2(table->FindColumn(column) != nullptr, qPrintable(name + " " + column));
                    }
                }
            }
        }
    }

    void EveryVisibleButtonHasItsProcedure() {
        for (const contract::Origin* origin : OriginsWithModule()) {
            for (int i = 0; i < contract::ButtonCount; ++i) {
                const auto button = static_cast<contract::Button>(i);
                const bool has = std::any_of(origin->procedures.begin(), origin->procedures.end(),
                                             [&](const contract::Procedure& one) { return one.button == button; });
                const contract::ButtonRow& row = origin->buttons.at(static_cast<size_t>(i));
                const bool shown = row.shown == contract::Shown::Yes;
                const bool ofProgram = row.caption == "Fusione Controparti"; // which no module has
                QVERIFY2(has || ofProgram || !shown, qPrintable(origin->name + ": " + contract::ButtonName(button)));
            }
        }
    }

    void WhatIsAskedAndDeletedIsKnownBefore_data() { EachModule(); }

    /// A caller that shows the rows that will go, or that cannot ask, relies on it.
    void WhatIsAskedAndDeletedIsKnownBefore() {
        QFETCH(const QString, module);
        const contract::Origin& origin = *FixtureOrigins().value(module);
        Fixture fixture(FixtureFolder(module), origin);
        for (const QString& line : fixture.Lines()) {
            const QString name = line.section(' ', 0, 0);
            const auto procedure = std::find_if(origin.procedures.begin(), origin.procedures.end(),
                                                [&name](const auto& each) { return each.name == name; });
            fixture.RunLine(line.contains(" reset") ? line : line + " reset");
            QStringList needed;
            for (const contract::AnswerNeed& need : contract::AnswersNeeded(origin, {&*procedure})) {
                needed.append(need.question);
            }
            const bool done = fixture.Results().last().outcome == RunResult::Outcome::Done;
            const QStringList asked = Asked(fixture.Target().Person);
            QCOMPARE(asked, done ? needed : needed.mid(0, asked.size()));
            QStringList deleted;
            for (const RunResult::Emptied& emptied : fixture.Results().last().emptied) {
                deleted.append(emptied.table);
            }
            QStringList known;
            for (const contract::RowsToDelete& rows : contract::DeletedByReset(fixture.Target().Get(), *procedure)) {
                known.append(rows.table);
            }
            deleted.sort();
            known.sort();
            QVERIFY2(deleted == known || (!done && deleted.isEmpty()),
                     qPrintable(name + ": " + deleted.join(' ') + " instead of " + known.join(' ')));
        }
    }

    void FixturesSayWhatIsTrue_data() { EachModule(); }
    /// A word of "run.txt" about a procedure that is not run, or without a reason, is left over or misspelt.
    void FixturesSayWhatIsTrue() {
        QFETCH(const QString, module);
        const RunFile file = RunFile::Of(FixtureFolder(module));
        static const QRegularExpression form(
            "^(?:(?:keeps rows|gives place) (\\S+)|optional \\S+\\.\\S+|closely|origin)$");
        for (auto word = file.words.cbegin(); word != file.words.cend(); ++word) {
            const auto match = form.match(word.key());
            const bool isRun = match.captured(1).isEmpty() || !file.lines.filter(match.captured(1)).isEmpty();
            QVERIFY2(match.hasMatch() && isRun && !word.value().trimmed().isEmpty(), qPrintable(word.key()));
        }
        QCOMPARE(QFile::exists(FixtureFolder(module) + "/statements.sql"), file.IsClose());
    }

    /// What the settings say of the way to a source leads to the fixture's own.
    void ADataSourceLeadsToTheFixture() {
        const QTemporaryDir folder;
        WriteFile(folder.filePath("source.sql"), "CREATE TABLE T (N INT); INSERT INTO T VALUES (7);");
        contract::Origin origin = *FixtureOrigins().first();
        origin.source.prepare = [](Session&, ovConnection& source) {
            source.DSN = "NESSUNA";
            return true;
        };
        Fixture fixture(folder.path(), origin);
        fixture.OpenSource();
        QCOMPARE(fixture.Target().Get().Source->ExecuteCommand("SELECT N FROM T"), 7);
    }

    void AQuestionGivenUpEndsTheRun() {
        const QString module = "modImport_Arca2000";
        Fixture fixture(FixtureFolder(module), *FixtureOrigins().value(module));
        ScriptedOperator& person = fixture.Target().Person;
        person.GiveUpAt = {"Vuoi riportare gli indirizzi mail della controparte nei riferimenti?"};
        person.Time = 0;
        person.Thinks = 100;
        fixture.RunLine("ImportContropartiArca2000 reset");
        const RunResult& result = fixture.Results().last();
        QCOMPARE(result.outcome, RunResult::Outcome::Cancelled);
        QCOMPARE(result.emptied.size(), 5);
        QVERIFY(result.tables.isEmpty() && result.errors.isEmpty());
        QCOMPARE(result.seconds, 0.0); // the box stood open, nobody worked
        QVERIFY(person.Progresses.empty() && person.Messages.isEmpty() && person.Reported.isEmpty());
        QVERIFY(fixture.Target().Log().contains("Fine ImportContropartiArca2000: interrotta dall'operatore"));
    }

    void Fixtures_data() { ModulesOnEngines(); }

    /// Expected rows, the same on every engine, an account that adds up, the bad rows named, and the statements that
    /// made it.
    void Fixtures() {
        QFETCH(const QString, module);
        QFETCH(const TestTarget::On, engine);
        const bool embedded = engine == TestTarget::On::Embedded;
        const bool rewrites = qEnvironmentVariableIsSet("QUADRIX_REWRITE_GOLDEN");
        if (!embedded && (rewrites || !TestTarget::HasMariaDb())) {
            QSKIP(
                "QUADRIX_TEST_MARIADB names no server (scripts/test starts one), or what is expected is being written");
        }
        Fixture fixture(FixtureFolder(module), *FixtureOrigins().value(module), engine);
        fixture.Run();
        int givenUp = 0;
        for (const RunResult& result : fixture.Results()) {
            QVERIFY2(result.AddsUp(), qPrintable(result.procedure));
            const QList<qint64> byRule = result.skippedBy.values();
            QCOMPARE(std::accumulate(byRule.begin(), byRule.end(), qint64{0}), result.skipped);
            QVERIFY2(!result.skippedBy.contains({}), qPrintable(result.procedure + " leaves rows out without a rule"));
            for (const QString& rule : result.skippedBy.keys()) {
                QVERIFY2(contract::IsWanting(rule) || !rule.contains("non trovat"),
                         qPrintable(rule + " does not count as wanting"));
            }
            const QStringList written = result.tables.keys();
            const QSet<QString> undeclared = QSet<QString>(written.begin(), written.end()) -
                                             contract::WrittenTables(ProcedureOf(module, result.procedure).needs);
            QVERIFY2(undeclared.isEmpty(), // else nobody asks for the rights on them before
                     qPrintable(result.procedure + " writes " + undeclared.values().join(' ')));
            for (const RunResult::GivenUp& row : result.givenUp) {
                ++givenUp;
                QVERIFY2(row.rowKey.contains("tabella '") && row.reason.contains('\''),
                         qPrintable(row.rowKey + row.reason));
            }
        }
        QVERIFY2(givenUp > 0, "the fixture has no bad row");
        const QString rows = fixture.Compare("expected.txt", fixture.Outcome());
        QVERIFY2(rows.isEmpty(), qPrintable(rows));
        if (embedded && fixture.File().IsClose()) {
            const QString statements = fixture.Compare("statements.sql", fixture.Statements());
            QVERIFY2(statements.isEmpty(), qPrintable(statements));
        }
        Recordset lists = fixture.Target().Db().ExecuteWC("SELECT DISTINCT TBNAM, TBFLD FROM SYS_IMP");
        for (; !lists.Eof(); lists.MoveNext()) {
            const QString list = ListKey(lists.Fields(0).Value().toString(), lists.Fields(1).Value().toString());
            const bool isOfCompany = list.startsWith("X01_");       // what the imports of one keep for themselves
            QVERIFY2(isOfCompany || DeclaredLists().contains(list), // else nobody can translate its codes by name
                     qPrintable(list + " is no list of codes that a procedure declares"));
        }
    }

    void AsTextsTheyWriteTheSame_data() { EachModule(); }
    /// Statements go to the database with their values apart: as texts they are the same and do the same.
    void AsTextsTheyWriteTheSame() {
        QFETCH(const QString, module);
        Fixture apart(FixtureFolder(module), *FixtureOrigins().value(module));
        apart.Run();
        Fixture asTexts(FixtureFolder(module), *FixtureOrigins().value(module));
        Faults none; // an engine that knows nothing of values apart
        asTexts.Target().Db().OpenFiles = [&none](const ConnectionSettings& settings) {
            return std::make_unique<FaultyEngine>(OpenSqlite(settings.databaseName), none);
        };
        asTexts.Target().Db().OpenConnection();
        asTexts.Run();
        QCOMPARE(asTexts.Outcome(), apart.Outcome());
        const QString other = golden::FirstDifference("statements", apart.Statements(), asTexts.Statements());
        QVERIFY2(other.isEmpty(), qPrintable(other));
        QVERIFY(none.seen > 0);
    }
};

QUADRIX_TEST(TestContract)
#include "test_contract.moc"
