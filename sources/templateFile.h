#pragma once

#include <QStringList>
#include <QVariant>

#include <vector>

namespace sources {

/// A code that a column of a template takes, with what it means.
struct TemplateCode {
    QString code;
    QString description;
};

/// Codes that columns are filled in with.
struct TemplateList {
    QString title;
    std::vector<TemplateCode> codes;
};

/// A column of a sheet that people fill in.
struct TemplateColumn {
    QString header;
    QString caption;    ///< what the column is, for who fills it in
    QString note;       ///< comment at the header
    bool isText = true; ///< what is typed stays as it is typed: a code keeps its zeros
    bool isNeeded = false;
    QString list = {};        ///< title of its list; empty: anything can be written
    QStringList choices = {}; ///< the only values that can be written; empty: all, or those of the list
    QVariant example = {};
};

/// A workbook that people fill in and give back: a sheet with headers, captions and one row as an example, and behind
/// it a sheet "Codici" with the lists, of which the columns offer the codes. Other codes can be written too, after a
/// warning.
struct TemplateFile {
    QString sheet;
    std::vector<TemplateColumn> columns;
    std::vector<TemplateList> lists;
};

inline constexpr int TemplateHeadRows = 2; ///< headers and captions
inline const QString TemplateCodesSheet = QStringLiteral("Codici");

/// Writes the workbook (.xlsx); what is there is written over. Raises `ImportError` naming the file and why it cannot
/// be written: it is somebody else's, a text has more than 32,767 characters.
void WriteTemplate(const QString& path, const TemplateFile& file);

} // namespace sources
