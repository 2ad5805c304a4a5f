#include "adapters/contract/kinds/ImportTable.h"

namespace contract {

namespace {

/// Rows that are each for themselves.
class SingleRows final : public Importer {
public:
    SingleRows(ImportRun& run, EachRow row)
        : Importer(run),
          m_row(std::move(row)) {}
    RowOutcome Row(const SourceRow& row) override { return m_row(Run(), row); }

private:
    EachRow m_row;
};

/// What a procedure is made of.
struct Import {
    Frame frame;
    std::vector<ImportPart> parts;
    Needs needs;
};

/// @param told condition that settings or operator tell; empty for none
/// @return false when the operator cancelled, or there is no completion to be told
bool RunPart(ImportRun& run, const ImportPart& part, Importer& importer, const QString& told,
             const QString& singleCode) {
    importer.Begin();
    QStringList conditions{told, importer.Condition()};
    conditions.removeAll(QString());
    const auto loop = part.source.Loop(run, part.step, conditions.join(QStringLiteral(" AND ")), singleCode);
    const bool toTheEnd = run.Rows(
        loop, [&importer](const SourceRow& row) { return importer.Row(row); }, [&importer] { importer.EndGroup(); });
    return toTheEnd && importer.End();
}

void RunParts(ImportRun& run, const Import& import, const QString& singleCode, bool reset) {
    std::vector<std::unique_ptr<Importer>> importers;
    QStringList told;
    for (const ImportPart& part : import.parts) {
        told.append(part.source.told ? part.source.told(run) : QString());
        importers.push_back(part.make(run, singleCode));
    }
    Emptying emptying;
    for (size_t i = 0; i < importers.size(); ++i) {
        emptying = emptying + importers[i]->Empties(import.parts[i].empties);
    }
    Empty(run, reset, emptying);
    QString completion = import.frame.completion;
    for (size_t i = 0; i < importers.size(); ++i) {
        if (!RunPart(run, import.parts[i], *importers[i], told.at(static_cast<qsizetype>(i)), singleCode)) {
            return;
        }
        completion = importers[i]->Completion(completion);
    }
    run.Complete(completion);
}

void RunImport(Session& session, const Import& import, const QString& singleCode, bool reset) {
    ImportRun run(session, import.frame.module, import.frame.procedure, singleCode);
    run.LogErrorsAs(import.frame.errors);
    run.Guard([&] {
        if (import.frame.log == LogStart::Anew) {
            run.Announce(import.frame.announcement);
        } else {
            run.AnnounceAppending(import.frame.announcement);
        }
        run.Preflight(import.needs);
        RunParts(run, import, singleCode, reset);
    });
}

} // namespace

Frame Over(Frame frame, const Frame& usual) {
    const auto fill = [](QString& text, const QString& otherwise) { text = text.isEmpty() ? otherwise : text; };
    fill(frame.announcement, usual.announcement);
    fill(frame.errors, usual.errors);
    fill(frame.step, usual.step);
    fill(frame.completion, usual.completion);
    fill(frame.confirmation, usual.confirmation);
    return frame;
}

MakeImporter Importing(EachRow row) {
    return [row = std::move(row)](ImportRun& run, const QString&) { return std::make_unique<SingleRows>(run, row); };
}

Procedure ProcedureOf(std::optional<Button> button, const Frame& frame, const std::vector<ImportPart>& parts) {
    Import import{frame, parts, {}};
    Emptying empties;
    std::vector<AnswerNeed> asks;
    for (const ImportPart& part : parts) {
        import.needs = import.needs + part.source.OwnNeeds() + part.needs;
        empties = empties + part.empties;
        asks.insert(asks.end(), part.asks.begin(), part.asks.end());
    }
    return {.button = button,
            .name = frame.procedure,
            .run = [import](Session& session, const QString& singleCode,
                            bool reset) { RunImport(session, import, singleCode, reset); },
            .needs = import.needs,
            .empties = empties,
            .asks = asks,
            .confirmation = frame.confirmation,
            .asksReset = frame.asksReset};
}

} // namespace contract
