#pragma once

#include "core/Record.h"
#include "core/Session.h"

#include <optional>

/// A bill of materials of the Quadrix database with the bills of its sub-assemblies: brings what it costs, and what it
/// sells for, up to date from the articles and the price lists of work.
///
/// The members are called in this order: `LoadData`, `UpdateComponent`, `UpdateLavorazioni`, `UpdateCosti`,
/// `UpdatePrezzi`, `SaveData`; `AggiornaCostiPrezzi` does all of it. Every amount is that of one unit. An amount that
/// is Null or zero is not known, and makes every amount that it belongs to unknown: a sum that lacks a part is none.
/// What a bill has come to is remembered as long as the object lives, for the bills that contain it.
/// Every operation raises `SqlError`, `RowGivenUp` or, for data that make no sense, `ImportError` naming the bill.
class ovDistinta {
public:
    using Amount = std::optional<double>; ///< none: not known
    /// An amount as a column holds it.
    static Amount Known(double amount) { return amount == 0 ? Amount() : amount; }

    struct Componente {
        qint64 id = 0;
        QString article;
        double quantity = 0; ///< per unit of the parent: DCQTA x DCCOE
        qint64 bill = 0;     ///< RECORD_ID of the bill of the article (IDDBF); 0: it is no sub-assembly
        Amount cost;
        Amount price;
        double markUp = 0; ///< in percent
    };

    struct Lavorazione {
        qint64 id = 0;
        int sequence = 0;
        QString work;
        QString supplier;   ///< CDCON of who does it; empty for the company itself
        double minutes = 0; ///< for a unit, its share of the set-up and all operators included
        Amount cost;        ///< of an hour
        Amount price;       ///< of an hour
        double markUp = 0;  ///< in percent
        Amount unitCost;    ///< of a unit, by the supplier's price list; none: the time counts
    };

    struct Nodo {
        qint64 id = 0;
        QString article;
        int revision = 0;
        double lot = 1; ///< units that share a set-up: the reorder lot of the article
        std::vector<Componente> components;
        std::vector<Lavorazione> phases;
        Amount cost;
        Amount price;
        QStringList withoutCost; ///< parts that leave the cost unknown, in the operator's words
        QStringList withoutPrice;
    };

    /// @param begin begins the rows that `SaveData` writes
    ovDistinta(Session& session, RecordMaker begin)
        : m_session(session),
          m_begin(std::move(begin)) {}

    /// Loads a bill (RECORD_ID of DIS_BAS) and, over any number of levels, those of its sub-assemblies. Raises
    /// `ImportError` for a bill that is not there, one whose article is not there, and for bills that contain
    /// themselves, with the path from article to article.
    void LoadData(qint64 bill);
    /// Forgets the bill that is loaded.
    void ResetData();
    /// Takes cost, mark-up and price of every component from its article as it is now. Raises `ImportError` naming the
    /// bill and the component when the article is not there.
    void UpdateComponent();
    /// Looks the work that suppliers do up in their price lists (LIS_LAV) that hold on the processing date, for the
    /// quantity of the lot and less the discounts.
    void UpdateLavorazioni();
    /// Adds up what each bill costs, sub-assemblies first: its components by their quantity, and its work by the price
    /// list, else by the time that it takes. A supplier's work without either is not known; own work without time costs
    /// nothing.
    void UpdateCosti();
    /// The same for what it sells for. What has no price of its own sells for its cost and mark-up; a component must
    /// have a mark-up for that, work without one sells for what it costs.
    void UpdatePrezzi();
    /// Writes what has changed: cost, mark-up and price of the components of the bill that is loaded, and the same with
    /// their dates of its article, when they are known and the bill is the one in force. An amount that is not known is
    /// logged with what it lacks, and the article keeps the one it has.
    /// @return whether something has been written
    bool SaveData();
    /// All of the above for one bill. @return as `SaveData`
    bool AggiornaCostiPrezzi(qint64 bill);

    /// A bill that is loaded, by RECORD_ID. Raises `ImportError` when it is not.
    const Nodo& NodeDistinta(qint64 bill) const;
    /// The components of a bill as they stand in the database, in the order in which they were written.
    std::vector<Componente> LoadCollectionComp(const Nodo& node) const;
    /// The active phases of a bill as they stand in the database, by sequence.
    std::vector<Lavorazione> LoadCollectionLavo(const Nodo& node) const;

private:
    struct Amounts {
        Amount cost;
        Amount price;
    };

    Nodo LoadNode(qint64 bill) const;
    void RefuseCycles() const;
    void PutPartsFirst();
    Amounts RolledUp(qint64 bill) const;
    Amount ListCost(const Nodo& node, const Lavorazione& phase) const;
    bool IsInForce(const Nodo& node) const;
    bool SaveArticle(const Nodo& node) const;

    Session& m_session;
    RecordMaker m_begin;
    qint64 m_root = 0;
    QHash<qint64, Nodo> m_nodes; ///< the bill that is loaded, and those under it that are not remembered yet
    std::vector<qint64> m_order; ///< of these, each behind its sub-assemblies
    QHash<qint64, Amounts> m_remembered;
};
