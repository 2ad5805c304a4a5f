#include "adapters/sourceSettings.h"

#include "core/lineSettings.h"
#include "core/modMain.h"
#include "core/storedPassword.h"
#include "sql/mod_ovTools.h"

#include <QDir>
#include <QFileInfo>
#include <QMap>

namespace sourceSettings {

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
    source.DatabaseName = modMain::GetAppConfig(session, "IMPORT", "Databasename", "MEMPHIS");
    ReadLine(session, source);
    return true;
}

/// The connection stands in "Solution.ini", beside the settings of this program.
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

/// The database is Oracle, whatever the settings say.
bool PrepareBms(Session& session, ovConnection& source) {
    const bool prepared = DataSource("BMS")(session, source);
    source.ProviderType = Provider::Oracle;
    return prepared;
}

const QString CsvTitle = QStringLiteral("File CSV da importare");
const QString CsvFilter = QStringLiteral("File CSV (*.csv)|*.csv|Tutti i file (*.*)|*.*");
const QString DatTitle = QStringLiteral("File DAT da importare");
const QString DatFilter = QStringLiteral("File DAT (*.dat)|*.dat|Tutti i file (*.*)|*.*");

/// The origins of the list whose modules do not say themselves how they open, under their names in upper case.
const QMap<QString, Prepare>& Preparations() {
    static const QMap<QString, Prepare> preparations{
        {"AD-HOC", Server("AHR", {"AHR", "1"})},
        {"SOLUTION", PrepareSolution},
        {"GAMMA TEAMSYSTEM", DataSource("GAMMATEAMSYSTEM")},
        {"LUMEN", TextFile(DatTitle, DatFilter)},
        {"SAM", PrepareSam},
        {"LIBERTYCOMMERCE", Fixed("Provider=MSDASQL.1;User ID=Admin;Data Source=LibertyCommerce")},
        {"MEMPHIS", PrepareMemphis},
        {"OSL GP90", Server("OSL")},
        {"DOMINIO", DataSource("DOMINIO")},
        {"OS1", AccessFileInFolder("OS1.mdb")},
        {"FACTORY", ChosenAccessFile("FACTORY")},
        {"ESASOFTWARE \"E\"", Server("ESATTO")},
        {"METODO", Server("METODO")},
        {"KORDEL NETSUITE", DataSource("NETSUITE")},
        {"EXCEL", OpenFileExcel()},
        {"ACCESS", ChosenAccessFile("ACCESS")},
        {"SIGIP", DataSource("SIGIP")},
        {"MAGO NET", Server("MAGONET")},
        {"ZUCCHETTI G2", Server("G2")},
        {"ACCESS VELMORAN", ChosenAccessFile("VELMORAN")},
        {"VISION SQL", Server("VISION")},
        {"DSS WAPS", TextFolder("DSSWAPS")},
        {"AXIS", ChosenAccessFile("AXIS")},
        {"AD-HOC WINDOWS", FoxProFolder()},
        {"EXCEL SCARICO AS/400", OpenFileExcel()},
        {"GEMINI", Server("GEMINI")},
        {"FENICE", DataSource("FENICE")},
        {"SIGLA", Server("SIGLA")},
        {"MEXALDB", Server("MEXALDB")},
        {"COMETA", DataSource("COMETA")},
        {"ALBALOG", DataSource("ALBALOG")},
        {"PUZZLE", DataSource("PUZZLE")},
        {"NUBRIO EXCEL", OpenFileExcel()},
        {"GAMMA DB SQLSERVER", Server("GAMMA")},
        {"BMS", PrepareBms},
        {"PANTHERA", Server("PANTHERA")},
        {"FACTORY (SQLSERVER)", Server("FACTORY")},
        {"PUNTA", Server("PUNTA")},
        {"TERRAUNA", TextFile(CsvTitle, CsvFilter)},
        {"SCALA", OpenFileExcel()},
        {"VELDRA", Server("VELDRA")},
        {"FACILE", Server("FACILE")},
        {"BORGO", Server("BORGO")},
        {"LAMINA", TextFile(CsvTitle, CsvFilter)},
        {"SIDEREA", OpenFileExcel()},
    };
    return preparations;
}

} // namespace

Prepare ForOrigin(const QString& originName) { return Preparations().value(originName.toUpper()); }

} // namespace sourceSettings
