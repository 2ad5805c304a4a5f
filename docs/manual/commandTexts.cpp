#include "docs/manual/commandTexts.h"

#include <QProcess>
#include <QRegularExpression>

namespace manual {

namespace {

QString OutputOf(const QString& program, const QStringList& arguments) {
    QProcess process;
    process.start(program, arguments);
    return process.waitForFinished() ? QString::fromUtf8(process.readAllStandardOutput()) : QString();
}

} // namespace

QList<CommandText> CommandTexts(const QString& program) {
    static const QRegularExpression name(QStringLiteral("^  ([a-z-]+) "), QRegularExpression::MultilineOption);
    const QString commands = OutputOf(program, {"help"}).section(QStringLiteral("Opzioni di ogni comando:"), 0, 0);
    QList<CommandText> texts;
    for (auto found = name.globalMatch(commands); found.hasNext();) {
        const QString command = found.next().captured(1);
        texts.append({command, OutputOf(program, {command, "--help"})});
    }
    return texts;
}

} // namespace manual
