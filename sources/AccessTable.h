#pragma once

#include "sources/AccessDatabase.h"
#include "sources/Oddities.h"
#include "sources/privateDatabase.h"
#include "sources/UntoldPage.h"
#include "sql/CodePage.h"

#include <QSet>

#include <array>

namespace sources {

/// A table of an Access database, read forward one row at a time.
///
/// Texts stay as they are; an empty one is no Null. Numbers come as they were entered: a currency amount or a decimal
/// with more digits than a double keeps stays a text. Dates come as text "yyyyMMdd hh:mm:ss", yes/no as 1 and 0, a
/// replication number as "6BA7B810-9DAD-11D1-80B4-00C04FD430C8", pictures, objects and binary data as their bytes, a
/// calculated column as the value that was kept of it.
/// A value that is damaged is noted and raises `ImportError`, naming row and column, when it is asked for.
class AccessTable {
public:
    /// Reads the definition. @param settings its `codePage` is that of the texts of Access 97 when the file tells none.
    /// Raises `ImportError` when it is damaged.
    AccessTable(AccessDatabase& database, const AccessDatabase::Entry& entry, const ConnectionSettings& settings);

    /// The columns, without those whose values are kept in tables of their own (attachments, lists of values) and of
    /// kinds that are not known, which are noted: asking for one of them is an error.
    const QVector<ColumnInfo>& Columns() const { return m_columns; }
    /// Adds every row to a table with those columns. Raises `ImportError` when there are fewer rows than the definition
    /// announces; more are noted.
    void CopyRows(PrivateTable& target);

private:
    void ReadColumns();
    bool ReadDefinition(int& at, QByteArray& bytes);
    QSet<int> CalculatedColumns();
    MdbField ValueOf(int column) const;
    void CopyRow(PrivateTable& target);
    void CopyValue(PrivateTable& target, int column, const MdbField& field);
    void CopyText(PrivateTable& target, int column, QByteArrayView bytes);
    void CopyDateTime(PrivateTable& target, int column, double days);
    QByteArray LongValue(MdbColumn& column, const MdbField& field);
    QByteArrayView Bytes(const MdbField& field) const;
    QByteArrayView Fixed(const MdbField& field, qsizetype size) const;
    MdbColumn& ColumnAt(int index) const;

    MdbHandle* m_handle;
    bool m_isUnicode;
    CodePage m_page; ///< of texts that are not
    UntoldPage m_untold;
    Oddities m_oddities;
    AccessDefinition m_table;
    QVector<ColumnInfo> m_columns;
    qint64 m_row = 0;       ///< under way, from 1
    QVector<int> m_indexes; ///< of the columns that are read, in the definition
    QSet<int> m_calculated; ///< numbers of the columns whose values have a head
    std::array<MdbField, MDB_MAX_COLS> m_fields{};
    QByteArray m_chunk; ///< a part of a long value
};

} // namespace sources
