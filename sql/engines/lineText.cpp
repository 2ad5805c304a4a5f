#include "sql/engines/lineText.h"

#include "sql/errors.h"

#include <QSysInfo>

#include <algorithm>

namespace line {

namespace {

/// The machine of "tcp:host\instance,port", "host:port", "[::1]:port".
QString HostOf(const QString& server) {
    QString host = server.trimmed();
    if (host.startsWith(u"tcp:", Qt::CaseInsensitive)) {
        host = host.mid(4);
    }
    host = host.section(u',', 0, 0).section(u'\\', 0, 0).trimmed();
    if (host.startsWith(u'[')) {
        return host.mid(1).section(u']', 0, 0);
    }
    return host.count(u':') == 1 ? host.section(u':', 0, 0) : host;
}

} // namespace

bool StaysHere(const QString& server) {
    const QString host = HostOf(server).toLower();
    static const QStringList names{"", ".", "(local)", "localhost", "::1"};
    return host.startsWith(u'/') || host.startsWith(u"127.") || host.startsWith(u"(localdb)") || names.contains(host) ||
           host == QSysInfo::machineHostName().toLower();
}

unsigned ReadPort(const QString& server, const QString& port) {
    constexpr unsigned Largest = 65535;
    bool isNumber = false;
    const unsigned number = port.toUInt(&isNumber);
    if (!isNumber || number == 0 || number > Largest) {
        throw ImportError(QStringLiteral("Server '%1': '%2' non è una porta (un numero da 1 a %3)")
                              .arg(server, port, QString::number(Largest)));
    }
    return number;
}

QString NotEncrypted(const QString& server) {
    return QStringLiteral("Connessione non cifrata a '%1': chi sta sulla rete può leggerne i dati (impostazione "
                          "Encryption)")
        .arg(server);
}

QString NotAskedFor(const QString& server) {
    return QStringLiteral("Connessione non cifrata a '%1', se non è il server a imporlo: chi sta sulla rete può "
                          "leggerne i dati (impostazione Encryption)")
        .arg(server);
}

const char* MeaningOf(const QString& words) {
    struct Known {
        QLatin1String words;
        const char* meaning;
    };
    // The most exact ones first: what the library says of the whole handshake stands in each of its messages.
    static constexpr Known All[] = {
        {QLatin1String("restricted_auth"), AsksForPassword},
        {QLatin1String("asks for the password in clear"), AsksForPassword},
        {QLatin1String("insecure transport"), NeedsEncryption},
        {QLatin1String("server does not support it"), OffersNoEncryption},
        {QLatin1String("encryption not supported"), OffersNoEncryption},
        {QLatin1String("does not support encryption"), OffersNoEncryption},
        {QLatin1String("expired"), ExpiredCertificate},
        {QLatin1String("hostname"), OthersCertificate},
        {QLatin1String("host name"), OthersCertificate},
        {QLatin1String("target principal name"), OthersCertificate},
        {QLatin1String("validation of ssl server certificate"), OthersCertificate},
        {QLatin1String("self-signed"), ForeignCertificate},
        {QLatin1String("self signed"), ForeignCertificate},
        {QLatin1String("certificate verify failed"), ForeignCertificate},
        {QLatin1String("issuer certificate"), ForeignCertificate},
        {QLatin1String("not trusted"), ForeignCertificate},
        {QLatin1String("tls/ssl error"), NoHandshake},
        {QLatin1String("ssl connection error"), NoHandshake},
        {QLatin1String("ssl provider"), NoHandshake},
        {QLatin1String("tls handshake"), NoHandshake},
    };
    const auto* found = std::find_if(std::begin(All), std::end(All), [&words](const Known& known) {
        return words.contains(known.words, Qt::CaseInsensitive);
    });
    return found == std::end(All) ? nullptr : found->meaning;
}

} // namespace line
