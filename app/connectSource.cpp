#include "app/connectSource.h"

#include "adapters/contract/run/SourceLayout.h"
#include "adapters/sourceSettings.h"
#include "core/lineSettings.h"
#include "core/modImport.h"
#include "sources/fileSource.h"
#include "sql/CodePage.h"

#include <QDir>
#include <QScopeGuard>

namespace {

/// The code page of files that do not tell theirs: that of the origin, under its name, else that of all.
QString ReadCodePage(Session& session, const QString& origin) {
    const QString key = QStringLiteral("CodePage");
    const QString section = sourceSettings::SectionOf(session, origin, key);
    const QString name = session.Config.PeekAppConfig(section, key);
    try {
        const CodePage known(name.endsWith(u'!') ? name.chopped(1) : name); // "!": above what a file tells
    } catch (ImportError& error) {
        error.AddContext(QStringLiteral("File '%1', sezione [%2], chiave %3")
                             .arg(QDir::toNativeSeparators(session.Config.ConfigFile()), section, key));
        throw;
    }
    return name;
}

/// Fills the connection from settings and questions and opens it; false when the operator gave up.
bool Open(Session& session, const contract::Origin& origin, const contract::Opening& prepare, ovConnection& source) {
    if (!prepare(session, source)) {
        return false;
    }
    contract::SourceLayout::Take(session, origin, source);
    OpenPrepared(session, source);
    return true;
}

} // namespace

std::unique_ptr<ovConnection> NewSource(Session& session, const QString& origin) {
    auto source = std::make_unique<ovConnection>();
    source->Errors = &session.Errors;
    source->ReadOnly = true;
    source->OpenFiles = sources::OpenFileSource;
    source->CodePage = ReadCodePage(session, origin);
    source->Trace = session.TraceSource;
    source->Note = [&session](const QString& note) { modImport::LogNote(session, note); };
    return source;
}

void OpenPrepared(Session& session, ovConnection& source) {
    try {
        source.OpenConnection();
        modMain::TellLine(session, source);
    } catch (ImportError& error) {
        if (const QString advice = sourceSettings::PathAdvice(session, source); !advice.isEmpty()) {
            error.AddAdvice(advice);
        }
        throw;
    }
}

SourceOutcome OpenSource(Session& session, const contract::Origin& origin) {
    CloseSource(session);
    const sourceSettings::OfOrigin own(session, origin.name);
    session.Source = NewSource(session, origin.name);
    return Open(session, origin, origin.source.prepare, *session.Source) ? SourceOutcome::Opened
                                                                         : SourceOutcome::GivenUp;
}

std::optional<SecondSource> OpenBeside(Session& session, const contract::Origin& origin,
                                       const contract::Opening& prepare) {
    const auto first = session.Layout;
    const auto back = qScopeGuard([&] { session.Layout = first; });
    auto connection = NewSource(session, origin.name);
    if (!Open(session, origin, prepare, *connection)) {
        return std::nullopt;
    }
    return SecondSource{std::move(connection), session.Layout};
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
    session.Layout.reset();
}

SourceOutcome ConnectOrTell(Session& session, const contract::Origin& origin) {
    // The collector keeps the error; one box shows it, not two.
    const auto report = std::exchange(session.Errors.ReportToOperator, {});
    const SourceOutcome outcome = ConnectSource(session, origin);
    session.Errors.ReportToOperator = report;
    if (outcome == SourceOutcome::Failed) {
        session.Person.Message(QStringLiteral("Impossibile connettersi a %1!\n\n%2")
                                   .arg(origin.name, session.Errors.Entries().last().message),
                               Icon::Exclamation);
    }
    return outcome;
}
