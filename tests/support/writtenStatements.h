#pragma once

#include "sql/ovConnection.h"

#include <QCoreApplication>
#include <QFileInfo>
#include <QSet>

/// An observer that leaves every statement that was written for SQL Server, once, in the folder that QUADRIX_TSQL
/// names, each ended by a NUL, for `scripts/check-tsql`; none without that folder. A NUL within one stands as U+2400.
inline ovConnection::StatementObserver WrittenStatements() {
    const QString folder = qEnvironmentVariable("QUADRIX_TSQL");
    if (folder.isEmpty()) {
        return nullptr;
    }
    static QFile file(folder + '/' + QFileInfo(QCoreApplication::applicationFilePath()).fileName() + ".sql");
    if (!file.isOpen() && !file.open(QIODevice::WriteOnly | QIODevice::Append)) {
        qFatal("%s: %s", qPrintable(file.fileName()), qPrintable(file.errorString()));
    }
    static QSet<size_t> seen;
    return [](const QString& statement) {
        // Tests alone make triggers, views, full disks, copies, lost transactions and columns that are missing, and ask
        // how a query is run, in the words of SQLite; days of a SQLite source are asked for in its own.
        const bool isOfTest = statement.contains(" GLOB ") ||
                              (statement.contains(" TRIGGER ") && !statement.startsWith("ALTER")) ||
                              statement.startsWith("PRAGMA ") || statement.startsWith("EXPLAIN ") ||
                              statement.startsWith("VACUUM ") || statement.startsWith("INSERT OR ROLLBACK ") ||
                              statement.contains(" VIEW ") || statement.contains(" RENAME COLUMN ");
        if (const size_t hash = qHash(statement); !isOfTest && !seen.contains(hash)) {
            seen.insert(hash);
            file.write(QString(statement).replace(QChar(u'\0'), QChar(0x2400)).toUtf8().append('\0'));
            file.flush();
        }
    };
}
