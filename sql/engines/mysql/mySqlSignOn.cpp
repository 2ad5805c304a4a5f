#include "sql/engines/mysql/mySqlSignOn.h"

#include <QByteArray>

#include <mysql.h>

#include <errmsg.h>
#include <mysql/plugin_auth.h>

#include <cstring>

namespace {

/// A way to sign on, as the client library knows it. Its own header of them cannot be used: Debian's package lacks what
/// it includes.
struct SignOn : st_mysql_client_plugin {
    int (*run)(MYSQL_PLUGIN_VIO*, MYSQL*) = nullptr;
};

bool IsProved(MYSQL_PLUGIN_VIO* line, MYSQL* handle) {
    MYSQL_PLUGIN_VIO_INFO info{};
    line->info(line, &info);
    my_bool isVerified = 0;
    mysql_get_optionv(handle, MYSQL_OPT_SSL_VERIFY_SERVER_CERT, &isVerified);
    return info.protocol == MYSQL_PLUGIN_VIO_INFO::MYSQL_VIO_SOCKET ||
           (isVerified != 0 && mysql_get_ssl_cipher(handle) != nullptr);
}

int Refuse(MYSQL* handle) {
    handle->net.last_errno = CR_UNKNOWN_ERROR;
    qstrncpy(handle->net.sqlstate, "HY000", sizeof(handle->net.sqlstate)); // without one a driver takes it for no error
    qstrncpy(handle->net.last_error, "The server asks for the password in clear", sizeof(handle->net.last_error));
    return CR_ERROR;
}

bool SendPassword(MYSQL_PLUGIN_VIO* line, MYSQL* handle) {
    const char* password = handle->passwd == nullptr ? "" : handle->passwd;
    return line->write_packet(line, reinterpret_cast<const unsigned char*>(password),
                              static_cast<int>(std::strlen(password)) + 1) == 0;
}

/// "mysql_clear_password"
int SignOnInClear(MYSQL_PLUGIN_VIO* line, MYSQL* handle) {
    if (!IsProved(line, handle)) {
        return Refuse(handle);
    }
    return SendPassword(line, handle) ? CR_OK : CR_ERROR;
}

/// "dialog": the server asks questions, the last of which is marked; it ends them early with its verdict. The answer to
/// each is the password.
int SignOnByDialog(MYSQL_PLUGIN_VIO* line, MYSQL* handle) {
    if (!IsProved(line, handle)) {
        return Refuse(handle);
    }
    for (;;) {
        unsigned char* question = nullptr;
        if (line->read_packet(line, &question) < 0) {
            return CR_ERROR;
        }
        const unsigned kind = question == nullptr ? 0 : *question;
        constexpr unsigned ChangePlugin = 254;
        if (kind == 0 || kind == ChangePlugin) {
            return CR_OK_HANDSHAKE_COMPLETE;
        }
        if (!SendPassword(line, handle)) {
            return CR_ERROR;
        }
        if ((kind & 1U) != 0) {
            return CR_OK;
        }
    }
}

SignOn MakeSignOn(const char* signOnName, int (*run)(MYSQL_PLUGIN_VIO*, MYSQL*)) {
    constexpr int OfSigningOn = 2;
    SignOn signOn{};
    signOn.type = OfSigningOn;
    signOn.interface_version = 0x0100;
    signOn.name = signOnName;
    signOn.author = "Quadrix";
    signOn.desc = "Keeps the password from servers that are not known";
    signOn.license = "Proprietary";
    signOn.run = run;
    return signOn;
}

/// In the place of the library's own, which it loads when a server first asks for them.
bool Register() {
    static SignOn signOns[] = {MakeSignOn("mysql_clear_password", SignOnInClear), MakeSignOn("dialog", SignOnByDialog)};
    MYSQL* handle = mysql_init(nullptr);
    for (SignOn& signOn : signOns) {
        mysql_client_register_plugin(handle, &signOn);
    }
    mysql_close(handle);
    return true;
}

} // namespace

void GuardMySqlPasswords() { [[maybe_unused]] static const bool isDone = Register(); }
