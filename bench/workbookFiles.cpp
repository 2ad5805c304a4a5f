#include "bench/workbookFiles.h"

#include <QDate>
#include <QFile>
#include <QProcess>

#include <stdexcept>

#include <xlsxwriter.h>
#include <zip.h>

namespace {

enum class Content { Code, Description, Returning, Day, Padded, Whole, Price };

Content ContentOf(int column) {
    constexpr int behindReturning = 12;
    constexpr int behindDays = 14;
    constexpr int behindPadded = 16;
    constexpr int behindWhole = 26;
    return column == 0                ? Content::Code
           : column == 1              ? Content::Description
           : column < behindReturning ? Content::Returning
           : column < behindDays      ? Content::Day
           : column < behindPadded    ? Content::Padded
           : column < behindWhole     ? Content::Whole
                                      : Content::Price;
}

/// What a cell of text holds. @param row from 1
QString TextAt(long row, int column) {
    switch (ContentOf(column)) {
    case Content::Code:
        return QStringLiteral("A%1").arg(row, 7, 10, QChar(u'0'));
    case Content::Description:
        return QStringLiteral("Vite a testa esagonale n° %1, qualità %2").arg(row).arg(row % 7);
    default:
        return QStringLiteral("Famiglia %1 %2").arg(column).arg(row * 31 % 500);
    }
}

/// What a cell of a number holds; of a day the days since 30 December 1899.
double NumberAt(long row, int column) {
    constexpr int firstDay = 36'526;
    switch (ContentOf(column)) {
    case Content::Day:
        return firstDay + static_cast<double>((row + column) % 9000);
    case Content::Price:
        return static_cast<double>(row * column % 1'000'000) / 100;
    default:
        return static_cast<double>(row * 7 % 50'000);
    }
}

bool IsText(int column) { return ContentOf(column) <= Content::Returning; }

QString HeaderAt(int column) { return QStringLiteral("Colonna %1").arg(column + 1); }

void WriteXlsx(const QString& path, long rows) {
    lxw_workbook* book = workbook_new(QFile::encodeName(path).constData());
    lxw_worksheet* sheet = workbook_add_worksheet(book, "Articoli");
    lxw_format* day = workbook_add_format(book);
    format_set_num_format(day, "dd/mm/yyyy");
    lxw_format* padded = workbook_add_format(book);
    format_set_num_format(padded, "00000");
    for (long row = 0; row <= rows; ++row) {
        for (int column = 0; column < WorkbookColumns; ++column) {
            const auto at = static_cast<lxw_col_t>(column);
            const auto line = static_cast<lxw_row_t>(row);
            const Content content = ContentOf(column);
            if (row == 0 || IsText(column)) {
                const QString text = row == 0 ? HeaderAt(column) : TextAt(row, column);
                worksheet_write_string(sheet, line, at, text.toUtf8().constData(), nullptr);
            } else {
                lxw_format* format = content == Content::Day ? day : content == Content::Padded ? padded : nullptr;
                worksheet_write_number(sheet, line, at, NumberAt(row, column), format);
            }
        }
    }
    if (workbook_close(book) != LXW_NO_ERROR) {
        throw std::runtime_error("cannot write the .xlsx");
    }
}

// --- OpenDocument

QByteArray OdsCell(long row, int column) {
    if (row == 0 || IsText(column)) {
        const QString text = row == 0 ? HeaderAt(column) : TextAt(row, column);
        return "<table:table-cell office:value-type=\"string\"><text:p>" + text.toUtf8() +
               "</text:p></table:table-cell>";
    }
    const double number = NumberAt(row, column);
    if (ContentOf(column) == Content::Day) {
        const QDate day = QDate(1899, 12, 30).addDays(static_cast<qint64>(number));
        return "<table:table-cell office:value-type=\"date\" office:date-value=\"" +
               day.toString(Qt::ISODate).toLatin1() + "\"><text:p>" +
               day.toString(QStringLiteral("dd/MM/yyyy")).toLatin1() + "</text:p></table:table-cell>";
    }
    const QByteArray value = QByteArray::number(number, 'g', 15);
    const QByteArray shown = ContentOf(column) == Content::Padded ? value.rightJustified(5, '0') : value;
    return "<table:table-cell office:value-type=\"float\" office:value=\"" + value + "\"><text:p>" + shown +
           "</text:p></table:table-cell>";
}

void WriteOds(const QString& path, long rows) {
    const QString content = path + QStringLiteral(".content");
    QFile file(content);
    if (!file.open(QIODevice::WriteOnly)) {
        throw std::runtime_error("cannot write the content of the .ods");
    }
    file.write("<?xml version=\"1.0\" encoding=\"UTF-8\"?><office:document-content "
               "xmlns:office=\"urn:oasis:names:tc:opendocument:xmlns:office:1.0\" "
               "xmlns:table=\"urn:oasis:names:tc:opendocument:xmlns:table:1.0\" "
               "xmlns:text=\"urn:oasis:names:tc:opendocument:xmlns:text:1.0\"><office:body><office:spreadsheet>"
               "<table:table table:name=\"Articoli\">");
    for (long row = 0; row <= rows; ++row) {
        file.write("<table:table-row>");
        for (int column = 0; column < WorkbookColumns; ++column) {
            file.write(OdsCell(row, column));
        }
        file.write("</table:table-row>");
    }
    file.write("</table:table></office:spreadsheet></office:body></office:document-content>");
    file.close();
    constexpr char type[] = "application/vnd.oasis.opendocument.spreadsheet";
    zip_t* archive = zip_open(QFile::encodeName(path).constData(), ZIP_CREATE | ZIP_TRUNCATE, nullptr);
    zip_file_add(archive, "mimetype", zip_source_buffer(archive, type, sizeof type - 1, 0), 0);
    zip_file_add(archive, "content.xml", zip_source_file(archive, QFile::encodeName(content).constData(), 0, -1), 0);
    if (zip_close(archive) != 0) {
        throw std::runtime_error("cannot write the .ods");
    }
    file.remove();
}

/// No library for C or C++ writes the old format: a script does, from the rows as text.
void WriteXls(const QString& path, long rows) {
    QProcess script;
    script.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    script.start(QStringLiteral("bench/xls.py"), {path});
    for (long row = 0; row <= rows; ++row) {
        QByteArray line;
        for (int column = 0; column < WorkbookColumns; ++column) {
            const bool isText = row == 0 || IsText(column);
            const QByteArray kind = isText                                 ? "t"
                                    : ContentOf(column) == Content::Day    ? "d"
                                    : ContentOf(column) == Content::Padded ? "c"
                                                                           : "n";
            const QByteArray value = row == 0 ? HeaderAt(column).toUtf8()
                                     : isText ? TextAt(row, column).toUtf8()
                                              : QByteArray::number(NumberAt(row, column), 'g', 15);
            line += (column > 0 ? "\t" : "") + kind + value;
        }
        script.write(line + '\n');
        script.waitForBytesWritten(-1);
    }
    script.closeWriteChannel();
    if (!script.waitForFinished(-1) || script.exitCode() != 0) {
        throw std::runtime_error("cannot write the .xls");
    }
}

} // namespace

void WriteWorkbook(const QString& path, long rows) {
    const auto write = path.endsWith(u".xlsx") ? WriteXlsx : path.endsWith(u".ods") ? WriteOds : WriteXls;
    write(path, rows);
}
