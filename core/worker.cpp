#include "core/worker.h"

#include "core/italianText.h"
#include "sql/mod_ovTools.h"

#include <QCoreApplication>
#include <QSysInfo>

QString WorkerText() { return QStringLiteral("%1 (%2)").arg(mod_ovTools::GetUserName(), QSysInfo::machineHostName()); }

QString WorkText(const QDateTime& since, const QString& work) {
    return QStringLiteral("%1, processo %2, dal %3: %4")
        .arg(WorkerText(), QString::number(QCoreApplication::applicationPid()), italian::MomentText(since),
             work.simplified());
}
