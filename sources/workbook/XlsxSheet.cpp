#include "sources/workbook/XlsxSheet.h"

#include "sources/workbook/cellValues.h"

namespace sources {

namespace {

bool IsOn(QStringView flag) { return flag == u"1" || flag == u"true"; }

} // namespace

bool XlsxSheet::Next(SheetRow& row) {
    while (!m_xml.atEnd()) {
        if (m_xml.readNext() != QXmlStreamReader::StartElement) {
            continue;
        }
        if (m_xml.name() == u"row") {
            BeginRow(row);
            ReadCells(row);
            if (!row.cells.empty()) {
                return true;
            }
        } else if (m_xml.name() == u"mergeCell") {
            m_merged.append(m_xml.attributes().value(QLatin1String("ref")).toString());
        }
    }
    CheckXml(m_xml, *m_device, m_part);
    return false;
}

void XlsxSheet::BeginRow(SheetRow& row) {
    const auto attributes = m_xml.attributes();
    bool isNumber = false;
    const qint64 number = attributes.value(QLatin1String("r")).toLongLong(&isNumber);
    if (isNumber && number <= m_row) {
        throw ImportError(QStringLiteral("la riga %1 viene dopo la riga %2: il file è danneggiato, aprirlo con Excel e "
                                         "salvarlo di nuovo")
                              .arg(number)
                              .arg(m_row));
    }
    m_row = isNumber ? number : m_row + 1;
    m_column = -1;
    row.number = m_row;
    row.isHidden = IsOn(attributes.value(QLatin1String("hidden")));
    row.cells.clear();
}

void XlsxSheet::ReadCells(SheetRow& row) {
    while (!m_xml.atEnd()) {
        const auto token = m_xml.readNext();
        if (token == QXmlStreamReader::EndElement && m_xml.name() == u"row") {
            return;
        }
        if (token != QXmlStreamReader::StartElement || m_xml.name() != u"c") {
            continue;
        }
        SheetCell cell = ReadCell();
        const bool isBlank = cell.kind == SheetCell::Kind::Text && cell.text.isEmpty();
        if (!isBlank) {
            row.cells.push_back(std::move(cell));
        }
    }
    CheckXml(m_xml, *m_device, m_part);
}

SheetCell XlsxSheet::ReadCell() {
    const auto attributes = m_xml.attributes();
    const QString type = attributes.value(QLatin1String("t")).toString();
    const int told = ColumnOfLetters(attributes.value(QLatin1String("r")));
    SheetCell cell;
    cell.column = told >= 0 ? told : m_column + 1;
    if (cell.column <= m_column) {
        throw ImportError(QStringLiteral("riga %1: la cella %2 non è al suo posto: il file è danneggiato, aprirlo con "
                                         "Excel e salvarlo di nuovo")
                              .arg(m_row)
                              .arg(attributes.value(QLatin1String("r"))));
    }
    m_column = cell.column;
    cell.format = m_workbook.Format(attributes.value(QLatin1String("s")).toInt());
    bool isFormula = false;
    bool hasValue = type == u"str"; // one that gives an empty text may have no value written
    while (m_xml.readNextStartElement()) {
        if (m_xml.name() == u"v") {
            const QString value = m_xml.readElementText(QXmlStreamReader::IncludeChildElements);
            TakeValue(cell, type, value);
            hasValue = hasValue || !value.isEmpty();
        } else if (m_xml.name() == u"is") {
            cell.text = ReadXlsxText(m_xml);
            hasValue = true;
        } else {
            isFormula = isFormula || m_xml.name() == u"f";
            m_xml.skipCurrentElement();
        }
    }
    const bool isZero = cell.kind == SheetCell::Kind::Number && cell.number == 0;
    if (isFormula && (!hasValue || (isZero && m_workbook.WantsReckoning()))) {
        cell.kind = SheetCell::Kind::NoValue;
    } else if (isFormula && cell.kind == SheetCell::Kind::Text && cell.text.isEmpty()) {
        cell.kind = SheetCell::Kind::EmptyText;
    }
    return cell;
}

void XlsxSheet::TakeValue(SheetCell& cell, QStringView type, const QString& value) const {
    if (type == u"str" || type == u"inlineStr") {
        cell.text = WithoutXlsxEscapes(value).toUtf8();
    } else if (type == u"e") {
        cell.kind = SheetCell::Kind::Error;
        cell.text = value.toUtf8();
    } else if (type == u"d") {
        TakeDate(cell, value);
    } else if (type == u"s") {
        bool isNumber = false;
        const uint index = value.toUInt(&isNumber);
        if (!isNumber || index >= m_workbook.Texts().Count()) {
            Spoil(cell, QStringLiteral("il testo numero '%1' non è nel file, che è danneggiato").arg(value));
            return;
        }
        cell.text = m_workbook.Texts().At(index).toByteArray();
    } else if (!value.isEmpty()) {
        TakeNumber(cell, value);
        cell.kind = type == u"b" && cell.kind == SheetCell::Kind::Number ? SheetCell::Kind::Boolean : cell.kind;
    }
}

void XlsxSheet::TakeNumber(SheetCell& cell, const QString& value) const {
    if (const auto number = NumberOf(value)) {
        cell.kind = SheetCell::Kind::Number;
        cell.number = *number;
    } else {
        Spoil(cell, QStringLiteral("'%1' non è un numero").arg(value));
    }
}

} // namespace sources
