#include "sources/textSchema.h"

#include "sources/CsvFile.h"
#include "sources/findFile.h"
#include "sql/CodePage.h"
#include "sql/errors.h"
#include "sql/SettingsFile.h"

#include <QFile>
#include <QFileInfo>
#include <QStringDecoder>

namespace sources {

namespace {

/// What stands outside of quotes.
QByteArray WithoutQuoted(const QByteArray& line, char quote) {
    QByteArray outside;
    bool isQuoted = false;
    for (const char byte : line) {
        isQuoted = isQuoted != (quote != CsvFile::NoQuote && byte == quote);
        outside += isQuoted ? QByteArray() : QByteArray(1, byte);
    }
    return outside;
}

char SeparatorOfLine(const QByteArray& line, char quote) {
    const QByteArray outside = WithoutQuoted(line, quote);
    for (const char candidate : {';', '\t', ',', '|'}) {
        if (outside.contains(candidate)) {
            return candidate;
        }
    }
    return ';';
}

/// Finds the separator by the first line.
void LookForSeparator(const QString& path, TextSchema& schema) {
    constexpr qsizetype separatorAt = 4;
    QByteArray line;
    TextLines(path).Next(line);
    const QByteArrayView first = WithoutEnd(line);
    if (first.size() == separatorAt + 1 && line.toLower().startsWith("sep=")) { // as Excel writes it
        schema.separator = first.back();
        schema.skipped = 1;
    } else {
        schema.separator = SeparatorOfLine(line, schema.quote);
    }
}

/// A value that a file's section in "schema.ini" gives to a key, and where.
struct SchemaValue {
    QString key;
    QString value; ///< empty: not told
    QString path;  ///< of the file that is described
    int line = 0;  ///< of "schema.ini", from 1

    [[noreturn]] void Refuse(const QString& why) const {
        throw ImportError(QStringLiteral("file '%1': schema.ini, riga %2: '%3=%4' %5")
                              .arg(path, QString::number(line), key, value, why));
    }
    bool Is(const char* other) const { return value.compare(QLatin1String(other), Qt::CaseInsensitive) == 0; }
};

/// The keys of a section with the lines that they stand in.
struct SchemaLine {
    QString key;
    QString text;
    int line = 0;
};

QString SchemaText(const QString& path) {
    QFile file(path);
    if (path.isEmpty() || !file.open(QIODevice::ReadOnly)) {
        return {};
    }
    const QByteArray bytes = file.readAll();
    const auto marked = QStringConverter::encodingForData(bytes);
    return marked ? QString(QStringDecoder(*marked)(bytes)) : DecodeText(bytes, CodePage());
}

std::vector<SchemaLine> SchemaLinesOf(const QString& path, const QString& section) {
    std::vector<SchemaLine> keys;
    bool isWithin = false;
    int number = 0;
    const QStringList lines = SchemaText(path).split(u'\n');
    for (const QString& each : lines) {
        const QString line = each.trimmed();
        ++number;
        if (line.startsWith(u'[')) {
            if (isWithin) {
                break; // the first section of that name counts
            }
            isWithin = line.mid(1).section(u']', 0, 0).trimmed().compare(section, Qt::CaseInsensitive) == 0;
        } else if (isWithin && line.indexOf(u'=') > 0 && !line.startsWith(u';')) {
            keys.push_back({line.section(u'=', 0, 0).trimmed(), line, number});
        }
    }
    return keys;
}

/// The description of one file: what is told, and which of it has been read.
class SchemaSection {
public:
    explicit SchemaSection(const QString& path)
        : m_path(path),
          m_info(path),
          m_file(FindFile(m_info.path() + QStringLiteral("/schema.ini"))),
          m_keys(SchemaLinesOf(m_file.Path(), m_info.fileName())) {}

    SchemaValue Read(const QString& key) {
        m_read.append(key);
        const auto line = std::ranges::find_if(
            m_keys, [&key](const SchemaLine& each) { return key.compare(each.key, Qt::CaseInsensitive) == 0; });
        return {key, m_file.Path().isEmpty() ? QString() : m_file.Read(m_info.fileName(), key), m_path,
                line == m_keys.end() ? 0 : line->line};
    }
    /// The lines whose keys nobody has read.
    QStringList Unread() const {
        QStringList lines;
        for (const SchemaLine& key : m_keys) {
            if (!m_read.contains(key.key, Qt::CaseInsensitive)) {
                lines.append(QStringLiteral("riga %1: '%2'").arg(QString::number(key.line), key.text));
            }
        }
        return lines;
    }

private:
    QString m_path;
    QFileInfo m_info;
    SettingsFile m_file;
    std::vector<SchemaLine> m_keys;
    QStringList m_read;
};

bool HasHeader(const SchemaValue& told) {
    const bool isTrue = told.value.isEmpty() || told.Is("True") || told.Is("1");
    if (!isTrue && !told.Is("False") && !told.Is("0")) {
        told.Refuse(QStringLiteral("non è né True né False"));
    }
    return isTrue;
}

char QuoteOf(const SchemaValue& told) {
    if (told.Is("none")) {
        return CsvFile::NoQuote;
    }
    if (told.value != u"'" && told.value != u"\"" && !told.value.isEmpty()) {
        told.Refuse(QStringLiteral("non è uno dei segni che possono stare attorno ai campi (\", ' o none)"));
    }
    return told.value.isEmpty() ? '"' : told.value.front().toLatin1();
}

char DecimalMarkOf(const SchemaValue& told) {
    if (told.value != u"," && told.value != u"." && !told.value.isEmpty()) {
        told.Refuse(QStringLiteral("non è un segno dei decimali (, o .)"));
    }
    return told.value.isEmpty() ? '\0' : told.value.front().toLatin1();
}

/// Dates are read day first, or year first: any other order would give another day.
void CheckDates(const SchemaValue& told) {
    QString order;
    for (const QChar letter : told.value.toLower()) {
        const QChar part = letter == u'g' ? QChar(u'd') : letter == u'a' ? QChar(u'y') : letter;
        if (QStringView(u"dmy").contains(part) && !order.contains(part)) {
            order += part;
        }
    }
    if (!told.value.isEmpty() && order != u"dmy" && order != u"ymd") {
        told.Refuse(QStringLiteral("non è uno dei modi in cui le date si leggono (giorno, mese, anno, come dd/mm/yyyy, "
                                   "o anno, mese, giorno, come yyyy-mm-dd): scriverle nel file in uno di questi"));
    }
}

char SeparatorOf(const QString& format, const QString& path) {
    if (format.compare(u"CSVDelimited", Qt::CaseInsensitive) == 0) {
        return ',';
    }
    if (format.compare(u"TabDelimited", Qt::CaseInsensitive) == 0) {
        return '\t';
    }
    constexpr int separatorAt = 10;
    const bool isDelimited = format.startsWith(u"Delimited(", Qt::CaseInsensitive) && format.endsWith(u')');
    if (!isDelimited || format.size() != separatorAt + 2 || format.at(separatorAt).unicode() > 0x7F) {
        throw ImportError(QStringLiteral("schema.ini: il formato '%1' del file '%2' non si legge (CSVDelimited, "
                                         "TabDelimited, Delimited(;))")
                              .arg(format, path));
    }
    return static_cast<char>(format.at(separatorAt).unicode());
}

QString CodePageOf(const QString& characterSet) {
    if (characterSet.compare(u"ANSI", Qt::CaseInsensitive) == 0) {
        return QStringLiteral("1252");
    }
    if (characterSet.compare(u"OEM", Qt::CaseInsensitive) == 0) {
        return QStringLiteral("850");
    }
    if (characterSet.compare(u"Unicode", Qt::CaseInsensitive) == 0) {
        return QStringLiteral("UTF-16LE");
    }
    return characterSet == u"65001" ? QStringLiteral("UTF-8") : characterSet;
}

/// The name of a column's line: "CODICE Text Width 10", or in quotes when it holds blanks.
QString NameOf(const QString& line) {
    if (line.startsWith(u'"')) {
        return line.mid(1, line.indexOf(u'"', 1) - 1);
    }
    return line.section(u' ', 0, 0);
}

/// The type in a column's line, in capitals; empty without one.
QString TypeOf(const QString& line) {
    const qsizetype nameEnd = line.startsWith(u'"') ? line.indexOf(u'"', 1) + 1 : line.indexOf(u' ');
    return nameEnd > 0 ? line.mid(nameEnd).simplified().section(u' ', 0, 0).toUpper() : QString();
}

bool IsOfTexts(const QString& type) {
    static const QStringList texts{"TEXT", "CHAR", "MEMO", "LONGCHAR"};
    return texts.contains(type);
}

bool IsOfNumbers(const QString& type) {
    static const QStringList numbers{"BYTE",     "SHORT",  "INTEGER", "LONG",    "SINGLE",
                                     "CURRENCY", "DOUBLE", "FLOAT",   "DECIMAL", "NUMERIC"};
    return numbers.contains(type);
}

} // namespace

TextSchema ReadTextSchema(const QString& path) {
    SchemaSection section(path);
    TextSchema schema;
    schema.quote = QuoteOf(section.Read(QStringLiteral("TextDelimiter")));
    const QString format = section.Read(QStringLiteral("Format")).value;
    schema.isFound = format.isEmpty();
    if (schema.isFound) {
        LookForSeparator(path, schema);
    } else {
        schema.separator = SeparatorOf(format, path);
    }
    schema.decimalMark = DecimalMarkOf(section.Read(QStringLiteral("DecimalSymbol")));
    schema.hasHeader = HasHeader(section.Read(QStringLiteral("ColNameHeader")));
    schema.codePage = CodePageOf(section.Read(QStringLiteral("CharacterSet")).value);
    CheckDates(section.Read(QStringLiteral("DateTimeFormat")));
    section.Read(
        QStringLiteral("MaxScanRows")); // by which drivers guess types: here nothing is guessed by the first rows
    for (int column = 1;; ++column) {
        const QString line = section.Read(QStringLiteral("Col%1").arg(column)).value;
        if (line.isEmpty()) {
            break;
        }
        schema.columns.append(NameOf(line));
        schema.areTexts.append(IsOfTexts(TypeOf(line)));
        schema.areNumbers.append(IsOfNumbers(TypeOf(line)));
    }
    schema.unused = section.Unread();
    if (!schema.hasHeader && schema.columns.isEmpty()) {
        throw ImportError(QStringLiteral("file '%1': schema.ini lo dice senza intestazione, ma non nomina le colonne "
                                         "(Col1=..., Col2=...)")
                              .arg(path));
    }
    return schema;
}

} // namespace sources
