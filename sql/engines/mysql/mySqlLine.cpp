#include "sql/engines/mysql/mySqlLine.h"

#include "sql/engines/lineText.h"
#include "sql/engines/mysql/mySqlMeaning.h"

#include <mysql.h>

namespace {

/// Ways to sign on that give the password to nobody. Those that show it to whoever asks are the client's
/// "mysql_clear_password" and "dialog".
constexpr const char* SafeSignOns = "mysql_native_password,client_ed25519,auth_gssapi_client,parsec";
/// With those of MySQL, which hand it over to the holder of a key: on an encrypted line to its other end, else to
/// whoever gives a key when asked for one.
constexpr const char* KeyedSignOns = "mysql_native_password,client_ed25519,auth_gssapi_client,parsec,"
                                     "caching_sha2_password,sha256_password";

void SetFlag(st_mysql* handle, mysql_option option, bool on) {
    const my_bool value = on ? 1 : 0;
    mysql_options(handle, option, &value);
}

} // namespace

MySqlLine ReadMySqlLine(const QString& server) {
    MySqlLine place;
    if (server.startsWith(u'/')) {
        place.socket = server.toUtf8();
        return place;
    }
    const bool inBrackets = server.startsWith(u'[') && server.contains(u']');
    QString host = inBrackets ? server.mid(1).section(u']', 0, 0) : server;
    const QString behind = inBrackets ? server.section(u']', 1) : server;
    // More than one colon is an IPv6 address.
    if (behind.count(u':') == 1) {
        place.port = line::ReadPort(server, behind.section(u':', 1));
        host = inBrackets ? host : server.section(u':', 0, 0);
    }
    const bool local = host == QLatin1String("(local)") || host == QLatin1String(".");
    place.host = local ? QByteArrayLiteral("localhost") : host.toUtf8();
    return place;
}

void SetMySqlLine(st_mysql* handle, const ConnectionSettings& settings) {
    const unsigned none = 0;
    mysql_options(handle, MYSQL_OPT_LOCAL_INFILE, &none);
    // A port of this machine is no proof: any of its users may listen there. A socket is a file with an owner.
    const bool isKnown = settings.encryption == Encryption::Verified || settings.server.startsWith(u'/');
    if (!isKnown) {
        const bool hasAuthority = settings.encryption == Encryption::On && !settings.encryptionCA.isEmpty();
        mysql_optionsv(handle, MARIADB_OPT_RESTRICTED_AUTH, hasAuthority ? KeyedSignOns : SafeSignOns);
    }
    if (settings.encryption == Encryption::DriversOwn) {
        return;
    }
    SetFlag(handle, MYSQL_OPT_SSL_ENFORCE, settings.encryption != Encryption::Off);
    SetFlag(handle, MYSQL_OPT_SSL_VERIFY_SERVER_CERT, settings.encryption == Encryption::Verified);
    if (settings.encryption != Encryption::Off && !settings.encryptionCA.isEmpty()) {
        mysql_optionsv(handle, MYSQL_OPT_SSL_CA, settings.encryptionCA.toUtf8().constData());
    }
}

bool IsMySqlLineEncrypted(st_mysql* handle) { return mysql_get_ssl_cipher(handle) != nullptr; }

void ExplainMySqlLine(SqlError& error, bool encrypted) {
    if (const char* meaning = line::MeaningOf(error.EngineMessage())) {
        error.Explain(QString::fromUtf8(meaning));
        return;
    }
    if (!encrypted && error.EngineCode() == QLatin1String("1045")) {
        error.Explain(QString::fromUtf8(line::DeniedOrPlain));
        return;
    }
    ExplainMySql(error);
}
