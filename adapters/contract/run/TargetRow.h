#pragma once

#include "core/Record.h"
#include "core/RunObserver.h"
#include "core/Schema.h"
#include "sql/PendingRows.h"

namespace contract {

class ImportRun;

/// A row of a target table under construction. Types and sizes come from the schema: a text that is longer than its
/// column, a number that is none or that its column does not hold as it is, or a date that is none raises `ImportError`
/// naming the value.
class TargetRow final : public Record {
public:
    /// @param table bare name; one that the schema does not know raises `ImportError`
    TargetRow(ImportRun& run, const QString& table);

    /// Sets a column; a blank number or date is Null. Codes and texts that people read are written in upper case when
    /// the configuration says so (KEYFIELD_CHAR, TEXTFIELD_CHAR). Setting a column twice keeps the second value.
    TargetRow& Set(QAnyStringView column, const QVariant& value) override;
    /// Sets a column that has not been set if the row is inserted; one that is there keeps what it has.
    TargetRow& SetWhenNew(QAnyStringView column, const QVariant& value);
    /// Has a row that is there keep what it has in columns; a new one gets what they have been set to.
    void KeepThere(const QStringList& columns);
    /// Takes back what a column was set to.
    void Unset(QAnyStringView column);
    /// Sets a column to the identity value of a new row, which may not be known yet.
    TargetRow& SetId(QAnyStringView column, const PendingRows::Id& id);
    /// What a column has been set to, also for a new row alone; none when it has not been.
    QVariant Value(QAnyStringView column) const;
    /// The text that a column of its table has been set to, without surrounding blanks; empty where that is no text.
    /// The view lives until the row is changed.
    QStringView TextOf(const schema::Column& column) const;
    QString Table() const { return m_table->name; }
    /// Whether a column has been set, and not for a new row alone.
    bool IsSet(QAnyStringView column) const { return FieldOf(Find(column)) != nullptr; }
    /// Inserts the row, with USINS and (unless set) DTINS; both are counted to the source row under way. The name
    /// or description of a row that was set to nothing is told in the log: nobody will know what it is.
    void Insert() override;
    /// Updates the rows of a condition (with its own WHERE), with USMDF and DTMDF unless they are set.
    void Update(const QString& where) override;
    void UpdateDerived(qint64 id, const QVariantMap& before) override;

private:
    QString CheckedText(const schema::Column& column, const QVariant& value) const;
    QVariant Checked(const schema::Column& column, const QVariant& value) const;
    const schema::Column& Find(QAnyStringView column) const;
    size_t PlaceOf(const schema::Column& column) const {
        return static_cast<size_t>(&column - m_table->columns.data());
    }
    const QueryField* FieldOf(const schema::Column& column) const;
    void TellNameless() const;
    void TellInserted(const PendingRows::Id& id) const;

    ImportRun& m_run;
    const schema::Table* m_table;
    ovQueryConstructor m_query;
    std::vector<qint16> m_fields; ///< by the column's place in the table: its field of the query; -1: not set
    PendingRows::Links m_links;
    std::vector<std::pair<QString, QVariant>> m_whenNew; ///< values by column
};

} // namespace contract
