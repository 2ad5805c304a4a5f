#pragma once

#include "adapters/contract/run/Emptying.h"
#include "adapters/contract/run/Needs.h"
#include "core/Session.h"

#include <array>
#include <concepts>
#include <optional>
#include <vector>

namespace contract {

/// The eight import buttons of the window, in its order.
enum class Button { Cli, Art, Dis, Doc, Acq, Saldi, Piano, Disegni };
inline constexpr int ButtonCount = 8;

/// What choosing an origin does to a button.
enum class Shown {
    Keep, ///< left as it was
    Yes,
    No,
};

/// One button in an origin's row. An empty caption leaves the caption as it was.
struct ButtonRow {
    Shown shown = Shown::Keep;
    QString caption;
};

using ButtonRows = std::array<ButtonRow, ButtonCount>;

/// A button's caption in an origin's row.
struct Caption {
    Button button;
    const char* text;
};

/// The row of buttons of an origin.
/// @param marks one character for each button, in their order: "Y" shown, "N" hidden, "-" left as it was, "?" hidden
/// until the origin has a procedure behind it @param captions of the buttons that have one of their own
ButtonRows Buttons(const char* marks, const std::vector<Caption>& captions = {});

enum class AnswerKind { YesNo, Text };

/// A question that a person must answer.
struct AnswerNeed {
    QString question;
    AnswerKind kind = AnswerKind::YesNo;
};

struct Origin;

/// An import procedure, reached by module and name.
struct Procedure {
    std::optional<Button> button; ///< none: no button calls it, it is reached by its name alone
    QString name;
    /// Runs it: a single code (empty for all) and whether the target is emptied first.
    std::function<void(Session&, const QString& singleCode, bool reset)> run;
    /// What it reads and writes: for the check before a run and for its mapping page.
    Needs needs;
    Emptying empties = {}; ///< what a reset deletes
    /// What it asks behind the confirmation and the question about the reset, in its order.
    std::vector<AnswerNeed> asks = {};
    QString confirmation = {}; ///< question that the button starts with; empty for the usual one of the button
    bool opensSource = true;   ///< whether the origin's source is opened for it
    bool choosesFile = false;  ///< whether it has a file of its own chosen
    bool asksReset = true;     ///< whether emptying the target is asked; without the question nothing is emptied
    bool takesCode = true;     ///< whether it can be limited to a single code
    /// Whether it also reads a column, beyond those of its needs, that a table has; null: it never does.
    std::function<bool(const QString& column)> readsAlso = {};
    QString destroys = {}; ///< what it deletes, for one that does nothing else: it wants a confirmation of its own
    /// The origin whose source it reads, opened with that one's settings and layout; null: its own origin's.
    const Origin* readsOf = nullptr;
};

/// How a source that keeps several companies in one database tells them apart.
struct CompanyKey {
    QString setting;     ///< key of section IMPORT that names the company
    QString table;       ///< that every company has
    QString column = {}; ///< of each table, that tells it ("*_X": ends so); empty: its code stands in front of names
    QString usual = {};  ///< company without the setting; empty: one that is alone
};

/// How the place of a source is told.
enum class Place {
    Asked,      ///< by questions at each import, or it is fixed: there is nothing to set
    Chosen,     ///< a file that is chosen at each import
    Folder,     ///< a folder of tables in the settings: FoxPro, text files
    File,       ///< a file in the settings
    Server,     ///< server and database in the settings
    DataSource, ///< an ODBC data source in the settings
};

/// The keys of the settings that name a source.
struct SourceKeys {
    QString networkSection = "IMPORT"; ///< of `network`, where the origin's own section has none
    QString networkDefault = "0";
    QString username = "Username";
    QString password = "Password";
    QString server = "Servername";
    QString database = "Databasename";
    QString network = "NetworkCredential";
    QString driver = "Driver";
    QString encryption = "Encryption";
    QString authorities = "EncryptionCA";
};

/// What fills a connection's parameters, and where it has them from: for who shows or chooses the source.
struct Opening {
    Opening() = default;
    template<class Open>
    requires(!std::same_as<std::remove_cvref_t<Open>, Opening>)
        Opening(Open fill, Place from = Place::Asked,
                SourceKeys called = {}) // NOLINT: an opening is written as a function
        : open(std::move(fill)),
          place(from),
          keys(std::move(called)) {}
    bool operator()(Session& session, ovConnection& source) const { return open(session, source); }

    /// Fills the parameters from settings and questions; false when the operator gave up.
    std::function<bool(Session&, ovConnection& source)> open;
    Place place = Place::Asked;
    SourceKeys keys;
};

/// Whose the names of a source's tables and columns are.
enum class Naming {
    TheirOwn,   ///< known of the system that the data come from
    OurReading, ///< mostly what this system expects: a database that has others is fitted by its layout file
};

/// How an origin's source opens.
struct SourceSpec {
    QString kind; ///< for the lists: "FoxPro", "SQL Server", "CSV" ...
    Opening prepare;
    /// What it asks for that, in its order; the choice of a file is not among it.
    std::vector<AnswerNeed> asks = {};
    std::optional<CompanyKey> company = {};
    Naming names = Naming::TheirOwn;
};

/// One line of the origin list.
struct Origin {
    QString name;   ///< as the list shows it, for example "Arca 2000"
    QString module; ///< for example "modImport_Arca2000"
    SourceSpec source;
    ButtonRows buttons;
    Shown sequence = Shown::Keep; ///< what choosing the origin does to the sequence button
    /// The procedures behind its buttons, in the order in which a button calls them.
    std::vector<Procedure> procedures;
    /// Which question the counterparty button asks about emptying the target: true for an origin whose counterparty
    /// import deletes every counterparty, whoever wrote it: "Cancellare tutte le controparti prima di importarle?" (No
    /// is the default button); false for "Resettare prima di importare?", whose details tell every table and its rows.
    /// No origin of the list is known to be one of the first kind.
    bool deletesAllCounterparties = false;
};

/// A procedure that reads the source of another origin. @param other must live as long as the procedure
Procedure OverSourceOf(const Origin& other, Procedure procedure);
/// The origin whose source is opened for a procedure of an origin, or for the first of several that reads one; null: no
/// source is.
const Origin* SourceOf(const Origin& origin, const Procedure& procedure);
const Origin* FirstSourceOf(const Origin& origin, const std::vector<const Procedure*>& procedures);

/// What is asked behind the confirmation and the question about the reset, in the order in which it is asked: by the
/// opening of the origin's source, where a procedure opens it, and by each procedure. Who cannot ask knows from it
/// before anything is deleted. The choice of a file, which comes before all that is written, is not among it.
std::vector<AnswerNeed> AnswersNeeded(const Origin& origin, const std::vector<const Procedure*>& procedures);
/// What a procedure deletes, in its order, when the operator wants a reset before it; empty for one that never does.
std::vector<RowsToDelete> DeletedByReset(Session& session, const Procedure& procedure);

/// Short name of a button on the command line: "cli", "art", "dis", "doc", "acq", "saldi", "piano", "disegni".
QString ButtonName(Button button);
/// The button of that short name; none when there is no such button.
std::optional<Button> ButtonFromName(const QString& name);

} // namespace contract
