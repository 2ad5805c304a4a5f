#include "adapters/contract/kinds/BaseTables.h"

#include "adapters/contract/write/AccountPath.h"
#include "adapters/contract/write/Article.h"
#include "adapters/contract/write/Bank.h"
#include "adapters/contract/write/BaseTable.h"
#include "adapters/contract/write/ImportingModules.h"
#include "sql/mod_ovTools.h"

namespace contract {

namespace {

const QString InstalmentCount = QStringLiteral("MPRAT");

/// The lines of a base table with its code column, as a mapping that lives as long as the part.
std::shared_ptr<const Mapping> MappingOf(const BaseTable& declared) {
    const schema::Table& table = *schema::FindTable(declared.target);
    std::vector<MapLine> usual;
    if (declared.code.IsSet()) {
        usual.push_back(declared.code.LineTo(table.CodeColumn()));
        usual.back().rule = rules::Code();
        const auto external = std::find_if(table.columns.begin(), table.columns.end(), [](const schema::Column& one) {
            return one.name.size() == 5 && one.name.endsWith(QLatin1String("EXT")); // "IVEXT"
        });
        if (external != table.columns.end()) {
            usual.emplace_back(external->name, declared.code.Columns().join(QStringLiteral(", ")), rules::Text());
        }
    }
    return std::make_shared<const Mapping>(Mapping{declared.target, declared.source.table, declared.lines.Over(usual)});
}

QVector<double> SharesOf(std::vector<Instalment>& instalments) {
    QVector<double> shares;
    const bool told =
        std::any_of(instalments.begin(), instalments.end(), [](const Instalment& one) { return one.percent != 0; });
    for (const double share : told ? std::vector<double>() : EqualShares(static_cast<int>(instalments.size()))) {
        shares.append(share);
    }
    return shares;
}

QString StartOf(const Field& start, Session& session, const SourceRow& row, const QString& otherwise) {
    const QString text = start.Text(session, row);
    return text.isEmpty() ? otherwise : text;
}

std::optional<double> FixedDayOf(const Field& fixedDay, Session& session, const SourceRow& row) {
    return fixedDay.IsGiven(session, row) ? std::optional(fixedDay.Number(session, row)) : std::nullopt;
}

/// The payment type; empty for a blank one and where its rule gives Null, none for one that is not known or not told.
std::optional<QString> PaymentTypeOf(const Field& type, Session& session, const SourceRow& row) {
    const QString code = type.Text(session, row);
    const bool isKept =
        code.isEmpty() && (!type.IsGiven(session, row) || (!type.IsBlank(row) && type.IsLeftOut(session, row)));
    return isKept ? std::nullopt : std::optional(code);
}

void AddInstalments(std::vector<Instalment>& all, const InstalmentFields& fields, Session& session,
                    const SourceRow& term, const QString& start) {
    fields.rows.ForEach(session, term, [&](const SourceRow& row) {
        if (fields.days.IsBlank(row) && fields.start.IsBlank(row) && fields.percent.IsBlank(row)) {
            return;
        }
        all.push_back({PaymentTypeOf(fields.type, session, row), fields.days.Number(session, row),
                       StartOf(fields.start, session, row, start), fields.percent.Number(session, row),
                       FixedDayOf(fields.fixedDay, session, row)});
    });
}

void AddSeries(std::vector<Instalment>& all, const InstalmentSeries& series, Session& session, const SourceRow& term,
               const QString& start) {
    const int count = series.count.WholeNumber(session, term);
    for (int i = 0; i < count; ++i) {
        all.push_back({PaymentTypeOf(series.type, session, term),
                       series.firstDays.Number(session, term) + i * series.everyDays.Number(session, term),
                       StartOf(series.start, session, term, start), 0, FixedDayOf(series.fixedDay, session, term)});
    }
}

/// A mapping with the number of instalments, unless it has it already.
Mapping WithCount(Mapping mapping, int instalments) {
    if (!mapping.TargetColumns().contains(InstalmentCount)) {
        mapping.lines.emplace_back(InstalmentCount, QString(), rules::Constant(instalments));
    }
    return mapping;
}

/// Tells a number of the source that is not that of its instalments; 0 and blank are none.
void TellOtherCount(ImportRun& run, const Mapping& mapping, const SourceRow& row, const QString& term,
                    int instalments) {
    for (const MapLine& line : mapping.lines) {
        if (line.target != InstalmentCount) {
            continue;
        }
        const int told = Field(line.sources.join(QStringLiteral(", ")), line.rule).WholeNumber(run.GetSession(), row);
        if (told != 0 && told != instalments) {
            run.Log(QStringLiteral("RATE DIVERSE DAL NUMERO: %1: '%2' ne dice %3, l'origine ne ha %4")
                        .arg(run.RowKey(), term, QString::number(told), QString::number(instalments)));
        }
    }
}

size_t HashOf(const std::vector<Instalment>& instalments) {
    size_t hash = instalments.size();
    for (const Instalment& each : instalments) {
        hash = qHashMulti(hash, each.type.value_or(QString()), each.days, each.start, each.percent,
                          each.fixedDay.value_or(0));
    }
    return hash;
}

RowOutcome WriteTerm(ImportRun& run, WriterByCode& writer, const PaymentTerms& declared, const Mapping& mapping,
                     const SourceRow& row) {
    Session& session = run.GetSession();
    const QString code = declared.code.RequiredText(session, row);
    const QString start = StartOf(declared.start, session, row, QStringLiteral("DF"));
    std::vector<Instalment> instalments;
    for (const InstalmentFields& fields : declared.instalments) {
        AddInstalments(instalments, fields, session, row, start);
    }
    if (declared.series && instalments.empty()) {
        AddSeries(instalments, *declared.series, session, row, start);
    }
    const QVector<double> shares = SharesOf(instalments);
    for (qsizetype i = 0; i < shares.size(); ++i) {
        instalments[static_cast<size_t>(i)].percent = shares.at(i);
    }
    const int count = static_cast<int>(instalments.size());
    const Mapping counted = WithCount(mapping, count == 0 ? CountInstalments(session, code) : count);
    const RowOutcome outcome = writer.Write(counted, row, {code}, HashOf(instalments));
    if (outcome != RowOutcome::Skipped) {
        TellOtherCount(run, mapping, row, code, count);
        WriteInstalments(run, code, instalments);
    }
    return outcome;
}

RowOutcome WriteCode(ImportRun& run, WriterByCode& writer, const BaseTable& declared, const Mapping& mapping,
                     const SourceRow& row) {
    if (const QString rule = declared.leavesOut ? declared.leavesOut(row) : QString(); !rule.isEmpty()) {
        return run.Skip(rule);
    }
    Session& session = run.GetSession();
    return writer.Write(mapping, row, {declared.code.RequiredText(session, row)});
}

/// Carries over the rows of a table with a code, in a run.
MakeImporter Coded(std::function<RowOutcome(ImportRun&, WriterByCode&, const SourceRow&)> row) {
    return [row = std::move(row)](ImportRun& run, const QString& singleCode) {
        const auto writer = std::make_shared<WriterByCode>(run);
        return Importing([row, writer](ImportRun& one, const SourceRow& of) { return row(one, *writer, of); })(
            run, singleCode);
    };
}

/// The rows of a table without a code.
class KeyedRows final : public Importer {
public:
    KeyedRows(ImportRun& run, const BaseTable& declared, std::shared_ptr<const Mapping> mapping)
        : Importer(run),
          m_declared(declared),
          m_mapping(std::move(mapping)),
          m_writer(run, declared.keys),
          m_modules(run, declared.target) {}

    RowOutcome Row(const SourceRow& row) override;
    bool End() override {
        if (!Run().IsPart()) {
            m_writer.TellLeft(m_declared.target, m_missing);
        }
        return true;
    }

private:
    BaseTable m_declared;
    std::shared_ptr<const Mapping> m_mapping;
    WriterByKeys m_writer;
    ImportingModules m_modules;
    QSet<QString> m_missing; ///< articles, in capitals
};

RowOutcome KeyedRows::Row(const SourceRow& row) {
    if (const QString rule = m_declared.leavesOut ? m_declared.leavesOut(row) : QString(); !rule.isEmpty()) {
        return Run().Skip(rule);
    }
    for (const MapLine& line : m_mapping->lines) {
        const bool isKey = m_declared.keys.contains(line.target);
        if (!isKey || schema::FindTable(m_declared.target)->FindColumn(line.target)->refersTo != u"ART_ICO") {
            continue;
        }
        const QString article = Field(line.sources.join(QStringLiteral(", ")), line.rule).Text(GetSession(), row);
        if (!IsImported(Run(), article)) {
            m_missing.insert(mod_ovTools::UpperChars(article));
            return Run().Skip(ArticleMissing);
        }
    }
    m_modules.Keep();
    return m_writer.Write(*m_mapping, row, {});
}

/// Accounts, whose paths follow when all of them are there.
class WithPaths final : public Importer {
public:
    WithPaths(ImportRun& run, std::unique_ptr<Importer> accounts)
        : Importer(run),
          m_accounts(std::move(accounts)) {}

    RowOutcome Row(const SourceRow& row) override { return m_accounts->Row(row); }
    bool End() override {
        WriteAccountPaths(Run());
        return true;
    }

private:
    std::unique_ptr<Importer> m_accounts;
};

} // namespace

BaseTable CodeTable(const QString& step, const QString& table, const QString& key, const QString& target,
                    const Lines& lines) {
    return {.frame = {.step = step},
            .source = {.table = table, .key = key, .order = key},
            .target = target,
            .code = Field(key),
            .lines = lines};
}

Frame FrameOf(const BaseTable& declared) { return declared.frame; }

ImportPart PartOf(const BaseTable& declared) {
    const auto mapping = MappingOf(declared);
    return {.step = declared.frame.step,
            .source = declared.source,
            .needs = NeedsOf(*mapping),
            .empties = declared.empties,
            .make = [declared, mapping](ImportRun& run, const QString& singleCode) -> std::unique_ptr<Importer> {
                if (!declared.code.IsSet()) {
                    return std::make_unique<KeyedRows>(run, declared, mapping);
                }
                return Coded([declared, mapping](ImportRun& one, WriterByCode& writer, const SourceRow& row) {
                    return WriteCode(one, writer, declared, *mapping, row);
                })(run, singleCode);
            }};
}

Frame FrameOf(const Banks& declared) {
    return Over(declared.frame, {.announcement = "Inizio importazione Banche",
                                 .step = "Banche",
                                 .completion = "Banche importate correttamente!"});
}

ImportPart PartOf(const Banks& declared) {
    const QString columns = declared.code.Columns().join(QStringLiteral(", "));
    std::vector<MapLine> usual{{"CDBAN", columns, rules::Code()}, {"BAEXT", columns, rules::Text()}};
    if (declared.iban.IsSet()) {
        usual.push_back(declared.iban.LineTo("BAIBA"));
    }
    const auto mapping =
        std::make_shared<const Mapping>(Mapping{"BAN_CHE", declared.source.table, declared.lines.Over(usual)});
    return {.step = FrameOf(declared).step,
            .source = declared.source,
            .needs = NeedsOf(*mapping),
            .empties = declared.empties,
            .make = Coded([declared, mapping](ImportRun& run, WriterByCode& writer, const SourceRow& row) {
                Session& session = run.GetSession();
                const QString iban = declared.iban.Text(session, row);
                // One that nothing tells would be another bank at each run.
                const QString code =
                    iban.isEmpty() ? declared.code.RequiredText(session, row) : declared.code.Text(session, row);
                const QString bank = BankCodeOf(session, code, iban);
                return writer.Write(*mapping, row, {bank});
            })};
}

Frame FrameOf(const PaymentTerms& declared) {
    return Over(declared.frame, {.announcement = "Inizio importazione pagamenti",
                                 .step = "Pagamenti",
                                 .completion = "Pagamenti importati correttamente!"});
}

ImportPart PartOf(const PaymentTerms& declared) {
    const auto mapping =
        MappingOf({.source = declared.source, .target = "TAB_MOP", .code = declared.code, .lines = declared.lines});
    const QString& table = declared.source.table;
    Needs needs = NeedsOf(*mapping) + declared.source.NeedsOf({declared.start});
    for (const InstalmentFields& each : declared.instalments) {
        needs = needs + each.rows.OwnNeeds(table) +
                each.rows.NeedsOf(table, {each.type, each.days, each.start, each.percent, each.fixedDay});
    }
    if (declared.series) {
        const InstalmentSeries& each = *declared.series;
        needs = needs + declared.source.NeedsOf(
                            {each.count, each.firstDays, each.everyDays, each.type, each.fixedDay, each.start});
    }
    needs.writes = needs.writes + InstalmentNeeds() + std::vector<TableNeed>{{"TAB_MOP", {"MPRAT"}}};
    return {.step = FrameOf(declared).step,
            .source = declared.source,
            .needs = needs,
            .empties = PaymentTermEmptying(),
            .make = Coded([declared, mapping](ImportRun& run, WriterByCode& writer, const SourceRow& row) {
                return WriteTerm(run, writer, declared, *mapping, row);
            })};
}

Procedure ProcedureOf(std::optional<Button> button, const Accounts& declared) {
    const Frame frame = Over(declared.frame, {.announcement = "Inizio importazione Piano dei Conti",
                                              .step = "Piano dei Conti",
                                              .completion = "Piano dei Conti importato correttamente!"});
    std::vector<ImportPart> parts;
    for (const BaseTable* table : {declared.ledgers ? &*declared.ledgers : nullptr, &declared.accounts}) {
        if (table != nullptr) {
            ImportPart part = PartOf(*table);
            part.step = frame.step;
            part.empties = Truncated({table->target});
            parts.push_back(part);
        }
    }
    if (!declared.ledgers) {
        parts.back().needs.writes.push_back({"PIA_CON", {"PCPTH", "PCMAS"}});
        parts.back().make = [accounts = parts.back().make](ImportRun& run, const QString& singleCode) {
            return std::make_unique<WithPaths>(run, accounts(run, singleCode));
        };
    }
    return ProcedureOf(button, frame, parts);
}

} // namespace contract
