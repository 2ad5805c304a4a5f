#include "adapters/contract/kinds/documentChecks.h"

#include "adapters/contract/map/lookups.h"
#include "adapters/contract/write/OpenDocument.h"
#include "core/italianText.h"
#include "core/schemaDefaults.h"
#include "sql/mod_ovTools.h"

#include <map>

namespace contract {

namespace {

QDate FromOf(ImportRun& run, const Documents& declared) {
    if (declared.oldest.isValid()) {
        return declared.oldest;
    }
    if (declared.since == Since::Asked) {
        return AskStartDate(run);
    }
    const QDate from = ReadDocumentSettings(run.GetSession()).from;
    return declared.since == Since::Setting ? from : QDate(from.year(), 1, 1);
}

/// The day from which documents are read, and where it comes from: "Documenti dal 01/01/2017 (DOC_DateStart)".
QString SinceText(const Session& session, const Documents& declared, const QDate& from) {
    const bool isOfSetting = !session.DocumentsFrom.isValid();
    const QString setting = isOfSetting ? QStringLiteral("DOC_DateStart") : session.DocumentsFromSetting;
    const QString ground = declared.oldest.isValid()          ? QString()
                           : declared.since == Since::Asked   ? QStringLiteral(" (come risposto)")
                           : declared.since == Since::Setting ? QStringLiteral(" (%1)").arg(setting)
                                                              : QStringLiteral(" (anno di %1)").arg(setting);
    return QStringLiteral("%1 dal %2%3").arg(FrameOf(declared).step, italian::DayText(from), ground);
}

bool IsOfCustomers(const DocumentKind& kind) { return kind.family.number == Sales.number; }

/// The kinds that are imported, which the operator may be asked.
std::vector<DocumentKind> KindsOf(ImportRun& run, const Documents& declared) {
    std::vector<DocumentKind> kinds = declared.kinds;
    if (declared.which == Which::Asked) {
        const bool ofCustomers = run.Ask(WhichQuestion);
        std::erase_if(kinds, [ofCustomers](const DocumentKind& kind) { return IsOfCustomers(kind) != ofCustomers; });
    }
    return kinds;
}

OpenDocument::Options OptionsOf(ImportRun& run, const DocumentsKind& kind) {
    const Documents& declared = kind.declared;
    const bool checks = declared.checksArticles && ReadDocumentSettings(run.GetSession()).checkArticles;
    Session& session = run.GetSession();
    return {checks, declared.imported == Imported::Asked && AskSkipImported(run),
            EmptiedColumns(session, kind.head, kind.furtherOfHead),
            EmptiedColumns(session, kind.row, kind.furtherOfRow), kind.pages.at(1).LackingColumns(session)};
}

QString StateOf(const DocumentRow& row) {
    using namespace schema::defaults;
    const double sign = row.quantity < 0 ? -1 : 1; // what comes back is counted below zero
    const double delivered = sign * row.delivered;
    return delivered <= 0 ? ToDeliver : delivered < sign * row.quantity ? PartlyDelivered : Delivered;
}

class DocumentImporter final : public Importer {
public:
    DocumentImporter(ImportRun& run, std::shared_ptr<const DocumentsKind> kind, QString singleCode)
        : Importer(run),
          m_kind(std::move(kind)),
          m_singleCode(std::move(singleCode)),
          m_kinds(KindsOf(run, Declared())),
          m_from(FromOf(run, Declared())),
          m_options(OptionsOf(run, *m_kind)),
          m_checks(run, *m_kind) {
        if (Declared().before) {
            Declared().before(run);
        }
        if (Declared().ofHeads) {
            m_ofHeads = Declared().ofHeads(run);
        }
        for (const Family& family : FamiliesOf(m_kinds)) {
            m_families.try_emplace(family.number, run, family, m_options);
        }
    }

    QString Condition() const override;
    LeftOut LeavesOut() const override;
    Emptying Empties(const Emptying& declared) const override {
        return Declared().which == Which::Asked ? DocumentEmptying(CausesOf(m_kinds))
                                                : m_ofHeads.empties.value_or(declared);
    }
    void Begin() override;
    RowOutcome Row(const SourceRow& row) override;
    void EndGroup() override;
    bool End() override;
    QString Completion(const QString& text) const override;

private:
    const Documents& Declared() const { return m_kind->declared; }
    /// The documents of a family, and which one is under way.
    struct OfFamily {
        OfFamily(ImportRun& run, const Family& family, const OpenDocument::Options& options)
            : documents(run, family, options) {}
        OpenDocument documents;
        QString key;
        QString party; ///< of the head, in the source
    };

    /// The document that a source row is of.
    struct Place {
        const SourceRow& head;
        const DocumentKind& kind;
        OfFamily& family;
        QString key;                                 ///< tells it from others
        std::optional<OpenDocument::Head> made = {}; ///< made before its rows are read
    };

    void RequireParty(const Place& place, const Facts& facts);
    void DropOthers(const SourceRow& row);
    Place PlaceOf(const SourceRow& head, const DocumentKind& kind);
    RowOutcome WriteRow(const Place& place, const SourceRow& row);
    RowOutcome WriteDocument(Place place);
    std::optional<RowOutcome> WriteRows(const Place& place);
    RowOutcome LeaveOut(const Place& place, const SourceRow& row, const QString& rule);
    void NoteLeftOut(const SourceRow& head, const DocumentKind& kind, const SourceRow& row);
    void EndDocument(const Place& place);
    void Enter(const Place& place);
    OpenDocument::Head HeadOf(const Place& place);
    DocumentRow RowOf(const SourceRow& row, const DocumentKind& kind, const Facts& facts);
    QString CauseOf(const SourceRow& row, const DocumentKind& kind);

    std::shared_ptr<const DocumentsKind> m_kind;
    QString m_singleCode;
    std::vector<DocumentKind> m_kinds; ///< that are imported
    QDate m_from;
    OpenDocument::Options m_options;
    DocumentChecks m_checks;
    HeadHooks m_ofHeads;
    std::map<int, OfFamily> m_families;
    QString m_group;
    QSet<QString> m_causes;          ///< of the documents of the run
    QMap<QString, qint64> m_leftOut; ///< rows of documents, by the rule that leaves them out
    qint64 m_older = 0;              ///< rows before the first day that the source has given all the same
};

QString DocumentImporter::Condition() const {
    const ovConnection& source = GetSession().SourceConnection();
    if (Declared().sinceCondition) {
        return Declared().sinceCondition(source, m_from);
    }
    const QString column = Declared().head.day.Columns().value(0);
    const QString day = Declared().source.joins.empty() ? column : QString(u"T." + column);
    return QStringLiteral("(%1 >= %2 OR %1 IS NULL)").arg(DayColumn(source, day), LiteralOf(source, m_from));
}

Importer::LeftOut DocumentImporter::LeavesOut() const {
    return Condition().isEmpty()
               ? LeftOut()
               : LeftOut{SinceText(GetSession(), Declared(), m_from) + QStringLiteral(", righe più vecchie non lette"),
                         {}};
}

void DocumentImporter::Begin() {
    m_checks.ReadTwins(m_singleCode, m_ofHeads.leavesOut);
    if (Declared().reading != Reading::OneTable) {
        m_checks.TellUnjoined();
    }
    if (!Declared().row.vatCode.IsSet()) {
        Run().Log(QStringLiteral("CODICE IVA DELL'ARTICOLO: tabella '%1': le righe non ne hanno")
                      .arg(m_kind->pages.back().sourceTable));
    }
}

/// Rows that belong to others than the one before begin anew: what was under way has ended, or was given up.
void DocumentImporter::DropOthers(const SourceRow& row) {
    const QString group = Declared().source.GroupOf(row);
    if (group != m_group || Declared().source.group.isEmpty()) {
        Run().Restores(m_group);
        for (auto& [number, family] : m_families) {
            Run().Restores(family.key);
            family.documents.Drop();
            family.key.clear();
        }
        m_group = group;
    }
}

RowOutcome DocumentImporter::Row(const SourceRow& row) {
    DropOthers(row);
    const DocumentKind* kind = m_kind->KindOf(Declared().kind.Text(GetSession(), row));
    if (kind == nullptr) {
        return Run().Skip("genere di documento che non si importa");
    }
    if (!m_families.contains(kind->family.number)) {
        return Run().Skip("documento dell'altra parte");
    }
    const QVariant day = Declared().head.day.Day(GetSession(), row);
    if (!day.isNull() && day.toDateTime().date() < m_from) {
        Run().Restores(m_older);
        ++m_older;
        return Run().Skip("documento anteriore alla data d'inizio");
    }
    if (const QString rule = m_ofHeads.leavesOut ? m_ofHeads.leavesOut(row) : QString(); !rule.isEmpty()) {
        return Run().Skip(rule);
    }
    m_checks.Require(row, day);
    if (Declared().reading != Reading::HeadThenRows) {
        if (const QString rule = Declared().leavesOut ? Declared().leavesOut(row) : QString(); !rule.isEmpty()) {
            NoteLeftOut(row, *kind, row);
            return Run().Skip(rule);
        }
        return WriteRow(PlaceOf(row, *kind), row);
    }
    return WriteDocument(PlaceOf(row, *kind));
}

DocumentImporter::Place DocumentImporter::PlaceOf(const SourceRow& head, const DocumentKind& kind) {
    const DocumentHeadFields& fields = Declared().head;
    OfFamily& family = m_families.at(kind.family.number);
    QString key = QStringList{m_group, CauseOf(head, kind), QString::number(m_checks.YearOf(head)),
                              fields.series.Text(GetSession(), head), fields.number.Text(GetSession(), head)}
                      .join(QChar(u'\x1f'));
    return {head, kind, family, std::move(key), std::nullopt};
}

/// The head is made first: what is wrong with it is told of the head, not of its first row.
RowOutcome DocumentImporter::WriteDocument(Place place) {
    place.made = HeadOf(place);
    if (Declared().withoutRows == WithoutRows::LeftOut) {
        const std::optional<RowOutcome> outcome = WriteRows(place);
        EndDocument(place);
        return outcome ? *outcome : Run().Skip("documento senza righe");
    }
    Enter(place);
    const RowOutcome outcome = place.family.documents.Begin(place.key, *place.made);
    if (outcome != RowOutcome::Skipped) {
        if (!WriteRows(place)) {
            Run().Log(QStringLiteral("DOCUMENTO SENZA RIGHE: %1: se ne scrive la testata").arg(Run().RowKey()));
        }
        EndDocument(place);
    }
    return outcome;
}

/// What became of the first row that was not left out; none without rows.
std::optional<RowOutcome> DocumentImporter::WriteRows(const Place& place) {
    std::optional<RowOutcome> outcome;
    Declared().rows.ForEach(GetSession(), place.head, [&](const SourceRow& row) {
        const QString rule = Declared().leavesOut ? Declared().leavesOut(row) : QString();
        const RowOutcome one = rule.isEmpty() ? WriteRow(place, row) : LeaveOut(place, row, rule);
        outcome = outcome && *outcome != RowOutcome::Skipped ? outcome : one;
    });
    return outcome;
}

/// Heads are what the result counts: rows of them that are left out are told apart.
RowOutcome DocumentImporter::LeaveOut(const Place& place, const SourceRow& row, const QString& rule) {
    NoteLeftOut(place.head, place.kind, row);
    Run().Restores(m_leftOut);
    ++m_leftOut[rule];
    return Run().Skip(rule);
}

/// Has the document know a row that the source has of it. What is wrong with the row is not told: it is not written.
void DocumentImporter::NoteLeftOut(const SourceRow& head, const DocumentKind& kind, const SourceRow& row) {
    try {
        const Place place = PlaceOf(head, kind);
        place.family.documents.LeaveOut(place.key, IdentityOf(GetSession(), Declared().row, row));
    } catch (const ImportError&) {
        return;
    }
}

/// Ends the document of a head that is one of its own, rather than one of several that make it up.
void DocumentImporter::EndDocument(const Place& place) {
    if (!Declared().source.group.isEmpty()) {
        return;
    }
    const auto ended = place.family.documents.End();
    if (ended && m_ofHeads.documentWritten) {
        m_ofHeads.documentWritten(place.head, {ended->id, ended->rowsLeft, place.kind.family});
    }
}

/// From now on rows are of this document: the one under way before it has ended.
void DocumentImporter::Enter(const Place& place) {
    OfFamily& family = place.family;
    if (!family.key.isEmpty() && family.key != place.key) {
        family.documents.End();
    }
    Run().Restores(family.key);
    family.key = place.key;
}

RowOutcome DocumentImporter::WriteRow(const Place& place, const SourceRow& row) {
    Enter(place);
    const Facts facts{{}, RoleOf(IsOfCustomers(place.kind))};
    RequireParty(place, facts);
    OpenDocument& documents = place.family.documents;
    DocumentRow values;
    qint64 id = 0;
    const RowOutcome outcome = documents.Row(
        place.key, [&] { return place.made ? *place.made : HeadOf(place); },
        [&] { return values = RowOf(row, place.kind, facts); },
        [&](TargetRow& target) {
            m_kind->row.Apply(target, GetSession(), row, facts);
            if (Declared().moreOfRow) {
                Declared().moreOfRow(Run(), row, target);
            }
            if (m_ofHeads.moreOfRow) {
                m_ofHeads.moreOfRow(row, target);
            }
        },
        m_kind->production || m_ofHeads.rowWritten ? &id : nullptr);
    if (id != 0 && m_kind->production) {
        m_kind->production->Write(Run(), row, id);
    }
    if (id != 0 && m_ofHeads.rowWritten) {
        m_ofHeads.rowWritten(row, {id, values, documents.Current(), place.kind.family});
    }
    return outcome;
}

/// Rows of another counterparty are no part of a document, whatever number they have; one that is not told is the same.
void DocumentImporter::RequireParty(const Place& place, const Facts& facts) {
    const Field& field = Declared().head.counterparty;
    const OfFamily& family = place.family;
    const QStringList columns = field.Columns();
    const bool isTold = std::any_of(columns.begin(), columns.end(),
                                    [&place](const QString& column) { return !place.head.IsBlank(column); });
    if (!isTold || !family.documents.Has(place.key) || GroupText(place.head, columns) == family.party) {
        return;
    }
    const QString party = field.Text(GetSession(), place.head, facts);
    if (const QString& ofHead = family.documents.Current().counterparty; party != ofHead) {
        throw ImportError(
            ColumnNames(columns) +
            QStringLiteral(": la riga è della controparte '%1', il suo documento di '%2'").arg(party, ofHead));
    }
}

QString DocumentImporter::CauseOf(const SourceRow& row, const DocumentKind& kind) {
    const Field& field = Declared().cause;
    const QString cause = field.IsGiven(GetSession(), row) ? field.Text(GetSession(), row) : kind.cause;
    if (cause.isEmpty()) {
        throw ImportError(QStringLiteral("colonna '%1': nessuna causale per '%2': va tradotta in SYS_IMP")
                              .arg(field.Columns().join(QStringLiteral("', '")), row.Text(field.Columns().value(0))));
    }
    Run().Remember(m_causes, cause);
    return cause;
}

OpenDocument::Head DocumentImporter::HeadOf(const Place& place) {
    using namespace schema::defaults;
    Session& session = GetSession();
    const SourceRow& row = place.head;
    const DocumentKind& kind = place.kind;
    const DocumentHeadFields& fields = Declared().head;
    const Facts facts{{}, RoleOf(IsOfCustomers(kind))};
    const QString counterparty = fields.counterparty.Text(session, row, facts);
    if (counterparty.isEmpty()) {
        throw ImportError(ColumnNames(fields.counterparty.Columns()) +
                          QStringLiteral(": il documento non ha una controparte"));
    }
    Run().Restores(place.family.party);
    place.family.party = GroupText(row, fields.counterparty.Columns());
    const QString series = fields.series.IsSet() ? fields.series.Text(session, row) : NoSeries;
    const QString name = fields.name.Text(session, row, facts);
    const QString state = fields.state.Text(session, row);
    DocumentHead head{place.family.documents.Writer().CauseOf(CauseOf(row, kind), kind.type),
                      series,
                      fields.number.Text(session, row),
                      fields.day.Day(session, row),
                      m_checks.YearOf(row),
                      counterparty,
                      name.isEmpty() ? LookUp(session, "CON_TRO", "CDCON", counterparty, "CORAS") : name,
                      !state.isEmpty() ? state
                      : kind.isOpen    ? ToDeliver
                                       : Delivered};
    QStringList further;
    if (m_ofHeads.complete) {
        further.append(m_ofHeads.complete(row, head));
    } else if (fields.series.IsSet()) {
        further.append(OfSeries(session, series));
    }
    if (fields.countedByParty) {
        further.append(Equals(session, "DTCON", counterparty));
    }
    further.removeAll(QString());
    const auto more = [this, &row, facts](TargetRow& target) {
        m_kind->head.Apply(target, GetSession(), row, facts);
        if (Declared().moreOfHead) {
            Declared().moreOfHead(Run(), row, target);
        }
    };
    return {head, more, further.join(QStringLiteral(" AND "))};
}

DocumentRow DocumentImporter::RowOf(const SourceRow& row, const DocumentKind& kind, const Facts& facts) {
    using namespace schema::defaults;
    Session& session = GetSession();
    const DocumentRowFields& fields = Declared().row;
    DocumentRow values = IdentityOf(session, fields, row);
    values.article = fields.article.Text(session, row);
    values.type = fields.type.Text(session, row);
    values.description = fields.description.Text(session, row);
    values.unit = fields.unit.Text(session, row);
    values.quantity = fields.quantity.Number(session, row);
    values.quantity2 = fields.quantity2.Number(session, row);
    values.delivered = kind.isOpen ? fields.delivered.Number(session, row) : values.quantity;
    values.price = fields.price.Number(session, row);
    for (size_t i = 0; i < std::min(fields.discounts.size(), values.discounts.size()); ++i) {
        values.discounts[i] = fields.discounts[i].Number(session, row);
    }
    if (values.type.isEmpty()) {
        values.type = values.IsText() ? DescriptionRow : NormalRow;
    }
    values.vatCode = fields.vatCode.Text(session, row, facts);
    values.tellsVat = fields.vatCode.IsSet();
    values.tellsState = fields.state.IsGiven(session, row);
    values.state = values.tellsState ? fields.state.Text(session, row) : kind.isOpen ? StateOf(values) : Delivered;
    return values;
}

void DocumentImporter::EndGroup() {
    for (auto& [number, family] : m_families) {
        family.documents.End();
        family.key.clear();
    }
}

bool DocumentImporter::End() {
    if (Condition().isEmpty() && !Run().IsPart()) {
        Run().Tell(QStringLiteral("%1, righe più vecchie saltate: %2")
                       .arg(SinceText(GetSession(), Declared(), m_from), QString::number(m_older)));
    }
    for (const auto& [rule, count] : m_leftOut.asKeyValueRange()) {
        Run().Tell(
            QStringLiteral("%1, righe saltate: %2: %3").arg(FrameOf(Declared()).step, rule, QString::number(count)));
    }
    if (m_ofHeads.end) {
        m_ofHeads.end();
    }
    QStringList causes = Declared().cause.IsSet() ? m_causes.values() + m_ofHeads.causes : CausesOf(m_kinds);
    causes.removeDuplicates();
    // Of some documents alone nothing follows about the others.
    for (auto family = m_families.cbegin(); !Declared().source.told && family != m_families.cend(); ++family) {
        family->second.documents.TellDocumentsLeft(causes, m_from, Declared().others);
    }
    return true;
}

QString DocumentImporter::Completion(const QString& text) const {
    int count = 0;
    for (const auto& [number, family] : m_families) {
        count += family.documents.Count();
    }
    return QString(text).replace("%1", QString::number(count));
}

std::vector<AnswerNeed> AsksOf(const Documents& declared) {
    std::vector<AnswerNeed> asks;
    if (declared.which == Which::Asked) {
        asks.push_back({WhichQuestion});
    }
    if (declared.since == Since::Asked) {
        asks.push_back({StartDateQuestion, AnswerKind::Text});
    }
    if (declared.imported == Imported::Asked) {
        asks.push_back({SkipImportedQuestion});
    }
    return asks;
}

} // namespace

ImportPart PartOf(const Documents& declared) {
    const auto kind = std::make_shared<const DocumentsKind>(declared);
    const Emptying ofCauses = DocumentEmptying(CausesOf(declared.kinds));
    return {
        .step = FrameOf(declared).step,
        .source = kind->declared.source,
        .needs = kind->Needs(),
        .empties = declared.empties.value_or(declared.which == Which::Asked ? AtMost(ofCauses) : ofCauses) +
                   (declared.production ? ProductionOrderEmptying() : Emptying()),
        .asks = AsksOf(declared),
        .make = [kind](ImportRun& run,
                       const QString& singleCode) { return std::make_unique<DocumentImporter>(run, kind, singleCode); },
        .triggersOff = DocumentRowTables() + (declared.production ? QStringList("ORD_COM") : QStringList()),
        .triggersOffToEmpty = declared.production ? QStringList({"ORD_FAS", "ORD_PRO"}) : QStringList()};
}

} // namespace contract
