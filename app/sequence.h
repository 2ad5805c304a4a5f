#pragma once

#include "adapters/registry.h"
#include "app/importFlow.h"
#include "app/startUp.h"
#include "core/runEnding.h"

/// What is fixed for one installation: read from "Sequence.ini", beside the settings file of the program.
struct SequenceSettings {
    /// A source: the keys of its section with their values, in the order in which they are written into the settings.
    using Source = QVector<QPair<QString, QString>>;

    QString file;                  ///< path of "Sequence.ini"
    QString company;               ///< name or code of the company that is filled
    QString logFile;               ///< path of the log of the sequences
    int script = 1;                ///< which one the window's button starts: 1 `Sequence`, 2 `Sequence2`
    QDate from;                    ///< documents from this day on; invalid: the setting DOC_DateStart stays as it is
    QMap<QString, Source> sources; ///< by section, such as "ARCA EVOLUTION"; those that the file describes
    /// Where the origins of the steps are found, by name.
    std::function<const contract::Origin*(const QString& name)> findOrigin = registry::Find;
};

/// Reads "Sequence.ini". Raises `ImportError` naming the file and the key when it is missing or a value is none.
SequenceSettings ReadSequenceSettings(Session& session);

/// The setting of the first day of documents, as results tell it.
inline const QString FirstDaySetting = QStringLiteral("DateStart di Sequence.ini");
/// What the history keeps of that day among the options of a sequence; nothing for an invalid one.
QStringList FirstDayOptions(const QDate& from);
/// The day that the options of a run tell so; invalid: none does.
QDate FirstDayOf(const QStringList& options);

/// The steps of `Sequence2`, one per check box of the dialog, in its order.
struct SequenceSteps {
    bool ContropartiMEX = false;
    bool DistinteSIC = false;
    bool OrdCliSIC = false;
    bool DistinteVSP = false;
    bool DocumentiMEX = false;
    bool DocVenVSP = false;
    bool DocAcqVSP = false;
    bool SaldiMEX = false;
    bool SaldiVSP = false;
    bool UbicazioniMEX = false;
    bool UbicazioniVSP = false;
    bool Query = false;        ///< final fix-up of what was imported
    bool DeleteBefore = false; ///< empty the tables first

    bool operator==(const SequenceSteps&) const = default;
};

/// One of the steps.
using SequenceStep = bool SequenceSteps::*;

/// What there is to know about a step.
struct SequenceChoice {
    SequenceStep step;
    const char* name; ///< "SaldiMEX": the check box is "chkSaldiMEX", the command line says "saldimex"
    QString caption;  ///< for the operator
};

/// Every step, in the order of `SequenceSteps`.
const std::vector<SequenceChoice>& SequenceChoices();

/// What became of one step of a sequence.
struct SequenceEntry {
    enum class Outcome {
        NotReached, ///< behind a cancel or an error
        Done,
        Failed,       ///< told or reported
        Cancelled,    ///< in the middle
        NotConnected, ///< its source could not be opened
        Unavailable,  ///< the module that holds its procedure has none of that name
    };

    QString step;
    Outcome outcome = Outcome::NotReached;
    QString message = {};            ///< why it is not `Done`, or what was done
    QStringList told = {};           ///< what its procedures told the operator, who may not have been there
    QVector<RunResult> results = {}; ///< of the procedures that ran
    bool isToBeRepeated = false;     ///< `Done`, but what it needs was not there: the message tells what

    /// Source rows that its procedures gave up.
    qint64 GivenUp() const;
};

/// What a sequence did: `Done` when every step is. What was imported before a cancel or an error stays.
struct SequenceResult {
    RunResult::Outcome outcome = RunResult::Outcome::Failed;
    QVector<SequenceEntry> entries; ///< one per step
    QString logFile;

    /// Source rows that its procedures gave up.
    qint64 GivenUp() const;
    /// How the whole ended: a step that failed or was skipped makes it fail, a row that a procedure gave up, a look-up
    /// that failed, or a step that is to be repeated, makes it incomplete.
    Ending HowItEnded() const;
};

/// What the sequences show or ask in the main window; a function that is not there is left out.
struct SequenceWindow {
    std::function<void(const modMain::Company& company)> SelectCompany;
    std::function<void(const QString& origin)> SelectOrigin;
    /// Asks for the steps of `Sequence2`; none when the operator gave up.
    std::function<std::optional<SequenceSteps>()> LanciaSequenza;
    /// Whether the tables may be emptied that the question tells; without the function they may.
    std::function<bool(const QString& question)> AgreesToEmpty;
};

/// The whole migration of an installation with Arca Evolution, Lantek 24, AUTOMA and Ferrobrio: one source after the
/// other into the company of the settings, which may be emptied first. Once begun it needs nobody, unless a procedure
/// asks a question: what its procedures tell goes to the log and into the result. A source that cannot be opened, and a
/// procedure that is not there or fails, is told at the end and the next step follows. Errors are reported under
/// "frmImport", "Sequence".
SequenceResult Sequence(Session& session, const SequenceSettings& settings, const SequenceWindow& window);

/// The chosen steps of the migration of an installation with Mexal, Tessera and Visual Space. The triggers that the
/// emptying switches off are on again at its end, whatever way it ends. Errors are reported under "frmImport",
/// "Sequence2"; else as `Sequence`.
SequenceResult Sequence2(Session& session, const SequenceSettings& settings, const SequenceWindow& window);

/// What goes along when sequence 2 empties the tables of the company under work, and what stays, in sentences. Raises
/// `SqlError`.
QStringList BesidesEmptying(Session& session);

/// The flow behind the button "cmdSequence": confirmation, password, gate, and the sequence of the settings. None when
/// it came to no sequence: the operator declined, the password was wrong (which is not told), or something is missing.
std::optional<SequenceResult> PressSequence(Session& session, const Choice& choice, const SequenceWindow& window);

/// "tabelle svuotate: 59, righe eliminate: 1234".
QString EmptiedText(qint64 tables, qint64 rows);

/// What became of a step, in Italian: "completato".
QString OutcomeText(SequenceEntry::Outcome outcome);

/// The account of a sequence as lines of text for the operator. @param most entries of a list before it is cut
QStringList SequenceLines(const SequenceResult& result, int most = 20);
