#pragma once

#include <QString>
#include <QVariantMap>

#include <functional>
#include <memory>

/// A row of a target table under construction. Calculations that end in rows fill it; whoever keeps the account of a
/// run checks the values and writes them.
class Record {
public:
    virtual ~Record() = default;

    /// Sets a column. Raises `ImportError` naming a value that the column does not hold.
    virtual Record& Set(QAnyStringView column, const QVariant& value) = 0;
    virtual void Insert() = 0;
    /// Updates the rows of a condition, with its own WHERE.
    virtual void Update(const QString& where) = 0;
    /// Writes what follows from other rows into the row of a RECORD_ID: nobody has changed it, so that USMDF and DTMDF
    /// stay as they are, and it counts for nothing. @param before what the columns that are written hold by now
    virtual void UpdateDerived(qint64 id, const QVariantMap& before) = 0;

protected:
    Record() = default;
    Record(const Record&) = default;
    Record& operator=(const Record&) = default;
};

/// Begins a row of a table, by its bare name.
using RecordMaker = std::function<std::unique_ptr<Record>(const QString& table)>;
