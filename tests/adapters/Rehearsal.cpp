#include "tests/adapters/Rehearsal.h"

#include "core/modMain.h"
#include "core/Schema.h"
#include "sources/fileSource.h"

#include <QRegularExpression>

namespace {

/// Tables whose triggers the imports of documents and orders switch.
const QStringList TriggerTables{"DOC_VER", "DOC_ACR", "DOC_CTR", "ORD_COM", "ORD_FAS", "ORD_PRO"};

const QRegularExpression AfterName("\\W");

/// The table that a statement changes, by its physical name; empty when it begins with none of the words.
QString ChangedTable(const QString& statement, const QStringList& words) {
    for (const QString& word : words) {
        if (statement.startsWith(word)) {
            const QString table = statement.mid(word.size()).section(AfterName, 0, 0);
            return table == "sqlite_sequence" ? QString() : table;
        }
    }
    return {};
}

/// Whether a column holds what follows from the order in which rows were written: a key, a link, a number.
bool FollowsFromOrder(const schema::Column& column) {
    static const QSet<QString> keys{"RECORD_ID", "TBKEY", "LNKEY", "ATKEY", "FLKEY", "CDCON",
                                    "CDBAN",     "CDLIS", "MMNUM", "MRNUM", "DTMDF", "USMDF"};
    const bool isLink = column.type == DataType::Long && column.indexed;
    return keys.contains(column.name) || isLink || column.refersTo == "CON_TRO";
}

/// Columns that are the same after a second run, whatever happened in the first.
QStringList LastingColumns(const schema::Table& table) {
    static const QSet<QString> ofCounterparties{"CON_RIF", "CON_SED", "NUM_TEL", "IND_WEB"};
    QStringList columns;
    if (table.name == "CON_TRO") {
        return {"COCGE", "COFGE"};
    }
    for (const schema::Column& column : table.columns) {
        if (!FollowsFromOrder(column) && !ofCounterparties.contains(table.name)) {
            columns.append(column.name);
        }
    }
    return columns;
}

QString BareName(const QString& table) { return table.startsWith("X01_") ? table.mid(4) : table; }

} // namespace

Rehearsal::Rehearsal(const QString& folder, const contract::Origin& origin, const QString& line)
    : m_fixture(folder, origin),
      m_line(line) {
    for (const QString& before : m_fixture.Lines()) {
        if (before == line) {
            break;
        }
        m_fixture.RunLine(before);
    }
    m_fixture.Target().Db().Trace = {};
    modMain::SetAppConfig(Get(), "IMPORT", "GruppoRighe", "2"); // several commits, and rows that go with others
    AddTriggers();
    OpenFaulty();
    OpenFaultySource();
    Learn();
}

void Rehearsal::AddTriggers() {
    for (const QString& table : TriggerTables) {
        m_fixture.Target().Execute(
            QString("CREATE TRIGGER on_%1 AFTER INSERT ON X01_%1 BEGIN SELECT 1; END").arg(table));
    }
}

/// Opens the target again behind an engine that can fail, and begins the transaction that everything is taken back
/// with.
void Rehearsal::OpenFaulty() {
    ovConnection& target = m_fixture.Target().Db();
    target.OpenFiles = [this](const ConnectionSettings& settings) {
        auto engine = OpenSqlite(settings.databaseName);
        m_engine = engine.get();
        return std::make_unique<FaultyEngine>(std::move(engine), TargetFault,
                                              [this](const QString& statement, qint64 rows) { Note(statement, rows); });
    };
    target.OpenConnection();
    for (const schema::Table& table : schema::Tables()) {
        FreeKeys(target.GetFullTableName(table.name));
    }
    m_engine->Begin();
}

/// The next row has the key after the highest that is there.
void Rehearsal::FreeKeys(const QString& table) {
    m_engine->Run(QString("UPDATE sqlite_sequence SET seq = (SELECT COALESCE(MAX(RECORD_ID), 0) FROM %1) "
                          "WHERE name = '%1'")
                      .arg(table));
}

void Rehearsal::OpenFaultySource() {
    Person().Otherwise = true;
    m_fixture.Answer(m_line);
    const size_t answers = Person().Answers.size();
    m_fixture.OpenSource([this](const ConnectionSettings& settings) {
        auto engine = sources::OpenFileSource(settings);
        return std::make_unique<FaultyEngine>(engine ? std::move(engine) : OpenSqlite(settings.databaseName),
                                              SourceFault);
    });
    Get().Source->Trace = {};
    m_sourceAnswers = static_cast<qsizetype>(answers - Person().Answers.size());
}

/// Keeps count of what the statements delete. The key of a row that is deleted is free again: what is written later
/// then has the keys that it has when the row was never written, and the two can be compared.
void Rehearsal::Note(const QString& statement, qint64 rows) {
    if (statement.startsWith("SAVEPOINT")) {
        m_deletedBefore[statement.section(' ', -1)] = m_deleted;
    } else if (statement.startsWith("ROLLBACK TO")) {
        m_deleted = m_deletedBefore.value(statement.section(' ', -1));
    }
    const QString table = ChangedTable(statement, {"INSERT INTO ", "UPDATE ", "DELETE FROM "});
    if (m_isLearning && !table.isEmpty() && table != "SYS_IMP" && !m_written.contains(table)) {
        m_written.append(table);
    }
    const QString emptied = ChangedTable(statement, {"DELETE FROM "});
    m_deleted[BareName(emptied)] += rows;
    if (!emptied.isEmpty()) {
        FreeKeys(emptied);
    }
}

void Rehearsal::Learn() {
    m_startTriggers = Triggers();
    for (const schema::Table& table : schema::Tables()) {
        m_startCounts[table.name] = Count(table.name);
    }
    Run({});
    RunAgain(false); // only now it is known which tables are written
    m_isLearning = false;
    Clean = Run({.source = {.rows = true}});
    CleanStatements = TargetFault.seen;
    CleanSource = SourceFault.seen;
    CleanRows = Rows();
    CleanLog = Log();
    RunAgain(false);
    Second = Result();
    SecondGivenUp = GivenUp();
    SecondContent = Content();
}

void Rehearsal::PutBack() {
    TargetFault = {};
    SourceFault = {};
    m_engine->RollBack();
    m_engine->Begin();
    m_deleted.clear();
    Session& session = Get();
    session.Errors.ClearError();
    session.Translations.clear();
    session.Untranslated.Forget();
    session.Results.clear();
    QFile::remove(session.LogFile);
    ScriptedOperator& person = Person();
    person.Messages.clear();
    person.Decided.clear();
    person.Reported.clear();
    person.Progresses.clear();
    person.Events.clear();
    person.CancelAt.reset();
}

const RunResult& Rehearsal::Run(const Direction& direction) {
    PutBack();
    StruckInRow = false;
    StruckRow.clear();
    TargetFault = direction.target;
    SourceFault = direction.source;
    for (Faults* fault : {&TargetFault, &SourceFault}) {
        fault->struck = [this, also = fault->struck] {
            StruckInRow = Get().Errors.InRow();
            StruckRow = Get().Errors.RowKey();
            StruckAt = SourceFault.read;
            if (also) {
                also();
            }
        };
    }
    Get().Errors.Action = direction.action;
    Person().AnswerToError = [answer = direction.answer](const ErrorEntry& error) {
        return error.engineMessage.contains(Faults::Words) ? answer : ErrorAnswer::Ignore;
    };
    Person().CancelAt = direction.cancelAt;
    return Call(m_line);
}

void Rehearsal::RunAgain(bool reset) {
    Get().Errors.Action = ErrorAction::Ignore;
    Call(reset ? m_line : QString(m_line).remove(" reset"));
}

const RunResult& Rehearsal::Call(const QString& line) {
    Person().Answers.clear();
    Person().Inputs.clear();
    m_fixture.Answer(line);
    Person().Answers.erase(Person().Answers.begin(), Person().Answers.begin() + m_sourceAnswers);
    m_fixture.Call(line);
    TargetFault.first = 0;
    SourceFault.first = 0;
    Person().CancelAt.reset();
    return Result();
}

QStringList Rehearsal::Rows() {
    QStringList rows;
    for (const QString& table : m_written) {
        for (const QString& row : m_fixture.Target().Rows("SELECT * FROM " + table + " ORDER BY RECORD_ID")) {
            rows.append(table + ' ' + row);
        }
    }
    return rows;
}

QStringList Rehearsal::Content() {
    QStringList rows;
    for (const QString& name : m_written) {
        const QStringList columns = LastingColumns(*schema::FindTable(BareName(name)));
        for (const QString& row :
             columns.isEmpty() ? columns : m_fixture.Target().Rows("SELECT " + columns.join(", ") + " FROM " + name)) {
            rows.append(name + ' ' + row);
        }
    }
    rows.sort();
    rows.removeDuplicates();
    return rows;
}

QString Rehearsal::GivenUp() {
    QStringList keys;
    for (const RunResult::GivenUp& row : Result().givenUp) {
        keys.append(row.rowKey);
    }
    return keys.join('\n');
}

qint64 Rehearsal::Count(const QString& table) {
    return m_fixture.Target().Db().ExecuteCommand("SELECT COUNT(*) FROM " +
                                                  m_fixture.Target().Db().GetFullTableName(table));
}

QString Rehearsal::Triggers() {
    return m_fixture.Target().Value("SELECT COUNT(*) FROM sqlite_master WHERE type = 'trigger'") + " on, " +
           m_fixture.Target().Value("SELECT COUNT(*) FROM sqlite_master WHERE name = 'QDX_TRIGGERS_OFF'") +
           " tables of those that are off";
}

/// The rows that the account names are in the tables, and no others.
QString Rehearsal::WrongCounts() {
    for (const QString& table : Result().tables.keys()) {
        if (table == "SYS_IMP") {
            continue; // codes without a translation are noted there too
        }
        const RunResult::TableCount count = Result().tables.value(table);
        const qint64 added = Count(table) - m_startCounts.value(table) + m_deleted.value(table);
        if (added != count.inserted) {
            return QString("%1: %2 written by the account, but %3 were; %4 deleted")
                .arg(table)
                .arg(count.inserted)
                .arg(added)
                .arg(m_deleted.value(table));
        }
    }
    return {};
}

QString Rehearsal::Wrong() {
    const auto isOpen = [](const ScriptedOperator::ProgressRecord& progress) { return !progress.closed; };
    if (Get().Results.size() != 1 || !Result().AddsUp()) {
        return "the account does not add up";
    }
    if (std::any_of(Person().Progresses.begin(), Person().Progresses.end(), isOpen)) {
        return "the progress dialog is still open";
    }
    if (Person().BusyChanges % 2 != 0) {
        return "the pointer is still busy";
    }
    if (Triggers() != m_startTriggers && !Log().contains("rimasti disattivati")) {
        return "triggers: " + Triggers() + ", and the log does not tell";
    }
    return WrongCounts();
}
