#pragma once

#include "adapters/contract/run/Origin.h"

/// Which source of an origin will be read, as the settings tell it and as the operator chooses it.
namespace sourceChoice {

using contract::Place;

/// What the settings hold of a source.
struct Source {
    Place place = Place::Asked;
    QString database; ///< folder, file, or database of a server
    QString server;
    QString dsn;
    QString user;
    bool integrated = false;  ///< integrated sign-on: no user
    bool hasPassword = false; ///< the settings have one
};

/// What the settings say, as the import reads them; what is not set is empty. Raises `ImportError` when they cannot be
/// read.
Source Read(Session& session, const contract::Origin& origin);
/// Writes what was changed into the settings, each in the section that it was read from. @param before what `source`
/// was chosen from: what is still the same is not written, as another program may have set it meanwhile. @param
/// password written as it is, in place of the one that stands there; an empty one takes that away, none leaves it.
/// Raises `ImportError` when the settings cannot be written, or a value is longer than is read.
void Write(Session& session, const contract::Origin& origin, const Source& before, const Source& source,
           const std::optional<QString>& password);
/// The sections of the settings that hold what `Write` writes, the origin's own first: "AUTOMA", "IMPORT".
QStringList Sections(Session& session, const contract::Origin& origin);
/// One line for the operator: "Cartella /dati/arca", "Server DB1, database GESCOM, utente sa".
QString Line(Session& session, const contract::Origin& origin);

/// Folders and files that were read for origins whose source has its place there, the last first; those that are gone
/// are left out.
QStringList Recent(Session& session, Place place);
/// Remembers one as the last; where that cannot be written it is not.
void Remember(Session& session, Place place, const QString& path);

/// How trying to open a source ended.
struct Trial {
    bool isOpen = false;
    QString text; ///< "Collegamento riuscito: 14 tabelle", or what the engine says; empty when the operator gave up
};

/// Opens the source of an origin, counts its tables and closes it again. Nothing is raised.
Trial Try(Session& session, const contract::Origin& origin);

} // namespace sourceChoice
