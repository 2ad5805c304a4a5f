#pragma once

#include "sql/errors.h"

#include <QDateTime>
#include <QVector>

#include <functional>
#include <utility>

/// What a failing statement leads to; the numbers are those of the collector's `Action`.
enum class ErrorAction : int {
    Retry = 0,  ///< the statement is tried three times more, unless it may have been carried out; then it fails
    Ignore = 1, ///< the source row under way is given up; outside a row it fails
    Abort = 2,  ///< the procedure fails
    Ask = 3,    ///< the operator chooses
};

/// The operator's choice when `Action` is `Ask`.
enum class ErrorAnswer {
    Retry,
    Ignore,
    IgnoreAll, ///< this row and every later one whose work fails, without asking again
    Abort,
};

/// One error as the collector keeps it: its texts show what would not be seen (`sql/visibleText.h`).
struct ErrorEntry {
    QDateTime time;
    QString module;        ///< for example "modImport_Arca2000"; empty while the error is only being decided
    QString procedure;     ///< for example "ImportContropartiArca2000"
    QString message;       ///< the whole message, with the context it gained
    QString statement;     ///< empty when no statement failed
    QString engineMessage; ///< the engine's own words and code; empty when no statement failed
    QString rowKey;        ///< the source row under way; empty outside a row
    bool mayPass = true;   ///< whether the same may succeed when it is tried again, as far as is known
};

/// The source row under way has been given up: its error is already in the collector.
/// Only the row loop of a procedure catches it.
class RowGivenUp : public Error {
public:
    using Error::Error;
};

/// Error collector: keeps the errors of the run, decides what a failing statement leads to and reports errors.
class ovErrors {
public:
    /// Shows the operator an error and asks what to do about it. Without it `Ask` behaves like `Abort`.
    std::function<ErrorAnswer(const ErrorEntry&)> AskOperator;
    /// Shows an error that ended a procedure.
    std::function<void(const ErrorEntry&)> ReportToOperator;
    /// The time written into the entries.
    std::function<QDateTime()> Now = [] { return QDateTime::currentDateTime(); };

    ErrorAction Action = ErrorAction::Ask;

    /// Empties the collection; `Action` stays.
    void ClearError();

    /// Takes in the exception being handled (call it inside a catch block) under the name of the procedure that it
    /// ended, and shows it to the operator, unless he has ended the procedure himself when he was asked about it.
    void Monitoring(const QString& module, const QString& procedure);

    /// Entries that are kept at the most; a row given up for each of many rows must not fill the memory.
    static constexpr qsizetype MostKept = 1000;
    /// The errors taken in since `ClearError`, oldest first: the first ones and the last one, `MostKept` in all.
    const QVector<ErrorEntry>& Entries() const { return m_entries; }
    /// How many were taken in since `ClearError`, with those that are not kept.
    qint64 Count() const { return m_count; }
    /// The errors taken in since `Count` was that number, as far as they are kept: the last one always is.
    QVector<ErrorEntry> Since(qint64 count) const;

    /// Decides about the error being handled (call it inside its catch block) after `attempt` tries (from 1). Returns
    /// when the work is to be tried again; otherwise raises `RowGivenUp` (the row under way is given up) or raises the
    /// error again, with the key of the row under way.
    /// @param mayBeDone whether the work may have been done in spite of the error: it could be done twice, and is tried
    /// again only when the operator says so; `Retry` then fails at once
    /// Raises the error being handled at once where the row stands or falls as a whole (`AsWhole`).
    void Decide(Error& error, int attempt, bool mayBeDone = false);

    /// Key of the source row under way, for the entries; empty outside a row.
    QString RowKey() const { return m_row == nullptr ? QString() : m_row->Key(); }
    /// Key of the source row that the one under way is part of; its own where it is part of none.
    QString WholeRowKey() const { return m_row == nullptr ? QString() : m_row->Outermost().Key(); }
    bool InRow() const { return m_row != nullptr; }

    /// Marks a source row as under way for its lifetime; a row within a row gives way to the outer one again.
    class Row {
    public:
        Row(ovErrors& errors, QString key);
        /// A part of the row under way, whose key stands behind that one's. Few are ever asked for it.
        Row(ovErrors& errors, std::function<QString()> key);
        ~Row();
        Row(const Row&) = delete;
        Row& operator=(const Row&) = delete;
        QString Key() const;
        const Row& Outermost() const { return m_outer == nullptr ? *this : m_outer->Outermost(); }

    private:
        ovErrors& m_errors;
        const Row* m_outer;
        QString m_key;
        std::function<QString()> m_makeKey;
    };

    /// While it lives, the source row under way stands or falls as a whole: nothing is decided about a failing
    /// statement, whose error rises to whoever does the whole row again, and what is to be shown waits for
    /// `ShowWaiting`.
    class AsWhole {
    public:
        explicit AsWhole(ovErrors& errors)
            : m_errors(errors),
              m_before(std::exchange(errors.m_asWhole, true)) {}
        ~AsWhole() { m_errors.m_asWhole = m_before; }
        AsWhole(const AsWhole&) = delete;
        AsWhole& operator=(const AsWhole&) = delete;

    private:
        ovErrors& m_errors;
        bool m_before;
    };
    /// Shows the operator what had to wait.
    void ShowWaiting();

    /// Another `Action` for its lifetime.
    class Acting {
    public:
        Acting(ovErrors& errors, ErrorAction action)
            : m_errors(errors),
              m_before(std::exchange(errors.Action, action)) {}
        ~Acting() { m_errors.Action = m_before; }
        Acting(const Acting&) = delete;
        Acting& operator=(const Acting&) = delete;

    private:
        ovErrors& m_errors;
        ErrorAction m_before;
    };

private:
    ErrorEntry MakeEntry(const std::exception& error) const;
    ErrorAnswer AnswerTo(const ErrorEntry& entry, bool mayTryAgain) const;
    void Keep(const ErrorEntry& entry);

    QVector<ErrorEntry> m_entries;
    qint64 m_count = 0;
    const Row* m_row = nullptr; ///< the innermost one under way
    bool m_asWhole = false;
    QVector<ErrorEntry> m_waiting; ///< to be shown
};

/// The border of a public procedure: runs `body`; an error is reported through `Monitoring` and gives `fallback`.
template<class Body, class Result>
Result Guarded(ovErrors& errors, const QString& module, const QString& procedure, Result fallback, Body&& body) {
    try {
        return body();
    } catch (...) {
        errors.Monitoring(module, procedure);
        return fallback;
    }
}
