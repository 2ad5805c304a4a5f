#include "adapters/contract/run/RowUnderWay.h"

#include "sql/ownFile.h"

namespace contract {

namespace {

/// Of two programs that import with the same log at the same time, each finds the row of the other.
QString PathOf(const Session& session) { return session.LogFile + QStringLiteral(".inCorso"); }

} // namespace

RowUnderWay::RowUnderWay(const Session& session, const QString& procedure)
    : m_head(QStringLiteral("%1, azienda %2, iniziata %3: ")
                 .arg(procedure, session.Quadrix.Company(),
                      session.Now().toString(QStringLiteral("dd/MM/yyyy HH:mm:ss")))),
      m_path(PathOf(session)),
      m_trouble(ownFile::Open(m_file, m_path, ownFile::Start::Anew, QIODevice::Unbuffered)) {}

RowUnderWay::~RowUnderWay() {
    if (m_file.isOpen()) {
        QFile::remove(m_path);
    }
}

QString RowUnderWay::Interrupted(const Session& session) {
    QFile file(PathOf(session));
    const QString row = file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readLine()).trimmed() : QString();
    return row.isEmpty()
               ? QString()
               : QStringLiteral("IMPORTAZIONE INTERROTTA: %1 può essere scritta solo in parte: verificarla in "
                                "Quadrix, o reimportare con l'azzeramento")
                     .arg(row);
}

/// What an earlier, longer row leaves behind the line is never read.
void RowUnderWay::Begin(const QString& key) {
    const QByteArray line = QString(m_head + key).simplified().toUtf8() + '\n';
    if (m_trouble.isEmpty() && (!m_file.seek(0) || m_file.write(line) != line.size())) {
        m_trouble = m_file.errorString();
    }
    if (!m_trouble.isEmpty()) {
        throw ImportError(QStringLiteral("File '%1': %2").arg(m_path, m_trouble));
    }
}

} // namespace contract
