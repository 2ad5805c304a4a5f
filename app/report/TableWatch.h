#pragma once

#include "app/report/names.h"
#include "app/report/Proof.h"
#include "app/report/SourceRows.h"

namespace proof {

/// A table of Quadrix around a trial: what the trial would change in it is what source and Quadrix do not agree about.
/// Of each row no more is kept than a number that tells whether it has changed.
class TableWatch {
public:
    /// @param table one that the database has @param leftOut columns that are not compared @param sourceRows where rows
    /// that are rewritten come from
    TableWatch(Session& session, const schema::Table& table, QStringList leftOut, const SourceRows& sourceRows);

    // In this order; each reads the whole table, and raises `SqlError`:
    void Before(); ///< the trial
    void After();  ///< it, within its transaction
    void Since();  ///< it was taken back
    /// How many of some rows (RECORD_ID) it has changed.
    qint64 DifferentOf(const QSet<qint64>& rows) const;
    /// What came of it.
    const TableFigures& Figures() const { return m_figures; }

private:
    /// What is remembered of a row.
    struct Print {
        quint64 content = 0;
        quint64 marks = 0; ///< who has changed it last, and when
    };
    enum class State { Equal, Different, Surplus };
    using Prints = QHash<qint64, Print>;
    /// A row that is shown.
    struct Image {
        qint64 id = 0;
        QVector<QVariant> values;
    };

    void Scan(const std::function<void(qint64 id, const Recordset& row)>& work);
    void ReadColumns(const Recordset& rows);
    int PositionOf(const QString& column) const;
    bool IsCompared(int column) const;
    Print PrintOf(const Recordset& row) const;
    QString Canonical(int column, const QVariant& value) const;
    void Place(qint64 id, const Recordset& row, Prints& rest, QMultiHash<quint64, qint64>& fresh);
    void Pair(const Prints& rest, QMultiHash<quint64, qint64>& fresh);
    void NoteSample(qint64 id, quint64 content);
    std::vector<Image> Images(const QList<qint64>& ids);
    QString Title(const Image& image) const;
    QVariant ValueIn(const Image& image, const QString& column) const;
    Total& TotalOf(const Recordset& row);
    void AddTo(Total& total, const Recordset& row, bool isSource);
    void CompareKept();
    void AddSurplus();
    Sample SampleOf(const Image& source, const Image& target) const;

    Session& m_session;
    const schema::Table& m_table;
    QStringList m_leftOut;
    const SourceRows& m_sourceRows;
    QString m_name; ///< physical
    QStringList m_columns;
    std::vector<const schema::Column*> m_known; ///< by position; null for a column that the schema does not have
    std::vector<bool> m_isCompared;             ///< the same
    int m_id = -1;
    Prints m_before;
    QHash<qint64, State> m_states; ///< of the rows that were there and that the trial has written
    QList<qint64> m_different;     ///< the first of them
    QList<qint64> m_surplus;       ///< the same
    QMap<quint64, qint64> m_sampled;
    std::vector<Image> m_after; ///< of those that differ, and of the samples
    QHash<QString, size_t> m_groups;
    TableFigures m_figures;
};

} // namespace proof
