#include "core/modImport.h"
#include "core/modMain.h"
#include "sql/CodePage.h"
#include "sql/mod_ovTools.h"
#include "sql/ownFile.h"
#include "sql/visibleText.h"

namespace modImport {

namespace {

/// First character of a text that must have one.
QChar First(const QString& text) {
    if (text.isEmpty()) {
        throw ImportError(QStringLiteral("il testo è vuoto: non ha un primo carattere"));
    }
    return text.at(0);
}

bool IsUpper(Session& session, const QString& key, const QString& defaultValue) {
    return modMain::IsOn(session, QStringLiteral("CONFIG"), key, session.Config.GetConfig(key, defaultValue));
}

bool UpperKeys(Session& session) { return IsUpper(session, QStringLiteral("KEYFIELD_CHAR"), QStringLiteral("1")); }

bool UpperTexts(Session& session) { return IsUpper(session, QStringLiteral("TEXTFIELD_CHAR"), QStringLiteral("0")); }

/// The value in upper case when the configuration says so; one that cannot be read, or says neither yes nor no, changes
/// no value.
QString InCase(Session& session, bool (*isUpper)(Session&), const QString& value) {
    try {
        return isUpper(session) ? mod_ovTools::UpperChars(value) : value;
    } catch (const Error&) {
        return value;
    }
}

void WriteTo(const QString& path, const QByteArray& bytes, bool startNew) {
    QFile file;
    QString trouble = ownFile::Open(file, path, startNew ? ownFile::Start::Anew : ownFile::Start::Append);
    if (trouble.isEmpty() && (file.write(bytes) != bytes.size() || !file.flush())) {
        trouble = file.errorString();
    }
    if (!trouble.isEmpty()) {
        throw ImportError(QStringLiteral("Log '%1': %2").arg(path, trouble));
    }
}

QString TimedLine(const Session& session, const QString& message) {
    return session.Now().toString(QStringLiteral("dd/MM/yyyy HH:mm:ss")) + QStringLiteral(" - ") +
           VisibleText(message) + QStringLiteral("\r\n");
}

void WriteLines(const Session& session, const QString& lines, bool startNew, const QString& fileName) {
    static const CodePage page;
    QString lost;
    const QByteArray bytes = EncodeText(lines, page, &lost);
    WriteTo(fileName.isEmpty() ? session.LogFile : fileName, bytes, startNew);
    if (fileName.isEmpty() && !session.LogCopy.isEmpty()) {
        WriteTo(session.LogCopy, bytes, false);
    }
}

/// Holds a line until the row under way is committed; it goes with the row.
void Hold(Session& session, const QString& message, const QString& note) {
    session.HeldLines.push_back({TimedLine(session, message), note});
    session.Memory.WhenTakenBack([&session] { session.HeldLines.pop_back(); });
}

} // namespace

bool WriteImportLog(Session& session, const QString& message, bool startNew, const QString& fileName) {
    if (session.Memory.IsOpen() && !startNew && fileName.isEmpty()) {
        Hold(session, message, {});
    } else {
        WriteLines(session, TimedLine(session, message), startNew, fileName);
        session.LogBeginsAnew = session.LogBeginsAnew || (startNew && fileName.isEmpty());
    }
    return true;
}

void WriteLog(const Session& session, const QStringList& messages, const QString& fileName) {
    QString lines;
    for (const QString& message : messages) {
        lines += TimedLine(session, message);
    }
    WriteLines(session, lines, false, fileName);
}

void WriteHeldLines(Session& session) {
    for (const auto& tale : std::exchange(session.HeldTales, {})) {
        tale(*session.Observer);
    }
    QString lines;
    for (const HeldLine& held : std::exchange(session.HeldLines, {})) {
        lines += held.line;
        if (!held.note.isEmpty()) {
            session.Notes.Add(held.note);
        }
    }
    if (!lines.isEmpty()) {
        WriteLines(session, lines, false, {});
    }
}

void Tell(Session& session, std::function<void(RunObserver&)> tale) {
    if (session.Observer == nullptr) {
        return;
    }
    if (session.Memory.IsOpen()) {
        session.HeldTales.push_back(std::move(tale));
        session.Memory.WhenTakenBack([&session] { session.HeldTales.pop_back(); });
    } else {
        tale(*session.Observer);
    }
}

void LogNote(Session& session, const QString& message) {
    const QString line = VisibleLine(message); // a value must not pass for a line of its own
    Tell(session, [row = session.Errors.RowKey(), line](RunObserver& observer) { observer.NoteStands(row, line); });
    if (session.Memory.IsOpen()) {
        Hold(session, line, line);
        return;
    }
    session.Notes.Add(line); // stands in the result even when the log cannot be written
    WriteImportLog(session, line, false);
}

QString FormatKeyField(Session& session, const QString& value) { return InCase(session, UpperKeys, value); }

QString FormatTextField(Session& session, const QString& value) { return InCase(session, UpperTexts, value); }

FieldCase ReadFieldCase(Session& session) { return {UpperKeys(session), UpperTexts(session)}; }

bool IsDigitChar(const QString& text) {
    const QChar first = First(text);
    return first >= u'0' && first <= u'9';
}

bool IsDotChar(const QString& text) { return First(text) == u'.'; }

} // namespace modImport
