#include "sql/ovErrors.h"

#include "sql/visibleText.h"

namespace {
constexpr int Tries = 4; ///< the first one and three more
} // namespace

void ovErrors::ClearError() {
    m_entries.clear();
    m_count = 0;
}

QVector<ErrorEntry> ovErrors::Since(qint64 count) const {
    const qint64 fresh = m_count - count;
    return fresh <= 0 ? QVector<ErrorEntry>() : m_entries.mid(std::min<qint64>(count, m_entries.size() - 1));
}

void ovErrors::Keep(const ErrorEntry& entry) {
    ++m_count;
    if (m_entries.size() < MostKept) {
        m_entries.append(entry);
    } else {
        m_entries.last() = entry;
    }
}

ErrorEntry ovErrors::MakeEntry(const std::exception& error) const {
    ErrorEntry entry;
    entry.time = Now();
    entry.rowKey = RowKey();
    entry.message = MessageOf(error);
    if (const auto* ours = dynamic_cast<const Error*>(&error); ours != nullptr && !ours->RowKey().isEmpty()) {
        entry.rowKey = ours->RowKey();
    }
    entry.mayPass = dynamic_cast<const ImportError*>(&error) == nullptr;
    // In a row the text is about values, which may hold anything; elsewhere the program lays it out in lines.
    entry.message = entry.rowKey.isEmpty() ? VisibleText(entry.message) : VisibleLine(entry.message);
    if (const auto* sql = dynamic_cast<const SqlError*>(&error)) {
        entry.mayPass = sql->MayPass() || !sql->IsExplained();
        entry.statement = VisibleText(sql->Statement());
        entry.engineMessage = VisibleText(sql->EngineMessage());
        if (!sql->EngineCode().isEmpty()) {
            entry.engineMessage += QStringLiteral(" [%1]").arg(sql->EngineCode());
        }
    }
    return entry;
}

void ovErrors::Monitoring(const QString& module, const QString& procedure) {
    ErrorEntry entry;
    bool wasShown = false;
    try {
        throw;
    } catch (const Error& error) {
        entry = MakeEntry(error);
        wasShown = error.WasShown();
    } catch (const std::exception& error) {
        entry = MakeEntry(error);
    } catch (...) {
        entry = MakeEntry(ImportError(QStringLiteral("errore sconosciuto")));
    }
    entry.module = module;
    entry.procedure = procedure;
    Keep(entry);
    if (wasShown) {
        return;
    }
    m_waiting.append(entry);
    if (!m_asWhole) {
        ShowWaiting();
    }
}

void ovErrors::ShowWaiting() {
    for (const ErrorEntry& entry : std::exchange(m_waiting, {})) {
        if (ReportToOperator) {
            ReportToOperator(entry);
        }
    }
}

ErrorAnswer ovErrors::AnswerTo(const ErrorEntry& entry, bool mayTryAgain) const {
    switch (Action) {
    case ErrorAction::Retry:
        return mayTryAgain ? ErrorAnswer::Retry : ErrorAnswer::Abort;
    case ErrorAction::Ignore:
        return ErrorAnswer::Ignore;
    case ErrorAction::Ask:
        return AskOperator ? AskOperator(entry) : ErrorAnswer::Abort;
    case ErrorAction::Abort:
        break;
    }
    return ErrorAnswer::Abort;
}

void ovErrors::Decide(Error& error, int attempt, bool mayBeDone) {
    if (m_asWhole) {
        throw;
    }
    const ErrorEntry entry = MakeEntry(error);
    const bool asks = Action == ErrorAction::Ask && AskOperator;
    const ErrorAnswer answer = AnswerTo(entry, attempt < Tries && !mayBeDone);
    if (answer == ErrorAnswer::Retry) {
        return;
    }
    if (answer == ErrorAnswer::IgnoreAll) {
        Action = ErrorAction::Ignore;
    }
    if (answer != ErrorAnswer::Abort && InRow()) {
        Keep(entry);
        throw RowGivenUp(entry.message);
    }
    if (InRow()) {
        error.SetRowKey(RowKey());
    }
    if (asks) {
        error.SetShown();
    }
    throw;
}

ovErrors::Row::Row(ovErrors& errors, QString key)
    : m_errors(errors),
      m_outer(std::exchange(errors.m_row, this)),
      m_key(std::move(key)) {}

ovErrors::Row::Row(ovErrors& errors, std::function<QString()> key)
    : m_errors(errors),
      m_outer(std::exchange(errors.m_row, this)),
      m_makeKey(std::move(key)) {}

ovErrors::Row::~Row() { m_errors.m_row = m_outer; }

QString ovErrors::Row::Key() const {
    const QString key = m_makeKey ? m_makeKey() : m_key;
    return VisibleLine(m_makeKey && m_outer != nullptr ? m_outer->Key() + QStringLiteral(", ") + key : key);
}
