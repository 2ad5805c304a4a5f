#include "sources/workbook/OdsSheet.h"

#include "sources/workbook/cellValues.h"
#include "sources/workbook/Xlsx.h"
#include "sql/errors.h"

#include <QRegularExpression>

#include <algorithm>

namespace sources {

namespace {

constexpr qint64 MostRows = 1048576;

const QString Office = QStringLiteral("urn:oasis:names:tc:opendocument:xmlns:office:1.0");
const QString Table = QStringLiteral("urn:oasis:names:tc:opendocument:xmlns:table:1.0");
const QString Extended = QStringLiteral("urn:org:documentfoundation:names:experimental:calc:xmlns:calcext:1.0");

/// How often what has the attributes follows: once when they do not tell.
qint64 Times(const QXmlStreamAttributes& attributes, const QString& name) {
    return std::max<qint64>(1, attributes.value(Table, name).toLongLong());
}

/// Whether a number is shown with zeros in front, as a code is.
bool IsShownAsCode(const QString& shown) {
    return shown.size() > 1 && shown.startsWith(u'0') &&
           std::all_of(shown.begin(), shown.end(), [](QChar c) { return c >= u'0' && c <= u'9'; });
}

/// Appends a text, whose blanks that follow each other are one.
void AppendWords(QString& to, QStringView text, bool& isBehindBlank) {
    const auto isBlank = [](QChar c) { return c.isSpace() && c != QChar::Nbsp; };
    for (auto at = text.begin(); at != text.end();) {
        const auto end = std::find_if(at, text.end(), isBlank);
        to += QStringView(at, end);
        isBehindBlank = isBehindBlank && at == end;
        if (end == text.end()) {
            return;
        }
        to += isBehindBlank ? QStringView() : QStringView(u" ");
        isBehindBlank = true;
        at = end + 1;
    }
}

/// The time of "PT14H30M15S" as a text, "14:30:15"; empty when it is none.
QString TimeText(const QString& duration) {
    static const QRegularExpression form(QStringLiteral("^PT(\\d+)H(\\d+)M(\\d+)(?:[.,]\\d+)?S$"));
    const auto parts = form.match(duration);
    const auto two = [&parts](int part) { return parts.captured(part).rightJustified(2, u'0'); };
    return parts.hasMatch() ? QString(two(1) + u':' + two(2) + u':' + two(3)) : QString();
}

} // namespace

bool NextOdsSheet(QXmlStreamReader& xml) {
    while (xml.readNextStartElement()) {
        const QStringView name = xml.name();
        if (name == u"table") {
            return true;
        }
        const bool isAround = name == u"document-content" || name == u"body" || name == u"spreadsheet";
        if (!isAround) { // a link to another document keeps a table of that one
            xml.skipCurrentElement();
        }
    }
    return false;
}

OdsSheet::OdsSheet(std::unique_ptr<PackedFile> content, int sheet)
    : m_content(std::move(content)),
      m_xml(m_content.get()) {
    for (int at = 0; NextOdsSheet(m_xml) && at < sheet; ++at) {
        m_xml.skipCurrentElement();
    }
}

bool OdsSheet::Next(SheetRow& row) {
    if (m_again > 0) {
        --m_again;
        row = m_last;
        row.number = ++m_row;
        return true;
    }
    while (!m_xml.atEnd()) {
        const auto token = m_xml.readNext();
        if (token == QXmlStreamReader::EndElement && m_xml.name() == u"table") {
            return false;
        }
        if (token == QXmlStreamReader::StartElement && m_xml.name() == u"shapes") {
            m_xml.skipCurrentElement();
        } else if (token == QXmlStreamReader::StartElement && m_xml.name() == u"table-row") {
            ReadRow(row);
            if (!row.cells.empty()) {
                return true;
            }
        }
    }
    CheckXml(m_xml, *m_content, OdsContent);
    return false;
}

void OdsSheet::ReadRow(SheetRow& row) {
    const auto attributes = m_xml.attributes();
    const qint64 times = Times(attributes, QStringLiteral("number-rows-repeated"));
    const auto visibility = attributes.value(Table, QStringLiteral("visibility"));
    row.number = m_row + 1;
    row.isHidden = visibility == u"collapse" || visibility == u"filter";
    row.cells.clear();
    m_column = 0;
    while (m_xml.readNextStartElement()) {
        if (m_xml.name() == u"table-cell" || m_xml.name() == u"covered-table-cell") {
            ReadCell(row);
        } else {
            m_xml.skipCurrentElement();
        }
    }
    if (row.cells.empty()) {
        m_row += times;
        return;
    }
    if (m_row + times > MostRows) {
        throw ImportError(
            QStringLiteral("riga %1: ripetuta %2 volte: il file è danneggiato").arg(row.number).arg(times));
    }
    ++m_row;
    m_again = times - 1;
    if (m_again > 0) {
        m_last = row;
    }
}

/// What the attributes of a cell tell, found in one pass: there are millions of cells.
struct OdsCell {
    explicit OdsCell(const QXmlStreamAttributes& attributes) {
        for (const QXmlStreamAttribute& attribute : attributes) {
            const QStringView space = attribute.namespaceUri();
            if (space == Office) {
                TakeOffice(attribute.name(), attribute.value());
            } else if (space == Table) {
                TakeTable(attribute.name(), attribute.value());
            } else if (space == Extended && attribute.name() == u"value-type") {
                isError = attribute.value() == u"error";
            }
        }
    }

    QStringView type;
    QStringView value;  ///< of a number, a date, a time or a boolean
    QStringView string; ///< null: the shown text is the value
    bool isFormula = false;
    bool isError = false;
    qint64 times = 1;
    qint64 columns = 1; ///< that it spans
    qint64 rows = 1;

private:
    void TakeOffice(QStringView name, QStringView text) {
        if (name == u"value-type") {
            type = text;
        } else if (name == u"string-value") {
            string = text.isNull() ? QStringView(u"") : text;
        } else if (name == u"value" || name == u"date-value" || name == u"time-value" || name == u"boolean-value") {
            value = text;
        }
    }
    void TakeTable(QStringView name, QStringView text) {
        const auto number = [text] { return std::max<qint64>(1, text.toLongLong()); };
        if (name == u"number-columns-repeated") {
            times = number();
        } else if (name == u"number-columns-spanned") {
            columns = number();
        } else if (name == u"number-rows-spanned") {
            rows = number();
        }
        isFormula = isFormula || name == u"formula";
    }
};

void OdsSheet::ReadCell(SheetRow& row) {
    const auto attributes = m_xml.attributes(); // what `told` looks at
    const OdsCell told(attributes);
    NoteMerged(told);
    const QString shown = ReadShown();
    SheetCell cell;
    TakeValue(cell, told, shown);
    if (cell.kind != SheetCell::Kind::Text || !cell.text.isEmpty()) {
        if (m_column + told.times > MostColumns) {
            throw ImportError(QStringLiteral("riga %1: ha più di %2 colonne: il file è danneggiato")
                                  .arg(row.number)
                                  .arg(MostColumns));
        }
        for (qint64 i = 0; i < told.times; ++i) {
            cell.column = static_cast<int>(m_column + i);
            row.cells.push_back(cell);
        }
    }
    m_column += told.times;
}

void OdsSheet::TakeValue(SheetCell& cell, const OdsCell& told, const QString& shown) {
    if (told.isError) {
        cell.kind = SheetCell::Kind::Error;
        cell.text = shown.toUtf8();
    } else if (told.type.isEmpty() || told.type == u"string" || told.type == u"void") {
        cell.text = told.string.isNull() ? shown.toUtf8() : told.string.toUtf8();
        cell.kind = told.isFormula && cell.text.isEmpty() ? SheetCell::Kind::EmptyText : SheetCell::Kind::Text;
    } else if (told.type == u"date") {
        TakeDate(cell, told.value.toString());
    } else if (told.type == u"time") {
        cell.text = TimeText(told.value.toString()).toUtf8();
        if (cell.text.isEmpty()) {
            Spoil(cell, QStringLiteral("'%1' non è un'ora").arg(told.value));
        }
    } else if (told.type == u"boolean") {
        cell.kind = SheetCell::Kind::Boolean;
        cell.number = told.value == u"true" ? 1 : 0;
    } else if (const auto number = NumberOf(told.value); !number) {
        Spoil(cell, QStringLiteral("'%1' non è un numero").arg(told.value));
    } else if (IsShownAsCode(shown)) {
        cell.text = shown.toUtf8();
    } else {
        static const CellFormat percent(QStringLiteral("0%"));
        cell.kind = SheetCell::Kind::Number;
        cell.number = *number;
        cell.format = told.type == u"percentage" ? &percent : nullptr;
    }
}

void OdsSheet::NoteMerged(const OdsCell& told) {
    if (told.columns > 1 || told.rows > 1) {
        m_merged.append(ColumnLetters(static_cast<int>(m_column)) + QString::number(m_row + 1) + u':' +
                        ColumnLetters(static_cast<int>(m_column + told.columns - 1)) +
                        QString::number(m_row + told.rows));
    }
}

/// The text of the cell under way as it is shown, line by line, without comments and drawings.
QString OdsSheet::ReadShown() {
    QString shown;
    bool isFirst = true;
    while (m_xml.readNextStartElement()) {
        if (m_xml.name() == u"p" || m_xml.name() == u"h") {
            shown += isFirst ? QString() : QStringLiteral("\n");
            shown += ReadParagraph();
            isFirst = false;
        } else {
            m_xml.skipCurrentElement();
        }
    }
    return shown;
}

/// Blanks that follow each other are one, and none at the beginning: others have an element of their own.
QString OdsSheet::ReadParagraph() {
    QString text;
    bool isBehindBlank = true;
    for (int depth = 1; depth > 0 && !m_xml.atEnd();) {
        const auto token = m_xml.readNext();
        depth += token == QXmlStreamReader::StartElement ? 1 : token == QXmlStreamReader::EndElement ? -1 : 0;
        if (token == QXmlStreamReader::Characters) {
            AppendWords(text, m_xml.text(), isBehindBlank);
        } else if (token == QXmlStreamReader::StartElement) {
            const QStringView name = m_xml.name();
            if (name == u"s") {
                const QString ns = m_xml.namespaceUri().toString();
                const int blanks = std::max(1, m_xml.attributes().value(ns, QStringLiteral("c")).toInt());
                text += QString(std::min(blanks, MostColumns), u' ');
                isBehindBlank = false;
            } else if (name == u"tab" || name == u"line-break") {
                text += name == u"tab" ? u'\t' : u'\n';
                isBehindBlank = false;
            } else if (name == u"annotation" || name == u"note" || name == u"ruby-text") {
                m_xml.skipCurrentElement();
                --depth;
            }
        }
    }
    return text;
}

} // namespace sources
