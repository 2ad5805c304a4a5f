#include "app/hangingRows.h"

#include "adapters/contract/map/lookups.h"
#include "app/brokenReferences.h"
#include "core/italianText.h"

namespace hangingRows {

namespace {

struct Hanging {
    QString table;       ///< bare name
    QString column = {}; ///< that names the table of the owner; empty: the owner is a counterparty
};

const std::vector<Hanging>& All() {
    static const std::vector<Hanging> all{{"NUM_TEL", "TBNAM"}, {"IND_WEB", "TBNAM"}, {"CON_SED"},
                                          {"DIC_INT"},          {"FLD_VAL", "FLTAB"}, {"IMA_GES", "TBNAM"}};
    return all;
}

/// The condition on those that imports have written, or on those of others.
QString ConditionOf(const Session& session, const Hanging& hanging, bool ofImports) {
    const QString imports = contract::OfImports(session);
    return (ofImports ? imports : QString("(USINS IS NULL OR NOT " + imports + ')')) +
           (hanging.column.isEmpty() ? QString()
                                     : QString(" AND " + hanging.column + " IN ('CON_TRO', 'CON_RIF', 'CON_SED')"));
}

/// Those rows by table (physical name), tables without any left out.
QList<RunResult::Emptied> Count(Session& session, const QStringList& emptied, bool ofImports) {
    QList<RunResult::Emptied> found;
    for (const Hanging& hanging : All()) {
        const QString name = session.Quadrix.GetFullTableName(hanging.table);
        const qint64 rows = emptied.contains(hanging.table)
                                ? 0
                                : session.Quadrix.ExecuteCommand("SELECT COUNT(*) FROM " + name + " WHERE " +
                                                                 ConditionOf(session, hanging, ofImports));
        if (rows > 0) {
            found.append({name, rows});
        }
    }
    return found;
}

/// "3 (X01_IND_WEB: 2, X01_CON_SED: 1)" behind a sentence; none without rows.
QStringList TextOf(const QString& sentence, const QList<RunResult::Emptied>& rows) {
    qint64 all = 0;
    QStringList tables;
    for (const RunResult::Emptied& each : rows) {
        all += each.rows;
        tables.append(each.table + ": " + italian::NumberText(each.rows));
    }
    return all == 0 ? QStringList()
                    : QStringList(sentence + ": " + italian::NumberText(all) + " (" + tables.join(", ") + ')');
}

} // namespace

QStringList LeftTexts(Session& session, const QStringList& emptied) {
    std::vector<contract::RowsToDelete> going;
    for (const QString& table : {QStringLiteral("CON_SED"), QStringLiteral("CON_RIF"), QStringLiteral("CON_TRO")}) {
        if (emptied.contains(table)) {
            going.push_back({session.Quadrix.GetFullTableName(table)});
        }
    }
    QStringList whole; // physical names
    for (const QString& table : emptied) {
        whole.append(session.Quadrix.GetFullTableName(table));
    }
    std::vector<brokenReferences::Broken> left = brokenReferences::LeftBy(session, going);
    std::erase_if(left, [&whole](const brokenReferences::Broken& one) { return whole.contains(one.table); });
    return left.empty()
               ? QStringList()
               : QStringList("Restano righe di altre tabelle che nominano le controparti, e passano a chi avrà "
                             "i loro codici: " +
                             brokenReferences::TextOf(left));
}

QStringList Texts(Session& session, const QStringList& emptied) {
    QStringList told = emptied; // as the other sentences tell of those that hang
    for (const Hanging& hanging : All()) {
        told.append(hanging.table);
    }
    return TextOf("Con le controparti vanno le righe che le importazioni vi hanno appeso",
                  Count(session, emptied, true)) +
           TextOf("Restano le righe inserite a mano, che passano a chi avrà il codice della loro controparte",
                  Count(session, emptied, false)) +
           LeftTexts(session, told);
}

QList<RunResult::Emptied> Delete(Session& session, const QStringList& emptied) {
    const QList<RunResult::Emptied> taken = Count(session, emptied, true);
    for (const Hanging& hanging : All()) {
        const QString name = session.Quadrix.GetFullTableName(hanging.table);
        const bool hasSome =
            std::any_of(taken.begin(), taken.end(), [&](const auto& each) { return each.table == name; });
        if (hasSome) {
            const QString condition = ConditionOf(session, hanging, true);
            session.Observer->TableIsEmptied(name, condition);
            session.Quadrix.Execute("DELETE FROM " + name + " WHERE " + condition);
        }
    }
    return taken;
}

} // namespace hangingRows
