#include "adapters/contract/ImportRun.h"

#include "core/modImport.h"
#include "sql/mod_ovTools.h"

namespace contract {

namespace {

constexpr qsizetype KeptReasons = 1000; ///< rows given up that the result lists; the log names them all

/// Adds what of a need is missing in a database to the list.
void AddMissing(QStringList& missing, ovConnection& connection, const TableNeed& need, const QString& where) {
    const QString table = connection.GetFullTableName(need.table);
    const QVector<ColumnInfo> columns = connection.GetColumns(table);
    if (columns.isEmpty()) {
        missing.append(QStringLiteral("%1: tabella '%2'").arg(where, table));
        return;
    }
    QSet<QString> names;
    for (const ColumnInfo& column : columns) {
        names.insert(column.name.toUpper());
    }
    for (const QString& column : need.columns) {
        if (!names.contains(column.toUpper())) {
            missing.append(QStringLiteral("%1: colonna '%2.%3'").arg(where, table, column));
        }
    }
}

/// "tabella 'anagrafe', riga 214, codice 'C00012'", as far as the row tells.
QString KeyOf(const ImportRun::Loop& loop, const SourceRow& row) {
    QString key = QStringLiteral("tabella '%1'").arg(loop.table);
    static const QString recordNumber = QStringLiteral("_RECNO");
    if (row.HasColumn(recordNumber)) {
        key += QStringLiteral(", riga ") + row.Text(recordNumber);
    }
    return key + QStringLiteral(", %1 '%2'").arg(loop.keyColumn, row.Text(loop.keyColumn));
}

} // namespace

ImportRun::ImportRun(Session& session, const QString& module, const QString& procedure, const QString& singleCode)
    : m_session(session), m_single(!singleCode.isEmpty()), m_untranslatedBefore(session.Untranslated.size()),
      m_errorsBefore(session.Errors.Entries().size()) {
    m_result.module = module;
    m_result.procedure = procedure;
    m_clock.start();
}

void ImportRun::Guard(const std::function<void()>& body) {
    const Operator::Busy busy(m_session.Person);
    try {
        body();
    } catch (...) {
        m_failed = true;
        m_session.Errors.Monitoring(m_result.module, m_result.procedure);
    }
    Finish();
}

void ImportRun::Finish() {
    m_result.notReached = std::max<qint64>(
        0, m_result.sourceRows - m_result.inserted - m_result.updated - m_result.skipped - m_result.givenUpCount);
    if (m_failed) {
        m_result.outcome = RunResult::Outcome::Failed;
        m_result.errors.append(m_session.Errors.Entries().last().message);
    }
    m_result.untranslated = m_session.Untranslated.mid(m_untranslatedBefore);
    m_result.seconds = static_cast<double>(m_clock.elapsed()) / 1000;
    m_session.Results.append(m_result);
}

void ImportRun::Announce(const QString& announcement) {
    if (!m_single) {
        modImport::WriteImportLog(m_session, announcement, true);
    }
}

void ImportRun::Preflight(const std::vector<TableNeed>& reads, const std::vector<TableNeed>& writes) {
    QStringList missing;
    for (const TableNeed& need : reads) {
        AddMissing(missing, m_session.SourceConnection(), need, QStringLiteral("origine"));
    }
    for (const TableNeed& need : writes) {
        AddMissing(missing, m_session.Quadrix, need, QStringLiteral("Quadrix"));
    }
    if (!missing.isEmpty()) {
        throw ImportError(QStringLiteral("Nulla è stato scritto, manca quanto segue:\n") + missing.join(u'\n'));
    }
}

void ImportRun::Truncate(bool reset, const QStringList& tables) {
    if (!reset) {
        return;
    }
    for (const QString& table : tables) {
        m_session.Quadrix.Execute(QStringLiteral("TRUNCATE TABLE ") + FullName(table));
    }
}

bool ImportRun::Ask(const QString& question) { return m_session.Person.Ask(question); }

bool ImportRun::Rows(const Loop& loop, const std::function<RowOutcome(const SourceRow&)>& row) {
    ovConnection& source = m_session.SourceConnection();
    std::unique_ptr<Progress> progress;
    const qint64 count = source.ExecuteCommand(loop.count);
    if (!m_single) {
        progress = m_session.Person.ShowProgress();
        progress->SetStep(loop.step);
        progress->SetMax(static_cast<float>(count));
    }
    m_result.sourceRows += count;
    qint64 read = 0;
    Recordset rows = source.ExecuteWC(loop.select);
    for (const SourceRow current(rows); !rows.Eof(); rows.MoveNext()) {
        if (progress && progress->Cancel()) {
            m_result.outcome = RunResult::Outcome::Cancelled;
            return false;
        }
        if (++read > count) {
            ++m_result.sourceRows; // the source has grown since the count
        }
        ProcessRow(KeyOf(loop, current), [&] { return row(current); });
        if (progress) {
            progress->SetValue(static_cast<float>(read));
        }
    }
    return true;
}

void ImportRun::ProcessRow(const QString& key, const std::function<RowOutcome()>& row) {
    const ovErrors::Row underWay(m_session.Errors, key);
    for (int attempt = 1;; ++attempt) {
        m_written.clear();
        try {
            Account(row());
            return;
        } catch (const RowGivenUp& error) {
            GiveUp(key, error.Message());
            return;
        } catch (ImportError& error) {
            TakeBack();
            try {
                m_session.Errors.Decide(error, attempt);
            } catch (const RowGivenUp&) {
                GiveUp(key, error.Message());
                return;
            } catch (...) {
                GiveUp(key, error.Message());
                throw;
            }
        } catch (const Error& error) {
            GiveUp(key, error.Message());
            throw;
        }
    }
}

void ImportRun::Account(RowOutcome outcome) {
    switch (outcome) {
    case RowOutcome::Inserted:
        ++m_result.inserted;
        break;
    case RowOutcome::Updated:
        ++m_result.updated;
        break;
    case RowOutcome::Skipped:
        ++m_result.skipped;
        break;
    }
}

void ImportRun::GiveUp(const QString& key, const QString& reason) {
    TakeBack();
    ++m_result.givenUpCount;
    if (m_result.givenUp.size() < KeptReasons) {
        m_result.givenUp.append({key, reason});
    }
    Log(QStringLiteral("Riga abbandonata: %1: %2").arg(key, reason));
}

void ImportRun::TakeBack() {
    const std::vector<Written> written = std::exchange(m_written, {});
    for (auto row = written.rbegin(); row != written.rend(); ++row) {
        try {
            m_session.Quadrix.Execute(QStringLiteral("DELETE FROM %1 WHERE RECORD_ID = %2").arg(FullName(row->table)).arg(row->id));
            ++m_result.tables[row->table].takenBack;
        } catch (const Error& error) {
            Log(QStringLiteral("Rimane in %1 la riga %2 di una riga abbandonata: %3")
                    .arg(FullName(row->table))
                    .arg(row->id)
                    .arg(error.Message()));
        }
    }
}

void ImportRun::Inserted(const QString& table) {
    ++m_result.tables[table].inserted;
    m_written.push_back({table, m_session.Quadrix.LastInsertId()});
}

void ImportRun::Updated(const QString& table) { ++m_result.tables[table].updated; }

void ImportRun::Complete(const QString& message) {
    if (!m_single && m_result.outcome == RunResult::Outcome::Done) {
        m_session.Person.Message(message);
    }
}

void ImportRun::Log(const QString& message) { modImport::WriteImportLog(m_session, message, false); }

QString ImportRun::Quoted(const QString& text) const {
    return mod_ovTools::FormatSqlValue(text, DataType::NVarChar, m_session.Quadrix.ProviderType);
}

} // namespace contract
