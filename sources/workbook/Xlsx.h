#pragma once

#include "sources/workbook/Package.h"
#include "sources/workbook/TextTable.h"
#include "sources/workbook/Workbook.h"

#include <QXmlStreamReader>

namespace sources {

/// A workbook of Excel 2007 and later: a package of XML files.
class Xlsx final : public Workbook {
public:
    /// Reads what the sheets share. Raises `ImportError`, without the name of the file.
    explicit Xlsx(const QString& path);

    QStringList Sheets() const override;
    bool IsHidden(int sheet) const override { return m_sheets.at(static_cast<size_t>(sheet)).isHidden; }
    std::unique_ptr<SheetReader> Read(int sheet) override;
    bool Since1904() const override { return m_since1904; }

    /// Whether all formulas are to be reckoned when it is opened, as programs ask for that do not reckon.
    bool WantsReckoning() const { return m_wantsReckoning; }
    const TextTable& Texts() const { return m_texts; }
    /// The format of that number in the list of styles; null for one that is not there.
    const CellFormat* Format(int style) const;

private:
    struct Sheet {
        QString name;
        QString part; ///< of the package
        bool isHidden = false;
    };
    void ReadSheets(const QString& part);
    void ReadStyles(const QString& part);
    void ReadTexts(const QString& part);

    Package m_package;
    bool m_since1904 = false;
    bool m_wantsReckoning = false;
    std::vector<Sheet> m_sheets;
    std::vector<CellFormat> m_formats;
    TextTable m_texts;
};

/// The text of the element under way (a shared or an inline string), with the runs that it is made of and without the
/// signs that tell how it is pronounced.
QByteArray ReadXlsxText(QXmlStreamReader& xml);
/// A text without what stands in it for characters that XML has no other way for: "_x000D_" is the end of a line.
QString WithoutXlsxEscapes(QString text);
/// Raises `ImportError` when reading a part has ended with an error.
void CheckXml(const QXmlStreamReader& xml, PackedFile& file, const QString& part);

} // namespace sources
