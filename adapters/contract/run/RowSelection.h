#pragma once

#include "adapters/contract/run/SourceRow.h"

namespace contract {

/// What tells a source row from others: the values of its code columns, as one text.
/// @param keyColumn its code column; several are joined, separated by ", "
QString KeyOf(const SourceRow& row, const QString& keyColumn);
/// The number of a source row in its file; 0: it has none.
qint64 NumberOf(const SourceRow& row);

/// What the refusal to go on with an earlier run ends with, where the source is another one.
inline const QString ImportAnew = QStringLiteral("importare da capo");

/// The source rows that the procedures of a press are limited to: those that an earlier run has given up, with what
/// has been mended in them, or those that it has not reached.
class RowSelection {
public:
    /// A row that is wanted.
    struct Row {
        QString procedure;
        QString name;      ///< in messages (`NameOf`): a row of the same name is wanted whatever else is known of it
        QString table;     ///< of the source
        QString key;       ///< `KeyOf`
        qint64 number = 0; ///< `NumberOf`; by which a row without a key, or with that of others, is known
        /// What a column had, and what stands in its place now, by name.
        struct Mended {
            QVariant was;
            QVariant now;
            QString text = {}; ///< a number as it is written, where its marks may divide thousands; else empty
        };
        QMap<QString, Mended> mended = {};
        QStringList columns = {}; ///< of the source, with what they had when the row was given up; empty: not known
        QVector<QVariant> values = {};
        bool isOfFile = false; ///< of mended rows, which the source is expected to have
        qint64 reject = 0;     ///< its number among the rows given up that are kept; 0: it is none of them

        /// What has been mended, by which two mendings of a row are compared.
        QString MendedText() const;
    };
    /// How far an earlier run of a procedure came: its loops before that one are done, and so many rows of that one.
    struct Reached {
        int loop = 0; ///< from 0
        qint64 rows = 0;
        QString last;       ///< name of the last of these rows
        qint64 givenUp = 0; ///< of these rows, those that it has given up and no later run has imported
        /// Whether it has written the row of a table (physical name) that has a RECORD_ID; null: not known.
        std::function<bool(const QString& table, qint64 id)> hasWritten = {};
    };

    /// The procedure of the list that is to run: what follows is told of it, whatever name its run reports under.
    void Begin(const QString& procedure) { m_procedure = procedure; }

    /// Limits a procedure to rows.
    void Add(const Row& row);
    /// Has a procedure go on behind what an earlier run has reached.
    void GoOn(const QString& procedure, const Reached& reached) { m_reached.insert(procedure, reached); }
    /// Has a procedure not run at all: an earlier run has done it.
    /// @param givenUp rows that it has given up then, and that are not imported yet
    void LeaveOut(const QString& procedure, qint64 givenUp) { m_leftOut.insert(procedure, givenUp); }
    /// What a procedure that is left out has given up; 0 for any other.
    qint64 LeftBy(const QString& procedure) const { return m_leftOut.value(procedure); }

    /// Has it noted when a procedure that goes on has done a row which an earlier run has given up behind what it has
    /// reached. It limits the procedure to nothing.
    void Await(const Row& row) { m_awaited[row.procedure].insert(row.name, row); }
    /// Those that a source row with a name is.
    QVector<const Row*> Awaited(const QString& name) const;

    /// Has rows that are there get codes that they lack, whatever else of them stays as it is.
    void FillCodes() { m_fillsCodes = true; }
    bool FillsCodes() const { return m_fillsCodes; }
    /// One of the codes that they wait for, by its place in SYS_IMP (TBNAM, TBFLD, TBOLD).
    void FillCode(const QString& list, const QString& field, const QString& code);
    bool FillsCode(const QString& list, const QString& field, const QString& code) const;

    /// Whether there is something to do for a procedure: where some are limited to rows, these alone run.
    bool Wants(const QString& procedure) const {
        return !m_leftOut.contains(procedure) && (m_rows.isEmpty() || m_rows.contains(procedure));
    }
    /// How many rows are wanted, of all procedures.
    qint64 Count() const;
    /// Whether the procedure under way is limited to rows; else it takes all of them.
    bool Limits() const { return m_rows.contains(m_procedure); }
    /// How far it has come before; none: it begins anew.
    std::optional<Reached> ReachedBefore() const;
    /// Whether it wrote a row (physical name of its table) then.
    bool HasWritten(const QString& table, qint64 id) const;
    /// The wanted row that a source row (with its columns and values) is; null when it is none. A row that was mended
    /// is the one whose other values are still what they were: its name alone may be that of others.
    const Row* Find(const Row& met);
    /// Those of its rows that have not been met yet, such as those that the source has no more.
    std::vector<Row> NotMet() const;
    /// Whether the rows of its table have been told apart by other columns than a row was when it was given up: by an
    /// older release, which read rows of documents where now their heads are read. Whether it is still there is not
    /// known then.
    bool IsToldOtherwise(const Row& row) const;

    /// Rows that `Find` or `Awaited` has found are done and committed now.
    void Done(const QVector<const Row*>& rows) { m_done += rows; }
    /// Those of the procedure under way, by their names.
    QStringList DoneNames() const;
    /// Those that were given up before.
    QVector<const Row*> DoneRejects() const;

    /// What there is to say of where the rows come from, such as a file, to who imports them.
    void Remark(const QString& remark) { m_remarks.append(remark); }
    const QStringList& Remarks() const { return m_remarks; }

private:
    struct Wanted {
        Row row;
        bool isMet = false;
        qint64 metNumber = 0; ///< of the source row that it was met as last

        bool IsTaken(const Row& met) const;
    };
    Wanted* MostLike(const Row& met, const QString& place);

    QString m_procedure;                                  ///< under way
    QHash<QString, std::vector<Wanted>> m_rows;           ///< by procedure
    QHash<QString, QMultiHash<QString, size_t>> m_places; ///< by procedure, then name, and table with key
    QHash<QString, qsizetype> m_keyParts;                 ///< in how many columns `KeyOf` the rows met stands, by table
    QHash<QString, Reached> m_reached;
    QHash<QString, qint64> m_leftOut;
    QHash<QString, QMultiHash<QString, Row>> m_awaited; ///< by procedure, then name
    QVector<const Row*> m_done;
    QStringList m_remarks;
    bool m_fillsCodes = false;
    QSet<QString> m_codes; ///< that are filled in
};

} // namespace contract
