#include "sources/textSchema.h"

#include "sources/CsvFile.h"
#include "sources/findFile.h"
#include "sql/errors.h"
#include "sql/SettingsFile.h"

#include <QFileInfo>

namespace sources {

namespace {

char SeparatorOfLine(const QByteArray& line) {
    for (const char candidate : {';', '\t', ',', '|'}) {
        if (line.contains(candidate)) {
            return candidate;
        }
    }
    return ';';
}

char SeparatorOf(const QString& format, const QString& path) {
    if (format.isEmpty()) {
        return SeparatorOfLine(CsvFile::FirstLine(path));
    }
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
    return characterSet == u"65001" ? QStringLiteral("UTF-8") : characterSet;
}

/// The name of a column's line: "CODICE Text Width 10", or in quotes when it holds blanks.
QString NameOf(const QString& line) {
    if (line.startsWith(u'"')) {
        return line.mid(1, line.indexOf(u'"', 1) - 1);
    }
    return line.section(u' ', 0, 0);
}

} // namespace

TextSchema ReadTextSchema(const QString& path) {
    const QFileInfo info(path);
    SettingsFile file(FindFile(info.path() + QStringLiteral("/schema.ini")));
    const auto read = [&](const QString& key) {
        return file.Path().isEmpty() ? QString() : file.Read(info.fileName(), key);
    };
    TextSchema schema;
    schema.separator = SeparatorOf(read(QStringLiteral("Format")), path);
    schema.hasHeader = read(QStringLiteral("ColNameHeader")).compare(u"False", Qt::CaseInsensitive) != 0;
    schema.codePage = CodePageOf(read(QStringLiteral("CharacterSet")));
    for (int column = 1;; ++column) {
        const QString line = read(QStringLiteral("Col%1").arg(column));
        if (line.isEmpty()) {
            break;
        }
        schema.columns.append(NameOf(line));
    }
    if (!schema.hasHeader && schema.columns.isEmpty()) {
        throw ImportError(QStringLiteral("file '%1': schema.ini lo dice senza intestazione, ma non nomina le colonne "
                                         "(Col1=..., Col2=...)")
                              .arg(path));
    }
    return schema;
}

} // namespace sources
