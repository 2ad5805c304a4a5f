#include "adapters/contract/kinds/readFiles.h"

#include <QFileInfo>

namespace contract {

namespace {

ImportPart Announcing(ImportPart part, const std::function<QStringList(const Session&)>& names) {
    part.make = [make = part.make, names](ImportRun& run, const QString& singleCode) {
        for (const QString& name : names(run.GetSession())) {
            run.AnnounceAppending(QStringLiteral("Inizio lettura file ") + name);
        }
        return make(run, singleCode);
    };
    return part;
}

} // namespace

ImportPart ReadingFiles(ImportPart part, const QStringList& names) {
    return Announcing(std::move(part), [names](const Session&) { return names; });
}

ImportPart ReadingChosenFile(ImportPart part) {
    return Announcing(std::move(part), [](const Session& session) {
        return QStringList{QFileInfo(session.Dialogs.FileName).fileName()};
    });
}

} // namespace contract
