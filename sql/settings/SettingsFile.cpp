#include "sql/SettingsFile.h"

#include "sql/CodePage.h"
#include "sql/errors.h"
#include "sql/ownFile.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>
#include <QStringConverter>

#include <algorithm>
#include <array>

namespace {

constexpr qint64 FreshMilliseconds = 50; ///< a file this young may change again within one tick of its clock

/// Without the blanks and tabs around. Other white space, such as the hard blank, belongs to a value.
QStringView Trimmed(QStringView text) {
    const auto isBlank = [](QChar character) { return character == u' ' || character == u'\t' || character == u'\r'; };
    while (!text.isEmpty() && isBlank(text.front())) {
        text = text.sliced(1);
    }
    while (!text.isEmpty() && isBlank(text.back())) {
        text.chop(1);
    }
    return text;
}

bool IsQuoted(QStringView text) {
    return text.size() >= 2 && text.front() == text.back() && (text.front() == u'"' || text.front() == u'\'');
}

QStringView Unquoted(QStringView text) { return IsQuoted(text) ? text.sliced(1, text.size() - 2) : text; }

/// The value as it must stand in the file to be read back as it is.
QString Protected(const QString& value) {
    const bool changes = IsQuoted(value) || Trimmed(value).size() != value.size();
    return changes ? QString(u'"' + value + u'"') : value;
}

bool IsSection(QStringView line) { return Trimmed(line).startsWith(u'['); }

QStringView SectionName(QStringView line) {
    const QStringView text = Trimmed(line).sliced(1);
    const qsizetype end = text.indexOf(u']');
    return Trimmed(end < 0 ? text : text.left(end));
}

/// Whether the line is "key=...".
bool IsKey(QStringView line, const QString& key) {
    const qsizetype equals = line.indexOf(u'=');
    return equals > 0 && !Trimmed(line).startsWith(u';') &&
           Trimmed(line.left(equals)).compare(key, Qt::CaseInsensitive) == 0;
}

/// Line numbers of a key: -1 for what is missing.
struct Place {
    qsizetype section = -1;
    qsizetype key = -1;
    qsizetype last = -1; ///< last line of the section that is not blank
};

Place Find(const QStringList& lines, const QString& section, const QString& key) {
    Place place;
    for (qsizetype index = 0; index < lines.size(); ++index) {
        const QString& line = lines[index];
        if (IsSection(line)) {
            if (place.section >= 0) {
                break;
            }
            if (SectionName(line).compare(section, Qt::CaseInsensitive) == 0) {
                place.section = place.last = index;
            }
        } else if (place.section >= 0) {
            if (IsKey(line, key)) {
                place.key = index;
                break;
            }
            place.last = Trimmed(line).isEmpty() ? place.last : index;
        }
    }
    return place;
}

void Put(QStringList& lines, const QString& section, const QString& key, const QString& value) {
    const QString end = lines.isEmpty() || lines.first().endsWith(u'\r') ? QStringLiteral("\r") : QString();
    const QString line = key + u'=' + Protected(value) + end;
    const Place place = Find(lines, section, key);
    if (place.key >= 0) {
        lines[place.key] = line;
    } else if (place.section >= 0) {
        lines.insert(place.last + 1, line);
    } else {
        lines << u'[' + section + u']' + end << line;
    }
}

ImportError FileError(const QString& path, const QString& what) {
    return ImportError(QStringLiteral("File delle impostazioni '%1': %2").arg(QDir::toNativeSeparators(path), what));
}

using Form = SettingsFile::Form;

/// A Unicode form with the mark that tells it.
struct Unicode {
    Form form;
    QByteArray mark;
    QStringConverter::Encoding encoding;
};

const Unicode* UnicodeOf(Form form) {
    static const std::array<Unicode, 3> forms{{{Form::Utf8, "\xef\xbb\xbf", QStringConverter::Utf8},
                                               {Form::Utf16Little, "\xff\xfe", QStringConverter::Utf16LE},
                                               {Form::Utf16Big, "\xfe\xff", QStringConverter::Utf16BE}}};
    const auto* found =
        std::find_if(forms.begin(), forms.end(), [form](const auto& each) { return each.form == form; });
    return found == forms.end() ? nullptr : found;
}

Form FormOf(const QByteArray& bytes) {
    for (const Form form : {Form::Utf8, Form::Utf16Little, Form::Utf16Big}) {
        if (bytes.startsWith(UnicodeOf(form)->mark)) {
            return form;
        }
    }
    return Form::Ansi;
}

QString DecodeLines(const QString& path, const QByteArray& bytes, Form form) {
    const QString remedy = QStringLiteral("; salvarlo di nuovo come testo ANSI (Windows-1252) o UTF-8 con BOM");
    const Unicode* unicode = UnicodeOf(form);
    if (unicode == nullptr) {
        if (bytes.contains('\0')) {
            throw FileError(path, QStringLiteral("contiene byte NUL, non è un testo ANSI") + remedy);
        }
        return DecodeText(bytes, CodePage());
    }
    QStringDecoder decode(unicode->encoding, QStringConverter::Flag::Stateless);
    const QString text = decode(bytes.sliced(unicode->mark.size()));
    const bool isCut = form != Form::Utf8 && bytes.size() % 2 != 0;
    if (isCut || decode.hasError() || text.contains(QChar(u'\0'))) {
        throw FileError(path, QStringLiteral("non è un testo Unicode valido") + remedy);
    }
    return text;
}

QByteArray EncodeLines(const QString& path, const QStringList& lines, Form form) {
    const QString text = lines.join(u'\n') + u'\n';
    if (const Unicode* unicode = UnicodeOf(form)) {
        QStringEncoder encode(unicode->encoding);
        return unicode->mark + QByteArray(encode(text));
    }
    try {
        return EncodeText(text, CodePage());
    } catch (ImportError& error) {
        throw FileError(path, error.Message());
    }
}

void WriteFile(const QString& path, const QByteArray& bytes) {
    const QString folder = QFileInfo(path).path();
    if (!QDir().mkpath(folder)) {
        throw FileError(path,
                        QStringLiteral("la cartella '%1' non si può creare").arg(QDir::toNativeSeparators(folder)));
    }
    if (const QString obstacle = ownFile::LinkObstacle(path); !obstacle.isEmpty()) {
        throw FileError(path, QStringLiteral("non si scrive: ") + obstacle);
    }
    QSaveFile file(path);
    file.setDirectWriteFallback(true);
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size() || !file.commit()) {
        throw FileError(path, QStringLiteral("non si può scrivere (%1)").arg(file.errorString()));
    }
}

} // namespace

void SettingsFile::Reload() {
    m_form = Form::Ansi;
    m_lines.clear();
    m_modified = {};
    m_size = -1;
}

void SettingsFile::Load() {
    const QFileInfo info(m_path);
    if (!info.exists()) {
        Reload();
        return;
    }
    const QDateTime modified = info.lastModified();
    if (m_modified.isValid() && m_modified == modified && m_size == info.size()) {
        return;
    }
    QFile file(m_path);
    if (!file.open(QIODevice::ReadOnly)) {
        throw FileError(m_path, QStringLiteral("non si può leggere (%1)").arg(file.errorString()));
    }
    const QByteArray bytes = file.readAll();
    if (file.error() != QFileDevice::NoError) {
        throw FileError(m_path, QStringLiteral("non si può leggere (%1)").arg(file.errorString()));
    }
    m_form = FormOf(bytes);
    m_lines = DecodeLines(m_path, bytes, m_form).split(u'\n');
    if (m_lines.last().isEmpty()) {
        m_lines.removeLast();
    }
    const bool isFresh = modified.msecsTo(QDateTime::currentDateTime()) < FreshMilliseconds;
    m_modified = isFresh ? QDateTime() : modified;
    m_size = bytes.size();
}

QString SettingsFile::Read(const QString& section, const QString& key) {
    Load();
    const Place place = Find(m_lines, section, key);
    if (place.key < 0) {
        return {};
    }
    const QStringView line = m_lines[place.key];
    return Unquoted(Trimmed(line.sliced(line.indexOf(u'=') + 1))).toString();
}

QStringList SettingsFile::BrokenLines() {
    Load();
    QStringList broken;
    for (qsizetype index = 0; index < m_lines.size(); ++index) {
        const QStringView line = Trimmed(m_lines[index]);
        const bool isWhole = IsSection(line) ? line.contains(u']') : line.indexOf(u'=') > 0;
        if (!isWhole && !line.isEmpty() && !line.startsWith(u';')) {
            broken.append(QStringLiteral("riga %1: '%2'").arg(QString::number(index + 1), line));
        }
    }
    return broken;
}

void SettingsFile::Write(const QString& section, const QList<std::pair<QString, QString>>& values) {
    Load();
    QStringList lines = m_lines;
    for (const auto& [key, value] : values) {
        if (value.contains(u'\n') || value.contains(u'\r')) {
            throw FileError(m_path, QStringLiteral("il valore di '%1' va a capo").arg(key));
        }
        Put(lines, section, key, value);
    }
    if (lines == m_lines) {
        return;
    }
    WriteFile(m_path, EncodeLines(m_path, lines, m_form));
    Reload();
}
