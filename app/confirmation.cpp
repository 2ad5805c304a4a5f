#include "app/confirmation.h"

#include "adapters/contract/run/Origin.h"
#include "adapters/sourceSettings.h"
#include "app/mergeRecord.h"
#include "app/procedureTitle.h"
#include "core/italianText.h"
#include "sql/mod_ovTools.h"
#include "sql/textLiteral.h"

#include <QDir>

using namespace contract;

namespace confirmation {

namespace {

/// The part of a connection string behind one of the keys; empty when it has none of them.
QString PartOf(const QString& connectionString, const QStringList& keys) {
    for (const QString& part : connectionString.split(u';', Qt::SkipEmptyParts)) {
        if (keys.contains(part.section(u'=', 0, 0).trimmed(), Qt::CaseInsensitive)) {
            return part.section(u'=', 1).trimmed();
        }
    }
    return {};
}

/// What the settings say of a source that is not open yet; a key that is not set is left out.
QString OfSettings(Session& session, const Origin& origin) {
    QStringList parts;
    const SourceKeys& keys = origin.source.prepare.keys;
    for (const QString& key : {keys.database, keys.server, QStringLiteral("DSN")}) {
        const QString value = session.Config.PeekAppConfig(sourceSettings::SectionOf(session, origin.name, key), key);
        if (!value.isEmpty()) {
            parts.append(key + u'=' + value);
        }
    }
    return parts.isEmpty() ? QString() : QString(parts.join(QStringLiteral(", ")) + QStringLiteral(" (impostazioni)"));
}

/// -1 when they cannot be counted.
qint64 Count(ovConnection& connection, const RowsToDelete& rows) {
    try {
        const QString where = rows.where.isEmpty() ? QString() : QString(" WHERE " + rows.where);
        return connection.ExecuteCommand("SELECT COUNT(*) FROM " + rows.table + where);
    } catch (const Error&) {
        return -1; // the check before the run tells what is missing
    }
}

} // namespace

QString CompanyLine(Session& session) {
    const QString code = session.UserManager.Azienda();
    Recordset rows =
        session.Quadrix.ExecuteWC("SELECT AZRAS FROM SYS_AZI WHERE CDAZI = " + TextLiteral(session.Quadrix, code));
    const QString name = rows.Eof() ? QString() : mod_ovTools::ToText(rows.Value("AZRAS"));
    return QStringLiteral("Azienda: %1 %2").arg(code, name).trimmed();
}

QString DatabaseText(const ovConnection& connection) {
    if (!connection.ConnectionString.isEmpty()) {
        const QString place = PartOf(connection.ConnectionString, {"DBQ", "Data Source", "Server", "DSN"});
        const QString database = PartOf(connection.ConnectionString, {"Initial Catalog", "Database"});
        return database.isEmpty() ? place : QString(place + QStringLiteral(", database ") + database);
    }
    if (!connection.DSN.isEmpty()) {
        return QStringLiteral("DSN ") + connection.DSN;
    }
    return connection.Embedded
               ? QDir::toNativeSeparators(connection.DatabaseName)
               : QStringLiteral("server %1, database %2").arg(connection.Server, connection.DatabaseName);
}

QString SourceText(Session& session, const Origin& origin, const std::vector<const Procedure*>& procedures) {
    const Origin* from = FirstSourceOf(origin, procedures);
    return from == nullptr ? QString() : session.Source ? DatabaseText(*session.Source) : OfSettings(session, *from);
}

QString RunDetails(Session& session, const Origin& origin, const std::vector<const Procedure*>& procedures) {
    QStringList titles;
    for (const Procedure* procedure : procedures) {
        titles.append(ProcedureTitle(origin, *procedure));
    }
    QStringList lines{CompanyLine(session), QStringLiteral("Origine: ") + origin.name,
                      QStringLiteral("Operazione: ") + titles.join(QStringLiteral(", "))};
    const QString source = SourceText(session, origin, procedures);
    if (!source.isEmpty()) {
        lines.append(QStringLiteral("Sorgente: ") + source);
    }
    if (const QString merged = merge::MergedText(session, session.UserManager.Azienda()); !merged.isEmpty()) {
        lines.append(QStringLiteral("Attenzione: ") + merged);
    }
    return lines.join(u'\n');
}

QString RowsText(ovConnection& connection, const std::vector<RowsToDelete>& rows) {
    QStringList lines;
    qint64 total = 0;
    bool atMost = false;
    for (const RowsToDelete& each : rows) {
        const qint64 count = Count(connection, each);
        if (count < 0) {
            lines.append(QStringLiteral("  %1: non si possono contare").arg(each.table));
        } else if (count > 0) {
            lines.append(QStringLiteral("  %1: %2").arg(each.table, italian::NumberText(count)));
            total += count;
            atMost = atMost || each.atMost;
        }
    }
    if (lines.isEmpty()) {
        return QStringLiteral("Nessuna riga da eliminare.");
    }
    const QString upTo = atMost ? QStringLiteral("fino a ") : QString();
    return QStringLiteral("Righe che verranno eliminate: %1%2\n%3")
        .arg(upTo, italian::NumberText(total), lines.join(u'\n'));
}

} // namespace confirmation
