#include "adapters/announcedSources.h"

#include "core/lineSettings.h"
#include "core/modMain.h"
#include "core/storedPassword.h"
#include "sql/mod_ovTools.h"

#include <QDir>
#include <QFileInfo>

namespace announced {

using namespace sourceSettings;

namespace {

/// Asks one text after the other; nothing when the operator gave one of them up.
struct Prompt {
    QString text;
    QString defaultText;
};
std::optional<QStringList> AskAll(Session& session, const std::vector<Prompt>& prompts) {
    QStringList answers;
    for (const Prompt& prompt : prompts) {
        const auto answer = session.Person.Input(prompt.text, QuadrixCaption, prompt.defaultText);
        if (!answer) {
            return std::nullopt;
        }
        answers.append(*answer);
    }
    return answers;
}

} // namespace

bool PrepareSam(Session& session, ovConnection& source) {
    const auto answers =
        AskAll(session, {{"Database UserName:", ""}, {"Database Password:", ""}, {"Database Name:", ""}});
    if (!answers) {
        return false;
    }
    source.ConnectionString = "Provider=MSDASQL.1;Password=" + answers->at(1) +
                              ";Persist Security Info=True;User ID=" + answers->at(0) +
                              ";Data Source=SAM;Initial Catalog=" + answers->at(2);
    ReadLine(session, source);
    return true;
}

bool PrepareMemphis(Session& session, ovConnection& source) {
    const auto answers = AskAll(
        session, {{"Server Name:", "(local)"}, {"Network Credential:", "0"}, {"Username:", "sa"}, {"Password:", ""}});
    if (!answers) {
        return false;
    }
    source.Server = answers->at(0);
    source.NetworkCredential = mod_ovTools::ReadNumber(answers->at(1)).value_or(0) == 1;
    source.User = answers->at(2);
    source.Password = answers->at(3);
    source.DatabaseName =
        modMain::GetAppConfig(session, SectionOf(session, "Memphis", "Databasename"), "Databasename", "MEMPHIS");
    ReadLine(session, source);
    return true;
}

bool PrepareSolution(Session& session, ovConnection& source) {
    const QString path = QFileInfo(session.Config.ConfigFile()).absolutePath() + QStringLiteral("/Solution.ini");
    if (!QFileInfo::exists(path)) {
        throw ImportError(
            QStringLiteral("Il file '%1', che descrive il collegamento a Solution, non esiste").arg(path));
    }
    SettingsFile file(path);
    const QString section = QStringLiteral("DATABASE");
    const QString provider = file.Read(section, "Provider");
    if (!provider.isEmpty() && !modMain::SetProvider(source, provider)) {
        throw ImportError(QStringLiteral("File '%1', sezione [%2], chiave Provider: '%3' non è un tipo di database "
                                         "(MSSQL, ACCESS, SYBASE, MYSQL, ORACLE, SQLITE)")
                              .arg(path, section, provider));
    }
    const QString database = file.Read(section, "DatabaseName");
    source.Server = file.Read(section, "ServerName");
    source.DatabaseName = database.isEmpty() ? QStringLiteral("SOLUTION") : database;
    if (source.Embedded) {
        source.DatabaseName = QFileInfo(path).dir().filePath(source.DatabaseName);
    }
    source.User = file.Read(section, "Username");
    source.Password = storedPassword::Read(session, file, section, "Password");
    source.NetworkCredential = source.User.isEmpty();
    source.Driver = file.Read(section, "Driver");
    modMain::SetLine(source,
                     {file.Read(section, "Encryption"), file.Read(section, "EncryptionCA"), "Encryption",
                      "EncryptionCA", QStringLiteral("sezione [%1] di '%2'").arg(section, path)},
                     QFileInfo(path).dir());
    return true;
}

} // namespace announced
