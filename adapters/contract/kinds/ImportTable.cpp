#include "adapters/contract/kinds/ImportTable.h"

#include "adapters/contract/run/TriggersOff.h"

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

/// A part in a run of the procedure.
struct PartOfRun {
    const ImportPart& declared;
    QString told; ///< condition that settings or operator tell; empty for none
    std::unique_ptr<Importer> importer;
};

ImportRun::Loop LoopOf(ImportRun& run, const PartOfRun& part, const QString& condition, const QString& singleCode) {
    QStringList conditions{part.told, condition};
    conditions.removeAll(QString());
    return part.declared.source.Loop(run, part.declared.step, conditions.join(QStringLiteral(" AND ")), singleCode);
}

/// @param begun parts whose rows have been read, or are
/// @return false when the operator cancelled, or there is no completion to be told
bool RunPart(ImportRun& run, const PartOfRun& part, const QString& singleCode, size_t& begun) {
    Importer& importer = *part.importer;
    importer.Begin();
    ImportRun::Loop loop = LoopOf(run, part, importer.Condition(), singleCode);
    if (const Importer::LeftOut leftOut = importer.LeavesOut(); !leftOut.words.isEmpty()) {
        loop.leftOut = leftOut.words;
        loop.countAll = LoopOf(run, part, leftOut.condition, singleCode).count;
    }
    ++begun;
    const bool toTheEnd = run.Rows(
        loop, [&importer](const SourceRow& row) { return importer.Row(row); }, [&importer] { importer.EndGroup(); });
    return toTheEnd && importer.End();
}

std::vector<PartOfRun> PartsOf(ImportRun& run, const Import& import, const QString& singleCode) {
    std::vector<PartOfRun> parts;
    for (const ImportPart& part : import.parts) {
        if (part.ofSingleCode || singleCode.isEmpty()) {
            QString told = part.source.told ? part.source.told(run) : QString();
            parts.push_back({part, std::move(told), part.make(run, singleCode)});
        }
    }
    return parts;
}

/// The tables whose triggers are off while the parts run, each once.
QStringList QuietTables(const std::vector<PartOfRun>& parts) {
    QStringList tables;
    for (const PartOfRun& part : parts) {
        tables += part.declared.triggersOff + part.declared.triggersOffToEmpty;
    }
    tables.removeDuplicates();
    return tables;
}

void EmptyFor(ImportRun& run, const std::vector<PartOfRun>& parts, TriggersOff& triggers, bool reset) {
    Emptying emptying;
    for (const PartOfRun& part : parts) {
        emptying = emptying + part.importer->Empties(part.declared.empties);
    }
    Empty(run, reset, emptying);
    for (const PartOfRun& part : parts) {
        for (const QString& table : part.declared.triggersOffToEmpty) {
            triggers.SwitchOn(table);
        }
    }
}

/// Counts the rows of the parts from one on, which a run that broke off does not come to.
void LeaveUnread(ImportRun& run, const std::vector<PartOfRun>& parts, size_t from, const QString& singleCode) {
    for (size_t i = from; i < parts.size(); ++i) {
        try {
            run.DoesNotReach(LoopOf(run, parts[i], parts[i].importer->Condition(), singleCode));
        } catch (const Error&) { // its condition cannot be asked for any more
            run.DoesNotReach({parts[i].declared.step, {}, {}, {}, {}});
        }
    }
}

/// Runs them in turn. @return whether the completion message is shown
bool RunInTurn(ImportRun& run, const std::vector<PartOfRun>& parts, const QString& singleCode) {
    size_t begun = 0;
    bool isWhole = true;
    try {
        for (size_t i = 0; isWhole && i < parts.size(); ++i) {
            isWhole = RunPart(run, parts[i], singleCode, begun);
        }
        for (size_t i = 0; isWhole && i < parts.size(); ++i) {
            parts[i].importer->EndParts();
        }
    } catch (...) {
        LeaveUnread(run, parts, begun, singleCode);
        throw;
    }
    if (run.WasCancelled()) {
        LeaveUnread(run, parts, begun, singleCode);
    }
    return isWhole;
}

void RunParts(ImportRun& run, const Import& import, const QString& singleCode, bool reset) {
    const std::vector<PartOfRun> parts = PartsOf(run, import, singleCode);
    TriggersOff triggers(run, QuietTables(parts));
    EmptyFor(run, parts, triggers, reset);
    if (!RunInTurn(run, parts, singleCode)) {
        return;
    }
    QString completion = import.frame.completion;
    for (const PartOfRun& part : parts) {
        completion = part.importer->Completion(completion);
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
        for (const AnswerNeed& ask : part.asks) { // what several parts want to know is asked once
            if (std::none_of(asks.begin(), asks.end(),
                             [&ask](const AnswerNeed& one) { return one.question == ask.question; })) {
                asks.push_back(ask);
            }
        }
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
