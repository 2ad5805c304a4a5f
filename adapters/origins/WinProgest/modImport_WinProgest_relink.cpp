// WinProgest: the link (DRORI) of document rows to the rows that they come from, of documents that are in Quadrix. Only
// documents whose number is unique within their year take part, and rows whose number is unique in theirs: of the
// others nobody can tell which row is meant.

#include "adapters/contract/map/lookups.h"
#include "adapters/contract/run/TriggersOff.h"
#include "adapters/origins/WinProgest/modImport_WinProgest.h"

using namespace contract;

namespace modImport_WinProgest {

namespace {

/// The one row of a Quadrix table that meets a condition; 0 when there is none, or more than one.
qint64 OnlyRow(Session& session, const QString& table, const QString& condition) {
    const Recordset found = session.Quadrix.ExecuteWC("SELECT MAX(RECORD_ID), COUNT(*) FROM " +
                                                      session.Quadrix.GetFullTableName(table) + " WHERE " + condition);
    return found.Fields(1).Value().toInt() == 1 ? found.Fields(0).Value().toLongLong() : 0;
}

/// The document of a number in a year.
qint64 OnlyHead(Session& session, const DocumentKind& kind, const QString& number, int year) {
    return OnlyRow(session, kind.family.head,
                   Equals(session, "DTNUM", number) + " AND " + Equals(session, "DTCAU", kind.cause) + " AND " +
                       Equals("DTANN", year));
}

qint64 RowOfHead(Session& session, const DocumentKind& kind, qint64 head, int row) {
    return head == 0 ? 0 : OnlyRow(session, kind.family.row, Equals("IDTES", head) + " AND " + Equals("DRNUM", row));
}

/// Whether the source has one document of a number in a year.
bool IsUnique(Session& session, const DocumentKind& kind, const QVariant& number, int year) {
    ovConnection& source = session.SourceConnection();
    return source.ExecuteCommand("SELECT COUNT(*) FROM " + kind.head + "\rWHERE NUMDOC = " + LiteralOf(source, number) +
                                 " AND YEAR(DATDOC) = " + QString::number(year)) == 1;
}

/// The link that a row fills in; null for a row that comes from no other.
const Link* LinkOf(const DocumentKind& kind, const SourceRow& row) {
    const auto link = std::find_if(kind.links.begin(), kind.links.end(),
                                   [&row](const Link& each) { return NumberOf(row, each.number) != 0; });
    return link == kind.links.end() ? nullptr : &*link;
}

/// RECORD_ID of the row that a row comes from; 0 when it is not in Quadrix, or not the only one.
qint64 OriginOf(Session& session, const Link& link, const SourceRow& row) {
    const QVariant day = DateOf(row, link.day);
    if (day.isNull()) {
        return 0;
    }
    const DocumentKind& from = Of(link.kind);
    const int year = day.toDate().year();
    if (!IsUnique(session, from, row.Value(link.number), year)) {
        return 0;
    }
    const qint64 head = OnlyHead(session, from, row.Text(link.number), year);
    return RowOfHead(session, from, head, WholeNumberOf(row, link.row));
}

/// Takes the link off a row that imports alone have written, and that comes from no other now. One that somebody has
/// changed by hand may have been linked by that one.
bool Unlink(ImportRun& run, const DocumentKind& kind, qint64 here, const SourceRow& row) {
    Session& session = run.GetSession();
    const Recordset found =
        session.Quadrix.ExecuteWC("SELECT DRORI, USMDF FROM " + session.Quadrix.GetFullTableName(kind.family.row) +
                                  " WHERE " + Equals("RECORD_ID", here) + " AND DRORI <> 0 AND " + OfImports(session));
    const QString changer = here == 0 || found.Eof() ? QString() : mod_ovTools::ToText(found.Value("USMDF")).trimmed();
    if (here == 0 || found.Eof() || (!changer.isEmpty() && !IsImportUser(changer))) {
        return false;
    }
    run.Log(QStringLiteral("COLLEGAMENTO TOLTO: %1, %2: DRORI era '%3'")
                .arg(run.RowKey(), NameOf(row, kind.rows, "NRIGA"), mod_ovTools::ToText(found.Value("DRORI"))));
    TargetRow target(run, kind.family.row);
    target.Set("DRORI", QVariant());
    target.Update("WHERE " + Equals("RECORD_ID", here));
    return true;
}

/// Links a row to the one it comes from. A row, or its origin, that is not in Quadrix is logged.
bool Relink(ImportRun& run, const DocumentKind& kind, qint64 head, const SourceRow& row) {
    Session& session = run.GetSession();
    const Link* link = LinkOf(kind, row);
    const qint64 here = RowOfHead(session, kind, head, WholeNumberOf(row, "NRIGA"));
    if (link == nullptr) {
        return Unlink(run, kind, here, row);
    }
    const qint64 origin = OriginOf(session, *link, row);
    if (here == 0 || origin == 0) {
        run.Log(QStringLiteral("RIGA NON RIALLINEATA: %1, %2: %3 in Quadrix, o non è la sola")
                    .arg(run.RowKey(), NameOf(row, kind.rows, "NRIGA"),
                         here == 0 ? QStringLiteral("non è")
                                   : QStringLiteral("la riga di origine '%1' del documento '%2' non è")
                                         .arg(row.Text(link->row), row.Text(link->number))));
        return false;
    }
    TargetRow target(run, kind.family.row);
    target.Set("DRORI", origin);
    target.Update("WHERE " + Equals("RECORD_ID", here));
    return true;
}

RowOutcome RelinkDocument(ImportRun& run, const DocumentKind& kind, const SourceRow& document) {
    Session& session = run.GetSession();
    const QString year = document.Text("ANNO");
    const qint64 head = OnlyHead(session, kind, document.Text("NUMDOC"), year.toInt());
    bool linked = false;
    ForEachChild(session,
                 "SELECT * FROM " + kind.rows +
                     "\rWHERE NUMDOC = " + LiteralOf(session.SourceConnection(), document.Value("NUMDOC")) +
                     " AND YEAR(DATDOC) = " + year + "\rORDER BY NRIGA",
                 kind.rows, "NRIGA", [&](const SourceRow& row) { linked = Relink(run, kind, head, row) || linked; });
    return linked ? RowOutcome::Updated : run.Skip("nessuna riga da ricollegare");
}

Needs NeedsOf(const DocumentKind& kind) {
    Needs needs{{}, {{kind.head, {"NUMDOC", "DATDOC"}}}, {{kind.family.row, {"IDTES", "DRNUM", "DRORI"}}}};
    TableNeed rows{kind.rows, {"NUMDOC", "DATDOC", "NRIGA"}};
    for (const Link& link : kind.links) {
        rows.columns << link.number << link.day << link.row;
        needs.reads.push_back({Of(link.kind).head, {"NUMDOC", "DATDOC"}});
    }
    needs.reads.push_back(rows);
    return needs;
}

struct KindQuestion {
    Kind kind;
    QString text;
};

const std::vector<KindQuestion>& Questions() {
    static const std::vector<KindQuestion> questions{
        {Kind::Orders, "Riallineare Ordini?"},
        {Kind::DeliveryNotes, "Riallineare DDT?"},
        {Kind::Invoices, "Riallineare Fatture?"},
        {Kind::ProForma, "Riallineare Fatture Pro Forma?"},
    };
    return questions;
}

} // namespace

const Needs& RiallineaNeeds() {
    static const Needs needs = [] {
        Needs all;
        for (const KindQuestion& question : Questions()) {
            const Needs one = NeedsOf(Of(question.kind));
            all.reads.insert(all.reads.end(), one.reads.begin(), one.reads.end());
        }
        all.writes = NeedsOf(Of(Kind::Orders)).writes;
        all.writes.push_back({Sales.head, {"DTNUM", "DTCAU", "DTANN"}});
        return all;
    }();
    return needs;
}

bool RiallineaDRORI(ImportRun& run, Kind which, const QString& singleCode) {
    Session& session = run.GetSession();
    const DocumentKind& kind = Of(which);
    if (kind.links.empty()) {
        session.Person.Message("Attenzione: tabella origine non specificata!", Icon::Exclamation);
        return true;
    }
    const QString unique = "SELECT NUMDOC, YEAR(DATDOC) AS ANNO FROM " + kind.head + "\rWHERE DATDOC IS NOT NULL" +
                           (singleCode.isEmpty() ? QString() : QString(" AND NUMDOC = " + run.Quoted(singleCode))) +
                           "\rGROUP BY NUMDOC, YEAR(DATDOC)\rHAVING COUNT(*) = 1";
    const QString count = "SELECT COUNT(*) FROM (" + unique + ") UNICI";
    if (session.SourceConnection().ExecuteCommand(count) == 0) {
        session.Person.Message("Attenzione: nessun documento trovato!", Icon::Exclamation);
        return true;
    }
    return run.Rows({kind.name, kind.head, "NUMDOC", count, unique + "\rORDER BY YEAR(DATDOC), NUMDOC"},
                    [&](const SourceRow& document) { return RelinkDocument(run, kind, document); });
}

void RiallineaDRORIWinProgest(Session& session, const QString& singleCode, bool /*reset*/) {
    ImportRun run(session, Module, "RiallineaDRORIWinProgest", singleCode);
    run.LogErrorsAs("Errore: ");
    run.Guard([&] {
        run.Announce("Inizio riallineamento DRORI WinProgest");
        std::vector<Kind> chosen;
        for (const KindQuestion& question : Questions()) {
            if (run.Ask(question.text)) {
                chosen.push_back(question.kind);
            }
        }
        for (const Kind kind : chosen) { // nothing of one is written when another lacks something
            if (!Of(kind).links.empty()) {
                run.Preflight(NeedsOf(Of(kind)));
            }
        }
        const TriggersOff triggers(run, DocumentRowTables());
        const bool toTheEnd =
            std::all_of(chosen.begin(), chosen.end(), [&](Kind kind) { return RiallineaDRORI(run, kind, singleCode); });
        if (toTheEnd && !chosen.empty()) {
            run.Complete(QStringLiteral("Riallineamento DRORI eseguito correttamente: %1 righe")
                             .arg(run.WrittenRows(Sales.row)));
        }
    });
}

} // namespace modImport_WinProgest
