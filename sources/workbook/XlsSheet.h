#pragma once

#include "sources/workbook/Xls.h"

#include <QSet>

namespace sources {

/// The rows of a sheet of an `Xls`.
class XlsSheet final : public SheetReader {
public:
    XlsSheet(const Xls& workbook, BiffRecords records)
        : m_workbook(workbook),
          m_records(std::move(records)) {}

    bool Next(SheetRow& row) override;
    const QStringList& Merged() const override { return m_merged; }

private:
    bool IsCell() const;
    void ReadCells();
    void ReadFormula(SheetCell cell);
    void AddFormulaText(SheetCell cell);
    void Add(SheetCell cell, const QString& text);
    void Add(SheetCell cell, double number);
    void AddBoolOrError(SheetCell cell, quint8 value, bool isError);
    void ReadMerged();

    const Xls& m_workbook;
    BiffRecords m_records;
    int m_depth = 0;          ///< of the part under way; charts stand inside of the sheet
    bool m_isPending = false; ///< the record under way belongs to the next row
    bool m_hasEnded = false;
    SheetRow m_row; ///< under way
    QStringList m_merged;
    QSet<qint64> m_hidden; ///< numbers of rows
};

} // namespace sources
