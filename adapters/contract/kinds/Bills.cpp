#include "adapters/contract/kinds/Bills.h"

#include "adapters/contract/map/emptyDays.h"
#include "adapters/contract/map/wholeNumbers.h"
#include "adapters/contract/write/Article.h"
#include "adapters/contract/write/missingCodes.h"
#include "core/italianText.h"
#include "core/modImport.h"
#include "core/schemaDefaults.h"
#include "sql/mod_ovTools.h"

namespace contract {

namespace {

/// The declaration with what follows from it; the procedure and its needs live on it.
class BillsKind {
public:
    explicit BillsKind(Bills bills)
        : declared(std::move(bills)),
          key(declared.sourceKey.IsSet() ? declared.sourceKey : Field(BareColumns(declared.source.key).first())) {
        const QString& table = declared.source.table;
        for (Mapping& mapping : declared.source.Mappings("DIS_BAS", HeadLines())) {
            mappings.push_back(std::move(mapping));
        }
        head = {"DIS_BAS", table, declared.lines.Over({})};
        if (declared.phases) {
            const BillPhases& phase = *declared.phases;
            ofPhase = {"DIS_FAS", phase.rows.table, phase.lines.Over({})};
            mappings.push_back({"DIS_FAS", phase.rows.table, phase.lines.Over(NamedLines(phase))});
            if (phase.sendsComponents && phase.isOutside.IsSet()) {
                mappings.push_back(FieldMapping("DIS_COM", phase.rows.table, {{"DCCTL", phase.isOutside}}));
            }
        }
        const BillComponents& part = declared.components;
        ofComponent = {"DIS_COM", part.rows.table, part.lines.Over({})};
        mappings.push_back({"DIS_COM", part.rows.table, part.lines.Over(NamedLines(part))});
    }

    contract::Needs Needs() const {
        const QString& table = declared.source.table;
        const ChildTable& parts = declared.components.rows;
        contract::Needs needs =
            parts.OwnNeeds(table) + parts.NeedsOf(table, {declared.components.from, declared.components.until});
        for (const Mapping& mapping : mappings) {
            needs = needs + NeedsOf(mapping);
        }
        if (declared.phases) {
            needs = needs + OfJoins(declared.phases->rows.OwnNeeds(table)) +
                    declared.phases->rows.NeedsOf(table, {declared.phases->key});
        }
        needs.writes = needs.writes + BillNeeds();
        return needs + declared.further;
    }

    /// Whether rows of components tell their phase, each once more; rows of their own are a phase each.
    bool PhasesOfComponents() const {
        const ChildTable& parts = declared.components.rows;
        const ChildTable& phases = declared.phases->rows;
        return phases.table == parts.table && (parts.where.isEmpty() || phases.where == parts.where);
    }

    /// What the open source lacks of a table's columns.
    QStringList LackingIn(Session& session, const QString& table) const {
        QStringList columns;
        for (const Mapping& mapping : mappings) {
            columns += mapping.targetTable == table ? mapping.LackingColumns(session) : QStringList();
        }
        return columns;
    }

    Bills declared;
    Field key;
    std::vector<Mapping> mappings;
    Mapping head = {};    ///< its further columns
    Mapping ofPhase = {}; ///< the same of a phase
    Mapping ofComponent = {};

private:
    /// Columns of a source row that one of its joins gives are that table's, not the first one's.
    contract::Needs OfJoins(contract::Needs needs) const {
        for (TableNeed& need : needs.reads) {
            for (const Join& join : declared.source.joins) {
                if (need.table == declared.source.table) {
                    need.columns.removeIf([&join](const QString& column) { return join.columns.contains(column); });
                }
            }
        }
        return needs;
    }
    std::vector<MapLine> HeadLines() const {
        return declared.lines.Over(FieldMapping("DIS_BAS", {},
                                                {{"DBART", declared.article},
                                                 {"IDOLD", key},
                                                 {"DBREV", declared.revision},
                                                 {"DBMAN", declared.active},
                                                 {"DBNOT", declared.note}})
                                       .lines);
    }
    static std::vector<MapLine> NamedLines(const BillPhases& phase) {
        return FieldMapping("DIS_FAS", {},
                            {{"DLSEQ", phase.number},
                             {"DLLAV", phase.work},
                             {"DLNOT", phase.note},
                             {"DLTAP", phase.setUpTime},
                             {"DLTUP", phase.unitTime},
                             {"DLCOS", phase.cost},
                             {"DLFOR", phase.supplier},
                             {"DLMAC", phase.machine}})
            .lines;
    }
    static std::vector<MapLine> NamedLines(const BillComponents& part) {
        return FieldMapping("DIS_COM", {},
                            {{"DCART", part.article},
                             {"DCQTA", part.quantity},
                             {"DCNOT", part.note},
                             {"DCPOS", part.position},
                             {"IDDBL", part.phase}})
            .lines;
    }
};

/// The revision of a bill as the source writes it.
struct SourceRevision {
    QString text;
    bool isNull = true; ///< another one than a blank: their components are others

    bool operator==(const SourceRevision&) const = default;
};

SourceRevision RevisionOf(const SourceRow& row, const Field& revision) {
    QStringList texts;
    bool isNull = true;
    for (const QString& column : revision.Columns()) {
        texts.append(row.Text(column));
        isNull = isNull && row.Value(column).isNull();
    }
    return {texts.join(u' '), isNull};
}

/// A code; empty for a blank one, none for one that is not known or not told.
/// @param isNone whether there is none, whatever the field holds
std::optional<QString> CodeOrCleared(Session& session, const Field& field, const SourceRow& row, bool isNone = false) {
    const QString code = field.Text(session, row);
    const bool isKept = code.isEmpty() && !(field.IsGiven(session, row) && (isNone || field.IsBlank(row)));
    return isKept ? std::nullopt : std::optional(code);
}

/// The phases of the bill under way: RECORD_ID of the first, and of each by its key.
struct Phases {
    qint64 first = 0;
    QHash<QString, qint64> byKey = {};
    QSet<qint64> outside = {}; ///< those whose components are sent
};

/// The phases of a bill that the rows of its components tell, each once more: the first row with a work tells it, else
/// the first one.
class ToldPhases {
public:
    ToldPhases(const BillPhases& phases, Session& session)
        : m_phases(phases),
          m_session(session) {}

    /// Takes in a row, all of them before the first is asked about.
    void Read(const SourceRow& row) {
        if (HasWork(row)) {
            m_withWork.insert(KeyOf(row));
        }
    }
    /// Whether it is the row that tells its phase. A work beside that of the phase is logged.
    bool IsFirst(ImportRun& run, const SourceRow& row, const QString& work) {
        const QString key = KeyOf(row);
        const auto before = m_works.constFind(key);
        if (before == m_works.cend()) {
            const bool tells = HasWork(row) || !m_withWork.contains(key);
            if (tells) {
                m_works.insert(key, work);
            }
            return tells;
        }
        if (HasWork(row) && before->compare(work, Qt::CaseInsensitive) != 0) {
            run.Log(QStringLiteral("FASE CON DUE LAVORAZIONI: %1: '%2', resta '%3'")
                        .arg(m_phases.rows.Name(row), work, *before));
        }
        return false;
    }

private:
    bool HasWork(const SourceRow& row) const {
        const QStringList columns = m_phases.work.Columns();
        return std::any_of(columns.begin(), columns.end(), [&row](const QString& one) { return !row.IsBlank(one); });
    }
    QString KeyOf(const SourceRow& row) const { return m_phases.key.Text(m_session, row); }

    const BillPhases& m_phases;
    Session& m_session;
    QSet<QString> m_withWork;        ///< keys
    QHash<QString, QString> m_works; ///< of the phases told, by key
};

class BillImporter final : public Importer {
public:
    BillImporter(ImportRun& run, std::shared_ptr<const BillsKind> kind, QString singleCode)
        : Importer(run),
          m_kind(std::move(kind)),
          m_singleCode(std::move(singleCode)),
          m_writer(run) {}

    RowOutcome Row(const SourceRow& row) override;
    bool End() override;
    QString Completion(const QString& text) const override { return m_writer.Completion(text); }

private:
    bool IsFurther(const SourceRow& row);
    bool GivesWay(const SourceRow& row, BillHead& head);
    Phases WritePhases(const SourceRow& bill);
    int SequenceOf(const BillPhases& phases, const SourceRow& row, int last) const;
    qint64 PhaseOf(const SourceRow& row, const Phases& phases) const;
    bool IsOutOfItsDays(const SourceRow& row) const;
    void WriteComponent(const SourceRow& row, const Phases& phases);

    std::shared_ptr<const BillsKind> m_kind;
    QString m_singleCode;
    BillWriter m_writer;
    QHash<QString, QString> m_firsts; ///< key of the first bill of each article, in the source
    QHash<std::pair<QString, qint64>, SourceRevision> m_revisions; ///< of the source, by article and number
    bool m_found = false;
};

RowOutcome BillImporter::Row(const SourceRow& row) {
    const Bills& declared = m_kind->declared;
    Session& session = GetSession();
    m_found = true;
    if (const QString rule = declared.leavesOut ? declared.leavesOut(row) : QString(); !rule.isEmpty()) {
        return Run().Skip(rule);
    }
    if (IsFurther(row)) {
        return Run().Skip(declared.furtherRows);
    }
    const QString article = declared.article.Text(session, row);
    if (!IsImported(Run(), article)) {
        m_writer.Meet(article);
        return Run().Skip(ArticleMissing);
    }
    BillHead head{article, m_kind->key.Text(session, row)};
    head.wholeKey = GroupText(row, m_kind->key.Columns());
    if (declared.revision.IsSet()) {
        head.revision = declared.revision.Number(session, row);
    }
    head.active = declared.active.Value(session, row);
    head.alone = declared.oneInForce;
    if (declared.note.IsGiven(session, row)) {
        head.note = declared.note.Text(session, row);
    }
    if (FillsCodes(Run()) && m_writer.Find(head) == 0) {
        return SkipGone(Run());
    }
    if (GivesWay(row, head)) {
        return Run().Skip(QStringLiteral("revisione già importata"));
    }
    const RowOutcome outcome =
        m_writer.Begin(head, [&](TargetRow& target) { m_kind->head.Apply(target, session, row, {article}); });
    const Phases phases = WritePhases(row);
    declared.components.rows.ForEach(session, row, [&](const SourceRow& one) { WriteComponent(one, phases); });
    if (declared.after) {
        declared.after(Run(), m_writer, row);
    }
    if (declared.phases) {
        m_writer.ClosePhases();
    }
    m_writer.TellComponentsLeft();
    return outcome;
}

/// Whether the article of the source has a bill before this one and may have that alone. It stays the first when it is
/// given up or done again, whatever has failed: no other one takes its place.
bool BillImporter::IsFurther(const SourceRow& row) {
    const Bills& declared = m_kind->declared;
    if (declared.furtherRows.isEmpty()) {
        return false;
    }
    const QString bill = GroupText(row, m_kind->key.Columns());
    const QString article = GroupText(row, declared.article.Columns());
    if (!m_firsts.contains(article)) {
        m_firsts.insert(article, bill);
    }
    return m_firsts.value(article) != bill;
}

/// Whether another revision of the source has become the same number in Quadrix, and stays.
bool BillImporter::GivesWay(const SourceRow& row, BillHead& head) {
    const Bills& declared = m_kind->declared;
    if (!declared.revision.IsSet()) {
        return false;
    }
    const SourceRevision own = RevisionOf(row, declared.revision);
    const std::pair key(head.article.toUpper(), head.revision.toLongLong());
    const auto before = m_revisions.constFind(key);
    const std::optional<SourceRevision> other =
        before == m_revisions.cend() ? std::nullopt : std::optional<SourceRevision>(*before);
    const bool isAnother = other && *other != own;
    const bool givesWay = isAnother && !(declared.active.IsSet() && mod_ovTools::ToBoolean(head.active));
    head.replaces = isAnother && !givesWay;
    if (isAnother) {
        Run().Log((givesWay ? QStringLiteral("REVISIONE RIPETUTA: %1: '%2' diventa %3 come '%4', che rimane")
                            : QStringLiteral("REVISIONE RIPETUTA: %1: '%2' diventa %3 come '%4', e la sostituisce"))
                      .arg(Run().RowKey(), own.text, QString::number(key.second), other->text));
    }
    if (!givesWay && other != own) {
        Run().WhenTakenBack([this, key, other] {
            m_revisions.remove(key);
            if (other) {
                m_revisions.insert(key, *other);
            }
        });
        m_revisions.insert(key, own);
    }
    return givesWay;
}

bool BillImporter::End() {
    if (Run().IsSingle() && !m_found) {
        m_writer.TellMissing(m_singleCode);
        return false;
    }
    if (m_kind->declared.hasAll) {
        m_writer.TellBillsLeft();
    }
    m_writer.LinkSubAssemblies();
    return true;
}

int BillImporter::SequenceOf(const BillPhases& phases, const SourceRow& row, int last) const {
    if (!phases.number.IsSet()) {
        return last + schema::defaults::FirstPhase;
    }
    return NumberBehind(Run(), last, phases.number.WholeNumber(GetSession(), row), schema::defaults::FirstPhase,
                        [&] { return phases.rows.Name(row); });
}

Phases BillImporter::WritePhases(const SourceRow& bill) {
    Phases written;
    if (m_kind->declared.phases) {
        const BillPhases& phases = *m_kind->declared.phases;
        Session& session = GetSession();
        int last = 0;
        ToldPhases told(phases, session);
        if (m_kind->PhasesOfComponents() && phases.work.IsSet()) {
            phases.rows.ForEach(session, bill, [&told](const SourceRow& row) { told.Read(row); });
        }
        phases.rows.ForEach(session, bill, [&](const SourceRow& row) {
            const QString work = phases.work.Text(session, row);
            if (m_kind->PhasesOfComponents() && !told.IsFirst(Run(), row, work)) {
                return;
            }
            last = SequenceOf(phases, row, last);
            const bool toldInside =
                phases.isOutside.IsGiven(session, row) && !mod_ovTools::ToBoolean(phases.isOutside.Value(session, row));
            const Phase phase{last,
                              work,
                              phases.note.Text(session, row),
                              phases.setUpTime.Number(session, row),
                              phases.unitTime.Number(session, row),
                              phases.cost.Number(session, row),
                              CodeOrCleared(session, phases.supplier, row, toldInside),
                              CodeOrCleared(session, phases.machine, row)};
            const qint64 id = m_writer.Write(phase, [&](TargetRow& target) {
                target.KeepThere(m_kind->LackingIn(session, target.Table()));
                m_kind->ofPhase.Apply(target, session, row, {});
            });
            written.first = written.first == 0 ? id : written.first;
            const bool isOutside =
                phases.isOutside.IsGiven(session, row) ? !toldInside : !phase.supplier.value_or(QString()).isEmpty();
            if (phases.sendsComponents && isOutside) {
                written.outside.insert(id);
            }
            const QString key = phases.key.Text(session, row);
            if (!written.byKey.contains(key)) {
                written.byKey.insert(key, id);
            }
        });
    }
    if (written.first == 0) {
        written.first = m_kind->declared.phases ? m_writer.WriteGeneric() : m_writer.KeepPhase();
    }
    return written;
}

qint64 BillImporter::PhaseOf(const SourceRow& row, const Phases& phases) const {
    const BillComponents& parts = m_kind->declared.components;
    const QString key = parts.phase.Text(GetSession(), row);
    const auto found = phases.byKey.constFind(key);
    if (found != phases.byKey.cend()) {
        return *found;
    }
    if (!key.isEmpty() && ReadWholeNumber(key) != 0) { // "0", "00": none
        Run().Log(QStringLiteral("FASE NON TROVATA: %1: '%2', si usa la prima").arg(parts.rows.Name(row), key));
    }
    return phases.first;
}

/// Whether the days on which a component counts are over, or still to come, which the log tells.
bool BillImporter::IsOutOfItsDays(const SourceRow& row) const {
    const BillComponents& parts = m_kind->declared.components;
    const QDate today = GetSession().UserManager.DataElaborazione;
    const QVariant from = parts.from.Day(GetSession(), row);
    const QVariant until = WithoutEmptyDay(parts.until.Day(GetSession(), row));
    const bool isToCome = !from.isNull() && from.toDate() > today;
    if (!isToCome && (until.isNull() || until.toDate() >= today)) {
        return false;
    }
    Run().Log((isToCome ? QStringLiteral("COMPONENTE NON ANCORA VALIDO: %1: valido dal %2")
                        : QStringLiteral("COMPONENTE SCADUTO: %1: valido fino al %2"))
                  .arg(parts.rows.Name(row), italian::DayText((isToCome ? from : until).toDate())));
    return true;
}

void BillImporter::WriteComponent(const SourceRow& row, const Phases& phases) {
    const BillComponents& parts = m_kind->declared.components;
    Session& session = GetSession();
    const QString article = parts.article.Text(session, row);
    if (IsOutOfItsDays(row) || !IsImported(Run(), article, parts.rows.Name(row))) {
        m_writer.LeaveOut(article);
        return;
    }
    Component component{article, parts.quantity.Number(session, row), parts.note.Text(session, row),
                        parts.position.Value(session, row)};
    const qint64 phase = PhaseOf(row, phases);
    component.subcontracted = phases.outside.contains(phase);
    component.repeated = parts.repeated;
    if (m_kind->declared.component) {
        m_kind->declared.component(Run(), row, component);
    }
    const QStringList told = parts.quantity.Columns();
    if (component.quantity == 0 &&
        std::all_of(told.begin(), told.end(), [&row](const QString& column) { return row.IsBlank(column); })) {
        Run().Log(
            QStringLiteral("COMPONENTE SENZA QUANTITÀ: %1: '%2', scritto con 0").arg(parts.rows.Name(row), article));
    }
    m_writer.Write(component, phase, [&](TargetRow& target) {
        target.KeepThere(m_kind->LackingIn(session, target.Table()));
        m_kind->ofComponent.Apply(target, session, row, {});
    });
}

const Frame UsualBills{.module = {},
                       .procedure = {},
                       .announcement = "Inizio importazione Distinte Base",
                       .errors = "Errore: ",
                       .step = "Distinte Base",
                       .completion = "Distinte Base importate correttamente: %1 (Fasi: %2, Comp.: %3)"};

} // namespace

Frame FrameOf(const Bills& declared) { return Over(declared.frame, UsualBills); }

ImportPart PartOf(const Bills& declared) {
    const auto kind = std::make_shared<const BillsKind>(declared);
    return {.step = FrameOf(declared).step,
            .source = declared.source,
            .needs = kind->Needs(),
            .empties = BillEmptying(),
            .make = [kind](ImportRun& run, const QString& singleCode) {
                return std::make_unique<BillImporter>(run, kind, singleCode);
            }};
}

} // namespace contract
