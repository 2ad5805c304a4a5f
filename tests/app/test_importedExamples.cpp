#include "adapters/registry.h"
#include "app/connectSource.h"
#include "app/history/historyFile.h"
#include "app/history/Recorder.h"
#include "app/history/undo.h"
#include "core/Schema.h"
#include "examples/examples.h"
#include "tests/support/disturbed.h"
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
            target.Person.Inputs.emplace_back(QString(answer).replace("%SOURCE%", source));
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

/// An example in a company whose runs are kept.
class KeptExample {
public:
    explicit KeptExample(const examples::Example& example)
        : m_example(example),
          m_origin(*registry::Find(example.origin)),
          m_source(MakeSource(m_target, example)) {}

    /// Runs the imports of the example as one run.
    void Import() {
        const history::Recorder recorder(m_target.Get(), {.origin = m_origin.name});
        ImportAll(m_target, m_example, m_origin, m_source);
    }
    history::UndoResult Undo() {
        const history::History history(history::FilePath(m_target.Get().Config.ConfigFile()));
        return history::Undo(m_target.Get(), history, history.LastRun());
    }

    /// All rows but the translations of codes, which an undo leaves.
    QStringList Rows() {
        QStringList rows;
        for (const schema::Table& table : schema::Tables()) {
            if (table.name != "SYS_IMP" && !table.name.startsWith("SYS_SYS")) {
                const QString name = m_target.Db().GetFullTableName(table.name);
                for (const QString& row : m_target.Rows("SELECT * FROM " + name + " ORDER BY RECORD_ID")) {
                    rows.append(name + ' ' + row);
                }
            }
        }
        return rows;
    }

    void Disturb() { ::Disturb(m_target); }

private:
    TestTarget m_target;
    const examples::Example& m_example;
    const contract::Origin& m_origin;
    QString m_source;
};

/// What of the rows is not in the others, the first few.
QString RowsNotIn(const QStringList& others, const QStringList& rows) {
    const QSet<QString> known(others.begin(), others.end());
    QStringList left;
    for (const QString& row : rows) {
        if (!known.contains(row) && left.size() < 3) {
            left.append(row);
        }
    }
    return left.join('\n');
}

void AddExamples() {
    QTest::addColumn<int>("index");
    for (int index = 0; index < examples::Examples().size(); ++index) {
        if (const examples::Example& example = examples::Examples().at(index); !example.origin.isEmpty()) {
            QTest::newRow(example.name.toLatin1().constData()) << index;
        }
    }
}

} // namespace

/// Every example can be imported, a second time without a row more, and an undo puts everything back.
class TestImportedExamples : public QObject {
    Q_OBJECT

private slots:
    void canBeImported_data() { AddExamples(); }
    void canBeImported() {
        QFETCH(const int, index);
        const examples::Example& example = examples::Examples().at(index);
        const contract::Origin& origin = *registry::Find(example.origin);
        TestTarget target;
        const QString source = MakeSource(target, example);
        QVERIFY(ImportAll(target, example, origin, source) > 0 || example.name == "lantek30");
        QCOMPARE(ImportAll(target, example, origin, source), 0);
    }

    void anUndoPutsBack_data() { AddExamples(); }
    void anUndoPutsBack() {
        QFETCH(const int, index);
        KeptExample kept(examples::Examples().at(index));
        QStringList before = kept.Rows();
        kept.Import();
        QCOMPARE(kept.Undo().keptCount, 0);
        QCOMPARE(RowsNotIn(before, kept.Rows()), QString());
        QCOMPARE(RowsNotIn(kept.Rows(), before), QString());
        kept.Import();
        kept.Disturb();
        before = kept.Rows();
        kept.Import();
        QCOMPARE(kept.Undo().keptCount, 0);
        QCOMPARE(RowsNotIn(before, kept.Rows()), QString());
        QCOMPARE(RowsNotIn(kept.Rows(), before), QString());
    }
};

QUADRIX_TEST(TestImportedExamples)
#include "test_importedExamples.moc"
