#include "app/sequence.h"
#include "core/italianText.h"
#include "core/storedPassword.h"
#include "sql/mod_ovTools.h"
#include "sql/SettingsFile.h"

#include <QDir>
#include <QFileInfo>

namespace {

const QString Section = QStringLiteral("SEQUENCE");

/// Keys that every source has, and those that it may have.
const QStringList FixedKeys{"Servername", "Databasename", "Username", "Password"};
const QStringList FurtherKeys{"DSN",        "DSN_Username",      "DSN_Password",     "ProviderType",
                              "Driver",     "NetworkCredential", "Tessera_Username", "Tessera_Password",
                              "Encryption", "EncryptionCA"};

const QStringList SourceSections{"ARCA EVOLUTION", "LANTEK 24", "AUTOMA",      "FERROBRIO",
                                 "MEXAL",          "TESSERA",   "VISUAL SPACE"};

/// The values of a section; empty when the file does not describe the source.
SequenceSettings::Source ReadSource(Session& session, SettingsFile& file, const QString& section,
                                    const QStringList& further) {
    SequenceSettings::Source source;
    bool described = false;
    for (const QString& key : FixedKeys + further) {
        const bool isPassword = key.endsWith(u"Password");
        const QString value =
            isPassword ? storedPassword::ReadMasked(session, file, section, key) : file.Read(section, key);
        described = described || !value.isEmpty();
        source.append({key, value});
    }
    return described ? source : SequenceSettings::Source();
}

/// Keys that one of the sources has: the others write them too, or they would open with the value of the one before.
QStringList UsedFurtherKeys(SettingsFile& file) {
    QStringList used;
    for (const QString& key : FurtherKeys) {
        const bool isUsed = std::any_of(SourceSections.begin(), SourceSections.end(),
                                        [&](const QString& section) { return !file.Read(section, key).isEmpty(); });
        used += isUsed ? QStringList(key) : QStringList();
    }
    return used;
}

[[noreturn]] void Refuse(const QString& path, const QString& key, const QString& reason) {
    throw ImportError(QStringLiteral("File '%1', sezione %2, chiave %3: %4").arg(path, Section, key, reason));
}

QDate ReadFrom(SettingsFile& file) {
    const QString text = file.Read(Section, "DateStart");
    const auto from = mod_ovTools::ReadDate(text);
    if (!text.isEmpty() && !from) {
        Refuse(file.Path(), "DateStart", QStringLiteral("'%1' non è una data, scriverla gg/mm/aaaa").arg(text));
    }
    return from ? from->date() : QDate();
}

int ReadScript(SettingsFile& file) {
    const QString text = file.Read(Section, "Script");
    if (text.isEmpty() || text == u"1") {
        return 1;
    }
    if (text != u"2") {
        Refuse(file.Path(), "Script", QStringLiteral("'%1' non è 1 né 2").arg(text));
    }
    return 2;
}

/// "Documenti dal 01/05/2024 (DateStart di Sequence.ini)"
QString FirstDayText(const QDate& from) {
    return QStringLiteral("Documenti dal %1 (%2)").arg(italian::DayText(from), FirstDaySetting);
}

} // namespace

QStringList FirstDayOptions(const QDate& from) {
    return from.isValid() ? QStringList(FirstDayText(from)) : QStringList();
}

QDate FirstDayOf(const QStringList& options) {
    for (const QString& option : options) {
        const QDate day = QDate::fromString(option.section(u' ', 2, 2), QStringLiteral("dd/MM/yyyy"));
        if (day.isValid() && option == FirstDayText(day)) {
            return day;
        }
    }
    return {};
}

SequenceSettings ReadSequenceSettings(Session& session) {
    const QDir folder = QFileInfo(session.Config.ConfigFile()).absoluteDir();
    SequenceSettings settings;
    settings.file = folder.filePath("Sequence.ini");
    if (!QFileInfo::exists(settings.file)) {
        throw ImportError(QStringLiteral("Il file '%1', che descrive la sequenza di importazione, non esiste: copiarlo "
                                         "dall'esempio e compilarlo")
                              .arg(settings.file));
    }
    SettingsFile file(settings.file);
    settings.company = file.Read(Section, "Azienda");
    if (settings.company.isEmpty()) {
        Refuse(settings.file, "Azienda", QStringLiteral("manca il nome dell'azienda"));
    }
    const QString log = file.Read(Section, "LogFile");
    settings.logFile = folder.filePath(log.isEmpty() ? QStringLiteral("sequence.log") : log);
    settings.script = ReadScript(file);
    settings.from = ReadFrom(file);
    const QStringList further = UsedFurtherKeys(file);
    for (const QString& section : SourceSections) {
        if (const auto source = ReadSource(session, file, section, further); !source.isEmpty()) {
            settings.sources.insert(section, source);
        }
    }
    return settings;
}
