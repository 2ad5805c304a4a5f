#include "app/RunLog.h"

#include "core/worker.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>

namespace {

QString LockOf(const QString& log) { return log + QStringLiteral(".lock"); }

/// "import-4711.log" for process 4711.
QString NameFor(const QString& log, const QString& process) {
    const QFileInfo file(log);
    return file.completeBaseName() + u'-' + process + u'.' + file.suffix();
}

bool Append(const QString& from, const QString& to) {
    QFile source(from);
    QFile target(to);
    if (!source.open(QIODevice::ReadOnly) || !target.open(QIODevice::WriteOnly | QIODevice::Append)) {
        return false;
    }
    const QByteArray bytes = source.readAll();
    return target.write(bytes) == bytes.size() && target.flush();
}

/// One that could not be written whole stays where it is.
bool Move(const QString& from, const QString& to, bool isNew) {
    if (isNew) {
        QFile::remove(to);
        return QFile::rename(from, to);
    }
    return Append(from, to) && QFile::remove(from);
}

} // namespace

RunLog::RunLog(Session& session, const QString& work)
    : m_session(session),
      m_usual(session.LogFile),
      m_first(session.Results.size()) {
    const QString note = WorkText(session.Now(), work);
    try {
        m_lock = FileLock::Take(LockOf(m_usual), note);
        if (m_lock == nullptr) {
            TakeOwn(note);
        }
    } catch (const ImportError&) { // where no lock can be made no log can be written either, which the run then tells
        return;
    }
}

void RunLog::TakeOwn(const QString& note) {
    const QString holder = FileLock::NoteOf(LockOf(m_usual));
    const QString name = NameFor(m_usual, QString::number(QCoreApplication::applicationPid()));
    const QString own = QFileInfo(m_usual).absoluteDir().filePath(name);
    m_lock = FileLock::Take(LockOf(own), note);
    m_session.LogFile = own;
    m_session.LogBeginsAnew = false;
    m_session.Person.Message(
        QStringLiteral("Nel log '%1' sta scrivendo un altro programma (%2): questa esecuzione scrive in '%3'")
            .arg(QDir::toNativeSeparators(m_usual), holder, QDir::toNativeSeparators(own)));
}

RunLog::~RunLog() {
    if (m_session.LogFile != m_usual) {
        PutInPlace();
        m_session.LogFile = m_usual;
    }
}

void RunLog::PutInPlace() noexcept {
    const QString own = m_session.LogFile;
    try {
        const auto usual = FileLock::Take(LockOf(m_usual), {});
        if (!QFile::exists(own) || (usual != nullptr && Move(own, m_usual, m_session.LogBeginsAnew))) {
            return;
        }
    } catch (const ImportError&) { // it stays under its own name
        m_lock.reset();
    }
    TellWhereItIs();
}

void RunLog::TellWhereItIs() {
    for (qsizetype result = m_first; result < m_session.Results.size(); ++result) {
        if (m_session.Results[result].logFile.isEmpty()) {
            m_session.Results[result].logFile = m_session.LogFile;
        }
    }
}

QString LogOfLast(const Session& session) {
    const QString own = session.Results.isEmpty() ? QString() : session.Results.last().logFile;
    return own.isEmpty() ? session.LogFile : own;
}
