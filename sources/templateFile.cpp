#include "sources/templateFile.h"

#include "sql/errors.h"
#include "sql/mod_ovTools.h"
#include "sql/ownFile.h"

#include <xlsxwriter.h>

#include <algorithm>
#include <array>
#include <memory>

namespace sources {

namespace {

constexpr int CellsOfList = 3; ///< columns of the sheet of codes: code, description, one empty
constexpr lxw_color_t HeaderColor = 0xDDEBF7;
constexpr lxw_color_t NeededColor = 0xF8CBAD;
constexpr lxw_color_t CaptionColor = 0x7F7F7F;

/// A workbook under construction; what fails names its file.
class Book {
public:
    explicit Book(const QString& path)
        : m_path(path) {
        for (const QString& obstacle : {ownFile::FolderObstacle(path), ownFile::Obstacle(path)}) {
            if (!obstacle.isEmpty()) {
                Refuse(obstacle);
            }
        }
        m_book.reset(workbook_new(QFile::encodeName(path).constData()));
        if (m_book == nullptr) {
            Refuse(QStringLiteral("non si può cominciare la cartella di lavoro"));
        }
    }

    lxw_worksheet* AddSheet(const QString& name) {
        lxw_worksheet* sheet = workbook_add_worksheet(m_book.get(), name.toUtf8().constData());
        if (sheet == nullptr) {
            Refuse(QStringLiteral("non si può cominciare il foglio '%1'").arg(name));
        }
        return sheet;
    }
    lxw_format* AddFormat() { return workbook_add_format(m_book.get()); }

    void Check(lxw_error error) const {
        if (error != LXW_NO_ERROR) {
            Refuse(QStringLiteral("non si è potuto scrivere (%1)").arg(QString::fromUtf8(lxw_strerror(error))));
        }
    }
    void Write(lxw_worksheet* sheet, lxw_row_t row, lxw_col_t column, const QVariant& value, lxw_format* format) const {
        if (value.typeId() == QMetaType::Double || value.typeId() == QMetaType::Int) {
            Check(worksheet_write_number(sheet, row, column, value.toDouble(), format));
        } else if (const QString text = mod_ovTools::ToText(value); !text.isEmpty()) {
            Check(worksheet_write_string(sheet, row, column, text.toUtf8().constData(), format));
        }
    }
    void Close() { Check(workbook_close(m_book.release())); }

private:
    struct Closing {
        void operator()(lxw_workbook* book) const { workbook_close(book); }
    };

    [[noreturn]] void Refuse(const QString& why) const {
        throw ImportError(QStringLiteral("file '%1': %2").arg(m_path, why));
    }

    QString m_path;
    std::unique_ptr<lxw_workbook, Closing> m_book;
};

/// The formats of the sheet that is filled in.
struct Formats {
    explicit Formats(Book& book)
        : header(book.AddFormat()),
          needed(book.AddFormat()),
          caption(book.AddFormat()),
          text(book.AddFormat()) {
        format_set_bold(header);
        format_set_bg_color(header, HeaderColor);
        format_set_bold(needed);
        format_set_bg_color(needed, NeededColor);
        format_set_italic(caption);
        format_set_font_color(caption, CaptionColor);
        format_set_num_format(text, "@");
    }

    lxw_format* header;
    lxw_format* needed;
    lxw_format* caption;
    lxw_format* text;
};

double WidthOf(const QStringList& texts) {
    constexpr qsizetype narrowest = 10;
    constexpr qsizetype widest = 60;
    qsizetype width = narrowest;
    for (const QString& text : texts) {
        width = std::max(width, text.size() + 2);
    }
    return static_cast<double>(std::min(width, widest));
}

/// A comment in a box in which all of it can be read.
void WriteNote(Book& book, lxw_worksheet* sheet, lxw_col_t column, const QString& note) {
    constexpr qsizetype charactersOfLine = 40;
    constexpr qsizetype lineHeight = 18;
    qsizetype lines = 1;
    for (const QString& line : note.split(u'\n')) {
        lines += 1 + line.size() / charactersOfLine;
    }
    lxw_comment_options options{};
    options.width = 280;
    options.height = static_cast<uint16_t>(lines * lineHeight);
    book.Check(worksheet_write_comment_opt(sheet, 0, column, note.toUtf8().constData(), &options));
}

/// Offers the codes of a list in all rows of a column.
void OfferCodes(Book& book, lxw_worksheet* sheet, lxw_col_t column, const QString& title, const QString& cells) {
    QByteArray formula = '=' + cells.toUtf8();
    QByteArray heading = QStringLiteral("Codice nuovo").toUtf8();
    QByteArray message = QStringLiteral("Non è tra i codici del foglio %1, sotto '%2'. Si può scrivere: dopo "
                                        "l'importazione il programma chiede quale codice di Quadrix è.")
                             .arg(TemplateCodesSheet, title)
                             .toUtf8();
    lxw_data_validation codes{};
    codes.validate = LXW_VALIDATION_TYPE_LIST_FORMULA;
    codes.value_formula = formula.data();
    codes.error_type = LXW_VALIDATION_ERROR_TYPE_WARNING;
    codes.error_title = heading.data();
    codes.error_message = message.data();
    book.Check(worksheet_data_validation_range(sheet, TemplateHeadRows, column, LXW_ROW_MAX - 1, column, &codes));
}

/// Lets nothing but some values into the rows of a column.
void OfferChoices(Book& book, lxw_worksheet* sheet, lxw_col_t column, const QStringList& choices) {
    QByteArrayList texts;
    std::vector<char*> values;
    for (const QString& choice : choices) {
        texts.append(choice.toUtf8());
    }
    for (QByteArray& text : texts) {
        values.push_back(text.data());
    }
    values.push_back(nullptr);
    QByteArray message =
        QStringLiteral("Si scrive uno di questi: %1.").arg(choices.join(QStringLiteral(", "))).toUtf8();
    lxw_data_validation validation{};
    validation.validate = LXW_VALIDATION_TYPE_LIST;
    validation.value_list = values.data();
    validation.error_message = message.data();
    book.Check(worksheet_data_validation_range(sheet, TemplateHeadRows, column, LXW_ROW_MAX - 1, column, &validation));
}

/// The cells with the codes of the list of that title, as formulas name them; empty for one without codes.
QString CellsOf(const TemplateFile& file, const QString& title) {
    const auto list = std::find_if(file.lists.begin(), file.lists.end(),
                                   [&title](const TemplateList& each) { return each.title == title; });
    if (list == file.lists.end() || list->codes.empty()) {
        return {};
    }
    const auto column = static_cast<lxw_col_t>((list - file.lists.begin()) * CellsOfList);
    std::array<char, LXW_MAX_CELL_RANGE_LENGTH> cells{};
    lxw_rowcol_to_range_abs(cells.data(), 1, column, static_cast<lxw_row_t>(list->codes.size()), column);
    return TemplateCodesSheet + u'!' + QString::fromLatin1(cells.data());
}

void WriteColumn(Book& book, lxw_worksheet* sheet, const Formats& formats, lxw_col_t place,
                 const TemplateColumn& column, const QString& codes) {
    lxw_format* cells = column.isText ? formats.text : nullptr;
    book.Check(worksheet_set_column(sheet, place, place, WidthOf({column.header, column.caption}), cells));
    book.Write(sheet, 0, place, column.header, column.isNeeded ? formats.needed : formats.header);
    book.Write(sheet, 1, place, column.caption, formats.caption);
    book.Write(sheet, TemplateHeadRows, place, column.example, cells);
    WriteNote(book, sheet, place, column.note);
    if (!codes.isEmpty()) {
        OfferCodes(book, sheet, place, column.list, codes);
    } else if (!column.choices.isEmpty()) {
        OfferChoices(book, sheet, place, column.choices);
    }
}

void WriteList(Book& book, lxw_worksheet* sheet, const Formats& formats, lxw_col_t place, const TemplateList& list) {
    QStringList descriptions;
    book.Write(sheet, 0, place, list.title, formats.header);
    lxw_row_t row = 0;
    for (const TemplateCode& code : list.codes) {
        book.Write(sheet, ++row, place, code.code, formats.text);
        book.Write(sheet, row, place + 1, code.description, formats.text);
        descriptions.append(code.description);
    }
    book.Check(worksheet_set_column(sheet, place, place, WidthOf({list.title}), formats.text));
    book.Check(worksheet_set_column(sheet, place + 1, place + 1, WidthOf(descriptions), formats.text));
}

} // namespace

void WriteTemplate(const QString& path, const TemplateFile& file) {
    Book book(path);
    const Formats formats(book);
    lxw_worksheet* sheet = book.AddSheet(file.sheet);
    worksheet_freeze_panes(sheet, TemplateHeadRows, 1);
    lxw_col_t place = 0;
    for (const TemplateColumn& column : file.columns) {
        WriteColumn(book, sheet, formats, place++, column, CellsOf(file, column.list));
    }
    lxw_worksheet* codes = file.lists.empty() ? nullptr : book.AddSheet(TemplateCodesSheet);
    place = 0;
    for (const TemplateList& list : file.lists) {
        WriteList(book, codes, formats, place, list);
        place += CellsOfList;
    }
    book.Close();
}

} // namespace sources
