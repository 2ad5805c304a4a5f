#include "app/connectSource.h"

#include "adapters/sourceSettings.h"
#include "sources/fileSource.h"

namespace {

/// Fills the connection from settings and questions and opens it; false when the operator gave up.
bool Open(Session& session, const contract::Origin& origin, ovConnection& source) {
    const auto prepare = origin.source.prepare ? origin.source.prepare : sourceSettings::ForOrigin(origin.name);
    if (!prepare) {
        throw ImportError(QStringLiteral("Non è noto come aprire l'origine '%1'").arg(origin.name));
    }
    if (!prepare(session, source)) {
        return false;
    }
    source.OpenConnection();
    return true;
}

} // namespace

std::unique_ptr<ovConnection> NewSource(Session& session) {
    auto source = std::make_unique<ovConnection>();
    source->Errors = &session.Errors;
    source->OpenFiles = sources::OpenFileSource;
    source->Trace = session.TraceSource;
    return source;
}

SourceOutcome OpenSource(Session& session, const contract::Origin& origin) {
    CloseSource(session);
    session.Source = NewSource(session);
    return Open(session, origin, *session.Source) ? SourceOutcome::Opened : SourceOutcome::GivenUp;
}

SourceOutcome ConnectSource(Session& session, const contract::Origin& origin) {
    const Operator::Busy busy(session.Person);
    const SourceOutcome outcome = Guarded(session.Errors, "frmImport", "ConnectSource", SourceOutcome::Failed,
                                          [&] { return OpenSource(session, origin); });
    if (outcome != SourceOutcome::Opened) {
        CloseSource(session);
    }
    return outcome;
}

void CloseSource(Session& session) {
    if (session.Source) {
        session.Source->CloseConnection();
        session.Source.reset();
    }
}

void TellNotConnected(Session& session, const contract::Origin& origin) {
    session.Person.Message(QStringLiteral("Impossibile connettersi a ") + origin.name + u'!', Icon::Exclamation);
}
