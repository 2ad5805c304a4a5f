#include "app/hangingRows.h"

#include "adapters/contract/map/lookups.h"
#include "app/brokenReferences.h"
#include "core/italianText.h"

namespace hangingRows {

namespace {

struct Hanging {
    QString table;       ///< bare name
    QString column = {}; ///< that names the table of the owner; empty: the owner is always of that kind
    bool whole = false;  ///< texts of it, which go whoever has written them; the column has the physical name
};

/// Master data whose codes others get when it is gone.
struct Owner {
    QStringList tables; ///< bare names, its own last
    std::vector<Hanging> hanging;
    QString goes; ///< in front of the rows that go along
    QString stays;
    QString names; ///< as those are told that only name it
};

const std::vector<Owner>& Owners() {
    static const std::vector<Owner> owners{
        {{"DIS_BAS", "ART_COD", "ART_ICO"},
         {{"SYS_LNG", "LNTBL", true}, {"FLD_VAL", "FLTAB"}, {"IMA_GES", "TBNAM"}, {"ART_FOR"}, {"UBI_ART"}},
         "Con gli articoli vanno i testi in lingua e le righe che le importazioni vi hanno appeso",
         "Restano le righe inserite a mano, che passano a chi avrà il codice del loro articolo",
         "gli articoli"},
        {{"CON_RIF", "CON_SED", "CON_TRO"},
         {{"NUM_TEL", "TBNAM"},
          {"IND_WEB", "TBNAM"},
          {"CON_SED"},
          {"DIC_INT"},
          {"FLD_VAL", "FLTAB"},
          {"IMA_GES", "TBNAM"}},
         "Con le controparti vanno le righe che le importazioni vi hanno appeso",
         "Restano le righe inserite a mano, che passano a chi avrà il codice della loro controparte",
         "le controparti"},
    };
    return owners;
}

/// Those whose own table is among these (bare names).
std::vector<Owner> OwnersAmong(const QStringList& tables) {
    std::vector<Owner> found = Owners();
    std::erase_if(found, [&tables](const Owner& owner) { return !tables.contains(owner.tables.last()); });
    return found;
}

/// Which of those rows: those that go, those among them that somebody has written, those that stay.
enum class Which { Go, GoOfHands, Stay };

QString ConditionOf(const Session& session, const Owner& owner, const Hanging& hanging, Which which) {
    const QString imports = contract::OfImports(session);
    const QString hands = "(USINS IS NULL OR NOT " + imports + ')';
    if (hanging.whole) {
        const QString texts =
            contract::Equals(session, hanging.column, session.Quadrix.GetFullTableName(owner.tables.last()));
        return which == Which::Go ? texts : which == Which::GoOfHands ? texts + " AND " + hands : QString("1 = 0");
    }
    if (which == Which::GoOfHands) {
        return QStringLiteral("1 = 0");
    }
    return (which == Which::Go ? imports : hands) +
           (hanging.column.isEmpty() ? QString()
                                     : QString(" AND " + hanging.column + " IN ('" + owner.tables.join("', '") + "')"));
}

/// Those rows by table (physical name), tables without any left out, and those that are not there.
QList<RunResult::Emptied> Count(Session& session, const Owner& owner, const QStringList& emptied, Which which) {
    QList<RunResult::Emptied> found;
    for (const Hanging& hanging : owner.hanging) {
        const QString name = session.Quadrix.GetFullTableName(hanging.table);
        const qint64 rows = emptied.contains(hanging.table) || session.Quadrix.GetColumns(name).isEmpty()
                                ? 0
                                : session.Quadrix.ExecuteCommand("SELECT COUNT(*) FROM " + name + " WHERE " +
                                                                 ConditionOf(session, owner, hanging, which));
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

/// The rows of other tables that name master data; none of tables that are emptied, or told already (bare names).
QStringList LeftText(Session& session, const Owner& owner, const QStringList& emptied, const QStringList& told) {
    std::vector<contract::RowsToDelete> going;
    for (const QString& table : owner.tables) {
        if (emptied.contains(table)) {
            going.push_back({session.Quadrix.GetFullTableName(table)});
        }
    }
    QStringList whole; // physical names
    for (const QString& table : emptied + told) {
        whole.append(session.Quadrix.GetFullTableName(table));
    }
    std::vector<brokenReferences::Broken> left = brokenReferences::LeftBy(session, going);
    std::erase_if(left, [&whole](const brokenReferences::Broken& one) { return whole.contains(one.table); });
    return left.empty() ? QStringList()
                        : QStringList("Restano righe di altre tabelle che nominano " + owner.names +
                                      ", e passano a chi avrà i loro codici: " + brokenReferences::TextOf(left));
}

} // namespace

QStringList LeftTexts(Session& session, const QStringList& emptied) {
    QStringList texts;
    for (const Owner& owner : OwnersAmong(emptied)) {
        texts += LeftText(session, owner, emptied, {});
    }
    return texts;
}

QStringList Texts(Session& session, const QStringList& going, const QStringList& besides) {
    const QStringList emptied = going + besides;
    QStringList told; // by the sentences on those that hang
    for (const Owner& owner : OwnersAmong(emptied)) {
        for (const Hanging& hanging : owner.hanging) {
            told.append(hanging.table);
        }
    }
    QStringList texts;
    for (const Owner& owner : OwnersAmong(going)) {
        const auto text = [&](const QString& sentence, Which which) {
            return TextOf(sentence, Count(session, owner, emptied, which));
        };
        texts += text(owner.goes, Which::Go) +
                 text(QStringLiteral("Vanno anche testi in lingua scritti a mano, che nessuna importazione riporta"),
                      Which::GoOfHands) +
                 text(owner.stays, Which::Stay) + LeftText(session, owner, emptied, told);
    }
    return texts;
}

QList<RunResult::Emptied> Delete(Session& session, const QStringList& going) {
    QList<RunResult::Emptied> all;
    for (const Owner& owner : OwnersAmong(going)) {
        const QList<RunResult::Emptied> taken = Count(session, owner, going, Which::Go);
        for (const Hanging& hanging : owner.hanging) {
            const QString name = session.Quadrix.GetFullTableName(hanging.table);
            const bool hasSome =
                std::any_of(taken.begin(), taken.end(), [&](const auto& each) { return each.table == name; });
            if (hasSome) {
                const QString condition = ConditionOf(session, owner, hanging, Which::Go);
                session.Observer->TableIsEmptied(name, condition);
                session.Quadrix.Execute("DELETE FROM " + name + " WHERE " + condition);
            }
        }
        all += taken;
    }
    return all;
}

} // namespace hangingRows
