#pragma once

#include "adapters/contract/kinds/Bills.h"
#include "adapters/contract/write/Document.h"

/// What the files of the module share.
namespace modImport_WinProgest {

inline const QString Module = QStringLiteral("modImport_WinProgest");

/// The list of SYS_IMP that article codes, units and VAT codes of all tables are translated by.
inline const QString Articoli = QStringLiteral("ARTICOLI");

/// As `PartyOrSurvivor`. Raises `ImportError` when there is no such counterparty.
QString RequireCounterparty(Session& session, const QString& sourceCode, bool supplier);

/// The code of a row. Raises `ImportError` when it is blank.
QString CodeOf(const contract::SourceRow& row, const QString& column);

/// What finding a counterparty reads.
contract::TableNeed CounterpartyNeed();

/// CDART of an article's code.
inline contract::Rule Article() { return contract::rules::ArticleCode(Articoli, "CODART"); }

contract::Bills DistinteWinProgest();
contract::Procedure Promozioni();

/// The kinds of documents, each with a head and a row table of its own.
enum class Kind { Offers, Orders, DeliveryNotes, Invoices, ProForma, SupplierOrders };

/// Columns of a row that name the row it comes from.
struct Link {
    Kind kind; ///< of the document it comes from
    QString number;
    QString day;
    QString row;
};

/// A kind of documents.
struct DocumentKind {
    QString name; ///< for the operator
    QString head;
    QString rows;
    contract::Family family;
    QString cause;           ///< of CAU_DOC
    QString type;            ///< document type where CAU_DOC has no such cause
    bool open;               ///< its rows wait for their delivery; else it is history
    std::vector<Link> links; ///< the first that a row fills in counts

    bool IsSupplier() const { return family.number == contract::Purchases.number; }
    QString Counterparty() const { return IsSupplier() ? QStringLiteral("CODFOR") : QStringLiteral("CODCLI"); }
};

const DocumentKind& Of(Kind kind);

contract::Procedure DocumentiWinProgest(contract::Button button);

const contract::Needs& RiallineaNeeds();
/// Links the rows of one kind of documents to the rows that they come from. Of a kind that comes from none, and without
/// any document, nothing but a message comes.
/// @return false when the operator cancelled
bool RiallineaDRORI(contract::ImportRun& run, Kind kind, const QString& singleCode);
/// Asks for each kind that comes from another whether its rows are to be linked.
void RiallineaDRORIWinProgest(Session& session, const QString& singleCode, bool reset);

} // namespace modImport_WinProgest
