#include "adapters/contract/kinds/PartyRows.h"

#include "adapters/contract/map/lookups.h"
#include "adapters/contract/write/missingCodes.h"
#include "core/Schema.h"
#include "core/schemaDefaults.h"
#include "sql/mod_ovTools.h"

namespace contract {

namespace {

using namespace rules;

bool IsBranch(const PartyRows& declared) { return declared.kind == PartyRow::Branch; }

std::vector<MapLine> UsualLines(const PartyRows& declared) {
    std::vector<MapLine> lines{{"CDCON", declared.owner, Code()}};
    if (IsBranch(declared)) {
        lines.emplace_back("SETIP", "", Constant("CO"));
        lines.emplace_back("SENAZ", "", Constant(schema::defaults::Country));
        lines.emplace_back("SEDEF", "", Constant(false));
    }
    return lines;
}

/// The declaration with what follows from it; the procedure and its needs live on it.
struct PartyRowsKind {
    explicit PartyRowsKind(PartyRows rows)
        : declared(std::move(rows)),
          mapping{IsBranch(declared) ? BranchTable : ContactTable, declared.source.table,
                  declared.lines.Over(UsualLines(declared))},
          essential(declared.lines.SourcesOf(IsBranch(declared) ? QStringLiteral("SEIND") : QStringLiteral("RFNOM"))),
          customer(declared.owner, KnownCustomer()),
          supplier(declared.owner, KnownSupplier()) {}

    contract::Needs Needs() const;

    PartyRows declared;
    Mapping mapping;
    QStringList essential; ///< source columns without which a row is none
    Field customer;        ///< CDCON of the counterparty
    Field supplier;
};

contract::Needs PartyRowsKind::Needs() const {
    contract::Needs needs = NeedsOf(mapping);
    needs.reads.push_back({declared.source.table, declared.roles.columns + QStringList{declared.owner}});
    needs.reads.push_back({declared.source.table, {}, declared.numbers.Names()});
    needs.reads.push_back({declared.source.table, {}, declared.party.Columns()});
    needs.writes = needs.writes + CounterpartyNeeds();
    return needs;
}

/// What a column of a contact holds, as messages say it; empty for none.
QString WordsOf(const schema::Column& column, const QVariant& value) {
    if (column.type == DataType::Bit) {
        return mod_ovTools::ToBoolean(value) ? QStringLiteral("sì") : QStringLiteral("no");
    }
    return mod_ovTools::ToText(value).trimmed();
}

bool IsCompared(const schema::Column& column) {
    return (column.size > 0 || column.type == DataType::Bit) && column.name != u"RFNOM" && column.name != u"CDCON";
}

/// How messages call a column of a contact: a mark by what it has him sent.
QString NameOfColumn(const QString& column) {
    static const QMap<QString, QString> sent{
        {"RFOFF", "offerte"}, {"RFORD", "ordini"}, {"RFDDT", "DDT"}, {"RFFAT", "fatture"}};
    return sent.contains(column) ? QStringLiteral("%1 (%2)").arg(column, sent.value(column)) : column;
}

/// A contact that is there stays as it is: what the source tells otherwise is told.
void TellOther(ImportRun& run, const TargetRow& contact, const Mapping& mapping, const Owner& there) {
    Session& session = run.GetSession();
    Recordset rows = session.Quadrix.ExecuteWC(
        QStringLiteral("SELECT * FROM %1 WHERE RECORD_ID = %2").arg(run.FullName(ContactTable), there.key));
    const SourceRow known(rows);
    for (const QString& column : mapping.TargetColumns()) {
        const schema::Column& of = *schema::FindTable(ContactTable)->FindColumn(column);
        if (!IsCompared(of) || !contact.IsSet(column)) {
            continue;
        }
        const QString told = WordsOf(of, contact.Value(column));
        const QString held = WordsOf(of, known.Value(column));
        if (!told.isEmpty() && held != told) {
            run.Log(QStringLiteral("RECAPITO DIVERSO: %1: %2 '%3' del riferimento '%4' in Quadrix è '%5', e resta")
                        .arg(run.RowKey(), NameOfColumn(column), told, known.Text("RFNOM"), held));
        }
    }
}

/// Whether a branch or contact that is there has numbers or addresses, which may have been mended since.
bool HasNumbers(Session& session, const Owner& there) {
    const QString ofIt =
        Equals(session, "TBNAM", there.table) + QStringLiteral(" AND ") + Equals(session, "TBKEY", there.key);
    return IdWhere(session, "NUM_TEL", ofIt) != 0 || IdWhere(session, "IND_WEB", ofIt) != 0;
}

/// Rows that the run has written so far of the kind, and of what hangs on them.
qint64 WrittenOf(const ImportRun& run, const PartyRowsKind& kind) {
    return run.WrittenRows(kind.mapping.targetTable) + run.WrittenRows("NUM_TEL") + run.WrittenRows("IND_WEB");
}

RowOutcome Write(ImportRun& run, const PartyRowsKind& kind, const SourceRow& row,
                 CounterpartyWriter::MetChildren& met) {
    if (std::all_of(kind.essential.begin(), kind.essential.end(),
                    [&row](const QString& column) { return row.IsBlank(column); })) {
        return run.Skip(IsBranch(kind.declared) ? QStringLiteral("sede senza indirizzo")
                                                : QStringLiteral("riferimento senza nome"));
    }
    const Roles roles = kind.declared.roles.of(row);
    const Field& party = kind.declared.party.IsSet() ? kind.declared.party
                         : roles.customer            ? kind.customer
                                                     : kind.supplier;
    const QString code = party.Text(run.GetSession(), row);
    if (code.isEmpty()) {
        return run.Skip(PartyMissing);
    }
    CounterpartyWriter writer(run, {}, &met);
    const Owner hangsOn{QStringLiteral("CON_TRO"), code, true};
    const qint64 before = WrittenOf(run, kind);
    TargetRow target = writer.NewRow(kind.mapping.targetTable);
    kind.mapping.Apply(target, run.GetSession(), row, {code});
    const BranchSource from{kind.mapping, row};
    if (FillsCodes(run)) { // contacts have none that could be given
        const bool isFilled = IsBranch(kind.declared) && writer.FillBranch(hangsOn, target, from);
        return isFilled ? RowOutcome::Updated : run.Skip(QStringLiteral("riga a cui non mancano codici"));
    }
    Owner owner = IsBranch(kind.declared) ? writer.Branch(hangsOn, target, &from) : writer.Contact(hangsOn, target);
    if (owner.known && !IsBranch(kind.declared)) {
        TellOther(run, target, kind.mapping, owner);
    }
    owner.isAgain = owner.known && HasNumbers(run.GetSession(), owner);
    writer.Numbers(owner, row, kind.declared.numbers);
    if (!owner.known) {
        return RowOutcome::Inserted;
    }
    return WrittenOf(run, kind) > before ? RowOutcome::Updated
                                         : run.Skip(QStringLiteral("già presente nella controparte"));
}

class PartyRowsImporter final : public Importer {
public:
    PartyRowsImporter(ImportRun& run, std::shared_ptr<const PartyRowsKind> kind)
        : Importer(run),
          m_kind(std::move(kind)) {}

    RowOutcome Row(const SourceRow& row) override { return Write(Run(), *m_kind, row, m_met); }

private:
    std::shared_ptr<const PartyRowsKind> m_kind;
    CounterpartyWriter::MetChildren m_met;
};

/// Telephones and addresses of the rows alone, not those of the counterparties.
Emptying EmptyingOf(const QString& table) {
    const QString where = QStringLiteral("TBNAM = '%1'").arg(table);
    return Truncated({table}) + Emptying{{.table = "NUM_TEL", .way = Emptied::Way::Delete, .where = where},
                                         {.table = "IND_WEB", .way = Emptied::Way::Delete, .where = where}};
}

} // namespace

Frame FrameOf(const PartyRows& declared) {
    return Over(declared.frame, IsBranch(declared) ? Frame{.announcement = "Inizio importazione sedi",
                                                           .step = "Sedi",
                                                           .completion = "Sedi importate correttamente!"}
                                                   : Frame{.announcement = "Inizio importazione riferimenti",
                                                           .step = "Riferimenti",
                                                           .completion = "Riferimenti importati correttamente!"});
}

ImportPart PartOf(const PartyRows& declared) {
    const auto kind = std::make_shared<const PartyRowsKind>(declared);
    return {.step = FrameOf(declared).step,
            .source = declared.source,
            .needs = kind->Needs(),
            .empties = EmptyingOf(kind->mapping.targetTable),
            .make = [kind](ImportRun& run, const QString&) { return std::make_unique<PartyRowsImporter>(run, kind); }};
}

} // namespace contract
