#include "adapters/contract/kinds/Counterparties.h"

#include "adapters/contract/kinds/clearBlanks.h"
#include "adapters/contract/map/lookups.h"
#include "adapters/contract/write/Carrier.h"
#include "adapters/contract/write/cutTexts.h"
#include "adapters/contract/write/missingCodes.h"
#include "core/schemaDefaults.h"
#include "sql/mod_ovTools.h"

namespace contract {

namespace {

using namespace rules;

const QString Parties = QStringLiteral("CON_TRO");

/// The lines of names and addresses, which are lost where they are cut: the name of a counterparty goes on in a second
/// column, and of codes a part is kept.
Mapping TextsOf(const Mapping& mapping) {
    static const QStringList columns{"COIND", "COIN2", "COCIT", "SERAS", "SEIND", "SECIT", "SERIF", "RFNOM"};
    Mapping texts = mapping;
    std::erase_if(texts.lines, [](const MapLine& line) { return !columns.contains(line.target); });
    return texts;
}

/// A child table with its lines as a mapping.
template<class Declared>
struct Child {
    Declared declared;
    Mapping mapping;
    QStringList essential; ///< source columns without which a row is none
    Mapping texts = TextsOf(mapping);
};

std::vector<MapLine> UsualLines(const Counterparties& declared) {
    namespace usual = schema::defaults;
    const QString& key = declared.source.key;
    const QString code = BareColumns(key).value(0);
    const QString roles = declared.roles.columns.join(QStringLiteral(", "));
    std::vector<MapLine> lines{
        {"CDCON", code, Code()},
        {"COINV", "", Today()},
        {"COANN", "", Constant(false)},
        {"COCON", "", Constant(true)},
        {"COCLI", roles, IsCustomer()},
        {"COCGE", code, CustomerOnly(Text())},
        {"COFOR", roles, IsSupplier()},
        {"COFGE", code, SupplierOnly(Text())},
        {"CONAZ", "", Constant(usual::Country)},
        {"COLNG", "", Constant(usual::Language)},
        {"COVAL", "", Constant(usual::Currency)},
        {"COTPF", "", Constant(usual::TaxTreatment)},
        {"COBLK", "", Constant(false)},
    };
    if (declared.roles.knowsCarriers) {
        lines.emplace_back("COVET", roles, IsCarrier());
    }
    return lines;
}

std::vector<MapLine> UsualBranchLines(const Branches& branches) {
    const QString owner = branches.rows.on.empty() ? QString() : BareColumns(branches.rows.on.front().column).first();
    return {{"CDCON", owner, Code()},
            {"SETIP", "", Constant("CO")},
            {"SENAZ", "", Constant(schema::defaults::Country)},
            {"SEDEF", "", Constant(false)}};
}

std::vector<MapLine> UsualContactLines(const Contacts& contacts) {
    const QString owner = contacts.rows.on.empty() ? QString() : BareColumns(contacts.rows.on.front().column).first();
    return {{"CDCON", owner, Code()}};
}

/// The lines that tell which columns become telephone numbers, addresses and sites.
std::vector<Mapping> NumberPages(const QString& table, const NumberColumns& columns) {
    const auto page = [&table](const QString& target, const QString& column, const QString& text, QStringList sources) {
        sources.removeAll(QString());
        const Rule rule{text, [](const RuleInput&) { return RuleValue(); }};
        return Mapping{target, table, {{column, sources.join(QStringLiteral(", ")), rule}}};
    };
    std::vector<Mapping> pages{
        page("NUM_TEL", "NRNUM", "ognuna un numero, con l'etichetta del suo tipo",
             {columns.office, columns.office2, columns.fax, columns.mobile, columns.home, columns.telex}),
        page("IND_WEB", "WBIND", "ognuna un indirizzo: posta, sito", {columns.mail, columns.web})};
    std::erase_if(pages, [](const Mapping& one) { return one.SourceColumns().isEmpty(); });
    return pages;
}

/// The declaration with what follows from it; the procedure and its needs live on it.
class CounterpartiesKind {
public:
    explicit CounterpartiesKind(Counterparties counterparties)
        : declared(std::move(counterparties)) {
        const bool isRefresh = declared.writing == PartyWriting::Refreshed;
        for (Mapping& mapping : declared.source.Mappings(
                 Parties, declared.lines.Over(isRefresh ? std::vector<MapLine>() : UsualLines(declared)))) {
            texts.push_back(TextsOf(mapping));
            mappings.emplace_back(std::move(mapping));
        }
        const QString& parent = declared.source.table;
        if (declared.source.joins.empty()) { // else a line could read of two tables
            pages = NumberPages(parent, declared.numbers);
        }
        for (const Branches& each : declared.branches) {
            branches.push_back(
                {each, MappingOf(BranchTable, each, parent, UsualBranchLines(each)), each.lines.SourcesOf("SEIND")});
        }
        for (const Contacts& each : declared.contacts) {
            contacts.push_back(
                {each, MappingOf(ContactTable, each, parent, UsualContactLines(each)), each.lines.SourcesOf("RFNOM")});
        }
    }

    contract::Needs Needs() const;

    Counterparties declared;
    std::vector<CounterpartyMapping> mappings; ///< one for each table that is read
    std::vector<Mapping> texts;                ///< the texts of each
    std::vector<Child<Branches>> branches;
    std::vector<Child<Contacts>> contacts;
    std::vector<Mapping> pages; ///< of the numbers, for the page

private:
    template<class Declared>
    static Mapping MappingOf(const QString& target, const Declared& child, const QString& parent,
                             const std::vector<MapLine>& usual) {
        return {target, child.rows.table.isEmpty() ? parent : child.rows.table, child.lines.Over(usual)};
    }
};

/// How SYS_IMP knows what tells a counterparty apart.
CodeUse CodeOf(const Counterparties& declared) {
    return {.list = declared.codeTable.isEmpty() ? declared.source.table : declared.codeTable,
            .field = declared.codeName.isEmpty() ? BareColumns(declared.source.key).first() : declared.codeName,
            .table = QStringLiteral("CON_TRO"),
            .column = QStringLiteral("CDCON")};
}

contract::Needs CounterpartiesKind::Needs() const {
    const QString& table = declared.source.table;
    std::vector<Field> fields{declared.name,   declared.vatNumber, declared.taxCode, declared.number,
                              declared.sameAs, declared.created,   declared.told};
    for (const QString& column : declared.roles.columns) {
        fields.emplace_back(column);
    }
    contract::Needs needs = declared.source.NeedsOf(fields);
    for (const QString& column : declared.numbers.Names()) {
        const TableNeed need = declared.source.NeedsOf({Field(column)}).reads.front();
        needs.reads.push_back({need.table, {}, need.columns});
    }
    for (const CounterpartyMapping& mapping : mappings) {
        for (const Mapping* each : mapping.All()) {
            needs = needs + NeedsOf(*each);
        }
    }
    for (const Mapping& page : pages) {
        needs = needs + NeedsOf(page);
    }
    const auto add = [&](const auto& children) {
        for (const auto& child : children) {
            const ChildTable& rows = child.declared.rows;
            needs = needs + NeedsOf(child.mapping) + rows.OwnNeeds(table);
            if (const QStringList names = child.declared.numbers.Names(); !names.isEmpty()) {
                needs.reads.push_back({child.mapping.sourceTable, {}, names});
            }
        }
    };
    add(branches);
    add(contacts);
    needs.writes = needs.writes + CounterpartyNeeds();
    needs.codes.push_back(CodeOf(declared));
    needs.writes.push_back({"SYS_IMP", {"TBNAM", "TBFLD", "TBOLD", "TBNEW"}});
    return needs + declared.further;
}

class CounterpartyImporter final : public Importer {
public:
    CounterpartyImporter(ImportRun& run, std::shared_ptr<const CounterpartiesKind> kind, QString singleCode)
        : Importer(run),
          m_kind(std::move(kind)),
          m_singleCode(std::move(singleCode)),
          m_parties(run),
          m_carriers(run, m_parties) {
        if (m_kind->declared.writing == PartyWriting::Refreshed) {
            m_earlier.emplace(run);
        }
    }

    void Begin() override {
        if (m_kind->declared.before) {
            m_kind->declared.before(Run(), m_singleCode);
        }
    }
    RowOutcome Row(const SourceRow& row) override;
    void EndParts() override { m_parties.TellCancelled(); }

private:
    SourceIdentity IdentityOf(const SourceRow& row, const Roles& roles) const;
    Placement PlaceOf(const SourceRow& row, const SourceIdentity& identity) const;
    RowOutcome Refresh(const SourceRow& row, const Roles& roles);
    void RefreshColumns(const SourceRow& row, const QString& code, const Roles& roles);
    PartyMarks MarksOf(const SourceRow& row, const Roles& roles) const;
    RowOutcome Write(CounterpartyWriter& writer, const SourceRow& row, const Placement& place, const Roles& roles,
                     const Joining& joining);
    RowOutcome FillCodesOf(CounterpartyWriter& writer, const SourceRow& row, const Placement& place,
                           const Roles& roles) const;
    void WriteHanging(CounterpartyWriter& writer, const SourceRow& row, const Owner& owner);
    template<class Declared>
    void ForEach(const Child<Declared>& child, const SourceRow& row,
                 const std::function<void(const SourceRow&)>& work) const;

    std::shared_ptr<const CounterpartiesKind> m_kind;
    QString m_singleCode;
    CounterpartyRegister m_parties;
    Carriers m_carriers;
    std::optional<EarlierImports> m_earlier; ///< of a refresh
};

RowOutcome CounterpartyImporter::Row(const SourceRow& row) {
    const Counterparties& declared = m_kind->declared;
    if (const QString rule = declared.leavesOut ? declared.leavesOut(row) : QString(); !rule.isEmpty()) {
        return Run().Skip(rule);
    }
    const Roles roles = declared.roles.of(row);
    if (const QString rule = declared.cancelled ? declared.cancelled(row) : QString(); !rule.isEmpty()) {
        m_parties.NoteCancelled(roles, row.Text(BareColumns(declared.source.key).first()));
        return Run().Skip(rule);
    }
    if (!roles.customer && !roles.supplier && !roles.carrier) {
        Run().Log(QStringLiteral("NÉ CLIENTE NÉ FORNITORE: %1").arg(Run().RowKey()));
        return Run().Skip(QStringLiteral("né cliente né fornitore"));
    }
    if (declared.writing == PartyWriting::Refreshed) {
        return Refresh(row, roles);
    }
    SourceIdentity identity = IdentityOf(row, roles);
    identity.marks = MarksOf(row, roles);
    m_parties.Meet(identity);
    const bool onlyCarrier = !roles.customer && !roles.supplier;
    Placement place = onlyCarrier ? m_carriers.Place(identity) : PlaceOf(row, identity);
    CounterpartyWriter writer(Run(), declared.created.Value(GetSession(), row));
    if (FillsCodes(Run())) {
        return place.known ? FillCodesOf(writer, row, place, roles) : SkipGone(Run());
    }
    const Joining joining = m_parties.Join(identity, place);
    place.isAgain = joining.isAgain;
    const RowOutcome outcome = Write(writer, row, place, roles, joining);
    WriteHanging(writer, row, OwnerOf(place));
    if (onlyCarrier) {
        m_carriers.Remember(identity, place.code);
    }
    return outcome;
}

RowOutcome CounterpartyImporter::Refresh(const SourceRow& row, const Roles& roles) {
    const SourceIdentity identity = IdentityOf(row, roles);
    const QString code = m_parties.ImportedBefore(identity);
    if (code.isEmpty()) {
        Run().Log(QStringLiteral("CONTROPARTE NON TROVATA: %1").arg(Run().RowKey()));
        return Run().Skip(PartyMissing);
    }
    CounterpartyWriter writer(Run(), m_kind->declared.created.Value(GetSession(), row));
    if (FillsCodes(Run())) {
        return FillCodesOf(writer, row, {code, true}, roles);
    }
    const Roles held = m_parties.RolesHeld(identity, code);
    if (held.customer || held.supplier || held.carrier) { // else another row, of the same counterparty, has the columns
        RefreshColumns(row, code, held);
    }
    m_earlier->Drop(code);
    WriteHanging(writer, row, {Parties, code, true});
    return RowOutcome::Updated;
}

void CounterpartyImporter::RefreshColumns(const SourceRow& row, const QString& code, const Roles& roles) {
    TargetRow target(Run(), Parties);
    // A supplier who is a customer too has everything but the columns of a supplier from the customer's row.
    const bool isFurther =
        roles.supplier && !roles.customer && !LookUp(GetSession(), Parties, "CDCON", code, "COCGE").isEmpty();
    for (const CounterpartyMapping& mapping : m_kind->mappings) {
        const Mapping& lines = isFurther ? mapping.Role(false) : mapping.Whole();
        lines.Apply(target, GetSession(), row, {code, roles});
        ClearBlanks(target, GetSession(), row, lines, roles);
    }
    if (m_kind->declared.more) {
        m_kind->declared.more(Run(), row, target);
    }
    target.Update(QStringLiteral("WHERE CDCON = ") + Run().Quoted(code));
}

/// Who a row is. Without a code nobody would know it again: neither a second import nor its documents.
SourceIdentity CounterpartyImporter::IdentityOf(const SourceRow& row, const Roles& roles) const {
    const Counterparties& declared = m_kind->declared;
    const QString key = BareColumns(declared.source.key).first();
    const QString code = row.Text(key);
    if (code.isEmpty()) {
        throw ImportError(QStringLiteral("colonna '%1': il codice manca").arg(key));
    }
    const auto text = [&](const Field& field) { return field.Text(GetSession(), row); };
    const CodeUse use = CodeOf(declared);
    return {use.list,
            use.field,
            code,
            roles,
            text(declared.name),
            text(declared.vatNumber),
            text(declared.taxCode),
            text(declared.number),
            text(declared.told)};
}

Placement CounterpartyImporter::PlaceOf(const SourceRow& row, const SourceIdentity& identity) const {
    QString same = m_kind->declared.sameAs.Text(GetSession(), row, {{}, identity.roles});
    if (!same.isEmpty() && !m_kind->declared.sameIsTold) {
        same = m_parties.NoStranger(identity, same);
    }
    if (same.isEmpty()) {
        return m_parties.Place(identity);
    }
    m_parties.TellMerge(identity, same);
    return {same, true};
}

PartyMarks CounterpartyImporter::MarksOf(const SourceRow& row, const Roles& roles) const {
    const bool tells = std::any_of(m_kind->mappings.begin(), m_kind->mappings.end(),
                                   [](const CounterpartyMapping& one) { return !one.Marks().lines.empty(); });
    if (!tells) {
        return {};
    }
    TargetRow told(Run(), Parties);
    for (const CounterpartyMapping& mapping : m_kind->mappings) {
        mapping.Marks().Apply(told, GetSession(), row, {{}, roles});
    }
    const auto mark = [&told](const char* column) {
        const QVariant value = told.Value(column);
        return value.isValid() ? std::optional(mod_ovTools::ToBoolean(value)) : std::nullopt;
    };
    return {mark("COANN"), mark("COBLK")};
}

/// What the columns of a counterparty that is there become where another row of the source, or a list of prices of its
/// own, has a say in them.
void SetJoined(TargetRow& target, const QString& party, const Joining& joining) {
    if (joining.keeps.customer) {
        target.Set("COCLI", true);
    }
    if (joining.keeps.supplier) {
        target.Set("COFOR", true);
    }
    if (joining.isRevived) {
        target.Set("COANN", false);
    }
    for (const QString& column : joining.ownLists) {
        if (target.Value(column).isValid()) {
            target.Set(column, party);
        }
    }
}

RowOutcome CounterpartyImporter::Write(CounterpartyWriter& writer, const SourceRow& row, const Placement& place,
                                       const Roles& roles, const Joining& joining) {
    for (const CounterpartyMapping& mapping : m_kind->mappings) {
        m_parties.NoteDiscounts(mapping.Discounts(), row, place, joining);
    }
    Roles written = roles;
    written.customer = roles.customer && !joining.keeps.customer;
    written.supplier = roles.supplier && !joining.keeps.supplier;
    const auto more = [&](TargetRow& target) {
        for (size_t i = 1; i < m_kind->mappings.size(); ++i) {
            writer.Apply(m_kind->mappings[i], row, place, written, target);
        }
        if (place.known && roles.carrier) {
            target.Set("COVET", true);
        }
        if (m_kind->declared.more && !joining.isStranger) {
            m_kind->declared.more(Run(), row, target);
        }
        SetJoined(target, place.code, joining);
        m_parties.KeepDiscounts(target, roles, place, joining);
        if (!place.known) {
            for (const Mapping& texts : m_kind->texts) {
                TellCut(Run(), texts, row, target);
            }
            TellLostZeros(Run(), target);
        }
    };
    return writer.Write(m_kind->mappings.front(), row, place, written, more);
}

/// A counterparty that is there, and its branches, get the codes that they lack, and nothing else.
RowOutcome CounterpartyImporter::FillCodesOf(CounterpartyWriter& writer, const SourceRow& row, const Placement& place,
                                             const Roles& roles) const {
    const Roles own = m_parties.RolesToWrite(roles);
    if (!own.customer && !own.supplier && !own.carrier) {
        return Run().Skip(QStringLiteral("il codice è di un'altra controparte, che resta com'è"));
    }
    const MissingCodes missing(Run(), Parties, {place.code, own});
    TargetRow target(Run(), Parties);
    for (const CounterpartyMapping& mapping : m_kind->mappings) {
        missing.Apply(mapping.Whole(), row, target);
    }
    if (m_kind->declared.more) {
        TargetRow further(Run(), Parties);
        m_kind->declared.more(Run(), row, further);
        missing.Take(further, m_kind->declared.further.mappings, target);
    }
    bool filledBranch = false;
    for (const Child<Branches>& child : m_kind->branches) {
        ForEach(child, row, [&](const SourceRow& one) {
            TargetRow branch = writer.NewRow(BranchTable);
            child.mapping.Apply(branch, GetSession(), one, {place.code});
            filledBranch = writer.FillBranch(OwnerOf(place), branch, {child.mapping, one}) || filledBranch;
        });
    }
    const RowOutcome outcome = missing.Write(target);
    return filledBranch ? RowOutcome::Updated : outcome;
}

template<class Declared>
void CounterpartyImporter::ForEach(const Child<Declared>& child, const SourceRow& row,
                                   const std::function<void(const SourceRow&)>& work) const {
    child.declared.rows.ForEach(GetSession(), row, [&](const SourceRow& one) {
        const bool isNone = std::all_of(child.essential.begin(), child.essential.end(),
                                        [&one](const QString& column) { return one.IsBlank(column); });
        if (!isNone) {
            work(one);
        }
    });
}

void CounterpartyImporter::WriteHanging(CounterpartyWriter& writer, const SourceRow& row, const Owner& owner) {
    writer.Numbers(owner, row, m_kind->declared.numbers);
    for (const Child<Branches>& child : m_kind->branches) {
        ForEach(child, row, [&](const SourceRow& one) {
            TargetRow target = writer.NewRow(BranchTable);
            child.mapping.Apply(target, GetSession(), one, {owner.key});
            const BranchSource from{child.mapping, one};
            const Owner branch = writer.Branch(owner, target, &from);
            if (!branch.known) {
                TellCut(Run(), child.texts, one, target);
            }
            writer.Numbers(branch, one, child.declared.numbers);
        });
    }
    for (const Child<Contacts>& child : m_kind->contacts) {
        ForEach(child, row, [&](const SourceRow& one) {
            TargetRow target = writer.NewRow(ContactTable);
            child.mapping.Apply(target, GetSession(), one, {owner.key});
            writer.Numbers(writer.Contact(owner, target), one, child.declared.numbers);
        });
    }
    if (m_kind->declared.after) {
        m_kind->declared.after(Run(), writer, row, owner);
    }
}

const Frame UsualCounterparties{.module = {},
                                .procedure = {},
                                .announcement = "Inizio importazione controparti",
                                .step = "Controparti",
                                .completion = "Controparti importate correttamente!"};

} // namespace

Frame FrameOf(const Counterparties& declared) { return Over(declared.frame, UsualCounterparties); }

ImportPart PartOf(const Counterparties& declared) {
    const auto kind = std::make_shared<const CounterpartiesKind>(declared);
    return {.step = FrameOf(declared).step,
            .source = declared.source,
            .needs = kind->Needs(),
            .empties =
                declared.empties && declared.writing == PartyWriting::Imported ? CounterpartyEmptying() : Emptying(),
            .make = [kind](ImportRun& run, const QString& singleCode) {
                return std::make_unique<CounterpartyImporter>(run, kind, singleCode);
            }};
}

} // namespace contract
