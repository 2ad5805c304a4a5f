#pragma once

#include "adapters/contract/run/Origin.h"

/// How opening a source ended.
enum class SourceOutcome {
    Opened,
    GivenUp, ///< the operator left a question or a file dialog without an answer
    Failed,  ///< the reason has been reported under "frmImport", "ConnectSource"
};

/// Opens the source of an origin as the session's source connection, with the names of its layout file. Unless it ends
/// in `Opened` the session has no source.
SourceOutcome ConnectSource(Session& session, const contract::Origin& origin);

/// The same, for a caller that reports errors itself: raises what `ConnectSource` reports.
SourceOutcome OpenSource(Session& session, const contract::Origin& origin);

/// A connection with what a source needs of the session, still to be filled and opened. Nothing can be written over it.
/// Files that do not tell their code page are read in that of the setting CodePage, of the section with the origin's
/// name or of IMPORT; with "!" behind it, tables of dBase that tell another one are too. A page that is not known
/// raises `ImportError`; what they are read in without it is noted in the log.
std::unique_ptr<ovConnection> NewSource(Session& session, const QString& origin = {});

/// Opens a source that is filled. An error tells where the path stands that it was opened by.
void OpenPrepared(Session& session, ovConnection& source);

/// A source beside that of the session, with what its layout file tells.
struct SecondSource {
    std::unique_ptr<ovConnection> connection;
    std::shared_ptr<const contract::SourceLayout> layout;
};
/// Opens the source of an origin beside that of the session. @param prepare fills it, with other settings than its own
/// @return none when the operator gave up. Raises as `OpenSource`.
std::optional<SecondSource> OpenBeside(Session& session, const contract::Origin& origin,
                                       const contract::Opening& prepare);

/// Closes the session's source and releases it; does nothing when there is none.
void CloseSource(Session& session);

/// As `ConnectSource`; a failure is shown as "Impossibile connettersi a Arca 2000!" with its reason, and as nothing
/// else.
SourceOutcome ConnectOrTell(Session& session, const contract::Origin& origin);
