#pragma once

#include "adapters/contract/kinds/SourceTable.h"
#include "adapters/contract/run/Origin.h"

namespace contract {

/// How the log of a run begins.
enum class LogStart { Anew, Behind };

/// What an import tells of itself, whatever it reads and writes. What a declaration leaves empty is the usual of its
/// kind.
struct Frame {
    QString module = {};
    QString procedure = {};
    QString announcement = {};     ///< first line of the log
    LogStart log = LogStart::Anew; ///< or behind what the log holds already
    QString errors = {};           ///< stands before the error that ends the run, in the log; empty: it is not there
    QString step = {};             ///< for the progress dialog
    QString completion = {};       ///< the message at the end
    QString confirmation = {};     ///< see `Procedure`
    bool asksReset = true;         ///< see `Procedure`
};

/// The rows of an import, in a run of it. It is made behind the check of source and target and before the emptying:
/// what it asks or cannot do without comes before anything is written.
class Importer {
public:
    explicit Importer(ImportRun& run)
        : m_run(run) {}
    virtual ~Importer() = default;
    Importer(const Importer&) = delete;
    Importer& operator=(const Importer&) = delete;

    /// A condition on the rows that only the run knows, without AND; empty for none.
    virtual QString Condition() const { return {}; }
    /// Rows that the condition leaves behind by their day.
    struct LeftOut {
        QString words = {};     ///< what tells them, before their number; empty: there are none
        QString condition = {}; ///< what is left of the condition, so that they are read too
    };
    virtual LeftOut LeavesOut() const { return {}; }
    /// What a reset empties, where an answer has narrowed it. @param declared as the part has it
    virtual Emptying Empties(const Emptying& declared) const { return declared; }
    /// Called behind the emptying, before the first row.
    virtual void Begin() {}
    virtual RowOutcome Row(const SourceRow& row) = 0;
    /// Called after the last of the rows that belong together.
    virtual void EndGroup() {}
    /// Called behind the last row of a run that nobody interrupted.
    /// @return whether the completion message is shown
    virtual bool End() { return true; }
    /// Called behind the last part of a run that nobody interrupted.
    virtual void EndParts() {}
    /// The message at the end. @param text as the declaration has it
    virtual QString Completion(const QString& text) const { return text; }

protected:
    ImportRun& Run() const { return m_run; }
    Session& GetSession() const { return m_run.GetSession(); }

private:
    ImportRun& m_run;
};

using MakeImporter = std::function<std::unique_ptr<Importer>(ImportRun&, const QString& singleCode)>;

/// The rows of one table of the source within a procedure, as data.
struct ImportPart {
    QString step; ///< for the progress dialog
    SourceTable source;
    Needs needs; ///< beyond those of the source's own statement
    Emptying empties = {};
    std::vector<AnswerNeed> asks = {};
    MakeImporter make;
    QStringList triggersOff = {};        ///< tables (bare names) whose triggers are off while the procedure runs
    QStringList triggersOffToEmpty = {}; ///< the same, until they have been emptied
    bool ofSingleCode = true;            ///< whether a run of a single code comes to it
};

/// The procedure of an import: announcement, check, questions, emptying, the rows of each part in turn, completion.
/// @param button none: no button calls it
Procedure ProcedureOf(std::optional<Button> button, const Frame& frame, const std::vector<ImportPart>& parts);

/// The procedure of one declaration of a kind, which has a `ImportPart PartOf(declared)` and a `Frame
/// FrameOf(declared)`.
template<class Declared>
Procedure ProcedureOf(std::optional<Button> button, const Declared& declared) {
    return ProcedureOf(button, FrameOf(declared), {PartOf(declared)});
}

/// What carries one row over where each is for itself.
using EachRow = std::function<RowOutcome(ImportRun&, const SourceRow&)>;
MakeImporter Importing(EachRow row);

/// A frame with the usual texts where it has none.
Frame Over(Frame frame, const Frame& usual);

/// Why a row is left out, in the operator's words, e.g. "riga già consegnata"; empty: it is carried over.
using LeavesOut = std::function<QString(const SourceRow&)>;

} // namespace contract
