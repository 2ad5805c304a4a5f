#include "app/codes/changes.h"

#include "adapters/contract/map/lookups.h"
#include "adapters/contract/run/ImportRun.h"
#include "adapters/contract/run/RowTransaction.h"
#include "app/CompanyLock.h"
#include "core/nearNames.h"
#include "core/Schema.h"

#include <limits>

namespace codes {

namespace {

/// ": forse 'RD' (Rimessa diretta)?" for a code that a table does not have: those that are near, by code or
/// description.
QString NearOnes(const TargetCodes& targets, const QString& code) {
    QStringList names;
    for (const TargetCode& each : targets.All()) {
        names.append(each.code);
        names += each.description.isEmpty() ? QStringList() : QStringList(each.description);
    }
    QStringList near;
    for (const QString& name : NearNames(code, names)) {
        const TargetCode* byCode = targets.Find(name);
        const auto byDescription = targets.WithDescription(name);
        const TargetCode* target = byCode != nullptr ? byCode : byDescription.empty() ? nullptr : byDescription.front();
        const QString text =
            target == nullptr ? QString() : QStringLiteral("'%1' (%2)").arg(target->code, target->description);
        near += target == nullptr || near.contains(text) ? QStringList() : QStringList(text);
    }
    return near.isEmpty() ? QString() : QString(QStringLiteral(": forse ") + near.join(QStringLiteral(" o ")) + u'?');
}

void CheckSize(const QString& code, int size, const QString& what) {
    if (code.size() > size) {
        throw ImportError(QStringLiteral("'%1' ha %2 caratteri, %3 ne tiene %4")
                              .arg(code, QString::number(code.size()), what, QString::number(size)));
    }
}

/// Checks that a code that Quadrix does not have can be made from a change.
void CheckMaking(const BaseTable& base, const Change& change) {
    if (!CanBeMade(base)) {
        throw ImportError(
            QStringLiteral("in %1 un codice non si crea da qui: vuole più di codice e descrizione").arg(base.table));
    }
    if (change.description.trimmed().isEmpty()) {
        throw ImportError(QStringLiteral("per creare '%1' in %2 serve anche la descrizione del nuovo codice")
                              .arg(change.newCode, base.table));
    }
    const schema::Table& table = *schema::FindTable(base.table);
    CheckSize(change.newCode, table.FindColumn(base.column)->size, base.table + u'.' + base.column);
    const QString column = DescriptionColumn(base);
    CheckSize(change.description.trimmed(), table.FindColumn(column)->size, base.table + u'.' + column);
}

void MakeCode(contract::ImportRun& run, const BaseTable& base, const Change& change) {
    contract::TargetRow row(run, base.table);
    row.Set(base.column, change.newCode);
    row.Set(DescriptionColumn(base), change.description.trimmed());
    if (const QString external = ExternalColumn(base); !external.isEmpty()) {
        const int size = schema::FindTable(base.table)->FindColumn(external)->size;
        row.Set(external, change.oldCode.trimmed().left(size));
    }
    row.Insert();
}

/// Raises `ImportError` when the translation is no longer what the operator was shown.
void CheckUnchanged(Session& session, const Worklist& worklist, const Change& change) {
    const QString now =
        contract::StoredNewCode(session, change.table, change.field, change.oldCode).value_or(QString());
    const Code* shown = worklist.Find(change.table, change.field, change.oldCode);
    if (now != (shown == nullptr ? QString() : shown->newCode) && now != change.newCode) {
        throw ImportError(
            QStringLiteral("intanto qualcuno gli ha dato %1: rivedere la scelta e ripetere")
                .arg(now.isEmpty() ? QStringLiteral("nessun codice") : QStringLiteral("il codice '%1'").arg(now)));
    }
}

/// Writes the changes in the transaction that is open.
class Writer {
public:
    Writer(Worklist& worklist, contract::ImportRun& run)
        : m_worklist(worklist),
          m_run(run) {}

    void Write(const Change& change) {
        const Code* known = m_worklist.Find(change.table, change.field, change.oldCode);
        if (known != nullptr && known->newCode == change.newCode) {
            ++m_saved.unchanged;
            return;
        }
        CheckUnchanged(m_run.GetSession(), m_worklist, change);
        MakeMissing(change);
        contract::StoreNewCode(m_run, change.table, change.field, change.oldCode, change.newCode,
                               contract::Word::OfPerson);
        ++m_saved.changed;
    }
    const Saved& Result() const { return m_saved; }

private:
    void MakeMissing(const Change& change) {
        for (const BaseTable& base : m_worklist.ListOf(change.table, change.field).bases) {
            const QString name = base.table + u'.' + change.newCode;
            if (change.isMade && m_worklist.Targets(base).Find(change.newCode) == nullptr &&
                !m_saved.made.contains(name, Qt::CaseInsensitive)) {
                MakeCode(m_run, base, change);
                m_saved.made.append(name);
            }
        }
    }

    Worklist& m_worklist;
    contract::ImportRun& m_run;
    Saved m_saved;
};

} // namespace

Change Checked(Worklist& worklist, Change change) {
    change.table = change.table.left(NameLength);
    change.field = change.field.left(NameLength);
    change.newCode = change.newCode.trimmed();
    worklist.RequireList(change.table, change.field);
    const CodeList& list = worklist.ListOf(change.table, change.field);
    CheckSize(change.oldCode, schema::FindTable("SYS_IMP")->FindColumn("TBOLD")->size, QStringLiteral("SYS_IMP.TBOLD"));
    if (change.oldCode.isEmpty()) {
        throw ImportError(QStringLiteral("il codice dell'origine è vuoto"));
    }
    if (change.newCode.isEmpty()) {
        return change;
    }
    CheckSize(change.newCode, list.size, list.feeds.isEmpty() ? QStringLiteral("SYS_IMP.TBNEW") : FeedsText(list));
    for (const BaseTable& base : list.bases) {
        const TargetCodes& targets = worklist.Targets(base);
        if (const TargetCode* target = targets.Find(change.newCode)) {
            change.newCode = target->code;
        } else if (change.isMade) {
            CheckMaking(base, change);
        } else {
            throw ImportError(QStringLiteral("'%1' non è in %2%3")
                                  .arg(change.newCode, base.table, NearOnes(targets, change.newCode)));
        }
    }
    if (change.isMade && !list.bases.empty()) {
        change.newCode = modImport::FormatKeyField(worklist.GetSession(), change.newCode);
    }
    return change;
}

QString Saved::Text() const {
    QString text = QStringLiteral("Codici cambiati: %1; rimasti com'erano: %2").arg(changed).arg(unchanged);
    return made.isEmpty() ? text : QString(text + QStringLiteral("; creati: ") + made.join(QStringLiteral(", ")));
}

Saved Save(Worklist& worklist, const std::vector<Change>& changes) {
    Session& session = worklist.GetSession();
    const Operator::Busy busy(session.Person);
    const CompanyLock lock(session, {session.UserManager.Azienda()}, QStringLiteral("traduzione dei codici"));
    const ovErrors::Acting acting(session.Errors, ErrorAction::Abort);
    contract::ImportRun run(session, QStringLiteral("codes"), QStringLiteral("Save"), QStringLiteral("codes"));
    contract::RowTransaction transaction(session, std::numeric_limits<int>::max());
    transaction.BeginRow();
    Writer writer(worklist, run);
    for (const Change& change : changes) {
        try {
            writer.Write(Checked(worklist, change));
        } catch (Error& error) {
            error.AddContext(QStringLiteral("%1.%2, codice '%3'").arg(change.table, change.field, change.oldCode));
            throw;
        }
    }
    transaction.Commit();
    worklist.Refresh();
    return writer.Result();
}

} // namespace codes
