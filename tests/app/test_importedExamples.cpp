#include "adapters/registry.h"
#include "app/connectSource.h"
#include "examples/examples.h"
#include "tests/support/files.h"
#include "tests/support/procedures.h"
#include "tests/support/QuadrixTest.h"
#include "tests/support/TestTarget.h"

#include <QTest>

namespace {

constexpr qint64 Rows = 30;

/// The source of an example in the folder of a company, and the settings that name it.
QString MakeSource(TestTarget& target, const examples::Example& example) {
    examples::Options options;
    options.rows = Rows;
    options.folder = target.Folder.filePath("source");
    options.company = "X01";
    examples::Make(example.name, options);
    target.Db().ExecuteScript(QString::fromUtf8(ReadFile(options.folder + "/quadrix.sql")));
    const QString source = options.folder + (example.source.isEmpty() ? QString() : '/' + example.source);
    if (QByteArray own = ReadFile(options.folder + "/Solution.ini");
        !own.isEmpty()) { // its place is beside the settings
        WriteFile(target.Folder.filePath("Solution.ini"), own.replace("DatabaseName=", "DatabaseName=source/"));
    }
    for (const char* key : {"Databasename", "DSN"}) {
        target.Get().Config.SetAppConfig("IMPORT", key, source);
    }
    target.Get().Config.SetAppConfig("IMPORT", "DOC_DateStart", "01/01/2000");
    target.Get().Errors.Action = ErrorAction::Ignore;
    return source;
}

/// The procedures of an import, and what the operator answers.
QStringList Prepare(TestTarget& target, const contract::Origin& origin, const QString& import, const QString& source) {
    const QStringList parts = import.split(':');
    for (const QString& answer : parts.mid(1)) {
        if (answer == "yes" || answer == "no") {
            target.Person.Answers.push_back(answer == "yes");
        } else {
            target.Person.Inputs.push_back(QString(answer).replace("%SOURCE%", source));
        }
    }
    const auto button = contract::ButtonFromName(parts.first());
    QStringList names;
    for (const contract::Procedure& procedure : origin.procedures) {
        if (button ? procedure.button == button : procedure.name == parts.first()) {
            names.append(procedure.name);
        }
    }
    return names;
}

/// Runs the imports of an example and returns how many rows they inserted; what is wrong fails the test.
qint64 ImportAll(TestTarget& target, const examples::Example& example, const contract::Origin& origin,
                 const QString& source) {
    qint64 inserted = 0;
    for (const QString& import : example.imports) {
        const QStringList procedures = Prepare(target, origin, import, source);
        [&] { QCOMPARE(ConnectSource(target.Get(), origin), SourceOutcome::Opened); }();
        for (const QString& procedure : procedures) {
            const RunResult& result = RunProcedure(target.Get(), origin, procedure);
            [&] {
                QVERIFY2(result.outcome == RunResult::Outcome::Done, qPrintable(procedure + result.errors.join('|')));
                QVERIFY2(result.AddsUp() && result.givenUpCount <= result.inserted + result.updated + result.skipped,
                         qPrintable(procedure));
            }();
            inserted += result.inserted;
        }
        CloseSource(target.Get());
    }
    return inserted;
}

} // namespace

/// Every example can be imported, and a second time without a row more.
class TestImportedExamples : public QObject {
    Q_OBJECT

private slots:
    void canBeImported_data() {
        QTest::addColumn<int>("index");
        for (int index = 0; index < examples::Examples().size(); ++index) {
            if (const examples::Example& example = examples::Examples().at(index); !example.origin.isEmpty()) {
                QTest::newRow(example.name.toLatin1().constData()) << index;
            }
        }
    }
    void canBeImported() {
        QFETCH(const int, index);
        const examples::Example& example = examples::Examples().at(index);
        const contract::Origin* origin = registry::Find(example.origin);
        QVERIFY(origin != nullptr);
        TestTarget target;
        const QString source = MakeSource(target, example);
        QVERIFY(ImportAll(target, example, *origin, source) > 0 || example.name == "lantek30");
        QCOMPARE(ImportAll(target, example, *origin, source), 0);
    }
};

QUADRIX_TEST(TestImportedExamples)
#include "test_importedExamples.moc"
