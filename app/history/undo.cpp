#include "app/history/undo.h"

#include "app/CompanyLock.h"
#include "app/history/keptChanges.h"
#include "app/history/LaterRuns.h"
#include "app/history/mayUndo.h"
#include "app/history/Referring.h"
#include "core/rowDigest.h"
#include "core/Schema.h"
#include "core/Trial.h"
#include "core/worker.h"
#include "sql/mod_ovTools.h"
#include "sql/ovQueryConstructor.h"
#include "sql/Transaction.h"
#include "sql/variantText.h"

namespace history {

namespace {

QString WhereId(qint64 id) { return QStringLiteral("WHERE RECORD_ID = %1").arg(id); }

QString RowPlace(const QString& table, qint64 id) { return table + u'/' + QString::number(id); }

/// The columns by which it is known in whose place a row is: the key of its table; without one, the first that tells
/// which row it belongs to. None where a table has neither.
QStringList PlaceColumns(const schema::Table& table) {
    if (!table.key.isEmpty()) {
        return table.key;
    }
    const auto owner = std::find_if(table.columns.begin(), table.columns.end(), [](const schema::Column& column) {
        return !column.refersTo.isEmpty() || (column.type == DataType::Long && column.indexed);
    });
    return owner == table.columns.end() ? QStringList() : QStringList(owner->name);
}

/// Rows that stay as they are, by table and number.
struct Staying {
    QHash<QString, QString> why;
    QSet<QString> replacing; ///< inserted ones in whose place it is known which deleted one was
};

/// Takes the changes of one run back, the latest first.
class Undoing {
public:
    Undoing(Session& session, const Run& run, const LaterRuns& later, Staying stay)
        : m_quadrix(session.Quadrix),
          m_later(later),
          m_company(run.company),
          m_stay(std::move(stay)) {}

    void TakeBack(const Change& change) {
        const QString row = RowPlace(change.table, change.id);
        if (const auto stays = m_stay.why.constFind(row); stays != m_stay.why.cend()) {
            Keep(change, row, *stays);
            return;
        }
        // Whatever the run has written of it: with the later changes taken back it is what the earlier ones left.
        const qint64 now = m_brought.value(row, change.id);
        if (const QString why = Obstacle(change, now); !why.isEmpty()) {
            m_stay.why.insert(row, why);
            HasNewObstacles = HasNewObstacles || m_met.contains(row);
            Keep(change, row, why);
            return;
        }
        m_met.insert(row);
        switch (change.kind) {
        case TargetChange::Kind::Inserted:
            m_quadrix.Execute(QStringLiteral("DELETE FROM %1 %2").arg(change.table, WhereId(now)));
            // One that the run had deleted again is as it was.
            m_brought.remove(row) > 0 ? --Result.brought : ++Result.removed;
            break;
        case TargetChange::Kind::Updated:
            Write(change, now, StatementKind::Update);
            Result.restored += m_restored.contains(row) ? 0 : 1;
            m_restored.insert(row);
            break;
        case TargetChange::Kind::Deleted:
            RememberReplaced(change, row);
            m_brought.insert(row, BringBack(change));
            ++Result.brought;
            if (m_brought.value(row) != change.id) {
                LeftAway.push_back(change);
            }
            break;
        }
    }

    /// Of the deleted rows with the key of an inserted one that stays, the one that is most like it stays away: in its
    /// place is the other. Called once all is taken back.
    void KeepReplaced() {
        for (const Standing& standing : m_standing) {
            const Replaced* most = nullptr;
            int likeness = -1;
            for (const Replaced& replaced : m_replaced) {
                const int equal = Likeness(standing, replaced);
                if (equal > likeness && !m_stay.why.contains(replaced.row)) {
                    likeness = equal;
                    most = &replaced;
                }
            }
            if (most != nullptr) {
                m_stay.why.insert(most->row, QStringLiteral("al suo posto c'è ") + standing.what);
                m_stay.replacing.insert(RowPlace(standing.table, standing.id));
                HasNewObstacles = true;
            }
        }
    }

    Staying Stay() { return std::move(m_stay); }

    /// Whether a row was found to stay that had been taken back in part.
    bool HasNewObstacles = false;
    UndoResult Result;
    std::vector<Change> LeftAway; ///< deleted rows that have not come back under their numbers

private:
    /// An inserted row that stays, with what it is now, or in whose place something else stays. Columns in upper case.
    struct Standing {
        QString table;
        qint64 id;
        QString what; ///< stays
        QVariantMap values;
    };
    /// A deleted row that may be the one in whose place such a row is.
    struct Replaced {
        QString row;
        QString table;
        QVariantMap values;
    };

    const schema::Table& SchemaOf(const QString& table) const {
        const QString prefix = m_company + u'_';
        const QString bare = table.startsWith(prefix) ? table.mid(prefix.size()) : table;
        const schema::Table* found = schema::FindTable(bare);
        if (found == nullptr) {
            throw ImportError(QStringLiteral("la tabella '%1' non è nello schema").arg(table));
        }
        return *found;
    }

    DataType TypeOf(const QString& table, const QString& column) const {
        const schema::Column* found = SchemaOf(table).FindColumn(column);
        return found == nullptr ? DataType::NVarChar : found->type;
    }

    /// Why a row must stay as it is; empty when it is still what the change left.
    /// @param id its number now
    QString Obstacle(const Change& change, qint64 id) const {
        if (change.kind == TargetChange::Kind::Deleted) {
            return ObstacleToBringing(change);
        }
        QStringList columns = change.columns;
        if (change.kind == TargetChange::Kind::Inserted) { // who changes other columns leaves his name
            for (const QString& column : {QStringLiteral("USMDF"), QStringLiteral("DTMDF")}) {
                columns += columns.contains(column) ? QStringList() : QStringList(column);
            }
        }
        Recordset rows = m_quadrix.ExecuteWC(
            QStringLiteral("SELECT %1 FROM %2 %3").arg(columns.join(QStringLiteral(", ")), change.table, WhereId(id)));
        if (rows.Eof() || m_later.HaveInserted(change.table, change.id)) {
            return QStringLiteral("non c'è più");
        }
        RowDigest digest;
        for (const QString& column : change.columns) {
            digest.Add(rows.Value(column), TypeOf(change.table, column));
        }
        const bool isAsLeft =
            digest.Value() == change.digest &&
            std::all_of(columns.begin() + change.columns.size(), columns.end(),
                        [&rows](const auto& c) { return mod_ovTools::ToText(rows.Value(c)).isEmpty(); });
        return isAsLeft ? QString() : QStringLiteral("è stata modificata dopo");
    }

    /// Why a row that is gone must not come back: another one would be there twice.
    QString ObstacleToBringing(const Change& change) const {
        if (const qint64 run = m_later.EmptiedInPartBy(change.table); run != 0) {
            return QStringLiteral("l'esecuzione %1 ha svuotato la tabella dopo").arg(run);
        }
        const QString code = SchemaOf(change.table).CodeColumn();
        const auto own = std::find_if(change.before.begin(), change.before.end(), [&code](const NamedValue& value) {
            return !code.isEmpty() && value.name.compare(code, Qt::CaseInsensitive) == 0;
        });
        if (own == change.before.end() || own->value.isNull()) {
            return {};
        }
        const Recordset rows =
            m_quadrix.ExecuteWC(QStringLiteral("SELECT RECORD_ID FROM %1 WHERE %2 = %3")
                                    .arg(change.table, code,
                                         mod_ovTools::FormatSqlValue(TextAsIs(own->value), TypeOf(change.table, code),
                                                                     m_quadrix.ProviderType)));
        return rows.Eof() ? QString()
                          : QStringLiteral("il suo codice è della riga %1").arg(rows.Fields(0).Value().toLongLong());
    }

    /// Remembers an inserted row that stays, unless somebody has deleted it, with nothing in its place.
    void RememberStanding(const Change& change, const QString& row) {
        if (change.kind != TargetChange::Kind::Inserted || PlaceColumns(SchemaOf(change.table)).isEmpty() ||
            m_stay.replacing.contains(row) || m_later.HaveInserted(change.table, change.id)) {
            return;
        }
        Standing standing{change.table, change.id, QStringLiteral("la riga %1").arg(change.id), {}};
        if (const LaterRuns::LeftAway* away = m_later.FindLeftAway(change.table, change.id)) {
            standing.what = QStringLiteral("ciò che ha lasciato l'annullamento dell'esecuzione %1").arg(away->run);
            for (const NamedValue& each : away->before) {
                standing.values.insert(each.name.toUpper(), each.value);
            }
        } else {
            const Recordset now =
                m_quadrix.ExecuteWC(QStringLiteral("SELECT * FROM %1 %2").arg(change.table, WhereId(change.id)));
            for (const QString& column : now.Eof() ? QStringList() : now.Columns()) {
                standing.values.insert(column.toUpper(), now.Value(column));
            }
        }
        if (!standing.values.isEmpty()) {
            m_standing.push_back(std::move(standing));
        }
    }

    void RememberReplaced(const Change& change, const QString& row) {
        Replaced replaced{row, change.table, {}};
        for (const NamedValue& each : m_standing.empty() ? QVector<NamedValue>() : change.before) {
            replaced.values.insert(each.name.toUpper(), each.value);
        }
        if (std::any_of(m_standing.begin(), m_standing.end(),
                        [&](const Standing& standing) { return Likeness(standing, replaced) >= 0; })) {
            m_replaced.push_back(std::move(replaced));
        }
    }

    /// How many columns of two rows are equal; -1 when they have not one place.
    int Likeness(const Standing& standing, const Replaced& replaced) const {
        if (standing.table != replaced.table) {
            return -1;
        }
        const schema::Table& table = SchemaOf(standing.table);
        const auto isEqual = [&](const schema::Column& column) {
            RowDigest one;
            RowDigest other;
            one.Add(standing.values.value(column.name), column.type);
            other.Add(replaced.values.value(column.name), column.type);
            return one.Value() == other.Value();
        };
        for (const QString& place : PlaceColumns(table)) {
            const bool isOwn = !table.key.isEmpty() || !mod_ovTools::ToText(standing.values.value(place)).isEmpty();
            if (!isOwn || !isEqual(*table.FindColumn(place))) {
                return -1;
            }
        }
        return static_cast<int>(std::count_if(table.columns.begin(), table.columns.end(), isEqual));
    }

    void Keep(const Change& change, const QString& row, const QString& why) {
        if (change.kind == TargetChange::Kind::Deleted) {
            LeftAway.push_back(change);
        }
        if (m_kept.contains(row)) {
            return;
        }
        m_kept.insert(row);
        RememberStanding(change, row);
        ++Result.keptCount;
        if (Result.kept.size() < UndoResult::MostKept) {
            Result.kept.push_back({change.table, change.id, why});
        }
    }

    /// Brings a row that is gone back under its number, unless another row has it by now. Returns its number.
    qint64 BringBack(const Change& change) const {
        const bool isFree =
            m_quadrix.ExecuteWC(QStringLiteral("SELECT RECORD_ID FROM %1 %2").arg(change.table, WhereId(change.id)))
                .Eof();
        if (isFree && MayNumber(change.table, true)) {
            Write(change, change.id, StatementKind::Insert);
            MayNumber(change.table, false);
            return change.id;
        }
        Write(change, 0, StatementKind::Insert);
        return m_quadrix.LastInsertId();
    }

    /// Says to SQL Server that rows of a table come with their numbers, or no more; the other engines take them as they
    /// come. Returns whether they may.
    bool MayNumber(const QString& table, bool may) const {
        if (m_quadrix.ProviderType != Provider::SqlServer || m_quadrix.Embedded) {
            return true;
        }
        try {
            m_quadrix.Execute(QStringLiteral("SET IDENTITY_INSERT %1 %2")
                                  .arg(table, may ? QStringLiteral("ON") : QStringLiteral("OFF")));
        } catch (const Error&) { // the user has no right to that
            return false;
        }
        return true;
    }

    /// Writes what a row had before. @param id its number; 0: the database gives it one
    void Write(const Change& change, qint64 id, StatementKind kind) const {
        const schema::Table& table = SchemaOf(change.table);
        ovQueryConstructor query;
        query.ProviderType = m_quadrix.ProviderType;
        query.SetTable(table.name, table.shared ? QString() : m_company);
        for (const NamedValue& each : change.before) {
            const bool areBytes = each.value.typeId() == QMetaType::QByteArray;
            query.AddUpdateField(
                each.name,
                areBytes ? QVariant(QStringLiteral("0x") + QString::fromLatin1(each.value.toByteArray().toHex()))
                         : TextAsIs(each.value),
                areBytes ? DataType::Expression : TypeOf(change.table, each.name), true);
        }
        if (kind == StatementKind::Update) {
            query.WhereString = WhereId(id);
        } else if (id != 0) {
            query.AddUpdateField(QStringLiteral("RECORD_ID"), id, DataType::Long, true);
        }
        m_quadrix.Execute(query.MakeStatement(kind));
    }

    ovConnection& m_quadrix;
    const LaterRuns& m_later;
    QString m_company;
    Staying m_stay;
    std::vector<Standing> m_standing;
    std::vector<Replaced> m_replaced;
    QSet<QString> m_met; ///< rows of which something was taken back, by table and number
    QSet<QString> m_restored;
    QSet<QString> m_kept;
    QHash<QString, qint64> m_brought; ///< numbers of rows that are there again
};

/// Of two runs over the same rows the later one is taken back first: else what it wrote in the place of rows of the
/// earlier one would be there beside what the earlier one had replaced, and rows that it wrote over would stay without
/// what belongs to them.
void CheckIsLast(const LaterRuns& later, qint64 number) {
    const LaterRuns::Overwriting& last = later.Last();
    if (last.run != 0) {
        throw ImportError(
            QStringLiteral("l'esecuzione %1 non si annulla prima della %2, che ha %3 righe scritte da questa (%4, "
                           "RECORD_ID %5). Annullare prima la %2")
                .arg(QString::number(number), QString::number(last.run),
                     last.isDeletion ? QStringLiteral("eliminato") : QStringLiteral("modificato"), last.table,
                     QString::number(last.id)));
    }
}

/// What of a run was taken back.
struct TakenBack {
    UndoResult result;
    std::vector<Change> leftAway; ///< deleted rows that have not come back under their numbers
};

/// Takes back what a run wrote; called within a transaction. A row that is found to stay when some of it was taken back
/// already stays as a whole: then it is done again.
TakenBack TakeBackAll(Session& session, const History& history, const Run& run, const LaterRuns& later) {
    Staying stay;
    for (;;) {
        session.Quadrix.SetMark();
        Undoing undoing(session, run, later, std::move(stay));
        ForEachChangeBackwards(history, run.id, [&undoing](const Change& change) { undoing.TakeBack(change); });
        undoing.KeepReplaced();
        if (!undoing.HasNewObstacles) {
            return {std::move(undoing.Result), std::move(undoing.LeftAway)};
        }
        stay = undoing.Stay();
        session.Quadrix.RollbackToMark();
    }
}

/// Whoever takes an earlier run back must know that something else may stand in their place.
void KeepLeftAway(const History& history, const std::vector<Change>& leftAway) {
    for (const Change& change : leftAway) {
        QStringList names;
        QVector<QVariant> values;
        for (const NamedValue& each : change.before) {
            names += each.name;
            values += each.value;
        }
        history.File().Execute(
            Statement("INSERT INTO left_away (procedure, target_table, target_id, before) VALUES (?, ?, ?, ?)",
                      {change.procedure, change.table, change.id, ValuesText(names, values)}));
    }
}

QString WorkOfUndo(qint64 number) { return QStringLiteral("annullamento dell'esecuzione %1").arg(number); }

} // namespace

UndoResult Undo(Session& session, const History& history, qint64 number) {
    const Run run = history.Load(number);
    CheckMayUndo(session, run);
    const LaterRuns later(history, run);
    CheckIsLast(later, number);
    const bool isTrial = session.Quadrix.InTransaction();
    Transaction transaction(session.Quadrix);
    const Referring referring(session, history, run);
    auto [result, leftAway] = TakeBackAll(session, history, run, later);
    Referring::Left left = referring.WhatIsLeft();
    result.left = std::move(left.byRun);
    result.leftAsBefore = std::move(left.before);
    result.isPartial = run.isPartial;
    result.wasKilled = run.WasKilled();
    for (const ProcedureRun& procedure : run.procedures) {
        result.outside += WorksOutside(procedure) ? QStringList(procedure.result.procedure) : QStringList();
        for (const RunResult::Emptied& emptied : procedure.result.emptied) {
            result.emptied += std::max<qint64>(0, emptied.rows);
        }
    }
    if (isTrial) {
        return result;
    }
    // A history that is locked, or cannot be written, is noticed while everything can still be put back.
    Transaction told(history.File());
    history.File().Execute(Statement("DELETE FROM imported_rejects WHERE run = ?", {number}));
    history.File().Execute(Statement("UPDATE procedures SET undone = ? WHERE run = ?",
                                     {WorkText(session.Now(), QStringLiteral("annullamento")), number}));
    KeepLeftAway(history, leftAway);
    transaction.Keep();
    try {
        told.Keep();
    } catch (const Error& error) {
        throw ImportError(QStringLiteral("l'esecuzione %1 è stata annullata, ma la cronologia non lo tiene: non "
                                         "annullarla di nuovo. %2")
                              .arg(QString::number(number), error.Message()));
    }
    return result;
}

UndoResult UndoAlone(Session& session, const History& history, qint64 number) {
    const CompanyLock lock(session, {history.Load(number).company}, WorkOfUndo(number));
    return Undo(session, history, number);
}

UndoResult TryUndo(Session& session, const History& history, qint64 number) {
    const CompanyLock lock(session, {history.Load(number).company}, WorkOfUndo(number));
    const Trial trial(session);
    return Undo(session, history, number);
}

namespace {

QStringList CountsOf(const UndoResult& result) {
    return {QStringLiteral("Righe tolte: %1").arg(result.removed),
            QStringLiteral("Righe riportate com'erano: %1").arg(result.restored),
            QStringLiteral("Righe eliminate che ci sono di nuovo: %1").arg(result.brought),
            QStringLiteral("Righe che restano come sono: %1").arg(result.keptCount)};
}

/// What is not as it was before the run, and cannot be seen from the counts.
QStringList WarningsOf(const UndoResult& result) {
    QStringList lines;
    if (!result.left.empty()) {
        lines +=
            QStringLiteral("Righe che restano e si riferiscono a ciò che si toglie: %1. Chi avrà poi quei codici avrà "
                           "anche queste righe: correggerle o eliminarle.")
                .arg(brokenReferences::TextOf(result.left));
    }
    if (!result.leftAsBefore.empty()) {
        lines +=
            QStringLiteral("Righe di esecuzioni precedenti che hanno codici che senza questa non ci sono, come prima "
                           "che fosse eseguita: %1.")
                .arg(brokenReferences::TextOf(result.leftAsBefore));
    }
    if (result.emptied > 0) {
        lines += QStringLiteral("Le %1 righe che l'esecuzione ha eliminato svuotando le tabelle non tornano.")
                     .arg(result.emptied);
    }
    if (!result.outside.isEmpty()) {
        lines += QStringLiteral("Nel database del CAM, fuori da Quadrix, resta ciò che ha fatto: %1.")
                     .arg(result.outside.join(QStringLiteral(", ")));
    }
    if (result.isPartial) {
        lines +=
            QStringLiteral("La cronologia non tiene l'esecuzione per intero: ciò che ha scritto dopo non si annulla.");
    } else if (result.wasKilled) {
        lines +=
            QStringLiteral("Il programma è terminato prima della fine: ciò che ha scritto nell'ultimo mezzo secondo "
                           "può mancare dalla cronologia, e allora non si annulla.");
    }
    return lines;
}

} // namespace

QStringList KeptLines(const UndoResult& result) {
    QStringList lines;
    for (const KeptRow& row : result.kept) {
        lines += QStringLiteral("  %1, RECORD_ID %2: %3").arg(row.table, QString::number(row.id), row.why);
    }
    return lines;
}

QStringList SummaryOf(const UndoResult& result) { return CountsOf(result) + WarningsOf(result); }

QStringList LinesOf(const UndoResult& result) { return CountsOf(result) + KeptLines(result) + WarningsOf(result); }

} // namespace history
