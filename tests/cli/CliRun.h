#pragma once

#include "sql/ovConnection.h"
#include "sql/SettingsFile.h"
#include "tests/support/embedded.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QTemporaryDir>

/// A folder with settings for an embedded database, and the program run on it.
class CliRun {
public:
    struct Ended {
        int exitCode = -1;
        QString output;
        QString errors;
        QJsonObject Json() const { return QJsonDocument::fromJson(output.toUtf8()).object(); }
    };

    CliRun() {
        Set("DATABASE", "Provider", "SQLITE");
        Set("DATABASE", "DatabaseName", "quadrix.db");
    }

    void Set(const QString& section, const QString& key, const QString& value) const {
        SettingsFile(Folder.filePath("Quadrix.ini")).Write(section, key, value);
    }

    /// Starts the program with --config and these arguments, without a terminal.
    std::unique_ptr<QProcess> Start(const QStringList& arguments) const {
        auto process = std::make_unique<QProcess>();
        process->setStandardInputFile(QProcess::nullDevice());
        process->start(QUADRIX_CLI, QStringList{"--config", Folder.path()} + arguments);
        return process;
    }
    static Ended End(QProcess& process) {
        process.waitForFinished(120000);
        const bool exited = process.state() == QProcess::NotRunning && process.exitStatus() == QProcess::NormalExit;
        return {exited ? process.exitCode() : -1, QString::fromUtf8(process.readAllStandardOutput()),
                QString::fromUtf8(process.readAllStandardError())};
    }
    Ended Run(const QStringList& arguments) const { return End(*Start(arguments)); }

    /// Runs a query on the database of the program; the first column of the first row, empty without one.
    QString Value(const QString& query) const {
        ovConnection connection;
        const Recordset rows = OpenEmbedded(connection, Database()).ExecuteWC(query);
        return rows.Eof() ? QString() : rows.Fields(0).Value().toString();
    }
    QString Database() const { return Folder.filePath("quadrix.db"); }
    Ended CreateCompany() const { return Run({"create-database", "--company", "x01", "--name", "Prova Uno"}); }

    QTemporaryDir Folder;
};
