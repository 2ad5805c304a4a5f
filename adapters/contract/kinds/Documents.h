#pragma once

#include "adapters/contract/kinds/ProductionOrders.h"
#include "adapters/contract/write/Document.h"

namespace contract {

/// What a kind of document of the source becomes.
struct DocumentKind {
    QStringList marks = {}; ///< values of the field that tells the kind, compared without case; none: every document
    QString cause = {};     ///< CDCAD; empty where the documents tell it
    QString type;           ///< of documents whose cause CAU_DOC lacks, e.g. "ORD"
    Family family;
    bool isOpen = true; ///< still to be delivered as far as its rows tell; else it has been delivered in full
};

/// The discounts that a text joins with "+", as fields of a row.
std::vector<Field> DiscountFields(const QString& column);

/// The condition of a source that is to be asked for every row (`Documents::sinceCondition`): its days are texts, or
/// may be, which no comparison of the source puts in order.
QString EveryRow(const ovConnection& source, const QDate& from);

/// The head of a document. The fields know whether it is of a customer (family of sales) or a supplier: see
/// `rules::PartyOf`.
struct DocumentHeadFields {
    Field number;
    Field day;
    Field year = {};    ///< without it that of the day
    Field series = {};  ///< without it numbers count over all series; a blank one is the main series
    Field counterparty; ///< its CDCON: `rules::PartyOf`, `CustomerOf` or `SupplierOf`; without one it is given up
    Field name = {};    ///< without it, or blank, that of the counterparty
    Field state = {};   ///< without it "to deliver", or "delivered" for a kind that is not open
    Lines lines = {};   ///< further columns of the head
    /// Whether each counterparty has numbers of its own; else a number is of one document, whoever it is of.
    bool countedByParty = false;
};

/// A row of a document.
struct DocumentRowFields {
    Field number;
    Field article = {};     ///< its CDART: `rules::ArticleCode`
    Field type = {};        ///< DRTIP; without it, or blank, a row without article and without amount is a text
    Field description = {}; ///< without it, or blank, that of the article
    Field unit = {};        ///< the same
    Field quantity = {};
    Field quantity2 = {}; ///< in the second unit
    Field delivered = {};
    Field price = {};
    std::vector<Field> discounts = {}; ///< at most three
    Field vatCode = {}; ///< without it, or blank, a row of goods has that of its article, which is logged
    Field state = {};   ///< without it what the quantities tell
    Lines lines = {};   ///< further columns of the row
};

/// How heads and rows are read.
enum class Reading {
    Joined,       ///< in one query: a source row is a row of a document, behind the columns of its head
    HeadThenRows, ///< a source row is a head, and its rows are read behind it
    OneTable,     ///< a table has them both: a source row is a row of a document
};

/// What becomes of a head, read with `HeadThenRows`, of which no row is written.
enum class WithoutRows { LeftOut, Written };

/// From which day on documents are imported.
enum class Since {
    Setting,       ///< DOC_DateStart
    YearOfSetting, ///< the first day of its year
    Asked,         ///< asked, with DOC_DateStart proposed
};

/// What becomes of documents that an earlier import has written.
enum class Imported {
    Rewritten,
    Asked, ///< the operator is asked whether they are left out
};

/// Which of its documents an import carries over.
enum class Which {
    All,
    Asked, ///< the operator is asked: those of customers, or those of suppliers
};
inline const QString WhichQuestion =
    QStringLiteral("Quali documenti importare?\n[SI] quelli dei clienti\n[NO] quelli dei fornitori");

/// A row of a document that has been written.
struct WrittenRow {
    qint64 id; ///< RECORD_ID
    const DocumentRow& values;
    const DocumentHead& head;
    const Family& family;
};

/// A document all of whose rows have been written.
struct WrittenDocument {
    qint64 id;       ///< RECORD_ID of the head
    qint64 rowsLeft; ///< of an earlier import, no longer in the source; they count in the totals
    const Family& family;
};

/// What is odd about the heads of an origin that are read with `HeadThenRows`, each a document of its own. It is made
/// for each run: what it remembers of rows has to go through `ImportRun::WhenTakenBack` or `Restores`.
struct HeadHooks {
    /// Called with each head first: why it is left out, in the operator's words, or that it cannot be carried over, as
    /// `ImportError`; empty: it is written.
    LeavesOut leavesOut = {};
    /// Sets what the fields cannot tell, before the document is looked for. Returns a further condition on the head
    /// that is there already, without AND; empty for none.
    std::function<QString(const SourceRow& head, DocumentHead&)> complete = {};
    /// Sets what the lines of a row cannot tell, behind them, where it has to remember something.
    std::function<void(const SourceRow& row, TargetRow&)> moreOfRow = {};
    /// Called behind each row that has been written.
    std::function<void(const SourceRow& row, const WrittenRow&)> rowWritten = {};
    /// Called when all rows of a document and its totals have been written.
    std::function<void(const SourceRow& head, const WrittenDocument&)> documentWritten = {};
    /// Called behind the last head of a run that nobody interrupted.
    std::function<void()> end = {};
    QStringList causes = {};              ///< that documents may have, whether the run meets them or not
    std::optional<Emptying> empties = {}; ///< where settings narrow what the declaration empties
};

/// An import of documents. One without a day is given up, and so is one whose number another of the source has already
/// taken in the run, or whose rows are of several counterparties; so are those whose heads rows cannot tell apart. Rows
/// whose article is not there are left out as the setting DOC_CheckArticoli says; a document that is there is
/// rewritten, and what the source no longer has of it is told, and so are rows without a head. Totals follow from the
/// rows.
struct Documents {
    Frame frame = {}; ///< %1, the number of documents, may stand in the completion message
    /// Heads, or heads and rows in one table. The order must bring the rows of a document together, and the group are
    /// columns of the head that do not differ among them; where rows are joined, the columns that tie them to their
    /// head belong to both anyway. In conditions the heads are T, the rows J1.
    SourceTable source;
    /// The rows; where they are joined, of columns that have the same name in both tables that of the head is read.
    /// Their condition names them J1.
    ChildTable rows = {};
    Reading reading = Reading::Joined;
    WithoutRows withoutRows = WithoutRows::LeftOut;
    std::vector<DocumentKind> kinds;
    Field kind = {};  ///< tells it, where there are several
    Field cause = {}; ///< CDCAD where each document tells it; without it that of its kind
    DocumentHeadFields head;
    DocumentRowFields row;
    Since since = Since::Setting;
    QDate oldest = {}; ///< a day of the origin's own in place of the settings
    /// The condition on the day of the head where the source does not hold it as a date; an empty text asks for every
    /// row. Rows of older documents are left out in any case.
    std::function<QString(const ovConnection& source, const QDate& from)> sinceCondition = {};
    Which which = Which::All;
    Imported imported = Imported::Rewritten;
    /// Where else the origin imports documents of the same causes from, in the operator's words ("dal file Excel"):
    /// what is not in the source may be theirs.
    QString others = {};
    bool checksArticles = true; ///< whether the setting DOC_CheckArticoli counts; else every row is written
    std::optional<ProductionOrders> production = {}; ///< of the rows
    std::optional<Emptying> empties = {};            ///< without it the documents of its causes that an import wrote

    // What is odd about an origin.
    /// For each source row. With `HeadThenRows` for each row of a document: the result tells how many of them at the
    /// end.
    LeavesOut leavesOut = {};
    /// Set what the lines cannot tell, behind them.
    std::function<void(ImportRun&, const SourceRow&, TargetRow&)> moreOfHead = {};
    std::function<void(ImportRun&, const SourceRow&, TargetRow&)> moreOfRow = {};
    /// Called behind the check, before anything is written.
    std::function<void(ImportRun&)> before = {};
    std::function<HeadHooks(ImportRun&)> ofHeads = {}; ///< with `HeadThenRows`, without a group
    Needs further = {};                                ///< what the hooks read and write
};

/// The declaration as part of a procedure, and what the procedure tells of itself: see `ProcedureOf`.
ImportPart PartOf(const Documents& declared);
Frame FrameOf(const Documents& declared);

} // namespace contract
