#include "sources/workbook/Xlsx.h"

#include "sources/workbook/XlsxSheet.h"

#include <QHash>

namespace sources {

namespace {

/// A part of the package while it is read.
class Part {
public:
    Part(Package& package, QString name)
        : m_name(std::move(name)),
          m_device(package.Open(m_name)),
          xml(m_device.get()) {}
    /// Steps to the next element; false behind the last one. Raises `ImportError`.
    bool NextElement() {
        while (!xml.atEnd()) {
            if (xml.readNext() == QXmlStreamReader::StartElement) {
                return true;
            }
        }
        CheckXml(xml, *m_device, m_name);
        return false;
    }
    bool Is(QStringView name) const { return xml.name() == name; }
    QString Attribute(const char* name) const { return xml.attributes().value(QLatin1String(name)).toString(); }
    bool IsOn(const char* name) const { return Attribute(name) == u"1" || Attribute(name) == u"true"; }

private:
    QString m_name;
    std::unique_ptr<PackedFile> m_device;

public:
    QXmlStreamReader xml;
};

struct Relation {
    QString type; ///< the last word of it: "worksheet", "styles"
    QString part;
};

/// The part that a name stands for, seen from the folder of another one.
QString PartFrom(const QString& folder, const QString& target) {
    QStringList path = target.startsWith(u'/') ? QStringList() : folder.split(u'/', Qt::SkipEmptyParts);
    for (const QString& step : target.split(u'/', Qt::SkipEmptyParts)) {
        if (step == u"..") {
            path = path.mid(0, path.size() - 1);
        } else if (step != u".") {
            path.append(step);
        }
    }
    return path.join(u'/');
}

/// What a part of the package is bound to, by the name of the bond.
QHash<QString, Relation> RelationsOf(Package& package, const QString& part) {
    const QString folder = part.section(u'/', 0, -2);
    const QString file = part.section(u'/', -1);
    QHash<QString, Relation> relations;
    Part list(package, (folder.isEmpty() ? QString() : folder + u'/') + QStringLiteral("_rels/") + file +
                           QStringLiteral(".rels"));
    while (list.NextElement()) {
        if (list.Is(u"Relationship")) {
            relations.insert(list.Attribute("Id"),
                             {list.Attribute("Type").section(u'/', -1), PartFrom(folder, list.Attribute("Target"))});
        }
    }
    return relations;
}

QString PartOfType(const QHash<QString, Relation>& relations, QStringView type) {
    for (const Relation& relation : relations) {
        if (relation.type == type) {
            return relation.part;
        }
    }
    return {};
}

} // namespace

void CheckXml(const QXmlStreamReader& xml, PackedFile& file, const QString& part) {
    const bool isWhole = file.IsWhole();
    if (xml.hasError() || !isWhole) {
        throw ImportError(QStringLiteral("la parte '%1' del file è danneggiata (byte %2: %3): aprirlo con Excel, "
                                         "salvarlo di nuovo e riprovare")
                              .arg(part, QString::number(xml.characterOffset()),
                                   isWhole ? xml.errorString() : QStringLiteral("somma di controllo errata")));
    }
}

QString WithoutXlsxEscapes(QString text) {
    constexpr qsizetype length = 7;
    for (qsizetype at = text.indexOf(u"_x"); at >= 0; at = text.indexOf(u"_x", at + 1)) {
        bool isCode = false;
        const ushort code = at + length <= text.size() && text.at(at + length - 1) == u'_'
                                ? text.mid(at + 2, 4).toUShort(&isCode, 16)
                                : ushort(0);
        if (isCode) {
            text.replace(at, length, QChar(code));
        }
    }
    return text;
}

QByteArray ReadXlsxText(QXmlStreamReader& xml) {
    QString text;
    for (int depth = 1; depth > 0 && !xml.atEnd();) {
        const auto token = xml.readNext();
        if (token == QXmlStreamReader::StartElement && xml.name() == u"t") {
            text += xml.readElementText(QXmlStreamReader::IncludeChildElements);
        } else if (token == QXmlStreamReader::StartElement && xml.name() == u"rPh") {
            xml.skipCurrentElement();
        } else if (token == QXmlStreamReader::StartElement) {
            ++depth;
        } else if (token == QXmlStreamReader::EndElement) {
            --depth;
        }
    }
    return WithoutXlsxEscapes(std::move(text)).toUtf8();
}

Xlsx::Xlsx(const QString& path)
    : m_package(path) {
    const QString workbook = PartOfType(RelationsOf(m_package, QString()), u"officeDocument");
    const auto relations = workbook.isEmpty() ? QHash<QString, Relation>() : RelationsOf(m_package, workbook);
    ReadSheets(workbook);
    for (const auto& [type, read] : {std::pair(u"styles", &Xlsx::ReadStyles), {u"sharedStrings", &Xlsx::ReadTexts}}) {
        if (const QString part = PartOfType(relations, QStringView(type)); !part.isEmpty()) {
            (this->*read)(part);
        }
    }
}

void Xlsx::ReadSheets(const QString& part) {
    const bool isBook = part.endsWith(u".xml", Qt::CaseInsensitive);
    if (!isBook) {
        throw ImportError(part.isEmpty() ? QStringLiteral("non è una cartella di lavoro di Excel")
                                         : QStringLiteral("è una cartella di lavoro binaria (.xlsb): salvarla con "
                                                          "Excel in formato .xlsx"));
    }
    const auto relations = RelationsOf(m_package, part);
    Part book(m_package, part);
    while (book.NextElement()) {
        if (book.Is(u"workbookPr")) {
            m_since1904 = book.IsOn("date1904");
        } else if (book.Is(u"calcPr")) {
            m_wantsReckoning = book.IsOn("fullCalcOnLoad");
        } else if (book.Is(u"sheet")) {
            QString id;
            const auto attributes = book.xml.attributes();
            for (const QXmlStreamAttribute& attribute : attributes) {
                id = attribute.name() == u"id" ? attribute.value().toString() : id;
            }
            const Relation relation = relations.value(id);
            if (relation.type == u"worksheet") {
                const QString state = book.Attribute("state");
                m_sheets.push_back(
                    {book.Attribute("name"), relation.part, state == u"hidden" || state == u"veryHidden"});
            }
        }
    }
}

void Xlsx::ReadStyles(const QString& part) {
    QHash<int, CellFormat> own;
    bool isCellList = false;
    Part styles(m_package, part);
    while (styles.NextElement()) {
        if (styles.Is(u"numFmt")) {
            own.insert(styles.Attribute("numFmtId").toInt(), CellFormat(styles.Attribute("formatCode")));
        } else if (styles.Is(u"xf") && isCellList) {
            const int number = styles.Attribute("numFmtId").toInt();
            m_formats.push_back(own.contains(number) ? own.value(number) : CellFormat::BuiltIn(number));
        } else if (styles.Is(u"cellXfs") || styles.Is(u"cellStyleXfs") || styles.Is(u"cellStyles")) {
            isCellList = styles.Is(u"cellXfs");
        }
    }
}

void Xlsx::ReadTexts(const QString& part) {
    Part texts(m_package, part);
    while (texts.NextElement()) {
        if (texts.Is(u"si")) {
            m_texts.Add(ReadXlsxText(texts.xml));
        }
    }
}

QStringList Xlsx::Sheets() const {
    QStringList names;
    for (const Sheet& sheet : m_sheets) {
        names.append(sheet.name);
    }
    return names;
}

const CellFormat* Xlsx::Format(int style) const {
    return style >= 0 && static_cast<size_t>(style) < m_formats.size() ? &m_formats[static_cast<size_t>(style)]
                                                                       : nullptr;
}

std::unique_ptr<SheetReader> Xlsx::Read(int sheet) {
    const QString& part = m_sheets.at(static_cast<size_t>(sheet)).part;
    return std::make_unique<XlsxSheet>(*this, part, m_package.Open(part));
}

} // namespace sources
