#include "sources/workbook/Ods.h"

#include "sources/workbook/OdsSheet.h"
#include "sources/workbook/Xlsx.h"
#include "sql/errors.h"

#include <QSet>

#include <algorithm>

namespace sources {

namespace {

const QString Mimetype = QStringLiteral("mimetype");
const QString Manifest = QStringLiteral("META-INF/manifest.xml");

/// The value of an attribute, whatever its space of names.
QString AttributeOf(const QXmlStreamReader& xml, QStringView name) {
    const QXmlStreamAttributes attributes = xml.attributes();
    const auto found = std::ranges::find_if(attributes, [name](const auto& each) { return each.name() == name; });
    return found == attributes.end() ? QString() : found->value().toString();
}

/// The styles of sheets that are not shown: they stand in front of the sheets.
QSet<QString> HiddenStyles(QXmlStreamReader& xml) {
    QSet<QString> hidden;
    QString style;
    while (!xml.atEnd()) {
        if (xml.readNext() != QXmlStreamReader::StartElement) {
            continue;
        }
        if (xml.name() == u"body") {
            break;
        }
        style = xml.name() == u"style" ? AttributeOf(xml, u"name") : style;
        if (xml.name() == u"table-properties" && AttributeOf(xml, u"display") == u"false") {
            hidden.insert(style);
        }
    }
    return hidden;
}

} // namespace

bool Ods::Is(Package& package) {
    return package.Has(Mimetype) &&
           package.Open(Mimetype)->readAll().startsWith("application/vnd.oasis.opendocument.spreadsheet");
}

Ods::Ods(Package package)
    : m_package(std::move(package)) {
    RefusePassword();
    const auto styles = m_package.Open(OdsContent);
    QXmlStreamReader head(styles.get());
    const QSet<QString> hidden = HiddenStyles(head);
    const auto content = m_package.Open(OdsContent);
    QXmlStreamReader xml(content.get());
    while (NextOdsSheet(xml)) {
        m_areHidden.append(hidden.contains(AttributeOf(xml, u"style-name")));
        m_sheets.append(xml.attributes().value(xml.namespaceUri().toString(), QStringLiteral("name")).toString());
        xml.skipCurrentElement();
    }
    while (!xml.atEnd()) {
        xml.readNext();
    }
    CheckXml(xml, *content, OdsContent);
}

void Ods::RefusePassword() {
    if (!m_package.Has(Manifest)) {
        return;
    }
    const auto manifest = m_package.Open(Manifest);
    QXmlStreamReader xml(manifest.get());
    while (!xml.atEnd()) {
        if (xml.readNext() == QXmlStreamReader::StartElement && xml.name() == u"encryption-data") {
            throw ImportError(QStringLiteral("è protetto da una password: aprirlo con LibreOffice e salvarlo senza"));
        }
    }
}

std::unique_ptr<SheetReader> Ods::Read(int sheet) {
    return std::make_unique<OdsSheet>(m_package.Open(OdsContent), sheet);
}

} // namespace sources
