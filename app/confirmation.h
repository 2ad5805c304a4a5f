#pragma once

#include "adapters/contract/run/Origin.h"

/// What a person sees under a question before anything is written: lines of text.
namespace confirmation {

/// "Azienda: X04 Rossi & Figli", the company under work.
QString CompanyLine(Session& session);
/// Where the source stands that the procedures read first: that which is open, else what the settings say of it; empty
/// without one. A password is never shown.
QString SourceText(Session& session, const contract::Origin& origin,
                   const std::vector<const contract::Procedure*>& procedures);
/// Company, origin, what the procedures do, the source, as `SourceText`, and whether the company has been merged into
/// another.
QString RunDetails(Session& session, const contract::Origin& origin,
                   const std::vector<const contract::Procedure*>& procedures);
/// "server SRV, database QUADRIX": where a database stands, or the path of its file. A password is never shown.
QString DatabaseText(const ovConnection& connection);
/// "Righe che verranno eliminate: 6.452" and, below it, those of each table that has some, or that cannot be counted.
QString RowsText(ovConnection& connection, const std::vector<contract::RowsToDelete>& rows);

} // namespace confirmation
