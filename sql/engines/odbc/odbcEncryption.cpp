#include "sql/engines/odbc/odbcEncryption.h"

#include "sql/engines/lineText.h"
#include "sql/engines/odbc/odbcDrivers.h"
#include "sql/errors.h"

#include <QStringList>

#include <algorithm>

namespace odbc {

namespace {

constexpr int EncryptsByItself = 18; ///< version of Microsoft's driver from which on it does

void Put(Parts& parts, const char* key, const char* value) {
    parts.removeIf([key](const Part& part) { return Same(part.key, QLatin1String(key)); });
    parts.append({QString::fromLatin1(key), QString::fromUtf8(value)});
}

void PutAuthorities(Parts& parts, const QString& file) {
    if (!file.isEmpty()) {
        Put(parts, "SSLCA", file.toUtf8().constData());
    }
}

[[noreturn]] void Refuse(const QString& driver, const char* why) {
    throw ImportError(
        QStringLiteral("Impostazione Encryption: il driver ODBC '%1' %2").arg(driver, QString::fromUtf8(why)));
}

void AskFreeTds(Parts& parts, const QString& driver, const ConnectionSettings& settings) {
    if (Find(parts, QLatin1String("TDS_Version")).value_or(QString()).startsWith(u'5')) {
        Refuse(driver, "non cifra la connessione a Sybase");
    }
    if (settings.encryption == Encryption::Verified || !settings.encryptionCA.isEmpty()) {
        Refuse(driver, "cifra la connessione (valore 1), ma non si può chiedergli di verificare il certificato del "
                       "server: usare 'ODBC Driver 18 for SQL Server' (impostazione Driver), oppure il valore 1 senza "
                       "EncryptionCA");
    }
    Put(parts, "Encryption", "require");
}

void AskSqlServer(Parts& parts, const QString& driver, const ConnectionSettings& settings) {
    if (!settings.encryptionCA.isEmpty()) {
        Refuse(driver, "conosce solo le autorità del sistema: aggiungervi quella del file di EncryptionCA, e togliere "
                       "l'impostazione");
    }
    Put(parts, "Encrypt", "yes");
    Put(parts, "TrustServerCertificate", settings.encryption == Encryption::Verified ? "no" : "yes");
}

void AskMariaDb(Parts& parts, const ConnectionSettings& settings) {
    Put(parts, "FORCETLS", "1");
    Put(parts, "SSLVERIFY", settings.encryption == Encryption::Verified ? "1" : "0");
    PutAuthorities(parts, settings.encryptionCA);
}

void AskMySql(Parts& parts, const ConnectionSettings& settings) {
    const char* mode = settings.encryption == Encryption::Verified ? "VERIFY_IDENTITY"
                       : settings.encryptionCA.isEmpty()           ? "REQUIRED"
                                                                   : "VERIFY_CA";
    Put(parts, "SSLMODE", mode);
    PutAuthorities(parts, settings.encryptionCA);
}

void AskForNone(Parts& parts, DriverKind kind) {
    switch (kind) {
    case DriverKind::FreeTds:
        return Put(parts, "Encryption", "off");
    case DriverKind::SqlServer:
        return Put(parts, "Encrypt", "no");
    case DriverKind::MariaDb:
        return Put(parts, "FORCETLS", "0");
    case DriverKind::MySql:
        return Put(parts, "SSLMODE", "DISABLED");
    default: // its line is as its own settings have it
        return;
    }
}

} // namespace

void AskForEncryption(Parts& parts, const QString& driver, const ConnectionSettings& settings) {
    const DriverKind kind = KindOf(driver);
    if (settings.encryption == Encryption::DriversOwn || kind == DriverKind::Files) {
        return;
    }
    if (settings.encryption == Encryption::Off) {
        return AskForNone(parts, kind);
    }
    switch (kind) {
    case DriverKind::FreeTds:
        return AskFreeTds(parts, driver, settings);
    case DriverKind::SqlServer:
        return AskSqlServer(parts, driver, settings);
    case DriverKind::MariaDb:
        return AskMariaDb(parts, settings);
    case DriverKind::MySql:
        return AskMySql(parts, settings);
    case DriverKind::OldSqlServer:
        Refuse(driver, "non sa verificare con chi parla: usare 'ODBC Driver 18 for SQL Server' (impostazione Driver)");
    case DriverKind::Oracle:
        Refuse(driver, "la prende dai file di Oracle: metterla in sqlnet.ora (SQLNET.ENCRYPTION_CLIENT=REQUIRED) e "
                       "togliere l'impostazione");
    default:
        Refuse(driver, "non si sa come la chieda: metterla nell'origine dati ODBC e togliere l'impostazione");
    }
}

bool AsksForEncryption(const Parts& parts, const QString& driver) {
    static const QStringList yes{"yes", "true", "1", "mandatory", "strict", "require"};
    const DriverKind kind = KindOf(driver);
    if (kind == DriverKind::FreeTds) {
        return yes.contains(Find(parts, QLatin1String("Encryption")).value_or(QString()), Qt::CaseInsensitive);
    }
    const auto encrypt = Find(parts, QLatin1String("Encrypt"));
    return kind == DriverKind::SqlServer &&
           (encrypt ? yes.contains(*encrypt, Qt::CaseInsensitive) : VersionOf(driver) >= EncryptsByItself);
}

bool AsksMySqlForEncryption(const Parts& parts) {
    static const QStringList modes{"REQUIRED", "VERIFY_CA", "VERIFY_IDENTITY"};
    return Find(parts, QLatin1String("FORCETLS")) == QLatin1String("1") ||
           modes.contains(Find(parts, QLatin1String("SSLMODE")).value_or(QString()), Qt::CaseInsensitive);
}

const char* MeaningOfLine(const Parts& parts, const QVector<Diagnosis>& diagnoses) {
    const auto hasCode = [&diagnoses](const char* code) {
        return std::any_of(diagnoses.begin(), diagnoses.end(),
                           [code](const Diagnosis& each) { return each.code == QLatin1String(code); });
    };
    for (const Diagnosis& diagnosis : diagnoses) {
        if (const char* meaning = line::MeaningOf(diagnosis.message)) {
            return meaning;
        }
    }
    if (hasCode("1045") && !AsksMySqlForEncryption(parts)) {
        return line::DeniedOrPlain;
    }
    // FreeTDS does not say why: the server has answered (20002), unless it could not be reached at all (20009).
    const auto asked = Find(parts, QLatin1String("Encryption"));
    if (!asked || !hasCode("20002") || hasCode("20009")) {
        return nullptr;
    }
    return Same(*asked, QLatin1String("off")) ? line::EndedPlain : line::OffersNoEncryption;
}

} // namespace odbc
