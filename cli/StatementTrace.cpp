#include "cli/StatementTrace.h"

#include "cli/outputFile.h"
#include "sql/replayText.h"

const QString StatementTrace::FirstLine = QStringLiteral("-- Quadrix/IMPORT: traccia delle istruzioni");

void StatementTrace::Start(const QString& path, Session& session, const QStringList& taken) {
    m_path = path;
    m_session = &session;
    cli::OpenOutput(m_file, path, {QStringLiteral("File di traccia"), FirstLine, taken});
    Write(FirstLine + u'\n');
    session.Quadrix.Trace = [this](const QString& statement) { Target(statement); };
    session.TraceSource = [this](const QString& statement) { Source(statement); };
}

void StatementTrace::Target(const QString& statement) {
    const bool takesBack = statement.startsWith(QLatin1String("ROLLBACK"));
    if (m_file.isOpen() && (m_trouble.isEmpty() || !takesBack)) { // what the trace lacks is not done: it is taken back
        Write((m_session->Quadrix.Embedded ? ReplayText(statement) : statement) + QStringLiteral(";\n"));
    }
}

void StatementTrace::Source(const QString& statement) {
    QString text = statement;
    text.replace(QLatin1String("\r\n"), QLatin1String("\n")).replace(u'\r', u'\n');
    Write(QStringLiteral("-- ") + text.replace(u'\n', QLatin1String("\n-- ")) + u'\n');
}

void StatementTrace::Write(const QString& text) {
    const QByteArray bytes = text.toUtf8();
    if (m_trouble.isEmpty() && (m_file.write(bytes) != bytes.size() || !m_file.flush())) {
        const bool isPart = m_file.error() == QFileDevice::WriteError; // the system has given no reason
        m_trouble = isPart ? QStringLiteral("ne è scritta solo una parte (disco pieno?)") : m_file.errorString();
    }
    if (!m_trouble.isEmpty()) {
        throw ImportError(QStringLiteral("File di traccia '%1': %2").arg(m_path, m_trouble));
    }
}
