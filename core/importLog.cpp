#include "core/italianText.h"
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

/// What the two keys say, and their defaults.
struct CaseKey {
    QString name;
    QString defaultValue;
};
const auto KeyFields = CaseKey{QStringLiteral("KEYFIELD_CHAR"), QStringLiteral("1")};
const auto TextFields = CaseKey{QStringLiteral("TEXTFIELD_CHAR"), QStringLiteral("0")};

/// What a configuration says; empty when it cannot be read.
QString Said(Session& session, const CaseKey& key) {
    try {
        return session.Config.GetConfig(key.name, key.defaultValue);
    } catch (const Error&) {
        return {};
    }
}

QString InCase(Session& session, const CaseKey& key, const QString& value) {
    return modMain::IsOne(Said(session, key)) ? mod_ovTools::UpperChars(value) : value;
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
    return italian::MomentText(session.Now()) + QStringLiteral(" - ") + VisibleText(message) + QStringLiteral("\r\n");
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

void LogNoteOnce(Session& session, const QString& message) {
    if (session.HeldLines.empty() || session.HeldLines.back().note != VisibleLine(message)) {
        LogNote(session, message);
    }
}

QString FormatKeyField(Session& session, const QString& value) { return InCase(session, KeyFields, value); }

QString FormatTextField(Session& session, const QString& value) { return InCase(session, TextFields, value); }

FieldCase ReadFieldCase(Session& session) {
    return {modMain::IsOne(Said(session, KeyFields)), modMain::IsOne(Said(session, TextFields))};
}

QStringList FieldCaseLines(Session& session) {
    QStringList lines;
    for (const CaseKey& key : {KeyFields, TextFields}) {
        const QString said = Said(session, key);
        if (!said.trimmed().isEmpty() && !mod_ovTools::ReadNumber(said)) {
            lines.append(QStringLiteral("Chiave %1, sezione [CONFIG] di '%2': '%3' non è un numero e vale 0")
                             .arg(key.name, session.Config.ConfigFile(), said));
        }
    }
    return lines;
}

bool IsDigitChar(const QString& text) {
    const QChar first = First(text);
    return first >= u'0' && first <= u'9';
}

bool IsDotChar(const QString& text) { return First(text) == u'.'; }

} // namespace modImport
