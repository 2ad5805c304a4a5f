#include "adapters/contract/run/RowUnderWay.h"

namespace contract {

namespace {

/// No two runs write the same log at the same time.
QString PathOf(const QString& log) { return log + RowUnderWay::Suffix; }

/// Its rows, one for each run.
QStringList RowsIn(const QString& path) {
    QStringList rows;
    QFile file(path);
    if (file.open(QIODevice::ReadOnly)) {
        for (const QString& line : QString::fromUtf8(file.readAll()).split(u'\n')) {
            rows.append(line.trimmed());
        }
        rows.removeAll(QString());
    }
    return rows;
}

} // namespace

RowUnderWay::RowUnderWay(const Session& session, const QString& procedure)
    : m_head(QStringLiteral("%1, azienda %2, iniziata %3: ")
                 .arg(procedure, session.Quadrix.Company(),
                      session.Now().toString(QStringLiteral("dd/MM/yyyy HH:mm:ss")))),
      m_file(PathOf(session.LogFile)) {
    m_file.open(QIODevice::WriteOnly | QIODevice::Unbuffered);
}

RowUnderWay::~RowUnderWay() {
    if (m_file.isOpen()) {
        m_file.remove();
    }
}

QString RowUnderWay::Interrupted(const Session& session) {
    const QStringList rows = RowsIn(PathOf(session.LogFile));
    return rows.isEmpty()
               ? QString()
               : QStringLiteral("IMPORTAZIONE INTERROTTA: %1 può essere scritta solo in parte: verificarla in "
                                "Quadrix, o reimportare con l'azzeramento")
                     .arg(rows.join(QStringLiteral("; ")));
}

void RowUnderWay::TakeOver(const QString& fromLog, const QString& toLog) {
    const QByteArray rows = RowsIn(PathOf(fromLog)).join(u'\n').toUtf8();
    QFile file(PathOf(toLog));
    if (rows.isEmpty() || (file.open(QIODevice::WriteOnly | QIODevice::Append) &&
                           file.write(rows + '\n') == rows.size() + 1 && file.flush())) {
        QFile::remove(PathOf(fromLog));
    }
}

/// A line that is shorter than one before covers it with blanks.
void RowUnderWay::Begin(const QString& key) {
    QByteArray line = QString(m_head + key).simplified().toUtf8();
    m_longest = std::max(m_longest, line.size());
    line = line.leftJustified(m_longest) + '\n';
    if (!m_file.isOpen() || !m_file.seek(0) || m_file.write(line) != line.size()) {
        throw ImportError(QStringLiteral("File '%1': %2").arg(m_file.fileName(), m_file.errorString()));
    }
}

} // namespace contract
