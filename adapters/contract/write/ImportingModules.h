#pragma once

#include "adapters/contract/run/ImportRun.h"

namespace contract {

/// Which modules import into a table of the company: rows of several cannot be told apart, as imports have one user.
/// SYS_IMP keeps a row for each module and table, in a list of the company's own. Every operation raises `SqlError`.
class ImportingModules {
public:
    /// @param table bare name @param field of the list, where what is imported hangs on rows of the table
    ImportingModules(ImportRun& run, QString table, QString field = QStringLiteral("MODULO"))
        : m_run(run),
          m_table(std::move(table)),
          m_field(std::move(field)) {}

    /// Has SYS_IMP say that the module of the run imports into the table. Called with each row, before it is written:
    /// where no row of an import is left, those that wrote them are forgotten.
    void Keep();
    /// Whether no other module imports into the table, so that what the run has not met is of its own origin. Else one
    /// line of log and result tells that it is not looked for. @param what the rows, in the operator's words
    bool IsAlone(const QString& what) const;
    /// Tells of what earlier imports have written and the run has not met, each by itself (`TellNotMetAgain`), unless
    /// another module imports it too. @param kind in capitals, e.g. "RIGHE" @param what as above
    void TellLeft(const QString& kind, const QString& what, const QStringList& left) const;

private:
    QString List() const { return m_run.FullName(m_table); }
    QString OfList() const;
    QStringList Others() const;

    ImportRun& m_run;
    QString m_table;
    QString m_field;
    bool m_isKept = false;
};

} // namespace contract
