#include "app/codes/waiting.h"

#include "app/history/History.h"

#include <QFileInfo>

namespace codes {

namespace {

constexpr int MostTold = 5; ///< rows that are named

QString KeyOf(const QString& table, const QString& field, const QString& code) {
    return codes::KeyOf(table, field) + QChar(0) + code;
}

} // namespace

WaitingRows::WaitingRows(Session& session) {
    const QString path = history::FilePath(session.Config.ConfigFile());
    if (!QFileInfo::exists(path)) { // no run has been kept yet
        return;
    }
    const history::History history(session);
    for (const history::WaitingCode& each : history.WaitingCodes(session.UserManager.Azienda(), MostTold)) {
        Waiting& waiting = m_rows[KeyOf(each.code.list, each.code.field, each.code.code)];
        waiting.rows += each.rows;
        waiting.first = (waiting.first + each.first).mid(0, MostTold);
    }
}

std::optional<Waiting> WaitingRows::Of(const Code& code) const {
    const auto known = m_rows.constFind(KeyOf(code.table, code.field, code.oldCode));
    return known == m_rows.constEnd() ? std::nullopt : std::optional(*known);
}

} // namespace codes
