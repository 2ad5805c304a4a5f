#include "sources/layout/LayoutFile.h"

#include "sql/CodePage.h"
#include "sql/names.h"

#include <QDir>
#include <QFile>
#include <QStringDecoder>

#include <algorithm>

namespace sources {

const QString LayoutFile::Tables = QStringLiteral("TABELLE");
const QString LayoutFile::Columns = QStringLiteral("COLONNE");
const QString LayoutFile::Filters = QStringLiteral("FILTRI");
const QString LayoutFile::Added = QStringLiteral("AGGIUNTE");

namespace {

QString Decoded(const QByteArray& bytes) {
    const auto marked = QStringConverter::encodingForData(bytes);
    QStringDecoder decoder(marked.value_or(QStringConverter::Utf8));
    const QString text = decoder(bytes);
    return decoder.hasError() && !marked ? DecodeText(bytes, CodePage()) : text;
}

} // namespace

QString LayoutFile::PathOf(const QString& folder, const QString& origin) {
    QString name = origin;
    for (QChar& character : name) {
        if (QStringView(u"<>:\"/\\|?*").contains(character) || character < u' ') {
            character = u'-';
        }
    }
    return QDir(folder).filePath(name + QStringLiteral(".ini"));
}

QStringView LayoutFile::WithoutComment(QStringView line) {
    QChar close; // of the text in quotes or the name in brackets under way
    for (qsizetype at = 0; at < line.size(); ++at) {
        const bool begins = line[at] == u';' && (at == 0 || line[at - 1].isSpace());
        if (begins && close.isNull()) {
            return line.first(at);
        }
        if (!close.isNull()) {
            close = line[at] == close ? QChar() : close;
        } else if (line[at] == u'\'' || line[at] == u'[') {
            close = line[at] == u'[' ? u']' : u'\'';
        }
    }
    return line;
}

QString LayoutFile::TextOf(const QString& path) {
    QFile file(path);
    if (!file.exists()) {
        return {};
    }
    if (!file.open(QIODevice::ReadOnly)) {
        throw ImportError(QStringLiteral("Tracciato '%1': %2").arg(QDir::toNativeSeparators(path), file.errorString()));
    }
    return Decoded(file.readAll());
}

std::optional<LayoutFile> LayoutFile::Read(const QString& path) {
    if (!QFile::exists(path)) {
        return std::nullopt;
    }
    LayoutFile layout;
    layout.m_path = path;
    int number = 0;
    for (const QString& line : TextOf(path).split(u'\n')) {
        layout.Take(line, ++number);
    }
    return layout;
}

void LayoutFile::Take(QString line, int number) {
    line = WithoutComment(line).trimmed().toString();
    const Entry whole{line, {}, number};
    if (line.isEmpty()) {
        return;
    }
    if (line.startsWith(u'[')) {
        static const QStringList sections{Tables, Columns, Filters, Added};
        const QString name = line.mid(1).chopped(line.endsWith(u']') ? 1 : 0).trimmed();
        const auto known = std::find_if(sections.begin(), sections.end(),
                                        [&name](const QString& section) { return names::AreSame(section, name); });
        if (known == sections.end() || !line.endsWith(u']')) {
            throw Wrong(
                {}, whole,
                QStringLiteral("sezione sconosciuta; le sezioni sono [%1]").arg(sections.join(QStringLiteral("], ["))));
        }
        m_section = *known;
        return;
    }
    const qsizetype equals = line.indexOf(u'=');
    if (equals <= 0) {
        throw Wrong({}, whole, QStringLiteral("non è 'nome=valore'"));
    }
    if (m_section.isEmpty()) {
        throw Wrong({}, whole, QStringLiteral("non sta in una sezione"));
    }
    Add({line.first(equals).trimmed(), line.mid(equals + 1).trimmed(), number});
}

void LayoutFile::Add(const Entry& entry) {
    std::vector<Entry>& entries = m_entries[m_section];
    const auto earlier = std::find_if(entries.begin(), entries.end(),
                                      [&entry](const Entry& each) { return names::AreSame(each.key, entry.key); });
    if (earlier != entries.end()) {
        throw Wrong(m_section, entry, QStringLiteral("c'è già alla riga %1").arg(earlier->line));
    }
    entries.push_back(entry);
}

const std::vector<LayoutFile::Entry>& LayoutFile::Entries(const QString& section) const {
    static const std::vector<Entry> none;
    const auto found = m_entries.constFind(section);
    return found == m_entries.constEnd() ? none : *found;
}

ImportError LayoutFile::Wrong(const QString& section, const Entry& entry, const QString& what) const {
    const QString where = section.isEmpty() ? QString() : QStringLiteral(", sezione [%1]").arg(section);
    return ImportError(QStringLiteral("Tracciato '%1', riga %2%3: '%4': %5")
                           .arg(QDir::toNativeSeparators(m_path), QString::number(entry.line), where, entry.key, what));
}

} // namespace sources
