#include "cli/StatementTrace.h"

#include "sql/replayText.h"

#include <QDir>

void StatementTrace::Start(const QString& path, Session& session) {
    m_file.setFileName(path);
    m_session = &session;
    if (!m_file.open(QIODevice::WriteOnly | QIODevice::Truncate)) {
        throw ImportError(
            QStringLiteral("File di traccia '%1': %2").arg(QDir::toNativeSeparators(path), m_file.errorString()));
    }
    session.Quadrix.Trace = [this](const QString& statement) { Target(statement); };
    session.TraceSource = [this](const QString& statement) { Source(statement); };
}

void StatementTrace::Target(const QString& statement) {
    if (m_file.isOpen()) {
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
    if (m_file.write(bytes) != bytes.size() || !m_file.flush()) {
        throw ImportError(QStringLiteral("File di traccia '%1': %2").arg(m_file.fileName(), m_file.errorString()));
    }
}
