#pragma once

#include <QString>

/// What is told of the line to a server, whichever engine it belongs to.
namespace line {

/// Whether a server name, with a port or an instance or without, leads to no other machine: what goes over that line
/// nobody else on the network sees. An empty one is this machine.
bool StaysHere(const QString& server);

/// The port that stands in a server's name. Raises `ImportError` naming the server for what is no port: another server
/// of that machine may listen on the usual one.
unsigned ReadPort(const QString& server, const QString& port);

/// That the line to a server is not encrypted, and which setting changes that.
QString NotEncrypted(const QString& server);
/// The same of a line that the other side may have encrypted without being asked.
QString NotAskedFor(const QString& server);

// Why a line was refused, and what to do.
inline constexpr const char* NeedsEncryption =
    "il server accetta solo connessioni cifrate (TLS): impostare Encryption=1, o 2 per verificare anche il certificato";
inline constexpr const char* OffersNoEncryption =
    "il server non offre una connessione cifrata (TLS), che l'impostazione Encryption chiede: attivarla sul server";
inline constexpr const char* ForeignCertificate =
    "il certificato del server non è di un'autorità riconosciuta: verificare di parlare con il server giusto e "
    "indicare "
    "nell'impostazione EncryptionCA il file dell'autorità che lo ha rilasciato";
inline constexpr const char* OthersCertificate =
    "il certificato presentato non è di questo server: verificare di parlare con quello giusto e indicarlo con il nome "
    "che sta nel certificato";
inline constexpr const char* ExpiredCertificate = "il certificato del server è scaduto: rinnovarlo sul server";
inline constexpr const char* NoHandshake = "la connessione cifrata (TLS, impostazione Encryption) non è riuscita";
inline constexpr const char* AsksForPassword =
    "il server chiede la password in un modo che la mostrerebbe a chi si spacciasse per lui: la si dà solo su una "
    "connessione cifrata e verificata, con l'impostazione Encryption=2; a un server MySQL anche con Encryption=1 e "
    "l'autorità del suo certificato in EncryptionCA";
inline constexpr const char* DeniedOrPlain =
    "utente o password errati, oppure l'utente può entrare solo su una connessione cifrata (TLS, impostazione "
    "Encryption=1)";
inline constexpr const char* EndedPlain =
    "il server ha chiuso la connessione: forse ne accetta solo di cifrate (TLS), che l'impostazione Encryption=0 "
    "esclude";

/// What the words of a TLS library about a line that was not built mean; null when they are not known. They are the
/// same for every driver that uses OpenSSL, GnuTLS or the Windows one.
const char* MeaningOf(const QString& words);

} // namespace line
