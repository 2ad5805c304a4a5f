#pragma once

#include "adapters/contract/write/JoinedCodes.h"

namespace contract {

class TargetRow;
struct Mapping;

/// COSC1 to COSC3, or COSF1 to COSF3. They go one upon the other: some of before and some of now are none that anybody
/// has agreed on.
const QStringList& DiscountColumns(bool customer);

/// The marks of a counterparty that hold for all of its roles; none where the source does not tell it.
struct PartyMarks {
    std::optional<bool> cancelled = {}; ///< COANN
    std::optional<bool> blocked = {};   ///< COBLK
};

/// What tells a counterparty of the source from others.
struct SourceIdentity {
    QString table; ///< source table and code column, as SYS_IMP knows them
    QString field;
    QString code;
    Roles roles;
    QString name; ///< whole, both lines
    QString vatNumber;
    QString taxCode;
    QString number = {}; ///< of a customer whose code is more than its number: the number
    QString told = {};   ///< CDCON that SYS_IMP tells of another code of the source, before that of this one
    PartyMarks marks = {};
};

/// The Quadrix code of a counterparty of the source.
struct Placement {
    QString code;
    bool known = false; ///< the counterparty is there already: it only gains what the source row adds
    /// The source row made the counterparty, or became one with it, at an earlier run: what hung on it then has been
    /// written, and may have been mended or deleted since.
    bool isAgain = false;
};

/// What a source row leaves of the counterparty that it is one with.
struct Joining {
    bool isAgain = false;      ///< as `Placement::isAgain`
    Roles keeps = {};          ///< roles that another row of the source has given it, whose columns stay
    bool isStranger = false;   ///< it has all roles of the row, which is another one's: nothing of it changes
    Roles clears = {};         ///< roles whose discounts go where the source row has none
    bool isRevived = false;    ///< it is cancelled no longer
    QStringList ownLists = {}; ///< COLSC, COLSF where that is the counterparty's own price list, which stays
};

/// What happens to a counterparty whose code belongs to another one.
enum class TakenCode {
    Update, ///< the row that has the code gains what the source row adds
    Next,   ///< it takes the next free code
};

/// CDCON of the counterparty with that VAT number or, only when there is none, with that tax code; empty when there is
/// none. A number of one repeated character identifies nobody: it is as if it were blank. Raises `SqlError`.
QString FindByIdentity(Session& session, const QString& vatNumber, const QString& taxCode);

/// The counterparties of the company: finds those that a source row means and numbers new ones.
/// Every operation raises `SqlError`, `RowGivenUp` or `ImportError`.
class CounterpartyRegister {
public:
    /// @param usual what the origin does with taken codes when the setting CodiceOccupato of the section IMPORT says
    /// nothing; a setting that is neither "aggiorna" nor "nuovo" raises `ImportError`
    explicit CounterpartyRegister(ImportRun& run, TakenCode usual = TakenCode::Next);

    /// A source row begins: what the operations below tell and find depends on whether an earlier row of the run had
    /// its code, in a role that it has too.
    void Meet(const SourceIdentity& source);
    /// The source row is written into the counterparty that was found for it, which documents of its code find from now
    /// on (`JoinedCodes`); the log tells it where they found another one. The row of a cancelled customer takes nothing
    /// from one that is in force. Cancelled is who is so in every row, blocked who is so in the first; the log tells
    /// where rows differ.
    Joining Join(const SourceIdentity& source, const Placement& place);
    /// What becomes of the discounts of a counterparty of which the source row, in some of its roles, gives none: they
    /// stay unless the row has `Joining::clears`.
    /// @param target what the row sets in these roles, of which that is taken back
    void KeepDiscounts(TargetRow& target, const Roles& roles, const Placement& place, const Joining& joining);
    /// A row that leaves the columns of a role as they are has its say in the discounts all the same, as it may have
    /// given them when it was imported first. @param discounts lines of the row that tell discounts
    void NoteDiscounts(const Mapping& discounts, const SourceRow& row, const Placement& place, const Joining& joining);
    /// The roles of the source row under way but for those that the counterparty found for it has already and keeps as
    /// they are, as the row is a stranger to it, which the log has told.
    Roles RolesToWrite(const Roles& roles) const;
    /// `FindByIdentity` for the counterparty of a source row; the log tells of the two that become one.
    QString FindSame(const SourceIdentity& source) const;
    /// The counterparty that the source says a row is, which is known by its code: a stranger, whose name and numbers
    /// are all others, is not, unless a row of this run had that code or an earlier import made them one. Then it is
    /// another one with the same code of the other role; empty when there is none, and the log tells that the two stay
    /// two. @param code CDCON
    QString NoStranger(const SourceIdentity& source, const QString& code) const;
    /// Logs that the counterparty of a source row and the one with a code become one, unless that was made from the
    /// row.
    void TellMerge(const SourceIdentity& source, const QString& code) const;
    /// A source row that is left out because it is cancelled; `TellCancelled` follows behind the last one.
    void NoteCancelled(const Roles& roles, const QString& code);
    /// Behind the last source row of the run: tells the rows of earlier imports that are cancelled now, while their
    /// counterparty is not and no row of the run, of whichever part, has it in use. A run of some rows alone does not
    /// know that of one that is several rows.
    void TellCancelled();
    /// CDCON of the counterparty that an earlier import made from the same code: by COCGE for a customer, by COFGE for
    /// a supplier, and by the codes that stand beside them. Where name and numbers are all others it is another
    /// counterparty, of another origin. Empty when there is none, and for a blank code.
    QString ImportedBefore(const SourceIdentity& source) const;
    /// The roles of a source row whose columns in its counterparty are those of the row; those of the others are of
    /// another row, beside which its code stands. @param code CDCON
    Roles RolesHeld(const SourceIdentity& source, const QString& code) const;
    /// The same for a row that may be a new counterparty. One of another name is the one of before only where neither
    /// has a number and no earlier row of the run had the code, and the log tells it; else the two stay two, which the
    /// log tells too, unless their numbers say so. Where an earlier row had the code it is told, and who is another one
    /// is updated or new as `TakenCode` says.
    QString FindByCode(const SourceIdentity& source) const;
    /// CDCON of the carrier that an earlier import made of one of the source, where a code may be another company's:
    /// the counterparty with the code by number or name, else the imported one that is called so and is nothing but a
    /// carrier; empty when there is none.
    QString CarrierOfBefore(const SourceIdentity& source, const QString& code) const;
    /// Whether a counterparty has that code.
    bool Exists(const QString& code) const;
    /// The highest code present plus one, six digits. Raises `ImportError` when the highest is no number or the six
    /// digits are used up.
    QString NextCode() const;

    /// Finds the counterparty of a source row, or assigns it a code: the one imported from the same code before; else
    /// the one with its VAT number or tax code; else a customer's numeric code where six digits hold it, or the highest
    /// code plus one, as `Settle` gives it. The code that SYS_IMP tells is somebody's word: whoever has it is updated,
    /// unless the setting says "nuovo". `Meet` goes before it.
    Placement Place(const SourceIdentity& source) const;
    /// Gives a code to the counterparty of a source row when it is free. One that is taken is logged: by the same
    /// counterparty (equal VAT number or tax code, or one of the two has neither and the names agree) it is updated; by
    /// another one as `TakenCode` says, and the log names both.
    Placement Settle(const SourceIdentity& source, const QString& code) const;

private:
    /// A row of CON_TRO, as far as it tells who that is, and what another row of the source would change.
    struct Party {
        QString code;
        QString name;
        QString vatNumber;
        QString taxCode;
        QString customer; ///< COCGE
        QString supplier; ///< COFGE
        bool isCustomer;
        bool isSupplier;
        bool isCancelled;
        bool isBlocked;
        bool isByHand;        ///< whether somebody has written the row last, and not an import
        bool isUntouched;     ///< whether it is as an import has inserted it
        QStringList ownLists; ///< COLSC, COLSF where that is a list of the counterparty's own code
    };
    /// Whether all rows so far are cancelled, and whether a hand had been at the counterparty before the first of them.
    struct MetMarks {
        bool cancelled = true;
        bool isByHand = false;
    };
    /// Who is cancelled in the source, and who is not, whichever part of the run has it.
    struct Cancelled {
        QSet<QString> inUse;                           ///< CDCON of which a row of the run is not cancelled
        std::vector<std::pair<QString, QString>> rows; ///< CDCON that is not, and the row that is
    };
    /// Who has a source code in the column of a role.
    struct HeldCode {
        QString code;
        bool customer;
        std::vector<Party> parties;
    };
    static Party PartyOf(const SourceRow& row);
    std::vector<Party> Parties(const QString& column, const QString& code) const;
    std::vector<Party> Holders(const QString& code, bool customer) const;
    std::vector<Party> OfSourceCode(const SourceIdentity& source, bool customer) const;
    void RememberNumbers(const SourceIdentity& source, const QString& code) const;
    std::optional<Party> Find(const QString& code) const;
    QString OfAnother(const SourceIdentity& source, const Party& party) const;
    QString ToldBySomebody(const SourceIdentity& source) const;
    std::optional<Placement> Take(const SourceIdentity& source, const QString& code, TakenCode usual) const;
    Placement TakeNext(const SourceIdentity& source, const QString& taken) const;
    QString Replaced(const SourceIdentity& source, const Party& party) const;
    bool IsTold(const SourceIdentity& source, const Party& party) const;
    QString KeepRoles(const SourceIdentity& source, const Party& party, bool mayBeOwn) const;
    bool KeepsCode(const SourceIdentity& source, const Party& party, bool customer) const;
    void JoinRole(const SourceIdentity& source, const Party& party, bool customer, Joining& joining);
    void BeginParty(const SourceIdentity& source, const QString& code);
    std::vector<Party> OtherHolders(const SourceIdentity& source, bool customer, const QString& party) const;
    void KeepOwner(const SourceIdentity& source, bool customer, const QString& party, bool holds);
    void KeepDisplaced(bool customer, const QString& code, const QString& party);
    bool Clears(const Party& party, bool customer);
    bool HasDiscounts(const QString& party, const QStringList& columns) const;
    bool Revives(const SourceIdentity& source, const Party& party, bool isAgain);
    void NoteCancelled(const Party& party);
    bool HasRowsBeside(const Party& party) const;
    void TellTwice(const QString& code) const;
    void TellDifferent(const SourceIdentity& source, const Party& party, bool isUpdated) const;

    ImportRun& m_run;
    TakenCode m_usual;
    std::optional<TakenCode> m_setting; ///< none: as usual
    QSet<size_t> m_met;                 ///< hashes of the roles and codes of the rows so far
    bool m_again = false;               ///< whether the row under way has one of them
    mutable Roles m_kept;               ///< of the one found for the row under way, a stranger: they stay
    mutable JoinedCodes m_joined;
    mutable QHash<QString, QString> m_corrected; ///< CDCON by numbers of rows that are its by code and name alone
    mutable std::optional<HeldCode> m_held; ///< as it was read for the row under way, of which nothing is written yet
    QSet<QString> m_joinedNow;              ///< roles and codes that the run has given to counterparties
    QSet<QString> m_discounted;             ///< roles and CDCON to which rows of the run have given discounts
    QHash<QString, MetMarks> m_metMarks;    ///< by CDCON, of the rows of the run so far
    std::shared_ptr<Cancelled> m_cancelled;
};

} // namespace contract
