#include "sources/workbook/Ods.h"

#include "sources/workbook/OdsSheet.h"
#include "sources/workbook/Xlsx.h"
#include "sql/errors.h"

namespace sources {

namespace {

const QString Mimetype = QStringLiteral("mimetype");
const QString Manifest = QStringLiteral("META-INF/manifest.xml");

} // namespace

bool Ods::Is(Package& package) {
    return package.Has(Mimetype) &&
           package.Open(Mimetype)->readAll().startsWith("application/vnd.oasis.opendocument.spreadsheet");
}

Ods::Ods(Package package)
    : m_package(std::move(package)) {
    RefusePassword();
    const auto content = m_package.Open(OdsContent);
    QXmlStreamReader xml(content.get());
    while (NextOdsSheet(xml)) {
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
