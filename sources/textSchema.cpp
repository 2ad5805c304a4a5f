#include "sources/textSchema.h"

#include "sources/findFile.h"
#include "sources/TextLines.h"
#include "sql/errors.h"
#include "sql/SettingsFile.h"

#include <QFileInfo>

namespace sources {

namespace {

/// What stands outside of quotes.
QByteArray WithoutQuoted(const QByteArray& line) {
    QByteArray outside;
    bool isQuoted = false;
    for (const char byte : line) {
        isQuoted = isQuoted != (byte == '"');
        outside += isQuoted ? QByteArray() : QByteArray(1, byte);
    }
    return outside;
}

char SeparatorOfLine(const QByteArray& line) {
    const QByteArray outside = WithoutQuoted(line);
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
        schema.separator = SeparatorOfLine(line);
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
    const QFileInfo info(path);
    SettingsFile file(FindFile(info.path() + QStringLiteral("/schema.ini")));
    const auto read = [&](const QString& key) {
        return file.Path().isEmpty() ? QString() : file.Read(info.fileName(), key);
    };
    TextSchema schema;
    const QString format = read(QStringLiteral("Format"));
    schema.isFound = format.isEmpty();
    if (schema.isFound) {
        LookForSeparator(path, schema);
    } else {
        schema.separator = SeparatorOf(format, path);
    }
    const QString mark = read(QStringLiteral("DecimalSymbol"));
    schema.decimalMark = mark == u"," ? ',' : mark == u"." ? '.' : '\0';
    schema.hasHeader = read(QStringLiteral("ColNameHeader")).compare(u"False", Qt::CaseInsensitive) != 0;
    schema.codePage = CodePageOf(read(QStringLiteral("CharacterSet")));
    for (int column = 1;; ++column) {
        const QString line = read(QStringLiteral("Col%1").arg(column));
        if (line.isEmpty()) {
            break;
        }
        schema.columns.append(NameOf(line));
        schema.areTexts.append(IsOfTexts(TypeOf(line)));
        schema.areNumbers.append(IsOfNumbers(TypeOf(line)));
    }
    if (!schema.hasHeader && schema.columns.isEmpty()) {
        throw ImportError(QStringLiteral("file '%1': schema.ini lo dice senza intestazione, ma non nomina le colonne "
                                         "(Col1=..., Col2=...)")
                              .arg(path));
    }
    return schema;
}

} // namespace sources
