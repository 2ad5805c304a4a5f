// The phases of a bill.

#include "adapters/contract/map/lookups.h"
#include "adapters/contract/run/TargetRow.h"
#include "adapters/contract/write/Bill.h"
#include "adapters/contract/write/noLongerThere.h"

namespace contract {

using namespace schema::defaults;

namespace {

/// The phases of a bill, with what tells the generic one.
QString PhasesOf(ImportRun& run, qint64 bill) {
    return u"SELECT RECORD_ID, DLSEQ, DLLAV, DLTAP, DLTUP, DLCOS, DLNOT, DLFOR, DLMAC FROM " + run.FullName("DIS_FAS") +
           u" WHERE " + Equals("IDDIS", bill);
}

/// Whether a phase is the generic one as imports write it, with nothing that somebody has entered.
bool IsGenericAsWritten(const SourceRow& phase) {
    return phase.Value("DLSEQ").toInt() == FirstPhase && phase.Text("DLLAV") == GenericWork &&
           NumberOf(phase, "DLTAP") == 0 && NumberOf(phase, "DLTUP") == 0 && NumberOf(phase, "DLCOS") == 0 &&
           phase.IsBlank("DLNOT") && phase.IsBlank("DLFOR") && phase.IsBlank("DLMAC");
}

} // namespace

qint64 BillWriter::Write(const Phase& phase, const std::function<void(TargetRow&)>& more) {
    Session& session = m_run.GetSession();
    const int sequence = phase.sequence == 0 ? FirstPhase : phase.sequence;
    // A bill that is new has the phases alone that were written for it.
    const bool mayBeThere = m_wasThere || m_phases.contains(sequence);
    const qint64 known =
        mayBeThere
            ? IdWhere(session, "DIS_FAS", Equals("IDDIS", m_bill) + QStringLiteral(" AND ") + Equals("DLSEQ", sequence))
            : 0;
    m_phases.insert(sequence);
    TargetRow row(m_run, "DIS_FAS");
    row.Set("IDDIS", m_bill);
    row.Set("DLSEQ", sequence);
    row.Set("DLACT", PhaseActive);
    row.Set("DLLAV", phase.work.isEmpty() ? GenericWork : phase.work);
    row.Set("DLTAP", phase.setUpTime);
    row.Set("DLTUP", phase.unitTime);
    row.Set("DLTMP", TimeInMinutes);
    row.Set("DLNUP", Operators);
    row.Set("DLCOS", phase.cost);
    row.Set("DLNOT", phase.note);
    const auto setCode = [&row, known](const QString& column, const std::optional<QString>& code) {
        if (code && (known != 0 || !code->isEmpty())) {
            row.Set(column, code->isEmpty() ? QVariant() : QVariant(*code));
        }
    };
    setCode("DLFOR", phase.supplier);
    setCode("DLMAC", phase.machine);
    if (more) {
        more(row);
    }
    if (known != 0) {
        row.Update(QStringLiteral("WHERE ") + Equals("RECORD_ID", known));
    } else {
        row.Insert();
    }
    const qint64 id = known != 0 ? known : m_run.LastId("DIS_FAS");
    m_firstPhase = m_firstPhase == 0 ? id : m_firstPhase;
    return id;
}

/// The first phase of the bill begun last, where the generic one is not there as imports write it; none without phases.
BillWriter::KnownPhase BillWriter::FirstInPlaceOfGeneric() const {
    KnownPhase first;
    Recordset rows = m_run.GetSession().Quadrix.ExecuteWC(PhasesOf(m_run, m_bill) + u" ORDER BY DLSEQ, RECORD_ID");
    for (const SourceRow row(rows); !rows.Eof(); rows.MoveNext()) {
        if (IsGenericAsWritten(row)) {
            return {};
        }
        if (first.id == 0) {
            first = {row.Value("RECORD_ID").toLongLong(), row.Value("DLSEQ").toInt()};
        }
    }
    return first;
}

qint64 BillWriter::WriteGeneric() {
    m_tellsNoPhase = m_wasThere && !m_replaces;
    const KnownPhase first = m_tellsNoPhase ? FirstInPlaceOfGeneric() : KnownPhase();
    return first.id != 0 ? first.id : Write(Phase{});
}

qint64 BillWriter::KeepPhase() {
    m_tellsNoPhase = m_wasThere;
    if (const KnownPhase first = m_wasThere ? FirstInPlaceOfGeneric() : KnownPhase(); first.id != 0) {
        m_phases.insert(first.sequence);
        return first.id;
    }
    return Write(Phase{});
}

void BillWriter::ClosePhases() {
    if (!m_wasThere) {
        return;
    }
    if (m_replaces) {
        DropReplacedPhases();
        return;
    }
    const qint64 generic = TellPhasesLeft(m_run, m_bill, m_phases, &m_leftPhases);
    if (generic != 0 && m_firstPhase != 0) {
        DropPhase(generic);
    }
}

void BillWriter::DropReplacedPhases() {
    QList<qint64> replaced;
    {
        Recordset rows = m_run.GetSession().Quadrix.ExecuteWC(
            u"SELECT RECORD_ID, DLSEQ FROM " + m_run.FullName("DIS_FAS") + u" WHERE " + Equals("IDDIS", m_bill) +
            u" AND " + OfImports(m_run.GetSession()));
        for (; !rows.Eof(); rows.MoveNext()) {
            const qint64 id = rows.Fields(0).Value().toLongLong();
            if (!m_phases.contains(rows.Fields(1).Value().toInt()) && !m_leftPhases.contains(id)) {
                replaced.append(id);
            }
        }
    }
    for (const qint64 phase : replaced) {
        DropPhase(phase);
    }
}

/// What consumes components in place of a phase that goes is the first that the source tells.
void BillWriter::DropPhase(qint64 phase) {
    const QString consumed = Equals("IDDIS", m_bill) + QStringLiteral(" AND ") + Equals("IDDBL", phase);
    if (IdWhere(m_run.GetSession(), "DIS_COM", consumed) != 0) {
        TargetRow parts(m_run, "DIS_COM");
        parts.Set("IDDBL", m_firstPhase);
        parts.Update(QStringLiteral("WHERE ") + consumed);
    }
    m_run.DeleteRows("DIS_FAS", Equals("RECORD_ID", phase));
}

qint64 TellPhasesLeft(ImportRun& run, qint64 bill, const QSet<int>& told, QSet<qint64>* ids) {
    Session& session = run.GetSession();
    QStringList left;
    qint64 generic = 0;
    Recordset rows =
        session.Quadrix.ExecuteWC(PhasesOf(run, bill) + u" AND " + OfImports(session) + u" ORDER BY DLSEQ, RECORD_ID");
    for (const SourceRow row(rows); !rows.Eof(); rows.MoveNext()) {
        const int sequence = row.Value("DLSEQ").toInt();
        if (told.contains(sequence)) {
            continue;
        }
        if (IsGenericAsWritten(row)) {
            generic = row.Value("RECORD_ID").toLongLong();
        } else {
            left.append(QStringLiteral("'%1 %2'").arg(row.Text("DLSEQ"), row.Text("DLLAV")));
            if (ids != nullptr) {
                run.Remember(*ids, row.Value("RECORD_ID").toLongLong());
            }
        }
    }
    TellNoLongerThere(run, QStringLiteral("FASI"),
                      run.RowKey() + QStringLiteral(", ") + left.join(QStringLiteral(", ")), left.size());
    return generic;
}

int NumberBehind(ImportRun& run, int last, int own, int step, const std::function<QString()>& name) {
    if (own > last) {
        return own;
    }
    const int next = last + step;
    run.Log(QStringLiteral("FASE RINUMERATA: %1: sequenza '%2' scritta come %3")
                .arg(name(), own == 0 ? QString() : QString::number(own), QString::number(next)));
    return next;
}

} // namespace contract
