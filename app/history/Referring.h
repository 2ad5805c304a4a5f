#pragma once

#include "app/brokenReferences.h"
#include "app/history/History.h"

namespace history {

/// The rows that refer to what the taking back of a run removes. Everything raises `SqlError`.
class Referring {
public:
    /// Looks at the codes of the tables that the run has written to, before anything is taken back.
    Referring(Session& session, const History& history, const Run& run);

    /// Once it is taken back: what is left referring to codes that are gone by it. Raises `ImportError` naming the
    /// later runs of its company that wrote some of those rows and stand: they are taken back first.
    std::vector<brokenReferences::Broken> Left() const;

private:
    /// Codes of a table, as they compare.
    using Codes = QSet<QString>;
    struct Column {
        QString table; ///< bare name
        QString name;
        Codes before;
    };
    struct LeftRows {
        brokenReferences::Reference reference;
        QSet<qint64> ids;
    };

    QString PhysicalName(const QString& table) const;
    bool IsThere(const QString& table, const QString& column) const;
    Codes CodesOf(const Column& column) const;
    LeftRows RowsOf(const Column& column, const brokenReferences::Reference& reference, const Codes& gone) const;
    void CheckLaterRuns(const std::vector<LeftRows>& left) const;

    ovConnection& m_quadrix;
    const History& m_history;
    qint64 m_run;
    qint64 m_target;
    QString m_company;
    std::vector<Column> m_columns;
};

} // namespace history
