#include "sources/tableFile.h"

#include "sources/CsvFile.h"
#include "sources/workbook/Workbook.h"
#include "sql/CodePage.h"
#include "sql/errors.h"
#include "sql/mod_ovTools.h"
#include "sql/ownFile.h"
#include "sql/variantText.h"

#include <QFileInfo>
#include <xlsxwriter.h>

#include <array>
#include <cmath>

namespace sources {

namespace {

[[noreturn]] void Refuse(const QString& path, const QString& why) {
    throw ImportError(QStringLiteral("file '%1': %2").arg(path, why));
}

/// A number of more digits than a cell holds is one that would change.
bool FitsCell(const QVariant& value) {
    constexpr double mostWhole = 999'999'999'999'999.0;
    return HoldsNumber(value) && value.typeId() != QMetaType::Bool && std::isfinite(value.toDouble()) &&
           std::abs(value.toDouble()) <= mostWhole;
}

class CsvWriter final : public TableWriter {
public:
    CsvWriter(const QString& path, const QStringList& columns)
        : m_path(path) {
        if (const QString obstacle = ownFile::Open(m_file, path, ownFile::Start::Anew); !obstacle.isEmpty()) {
            Refuse(path, obstacle);
        }
        m_file.write("\xEF\xBB\xBF");
        AddRow(QVector<QVariant>(columns.begin(), columns.end()));
    }

    void AddRow(const QVector<QVariant>& values) override {
        QStringList fields;
        for (const QVariant& value : values) {
            fields.append(FieldOf(mod_ovTools::ToText(value)));
        }
        const QByteArray line = (fields.join(u';') + QStringLiteral("\r\n")).toUtf8();
        if (m_file.write(line) != line.size()) {
            Refuse(m_path, m_file.errorString());
        }
    }

    bool AddSheet(const QString&, const QStringList&) override { return false; }

    void Close() override {
        if (!m_file.flush()) {
            Refuse(m_path, m_file.errorString());
        }
        m_file.close();
    }

private:
    static QString FieldOf(QString text) {
        const bool isPlain = std::none_of(text.begin(), text.end(), [](QChar c) {
            return c == u';' || c == u'"' || c == u'\r' || c == u'\n' || c == u',' || c == u'\t';
        });
        return isPlain ? text : QString(u'"' + text.replace(u'"', QLatin1String("\"\"")) + u'"');
    }

    QString m_path;
    QFile m_file;
};

class WorkbookWriter final : public TableWriter {
public:
    WorkbookWriter(const QString& path, const QString& sheet, const QStringList& columns)
        : m_path(path) {
        if (const QString obstacle = ownFile::Obstacle(path); !obstacle.isEmpty()) {
            Refuse(path, obstacle);
        }
        lxw_workbook_options options{};
        options.constant_memory = LXW_TRUE; // however many rows there are
        m_book = workbook_new_opt(QFile::encodeName(path).constData(), &options);
        Begin(sheet, columns);
    }
    ~WorkbookWriter() override {
        if (m_book != nullptr) {
            workbook_close(m_book);
        }
    }
    WorkbookWriter(const WorkbookWriter&) = delete;
    WorkbookWriter& operator=(const WorkbookWriter&) = delete;

    void AddRow(const QVector<QVariant>& values) override {
        for (int column = 0; column < values.size(); ++column) {
            Write(column, values.at(column), nullptr);
        }
        ++m_row;
    }

    bool AddSheet(const QString& sheet, const QStringList& columns) override {
        AddFilter();
        Begin(sheet, columns);
        return true;
    }

    void Close() override {
        AddFilter();
        const lxw_error error = workbook_close(std::exchange(m_book, nullptr));
        if (error != LXW_NO_ERROR) {
            Refuse(m_path, QStringLiteral("non si è potuto scrivere (%1)").arg(QString::fromUtf8(lxw_strerror(error))));
        }
    }

private:
    /// At most 31 characters, none of those that references are made of.
    static QString SheetName(QString name) {
        constexpr qsizetype most = 31;
        for (QChar& c : name) {
            c = QStringLiteral("[]:*?/\\'").contains(c) ? QChar(u'_') : c;
        }
        return name.left(most);
    }

    void Begin(const QString& sheet, const QStringList& columns) {
        m_sheet = m_book == nullptr ? nullptr : workbook_add_worksheet(m_book, SheetName(sheet).toUtf8().constData());
        if (m_sheet == nullptr) {
            Refuse(m_path, QStringLiteral("non si può cominciare la cartella di lavoro"));
        }
        m_columns = static_cast<int>(columns.size());
        m_row = 0;
        AddHeader(columns);
    }

    void AddFilter() {
        if (m_row > 1) {
            worksheet_autofilter(m_sheet, 0, 0, m_row - 1, static_cast<lxw_col_t>(m_columns - 1));
        }
    }

    void AddHeader(const QStringList& columns) {
        constexpr double narrowest = 10;
        lxw_format* bold = workbook_add_format(m_book);
        format_set_bold(bold);
        for (int column = 0; column < m_columns; ++column) {
            const double width = std::max(narrowest, static_cast<double>(columns.at(column).size()) + 4);
            worksheet_set_column(m_sheet, static_cast<lxw_col_t>(column), static_cast<lxw_col_t>(column), width,
                                 nullptr);
            Write(column, columns.at(column), bold);
        }
        worksheet_freeze_panes(m_sheet, 1, 0);
        ++m_row;
    }

    void Write(int column, const QVariant& value, lxw_format* format) {
        const auto place = static_cast<lxw_col_t>(column);
        lxw_error error = LXW_NO_ERROR;
        if (FitsCell(value)) {
            error = worksheet_write_number(m_sheet, m_row, place, value.toDouble(), format);
        } else if (const QString text = mod_ovTools::ToText(value); !text.isEmpty()) {
            error = worksheet_write_string(m_sheet, m_row, place, text.toUtf8().constData(), format);
        }
        if (error != LXW_NO_ERROR) {
            Refuse(m_path,
                   QStringLiteral("riga %1, colonna %2: %3")
                       .arg(QString::number(m_row + 1), ColumnLetters(column), QString::fromUtf8(lxw_strerror(error))));
        }
    }

    QString m_path;
    int m_columns = 0;
    lxw_workbook* m_book = nullptr;
    lxw_worksheet* m_sheet = nullptr;
    lxw_row_t m_row = 0;
};

QString DateText(const QByteArray& written) {
    return mod_ovTools::ToText(mod_ovTools::ReadDate(QString::fromUtf8(written)).value_or(QDateTime()));
}

/// A number as its format shows it: a day that is typed into a sheet is one.
QString NumberText(const SheetCell& cell, bool since1904) {
    const auto kind = cell.format != nullptr ? cell.format->GetKind() : CellFormat::Kind::Number;
    if (kind == CellFormat::Kind::Date || kind == CellFormat::Kind::Time) {
        const auto date = DateOfSerial(cell.number, kind, since1904);
        const bool isTime = date && date->contains(':') && !date->contains(' ');
        return !date ? mod_ovTools::ToText(cell.number) : isTime ? QString::fromUtf8(*date) : DateText(*date);
    }
    const auto padded = cell.format != nullptr ? cell.format->Padded(cell.number) : std::nullopt;
    return padded ? QString::fromUtf8(*padded) : mod_ovTools::ToText(cell.number);
}

/// A cell as its text; raises `ImportError` for one that cannot be read.
QString TextOf(const SheetCell& cell, qint64 row, bool since1904) {
    switch (cell.kind) {
    case SheetCell::Kind::Number:
        return NumberText(cell, since1904);
    case SheetCell::Kind::Boolean:
        return mod_ovTools::ToText(cell.number != 0);
    case SheetCell::Kind::Text:
        return QString::fromUtf8(cell.text);
    case SheetCell::Kind::Date:
        return DateText(cell.text);
    case SheetCell::Kind::EmptyText:
        return {};
    default:
        throw ImportError(QStringLiteral("riga %1, colonna %2: %3")
                              .arg(QString::number(row), ColumnLetters(cell.column),
                                   cell.text.isEmpty() ? QStringLiteral("la formula non ha un valore")
                                                       : QString::fromUtf8(cell.text)));
    }
}

/// Takes a row of a file in: the first one names the columns, and one with nothing in it is none.
void Take(TableOfFile& table, qint64 number, QStringList values, const QSet<qsizetype>& numbers = {}) {
    if (table.columns.isEmpty()) {
        table.columns = std::move(values);
        return;
    }
    if (values.size() > table.columns.size()) {
        throw ImportError(
            QStringLiteral("riga %1: ha %2 valori, le colonne sono %3")
                .arg(QString::number(number), QString::number(values.size()), QString::number(table.columns.size())));
    }
    while (values.size() < table.columns.size()) {
        values.append(QString());
    }
    if (std::any_of(values.begin(), values.end(), [](const QString& value) { return !value.isEmpty(); })) {
        table.rows.push_back({number, std::move(values), numbers});
    }
}

void ReadWorkbook(TableOfFile& table) {
    const auto book = OpenWorkbook(table.path);
    const auto sheet = book->Read(PlacedSheets(*book).front());
    for (SheetRow row; sheet->Next(row);) {
        QStringList values;
        QSet<qsizetype> numbers;
        for (const SheetCell& cell : row.cells) {
            while (values.size() < cell.column) {
                values.append(QString());
            }
            if (cell.kind == SheetCell::Kind::Number) {
                numbers.insert(values.size());
            }
            values.append(TextOf(cell, row.number, book->Since1904()));
        }
        Take(table, row.number, std::move(values), numbers);
    }
}

/// The separator that the first line has most of.
char SeparatorOf(const QString& path) {
    QFile file(path);
    const QByteArray line = file.open(QIODevice::ReadOnly) ? file.readLine() : QByteArray();
    constexpr std::array separators{';', ',', '\t'};
    return *std::max_element(separators.begin(), separators.end(),
                             [&line](char a, char b) { return line.count(a) < line.count(b); });
}

void ReadCsv(TableOfFile& table) {
    CsvFile file(table.path, SeparatorOf(table.path));
    const auto told = file.Lines().TellsPage();
    const CodePage page(told ? *told : TextLines::IsUtf8(table.path) ? QStringLiteral("UTF-8") : QString());
    for (CsvFile::Record record; file.Next(record);) {
        if (record.damage != CsvFile::Damage::None) {
            throw ImportError(
                QStringLiteral("riga %1: %2").arg(QString::number(record.line), CsvFile::Tell(record.damage)));
        }
        QStringList values;
        for (const QByteArray& field : record.fields) {
            values.append(DecodeText(field, page));
        }
        Take(table, record.line, std::move(values));
    }
}

void CheckMayWrite(const QString& path, const QStringList& columns) {
    constexpr qsizetype telling = 2; ///< columns that tell a table from others
    if (QFileInfo(path).size() == 0) {
        return;
    }
    bool isSame = false;
    try {
        isSame = ReadTable(path).columns.mid(0, telling) == columns.mid(0, telling);
    } catch (const ImportError&) { // it is no table
    }
    if (!isSame) {
        Refuse(path, QStringLiteral("esiste già e contiene altro: non viene sovrascritto, indicarne un altro"));
    }
}

} // namespace

std::unique_ptr<TableWriter> TableWriter::Create(const QString& path, const QString& sheet,
                                                 const QStringList& columns) {
    const QString ending = QFileInfo(path).suffix().toLower();
    if (ending != u"xlsx" && ending != u"csv") {
        Refuse(path, QStringLiteral("il nome deve finire in .csv o .xlsx"));
    }
    if (const QString obstacle = ownFile::FolderObstacle(path); !obstacle.isEmpty()) {
        Refuse(path, obstacle);
    }
    CheckMayWrite(path, columns);
    if (ending == u"xlsx") {
        return std::make_unique<WorkbookWriter>(path, sheet, columns);
    }
    return std::make_unique<CsvWriter>(path, columns);
}

TableOfFile ReadTable(const QString& path) {
    static const QStringList workbooks{"xlsx", "xlsm", "xls", "ods"};
    TableOfFile table{path, {}, {}};
    try {
        workbooks.contains(QFileInfo(path).suffix().toLower()) ? ReadWorkbook(table) : ReadCsv(table);
    } catch (ImportError& error) {
        if (!error.Message().contains(path)) {
            error.AddContext(QStringLiteral("file '%1'").arg(path));
        }
        throw;
    }
    if (table.columns.isEmpty()) {
        Refuse(path, QStringLiteral("è vuoto"));
    }
    return table;
}

} // namespace sources
