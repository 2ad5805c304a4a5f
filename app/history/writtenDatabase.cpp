#include "app/history/writtenDatabase.h"

#include "app/confirmation.h"
#include "app/history/historyFile.h"

#include <QDir>
#include <QFileInfo>
#include <QRandomGenerator>

namespace history {

namespace {

constexpr Qt::CaseSensitivity PlaceCase =
#ifdef Q_OS_WIN
    Qt::CaseInsensitive;
#else
    Qt::CaseSensitive;
#endif

qint64 IdentityOf(ovConnection& quadrix) {
    return quadrix.Embedded ? quadrix.ExecuteCommand(QStringLiteral("PRAGMA application_id")) : 0;
}

} // namespace

WrittenDatabase DatabaseOf(ovConnection& quadrix) {
    const QString file = quadrix.Embedded ? QFileInfo(quadrix.DatabaseName).canonicalFilePath() : QString();
    return {file.isEmpty() ? confirmation::DatabaseText(quadrix) : QDir::toNativeSeparators(file), IdentityOf(quadrix)};
}

void Identify(ovConnection& quadrix) {
    if (!quadrix.Embedded || IdentityOf(quadrix) != 0) {
        return;
    }
    try {
        quadrix.Execute(QStringLiteral("PRAGMA application_id = %1")
                            .arg(QRandomGenerator::global()->bounded(1, std::numeric_limits<int>::max())));
    } catch (const Error&) { // its place tells it as well
        return;
    }
}

bool AreOne(const WrittenDatabase& a, const WrittenDatabase& b) {
    const Qt::CaseSensitivity sense = a.identity == 0 && b.identity == 0 ? Qt::CaseInsensitive : PlaceCase; // servers
    const bool arePlaces = a.place.isEmpty() || b.place.isEmpty() || a.place.compare(b.place, sense) == 0;
    return arePlaces && (a.identity == 0 || b.identity == 0 || a.identity == b.identity);
}

qint64 NumberOf(ovConnection& file, const WrittenDatabase& database) {
    Recordset rows =
        file.ExecuteWC(QStringLiteral("SELECT id, place, identity FROM written_databases ORDER BY id DESC"));
    for (; !rows.Eof(); rows.MoveNext()) {
        if (AreOne({rows.Fields(1).Value().toString(), rows.Fields(2).Value().toLongLong()}, database)) {
            return rows.Fields(0).Value().toLongLong();
        }
    }
    return 0;
}

qint64 KeptNumberOf(ovConnection& file, const WrittenDatabase& database) {
    if (const qint64 known = NumberOf(file, database); known != 0) {
        file.Execute(Statement("UPDATE written_databases SET identity = ? WHERE id = ? AND identity = 0",
                               {database.identity, known}));
        return known;
    }
    file.Execute(Statement("INSERT INTO written_databases (place, identity) VALUES (?, ?)",
                           {database.place, database.identity}));
    return file.LastInsertId();
}

QString WroteTo(qint64 database, const QString& runs) {
    return database == 0 ? QStringLiteral("1 = 1")
                         : QStringLiteral("COALESCE(%1.target, %2) = %2").arg(runs).arg(database);
}

} // namespace history
