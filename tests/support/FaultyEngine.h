#pragma once

#include "sql/engine.h"
#include "sql/errors.h"

#include <functional>
#include <limits>

/// What of an engine fails.
struct Faults {
    static constexpr int Always = std::numeric_limits<int>::max();
    static inline const QString Words = QStringLiteral("guasto di prova");

    int first = 0;           ///< the first that fails, from 1; 0 for none
    int times = 1;           ///< how many in a row; `Always` for every one from then on; 0 only calls `struck`
    bool rows = false;       ///< whether the reading of each row counts too, beside the statements
    bool ends = false;       ///< whether the database ends an open transaction with the first
    int seen = 0;            ///< how many were asked for so far
    int read = 0;            ///< rows so far
    QStringList failed = {}; ///< their texts
    std::function<void()> struck = {}; ///< called when the first fails

    void Meet(const QString& text) {
        ++seen;
        if (first == 0 || seen < first) {
            return;
        }
        if (seen == first && struck) {
            struck();
        }
        if (seen - first < times) {
            failed.append(text);
            throw SqlError(text, Words, QStringLiteral("GUASTO"));
        }
    }
};

/// A cursor that can break between two rows.
class FaultyCursor final : public Cursor {
public:
    FaultyCursor(std::unique_ptr<Cursor> cursor, Faults& faults, QString statement)
        : m_cursor(std::move(cursor)),
          m_faults(faults),
          m_statement(std::move(statement)) {}

    bool Next() override {
        ++m_faults.read;
        if (m_faults.rows) {
            m_faults.Meet(m_statement);
        }
        return m_cursor->Next();
    }
    const QStringList& Columns() const override { return m_cursor->Columns(); }
    QVariant Value(int column) const override { return m_cursor->Value(column); }

private:
    std::unique_ptr<Cursor> m_cursor;
    Faults& m_faults;
    QString m_statement;
};

/// An engine whose statements fail where the test wants it, as if the database had refused them.
class FaultyEngine : public Engine {
public:
    /// Sees each statement that has run, with the rows that it changed.
    using Ran = std::function<void(const QString& statement, qint64 rows)>;

    FaultyEngine(std::unique_ptr<Engine> engine, Faults& faults, Ran ran = {})
        : m_engine(std::move(engine)),
          m_faults(faults),
          m_ran(std::move(ran)) {}

    Dialect TextDialect() const override { return m_engine->TextDialect(); }
    std::optional<qint64> ChangesOfOthers() override { return m_engine->ChangesOfOthers(); }
    bool KeepsTexts(const QString& table, const QString& column) override {
        return m_engine->KeepsTexts(table, column);
    }
    qint64 Run(const QString& statement) override {
        Meet(statement);
        const qint64 rows = m_engine->Run(statement);
        if (m_ran) {
            m_ran(statement, rows);
        }
        return rows;
    }
    std::unique_ptr<Cursor> Query(const QString& statement) override {
        Meet(statement);
        return std::make_unique<FaultyCursor>(m_engine->Query(statement), m_faults, statement);
    }
    // The test's own transaction is open around those of the program.
    void Begin() override {
        Do(QStringLiteral("SAVEPOINT own"));
        m_isOpen = true;
    }
    void Commit() override {
        try {
            m_faults.Meet(QStringLiteral("COMMIT"));
        } catch (const SqlError&) {
            RollBack();
            throw;
        }
        End();
    }
    void RollBack() override {
        if (m_isOpen) {
            Do(QStringLiteral("ROLLBACK TO own"));
            End();
        }
    }
    bool TransactionStands(bool afterFailure) override { return m_isOpen && m_engine->TransactionStands(afterFailure); }
    void SetMark() override { Do(QStringLiteral("SAVEPOINT QDX_ROW")); }
    void RollBackToMark() override { Do(QStringLiteral("ROLLBACK TO QDX_ROW")); }
    void Interrupt() noexcept override { m_engine->Interrupt(); }
    qint64 LastInsertId() override { return m_engine->LastInsertId(); }
    QStringList Tables() override { return m_engine->Tables(); }
    QVector<ColumnInfo> Columns(const QString& table) override { return m_engine->Columns(table); }
    QVector<ColumnBounds> Bounds(const QString& table) override { return m_engine->Bounds(table); }
    void SetTriggersEnabled(const QString& table, bool enabled) override {
        Meet(QStringLiteral("trigger ") + table);
        m_engine->SetTriggersEnabled(table, enabled);
    }
    QStringList TriggerObstacles(const QString& table) override { return m_engine->TriggerObstacles(table); }
    bool TakeLock(const QString& name, const QString& holder) override { return m_engine->TakeLock(name, holder); }
    QString LockHolder(const QString& name) override { return m_engine->LockHolder(name); }
    void ReleaseLock(const QString& name) noexcept override { m_engine->ReleaseLock(name); }
    QString RestartStatement(const QString& table) override { return m_engine->RestartStatement(table); }

private:
    void Meet(const QString& statement) {
        try {
            m_faults.Meet(statement);
        } catch (const SqlError&) {
            if (m_faults.ends) {
                RollBack();
            }
            throw;
        }
    }
    /// What marks or takes back is seen too.
    void Do(const QString& statement) {
        m_engine->Run(statement);
        if (m_ran) {
            m_ran(statement, 0);
        }
    }
    void End() {
        m_engine->Run(QStringLiteral("RELEASE own"));
        m_isOpen = false;
    }

    std::unique_ptr<Engine> m_engine;
    bool m_isOpen = false;
    Faults& m_faults;
    Ran m_ran;
};
