#include "core/modImport.h"
#include "sql/CodePage.h"
#include "sql/mod_ovTools.h"

#include <QFile>

namespace modImport {

namespace {

/// First character of a text that must have one.
QChar First(const QString& text) {
    if (text.isEmpty()) {
        throw ImportError(QStringLiteral("il testo è vuoto: non ha un primo carattere"));
    }
    return text.at(0);
}

/// Whether the configuration key is 1; a configuration that cannot be read changes no value.
bool IsUpper(Session& session, const QString& key, const QString& defaultValue) {
    try {
        return mod_ovTools::ReadNumber(session.Config.GetConfig(key, defaultValue)).value_or(0) == 1;
    } catch (const Error&) {
        return false;
    }
}

bool UpperKeys(Session& session) { return IsUpper(session, QStringLiteral("KEYFIELD_CHAR"), QStringLiteral("1")); }

bool UpperTexts(Session& session) { return IsUpper(session, QStringLiteral("TEXTFIELD_CHAR"), QStringLiteral("0")); }

void WriteTo(const QString& path, const QByteArray& bytes, bool startNew) {
    QFile file(path);
    const QIODevice::OpenMode mode = startNew ? QIODevice::Truncate : QIODevice::Append;
    if (!file.open(QIODevice::WriteOnly | mode) || file.write(bytes) != bytes.size() || !file.flush()) {
        throw ImportError(QStringLiteral("Log '%1': %2").arg(path, file.errorString()));
    }
}

} // namespace

bool WriteImportLog(Session& session, const QString& message, bool startNew, const QString& fileName) {
    static const CodePage page;
    const QString line = session.Now().toString(QStringLiteral("dd/MM/yyyy HH:mm:ss")) + QStringLiteral(" - ") +
                         message + QStringLiteral("\r\n");
    QString lost;
    const QByteArray bytes = EncodeText(line, page, &lost);
    WriteTo(fileName.isEmpty() ? session.LogFile : fileName, bytes, startNew);
    session.LogBeginsAnew = session.LogBeginsAnew || (startNew && fileName.isEmpty());
    if (fileName.isEmpty() && !session.LogCopy.isEmpty()) {
        WriteTo(session.LogCopy, bytes, false);
    }
    return true;
}

void LogNote(Session& session, const QString& message) {
    session.Notes.Add(message); // stands in the result even when the log cannot be written
    WriteImportLog(session, message, false);
}

QString FormatKeyField(Session& session, const QString& value) {
    return UpperKeys(session) ? mod_ovTools::UpperChars(value) : value;
}

QString FormatTextField(Session& session, const QString& value) {
    return UpperTexts(session) ? mod_ovTools::UpperChars(value) : value;
}

FieldCase ReadFieldCase(Session& session) { return {UpperKeys(session), UpperTexts(session)}; }

bool IsDigitChar(const QString& text) {
    const QChar first = First(text);
    return first >= u'0' && first <= u'9';
}

bool IsDotChar(const QString& text) { return First(text) == u'.'; }

} // namespace modImport
