#pragma once

#include "sources/workbook/Package.h"
#include "sources/workbook/Workbook.h"

#include <QXmlStreamReader>

namespace sources {

/// The part of the package of an `Ods` that holds its sheets.
inline const QString OdsContent = QStringLiteral("content.xml");

/// Steps to the next sheet of the content, of those that stand in the spreadsheet itself; false behind the last one.
bool NextOdsSheet(QXmlStreamReader& xml);

struct OdsCell;

/// The rows of a sheet of an `Ods`. Rows and cells that are equal stand in it once, with how often they follow.
class OdsSheet final : public SheetReader {
public:
    /// @param sheet its place, from 0
    OdsSheet(std::unique_ptr<PackedFile> content, int sheet);

    bool Next(SheetRow& row) override;
    const QStringList& Merged() const override { return m_merged; }

private:
    void ReadRow(SheetRow& row);
    void ReadCell(SheetRow& row);
    void TakeValue(SheetCell& cell, const OdsCell& told, const QString& shown);
    void NoteMerged(const OdsCell& told);
    QString ReadShown();
    QString ReadParagraph();

    std::unique_ptr<PackedFile> m_content;
    QXmlStreamReader m_xml;
    QStringList m_merged;
    SheetRow m_last;     ///< the row read last, when it follows again
    qint64 m_again = 0;  ///< times that it does
    qint64 m_row = 0;    ///< rows so far
    qint64 m_column = 0; ///< cells of the row under way so far
};

} // namespace sources
