#pragma once

#include "sources/workbook/Package.h"
#include "sources/workbook/Workbook.h"

namespace sources {

/// A spreadsheet of OpenDocument, as LibreOffice writes it: a package of XML files, all sheets in one of them.
class Ods final : public Workbook {
public:
    /// Whether a package is one.
    static bool Is(Package& package);
    /// Lists the sheets. Raises `ImportError`, without the name of the file.
    explicit Ods(Package package);

    QStringList Sheets() const override { return m_sheets; }
    bool IsHidden(int sheet) const override { return m_areHidden.at(sheet); }
    std::unique_ptr<SheetReader> Read(int sheet) override;
    /// They are written out.
    bool Since1904() const override { return false; }

private:
    void RefusePassword();

    Package m_package;
    QStringList m_sheets;
    QList<bool> m_areHidden;
};

} // namespace sources
