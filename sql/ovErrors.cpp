#include "sql/ovErrors.h"

namespace {
constexpr int Tries = 4; ///< the first one and three more
} // namespace

void ovErrors::ClearError() { m_entries.clear(); }

ErrorEntry ovErrors::MakeEntry(const std::exception& error) const {
    ErrorEntry entry;
    entry.time = Now();
    entry.rowKey = m_rowKey;
    const auto* ours = dynamic_cast<const Error*>(&error);
    entry.message = ours != nullptr ? ours->Message() : QString::fromUtf8(error.what());
    if (ours != nullptr && !ours->RowKey().isEmpty()) {
        entry.rowKey = ours->RowKey();
    }
    if (const auto* sql = dynamic_cast<const SqlError*>(&error)) {
        entry.statement = sql->Statement();
        entry.engineMessage = sql->EngineMessage();
        if (!sql->EngineCode().isEmpty()) {
            entry.engineMessage += QStringLiteral(" [%1]").arg(sql->EngineCode());
        }
    }
    return entry;
}

void ovErrors::Monitoring(const QString& module, const QString& procedure) {
    ErrorEntry entry;
    try {
        throw;
    } catch (const std::exception& error) {
        entry = MakeEntry(error);
    } catch (...) {
        entry = MakeEntry(ImportError(QStringLiteral("errore sconosciuto")));
    }
    entry.module = module;
    entry.procedure = procedure;
    m_entries.append(entry);
    if (ReportToOperator) {
        ReportToOperator(entry);
    }
}

void ovErrors::Decide(Error& error, int attempt, bool mayBeDone) {
    const ErrorEntry entry = MakeEntry(error);
    bool ignore = Action == ErrorAction::Ignore;
    if (Action == ErrorAction::Retry && attempt < Tries && !mayBeDone) {
        return;
    }
    if (Action == ErrorAction::Ask && AskOperator) {
        const ErrorAnswer answer = AskOperator(entry);
        if (answer == ErrorAnswer::Retry) {
            return;
        }
        ignore = answer == ErrorAnswer::Ignore;
    }
    if (ignore && m_inRow) {
        m_entries.append(entry);
        throw RowGivenUp(entry.message);
    }
    if (m_inRow) {
        error.SetRowKey(m_rowKey);
    }
    throw;
}

ovErrors::Row::Row(ovErrors& errors, const QString& key)
    : m_errors(errors),
      m_outerKey(errors.m_rowKey),
      m_outer(errors.m_inRow) {
    m_errors.m_rowKey = key;
    m_errors.m_inRow = true;
}

ovErrors::Row::~Row() {
    m_errors.m_rowKey = m_outerKey;
    m_errors.m_inRow = m_outer;
}
