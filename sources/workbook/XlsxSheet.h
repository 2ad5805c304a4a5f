#pragma once

#include "sources/workbook/Xlsx.h"

namespace sources {

/// The rows of a sheet of an `Xlsx`.
class XlsxSheet final : public SheetReader {
public:
    /// @param part name of the file in the package, for errors
    XlsxSheet(const Xlsx& workbook, QString part, std::unique_ptr<PackedFile> device)
        : m_workbook(workbook),
          m_part(std::move(part)),
          m_device(std::move(device)),
          m_xml(m_device.get()) {}

    bool Next(SheetRow& row) override;
    const QStringList& Merged() const override { return m_merged; }

private:
    void BeginRow(SheetRow& row);
    void ReadCells(SheetRow& row);
    SheetCell ReadCell();
    void TakeValue(SheetCell& cell, QStringView type, const QString& value) const;
    void TakeNumber(SheetCell& cell, const QString& value) const;

    const Xlsx& m_workbook;
    QString m_part;
    std::unique_ptr<PackedFile> m_device;
    QXmlStreamReader m_xml;
    QStringList m_merged;
    qint64 m_row = 0;
    int m_column = -1; ///< of the cell read last in the row under way
};

} // namespace sources
