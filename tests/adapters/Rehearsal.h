#pragma once

#include "tests/adapters/Fixture.h"
#include "tests/support/FaultyEngine.h"

/// How a run goes.
struct Direction {
    Faults target = {}; ///< what fails of the target
    Faults source = {}; ///< and of the source
    ErrorAction action = ErrorAction::Ignore;
    ErrorAnswer answer = ErrorAnswer::Ignore; ///< of the operator about the fault, when asked; other errors: Ignora
    std::optional<float> cancelAt = {};
};

/// One line of a fixture's "run.txt" that is run again and again from the same start, with those before it done.
class Rehearsal {
public:
    Rehearsal(const QString& folder, const contract::Origin& origin, const QString& line);

    /// Puts everything back to the start, and forgets what the operator was shown.
    void PutBack();
    /// Runs the line from the start. `Fault` is the one of the direction that was set.
    const RunResult& Run(const Direction& direction);
    /// Runs it once more, on what is there now, without faults.
    /// @param reset whether the tables are emptied first, if the line says so
    void RunAgain(bool reset);
    /// Everything wrong that there is in any case after a run, whatever its end; empty when nothing is.
    QString Wrong();

    /// The rows of the tables that the line writes, whole, but for the memory of translations, which grows in any case.
    QStringList Rows();
    /// The same, each once, without what follows from the order in which rows were written: keys, links, numbers, and
    /// which of two source rows that are one counterparty was the first.
    QStringList Content();
    /// Whether "run.txt" gives a reason for it: "optional TABLE.COLUMN".
    bool Lets(const QString& what) const { return m_fixture.File().words.contains(what); }
    /// Whether it lets a fault do something to the procedure: "keeps rows", "gives place".
    bool May(const QString& what) { return Lets(what + ' ' + Result().procedure); }
    /// Whether every place is tried of the module, which stands for others.
    bool IsClose() const { return m_fixture.File().IsClose(); }
    /// Forgets what runs have learned about the source, as opening it again does.
    void TakeLayout() { m_fixture.TakeLayout(); }
    Session& Get() { return m_fixture.Target().Get(); }
    ScriptedOperator& Person() { return m_fixture.Target().Person; }
    const RunResult& Result() { return Get().Results.last(); }
    QString Log() { return QString::fromLatin1(m_fixture.Target().Log()); }
    /// Keys of the rows that the last run gave up.
    QString GivenUp();

    Faults TargetFault; ///< of the run under way, or the last one
    Faults SourceFault;
    bool StruckInRow = false; ///< whether a source row was under way when the fault struck
    QString StruckRow;        ///< its key
    int StruckAt = 0;         ///< how many rows of the source were read
    RunResult Clean;          ///< of a run without faults
    QStringList CleanRows;    ///< what it leaves
    QString CleanLog;
    int CleanStatements = 0; ///< of the target
    int CleanSource = 0;     ///< statements of the source and rows read from it
    RunResult Second;        ///< of a second run without faults
    QString SecondGivenUp;
    QStringList SecondContent;

private:
    void OpenFaulty();
    void OpenFaultySource();
    void AddTriggers();
    void FreeKeys(const QString& table);
    void Learn();
    void Note(const QString& statement, qint64 rows);
    const RunResult& Call(const QString& line);
    qint64 Count(const QString& table);
    QString Triggers();
    QString WrongCounts();

    Fixture m_fixture;
    QString m_line;
    qsizetype m_sourceAnswers = 0; ///< how many of the answers of the line are about opening the source
    Engine* m_engine = nullptr;    ///< that of the target, without faults
    QStringList m_written;         ///< physical names of the tables that the line writes
    bool m_isLearning = true;
    QMap<QString, qint64> m_deleted;
    QMap<QString, QMap<QString, qint64>> m_deletedBefore; ///< the same, at each mark
    QMap<QString, qint64> m_startCounts;
    QString m_startTriggers;
};
