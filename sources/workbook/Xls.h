#pragma once

#include "sources/workbook/BiffRecords.h"
#include "sources/workbook/TextTable.h"
#include "sources/workbook/Workbook.h"

namespace sources {

/// A workbook of Excel 5.0 to 2003.
class Xls final : public Workbook {
public:
    /// Reads what the sheets share. @param codePage of the texts of Excel 5.0 and 95 when the file tells none
    /// Raises `ImportError`, without the name of the file.
    Xls(const QString& path, const QString& codePage);

    QStringList Sheets() const override;
    bool IsHidden(int sheet) const override { return m_sheets.at(static_cast<size_t>(sheet)).isHidden; }
    std::unique_ptr<SheetReader> Read(int sheet) override;
    bool Since1904() const override { return m_since1904; }
    QString UntoldPage() const override { return m_isUnicode || m_tellsPage ? QString() : m_page.Name(); }

    const TextTable& Texts() const { return m_texts; }
    const CellFormat* Format(int number) const;
    /// A text of the record under way.
    QString Text(BiffRecords& records, qsizetype offset, int bytesOfLength) const;

private:
    struct Sheet {
        QString name;
        qint64 offset = 0; ///< in the stream
        bool isHidden = false;
    };
    void ReadShared();
    void ReadRecord(BiffRecords& records);
    void ReadSheet(BiffRecords& records);
    void ReadTexts(BiffRecords& records);

    CompoundFile m_file;
    CompoundFile::Stream m_stream;
    bool m_isUnicode = true; ///< Excel 97 and later
    bool m_tellsPage = false;
    CodePage m_page;
    bool m_since1904 = false;
    std::vector<Sheet> m_sheets;
    std::vector<std::pair<int, CellFormat>> m_written; ///< formats that the file writes out, by their number
    std::vector<CellFormat> m_formats;                 ///< by the number that cells name
    TextTable m_texts;
};

} // namespace sources
