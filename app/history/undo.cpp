#include "app/history/undo.h"

#include "app/CompanyLock.h"
#include "core/rowDigest.h"
#include "core/Schema.h"
#include "core/Trial.h"
#include "core/worker.h"
#include "sql/ovQueryConstructor.h"
#include "sql/Transaction.h"

namespace history {

namespace {

/// A written row as the history keeps it.
struct Change {
    TargetChange::Kind kind;
    QString table;
    qint64 id;
    QVector<NamedValue> before;
    QStringList columns;
    qint64 digest;
};

/// What a row of the history holds: one change, or rows that were inserted into a table, the last one first.
std::vector<Change> ChangesOf(const Recordset& kept) {
    const Change one{static_cast<TargetChange::Kind>(kept.Fields(0).Value().toInt()),
                     kept.Fields(1).Value().toString(),
                     kept.Fields(2).Value().toLongLong(),
                     ValuesOf(kept.Fields(3).Value().toString()),
                     kept.Fields(4).Value().toString().split(u',', Qt::SkipEmptyParts),
                     kept.Fields(5).Value().toLongLong()};
    const QString inserted = kept.Fields(6).Value().toString();
    if (inserted.isEmpty()) {
        return {one};
    }
    std::vector<Change> changes;
    const QList<QStringView> numbers = QStringView(inserted).split(u' ');
    for (qsizetype i = numbers.size() - 2; i >= 0; i -= 2) {
        Change& change = changes.emplace_back(one);
        change.id = numbers.at(i).toLongLong();
        change.digest = numbers.at(i + 1).toLongLong();
    }
    return changes;
}

QString WhereId(qint64 id) { return QStringLiteral("WHERE RECORD_ID = %1").arg(id); }

/// Takes the changes of one run back, the latest first.
class Undoing {
public:
    Undoing(Session& session, const Run& run)
        : m_quadrix(session.Quadrix),
          m_company(run.company) {}

    void TakeBack(const Change& change) {
        const QString row = change.table + u'/' + QString::number(change.id);
        if (!m_isToUndo.contains(row)) { // the last that the run did to it
            const QString why = Obstacle(change);
            m_isToUndo.insert(row, why.isEmpty());
            if (!why.isEmpty()) {
                Keep(change, why);
            }
        }
        if (!m_isToUndo.value(row)) {
            return;
        }
        const qint64 now = m_brought.value(row, change.id);
        switch (change.kind) {
        case TargetChange::Kind::Inserted:
            m_quadrix.Execute(QStringLiteral("DELETE FROM %1 %2").arg(change.table, WhereId(now)));
            // One that the run had deleted again is as it was.
            m_brought.remove(row) > 0 ? --Result.brought : ++Result.removed;
            break;
        case TargetChange::Kind::Updated:
            Write(change, now);
            Result.restored += m_restored.contains(row) ? 0 : 1;
            m_restored.insert(row);
            break;
        case TargetChange::Kind::Deleted:
            Write(change, std::nullopt);
            m_brought.insert(row, m_quadrix.LastInsertId());
            ++Result.brought;
            break;
        }
    }

    UndoResult Result;

private:
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

    /// Why a row must stay as it is; empty when it is still what the run left.
    QString Obstacle(const Change& change) const {
        if (change.kind == TargetChange::Kind::Deleted) {
            return {};
        }
        Recordset rows =
            m_quadrix.ExecuteWC(QStringLiteral("SELECT %1 FROM %2 %3")
                                    .arg(change.columns.join(QStringLiteral(", ")), change.table, WhereId(change.id)));
        if (rows.Eof()) {
            return QStringLiteral("non c'è più");
        }
        RowDigest digest;
        for (const QString& column : change.columns) {
            digest.Add(rows.Value(column), TypeOf(change.table, column));
        }
        return digest.Value() == change.digest ? QString() : QStringLiteral("è stata modificata dopo");
    }

    void Keep(const Change& change, const QString& why) {
        ++Result.keptCount;
        if (Result.kept.size() < UndoResult::MostKept) {
            Result.kept.push_back({change.table, change.id, why});
        }
    }

    /// Writes what a row had before. @param id none: it is gone
    void Write(const Change& change, std::optional<qint64> id) const {
        const schema::Table& table = SchemaOf(change.table);
        ovQueryConstructor query;
        query.ProviderType = m_quadrix.ProviderType;
        query.SetTable(table.name, table.shared ? QString() : m_company);
        for (const NamedValue& each : change.before) {
            const bool areBytes = each.value.typeId() == QMetaType::QByteArray;
            query.AddUpdateField(
                each.name,
                areBytes ? QVariant(QStringLiteral("0x") + QString::fromLatin1(each.value.toByteArray().toHex()))
                         : each.value,
                areBytes ? DataType::Expression : TypeOf(change.table, each.name), true);
        }
        query.WhereString = id ? WhereId(*id) : QString();
        m_quadrix.Execute(query.MakeStatement(id ? StatementKind::Update : StatementKind::Insert));
    }

    ovConnection& m_quadrix;
    QString m_company;
    QHash<QString, bool> m_isToUndo; ///< by table and number
    QSet<QString> m_restored;
    QHash<QString, qint64> m_brought; ///< new numbers of rows that are there again
};

/// Resets and merges, which bear no module of an origin, keep no images of what they write over.
bool IsImport(const Run& run) {
    static const QStringList own{"frmImport", "modImport", "modMain"};
    return std::none_of(run.procedures.begin(), run.procedures.end(),
                        [](const ProcedureRun& procedure) { return own.contains(procedure.result.module); });
}

void CheckMayUndo(const Run& run) {
    const auto refuse = [&run](const QString& why) {
        throw ImportError(QStringLiteral("l'esecuzione %1 %2").arg(QString::number(run.id), why));
    };
    if (run.isTrial) {
        refuse(QStringLiteral("era una prova: non ha lasciato nulla da annullare"));
    }
    if (run.isUnderWay) {
        refuse(QStringLiteral("è ancora in corso"));
    }
    if (!IsImport(run)) {
        refuse(
            QStringLiteral("non è un'importazione: ciò che ha svuotato o fuso torna solo con una copia del database"));
    }
    for (const ProcedureRun& procedure : run.procedures) {
        if (!procedure.undone.isEmpty()) {
            refuse(QStringLiteral("è già stata annullata (%1)").arg(procedure.undone));
        }
    }
}

} // namespace

UndoResult Undo(Session& session, const History& history, qint64 number) {
    const Run run = history.Load(number);
    CheckMayUndo(run);
    const bool isTrial = session.Quadrix.InTransaction();
    Transaction transaction(session.Quadrix);
    Undoing undoing(session, run);
    {
        Recordset rows = history.File().ExecuteWC(
            Statement("SELECT C.kind, C.target_table, C.target_id, C.before, L.names, C.digest, C.inserted FROM "
                      "changes C LEFT JOIN column_lists L ON L.id = C.columns JOIN procedures P ON P.id = C.procedure "
                      "WHERE P.run = ? ORDER BY C.id DESC",
                      {number}));
        for (; !rows.Eof(); rows.MoveNext()) {
            for (const Change& change : ChangesOf(rows)) {
                undoing.TakeBack(change);
            }
        }
    }
    transaction.Keep();
    for (const ProcedureRun& procedure : run.procedures) {
        for (const RunResult::Emptied& emptied : procedure.result.emptied) {
            undoing.Result.emptied += std::max<qint64>(0, emptied.rows);
        }
    }
    if (!isTrial) {
        history.File().Execute(Statement("DELETE FROM imported_rejects WHERE run = ?", {number}));
        history.File().Execute(Statement("UPDATE procedures SET undone = ? WHERE run = ?",
                                         {WorkText(session.Now(), QStringLiteral("annullamento")), number}));
    }
    return undoing.Result;
}

UndoResult UndoAlone(Session& session, const History& history, qint64 number, bool isTrial) {
    const CompanyLock lock(session, {history.Load(number).company},
                           QStringLiteral("annullamento dell'esecuzione %1").arg(number));
    std::optional<Trial> trial;
    if (isTrial) {
        trial.emplace(session);
    }
    return Undo(session, history, number);
}

bool CanUndo(const Run& run) {
    return !run.isTrial && !run.isUnderWay && !run.procedures.empty() && IsImport(run) &&
           std::all_of(run.procedures.begin(), run.procedures.end(),
                       [](const ProcedureRun& procedure) { return procedure.undone.isEmpty(); });
}

QStringList LinesOf(const UndoResult& result) {
    QStringList lines{QStringLiteral("Righe tolte: %1").arg(result.removed),
                      QStringLiteral("Righe riportate com'erano: %1").arg(result.restored),
                      QStringLiteral("Righe eliminate che ci sono di nuovo: %1").arg(result.brought),
                      QStringLiteral("Righe che restano come sono: %1").arg(result.keptCount)};
    for (const KeptRow& row : result.kept) {
        lines += QStringLiteral("  %1, RECORD_ID %2: %3").arg(row.table, QString::number(row.id), row.why);
    }
    if (result.emptied > 0) {
        lines += QStringLiteral("Le %1 righe che l'esecuzione ha eliminato svuotando le tabelle non tornano.")
                     .arg(result.emptied);
    }
    return lines;
}

} // namespace history
