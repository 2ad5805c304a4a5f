#include "sources/layout/LayoutEdit.h"

#include "sources/layout/LayoutFile.h"
#include "sources/layout/LayoutTable.h"
#include "sql/names.h"

#include <QDir>
#include <QFileInfo>
#include <QSaveFile>

namespace sources {

namespace {

/// The section that a line begins; null when it begins none.
QString SectionOf(const QString& line) {
    const QStringView text = LayoutFile::WithoutComment(line).trimmed();
    return text.startsWith(u'[') && text.endsWith(u']') ? text.sliced(1, text.size() - 2).trimmed().toString()
                                                        : QString();
}

QStringView KeyOf(QStringView line) {
    const qsizetype equals = line.indexOf(u'=');
    return equals < 0 ? QStringView() : line.first(equals).trimmed();
}

} // namespace

/// The line of an entry. @param amongComments of a comment that holds it; -1 without one
qsizetype LayoutEdit::Find(const QString& section, const QString& key, bool amongComments) const {
    QString under;
    for (qsizetype at = 0; at < m_lines.size(); ++at) {
        const QStringView line = QStringView(m_lines[at]).trimmed();
        if (const QString begun = SectionOf(m_lines[at]); !begun.isNull()) {
            under = begun;
        } else if (names::AreSame(under, section) && line.startsWith(u';') == amongComments &&
                   names::AreSame(KeyOf(amongComments ? line.sliced(1) : line), key)) {
            return at;
        }
    }
    return -1;
}

QString LayoutEdit::Value(const QString& section, const QString& key) const {
    const qsizetype at = Find(section, key, false);
    if (at < 0) {
        return {};
    }
    const QStringView line = LayoutFile::WithoutComment(m_lines[at]);
    const QString value = line.sliced(line.indexOf(u'=') + 1).trimmed().toString();
    return value.isNull() ? QStringLiteral("") : value;
}

void LayoutEdit::Set(const QString& section, const QString& key, const QString& value) {
    if (value.contains(u'\n') || LayoutFile::WithoutComment(value).trimmed() != value.trimmed()) {
        throw ImportError(QStringLiteral("'%1' non si può scrivere in un tracciato").arg(value));
    }
    const qsizetype at = Find(section, key, false);
    if (at < 0) {
        Add(section, key + u'=' + value.trimmed());
        return;
    }
    const QString comment = m_lines[at].mid(LayoutFile::WithoutComment(m_lines[at]).size());
    m_lines[at] = key + u'=' + value.trimmed() + (comment.isEmpty() ? QString() : QString(u' ' + comment));
}

void LayoutEdit::Remove(const QString& section, const QString& key) {
    if (const qsizetype at = Find(section, key, false); at >= 0) {
        m_lines.removeAt(at);
    }
}

void LayoutEdit::Suggest(const QString& section, const QString& key, const QString& value, const QString& reason) {
    if (Find(section, key, false) < 0 && Find(section, key, true) < 0) {
        Add(section, u';' + key + u'=' + value + QStringLiteral(" ; ") + reason);
    }
}

void LayoutEdit::Add(const QString& section, const QString& line) {
    qsizetype end = -1; // behind the last line of the section that is not blank
    QString under;
    for (qsizetype at = 0; at < m_lines.size(); ++at) {
        const QString begun = SectionOf(m_lines[at]);
        under = begun.isNull() ? under : begun;
        end = names::AreSame(under, section) && !m_lines[at].trimmed().isEmpty() ? at + 1 : end;
    }
    if (end >= 0) {
        m_lines.insert(end, line);
        return;
    }
    while (!m_lines.isEmpty() && m_lines.last().trimmed().isEmpty()) {
        m_lines.removeLast();
    }
    m_lines += m_lines.isEmpty() ? QStringList() : QStringList(QString());
    m_lines += {u'[' + section + u']', line};
}

QString LayoutEdit::Text() const {
    const QString text = m_lines.join(u'\n');
    return text.isEmpty() || text.endsWith(u'\n') ? text : QString(text + u'\n');
}

QString LayoutEdit::Written(const QString& name) {
    const bool isRead = NameParts(name) == QStringList(name) && !name.contains(u';') && !name.contains(u'\'');
    return isRead ? name : QString(u'[' + name + u']');
}

void WriteLayoutFile(const QString& path, const QString& text) {
    QDir().mkpath(QFileInfo(path).path());
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(text.toUtf8()) < 0 || !file.commit()) {
        throw ImportError(QStringLiteral("Tracciato '%1': %2").arg(QDir::toNativeSeparators(path), file.errorString()));
    }
}

} // namespace sources
