#pragma once

#include "app/brokenReferences.h"
#include "app/history/History.h"

namespace history {

/// The rows that refer to what the taking back of a run removes. Everything raises `SqlError`.
class Referring {
public:
    /// Rows that are left, by table and column.
    struct Left {
        std::vector<brokenReferences::Broken> byRun; ///< referring to codes that the run had brought
        /// Of earlier runs, which wrote them when those codes were not there yet: it is as it was before the run.
        std::vector<brokenReferences::Broken> before;
    };

    /// Looks at the codes of the tables that the run has written to, before anything is taken back.
    Referring(Session& session, const History& history, const Run& run);

    /// Once it is taken back: what is left referring to codes that are gone by it. Raises `ImportError` naming the
    /// later runs that stand and gave some of those rows such a code: they are taken back first. To tables that all
    /// companies share these are the runs of all of them.
    Left WhatIsLeft() const;

private:
    /// Codes of a table, as they compare.
    using Codes = QSet<QString>;
    struct Column {
        QString table; ///< bare name
        QString name;
        Codes before;
    };
    /// Rows of a table that one reference leaves.
    struct LeftRows {
        brokenReferences::Reference reference;
        QString table;                     ///< physical name
        bool isOfAll = false;              ///< what they refer to is of all companies
        bool isOfMerged = false;           ///< a merge gave them their codes, whoever has written them
        QHash<qint64, QString> codes = {}; ///< by number of the row
        QSet<qint64> ofHands = {};         ///< somebody has changed them since they were imported
        QSet<qint64> ofEarlier = {};       ///< an earlier run has written them
        QSet<qint64> ofLater = {};         ///< a later one has given them their code
    };

    QString PhysicalName(const QString& table) const { return brokenReferences::PhysicalName(table, m_company); }
    bool IsThere(const QString& table, const QString& column) const;
    Codes CodesOf(const Column& column) const;
    void AddRows(const Column& column, const brokenReferences::Reference& reference, const Codes& gone,
                 std::vector<LeftRows>& all) const;
    std::vector<LeftRows> AllRows() const;
    void FindWriters(std::vector<LeftRows>& left) const;
    bool TakeWriter(LeftRows& rows, qint64 id, const Recordset& change) const;

    ovConnection& m_quadrix;
    const History& m_history;
    qint64 m_run;
    qint64 m_target;
    QString m_company;
    std::vector<Column> m_columns;
};

} // namespace history
