#pragma once

#include "app/history/RowNumbers.h"

#include <QHash>

class ovConnection;

namespace history {

/// The rows of Quadrix that procedures of runs have written up to the source row that each had reached.
class WrittenRows {
public:
    /// @param path of the history @param procedures by their numbers in it
    WrittenRows(QString path, QStringList procedures)
        : m_path(std::move(path)),
          m_procedures(std::move(procedures)) {}

    /// Whether they have written the row with a RECORD_ID and have not deleted it since. Raises `SqlError`.
    /// @param table physical name; its rows are read when it is asked for first
    bool Has(const QString& table, qint64 id);

private:
    RowNumbers Read(const QString& table) const;

    QString m_path;
    QStringList m_procedures;
    QHash<QString, RowNumbers> m_rows; ///< by table
};

} // namespace history
