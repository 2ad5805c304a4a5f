#pragma once

#include "adapters/contract/run/Emptying.h"
#include "adapters/contract/run/ImportRun.h"

#include <QSet>

namespace contract {

struct Mapping;

/// A family of documents: its tables.
struct Family {
    int number; ///< 0 sales, 1 purchases, 2 subcontracting
    QString head;
    QString row;
    QString dueDate;
};

inline const Family Sales{0, "DOC_VEN", "DOC_VER", "DOC_VED"};
inline const Family Purchases{1, "DOC_ACQ", "DOC_ACR", "DOC_ACD"};
inline const Family WorkAccount{2, "DOC_CTL", "DOC_CTR", "DOC_CTD"};

/// What the writer below writes into a family.
std::vector<TableNeed> DocumentNeeds(const Family& family);

/// The tables of the document rows of all families, whose triggers are off while documents are written.
const QStringList& DocumentRowTables();

/// What a reset of the documents deletes: those that an import wrote, with the rows and due dates that are left without
/// a head. Documents entered by hand stay. @param causes only those of these causes; empty for all
Emptying DocumentEmptying(const QStringList& causes = {});

/// What the settings say to every document import.
struct DocumentSettings {
    QDate from;                ///< DOC_DateStart: older documents stay behind
    bool checkArticles = true; ///< DOC_CheckArticoli: rows whose article is missing are left out
};
/// Reads them. Raises `ImportError` when DOC_DateStart is no date.
DocumentSettings ReadDocumentSettings(Session& session);

inline const QString StartDateQuestion = QStringLiteral("Data inizio documenti:");
inline const QString SkipImportedQuestion =
    QStringLiteral("ATTENZIONE: \nsaltare Documenti già importati in precedenza?");

/// Asks from which day on documents are imported, the day of DOC_DateStart proposed. Raises `ImportError` when the
/// answer is no date.
QDate AskStartDate(ImportRun& run);

/// Why a source row is left out whose document is there and is not rewritten.
inline const QString AlreadyImported = QStringLiteral("documento già importato");

/// Asks whether documents that an earlier import wrote are skipped; otherwise they are rewritten.
bool AskSkipImported(ImportRun& run);

/// Two tables of the source that a join reads together: what one of them lacks in the other is not read.
struct Joined {
    QString table;
    QString other;
    QString on;         ///< condition of the join, over L (the table) and O (the other)
    QString blank;      ///< a column of the other that is never Null
    QString where;      ///< condition on L; empty for every row
    QStringList naming; ///< columns of L that tell a row, as statements have them
};
/// Logs how many rows of the table the join leaves out, which nobody would notice, and the first of them: rows without
/// their head, heads without rows. A run of a single code does not ask.
void TellUnmatched(ImportRun& run, const Joined& joined);

/// What a cause of CAU_DOC sets on its documents.
struct Cause {
    QString code;
    QString type; ///< CDCAT, for example "DDT"
    QString warehouse;
    QString reason;      ///< CDCAM, of the stock movement
    QString movement;    ///< CDTPM
    QString kind = {};   ///< CDTIP, the document type of its own; often empty
    QString series = {}; ///< CDSER
};

/// A document head.
struct DocumentHead {
    Cause cause;
    QString series;
    QString number;
    QVariant day;
    int year = 0;
    QString counterparty;
    QString name;
    QString state;
};

/// How the log names a document: "ORDCL 12/2024 di 'Rossi'".
QString NameOf(const DocumentHead& head);
/// The condition on the heads of a series, of which a blank one is the main series.
QString OfSeries(const Session& session, const QString& series);

/// A document row.
struct DocumentRow {
    int number = 0;
    bool isNumbered = true; ///< whether the source gives the number; else it follows from the row's place
    QString type;
    QString article;
    QString description; ///< empty: that of the article
    QString unit;        ///< empty: that of the article
    double quantity = 0;
    double quantity2 = 0; ///< in the second unit
    double delivered = 0;
    double price = 0;
    std::array<double, 3> discounts = {};
    QString vatCode;      ///< empty: that of the article, of a row of goods
    bool tellsVat = true; ///< whether the source has VAT codes: one of the article in place of it is logged then
    QString state;
    bool tellsState = false; ///< whether the state is the source's, and does not follow from the quantities

    /// Amount of the row, less its discounts, rounded to cents.
    double Amount() const;
    /// Whether there is nothing in it but its description: neither an article nor an amount.
    bool IsText() const { return article.isEmpty() && Amount() == 0; }
};

/// What tells a row of a document that the source does not number.
struct LikeRow {
    qint64 id = 0; ///< RECORD_ID; 0: none is like the one looked for
    int number = 0;
    QString article = {};
    QString text = {};
    double quantity = 0;
    double price = 0;
    bool isSame = false; ///< whether article, text, quantity and price are those of the one looked for
};

/// The rows that an import has written to a document, and how they are compared.
struct ImportedRows {
    QList<LikeRow> rows = {}; ///< by number
    double ofQuantity = 0;    ///< how far one may be from that of a row and is the same
    double ofPrice = 0;
    bool hasTexts = true; ///< whether the source has descriptions
};
/// The row that is most like one which the source does not number: of the same article and text, quantity and price,
/// or place, as many of them as there are; of another article only where quantity and price are the same, with text or
/// place. Where all of the first four are the same it is, whichever are blank. @param row as it would be written
/// @param but rows that have been rewritten already
LikeRow FindRowLike(const ImportedRows& all, const TargetRow& row, const QSet<qint64>& but);

/// Rows that the source has of a document and that are not written.
struct LeftOutRows {
    QSet<int> numbers = {};
    QStringList articles = {}; ///< of those that it does not number
};

/// Writes documents of a family. It knows the target, never the origin.
/// Every operation raises `SqlError`, `RowGivenUp` or, for a value that does not fit, `ImportError`.
class DocumentWriter {
public:
    DocumentWriter(ImportRun& run, Family family)
        : m_run(run),
          m_family(std::move(family)) {}

    /// A cause, read from CAU_DOC once in a run. One that is missing there is logged, and has the given document type
    /// and the default warehouse.
    const Cause& CauseOf(const QString& code, const QString& typeWhenMissing);
    /// RECORD_ID of the head of that number and cause (and year, unless 0); 0 when there is none.
    /// @param further one more condition, without AND
    qint64 Find(const QString& number, const QString& cause, int year = 0, const QString& further = {}) const;
    /// A head row with everything that the fields tell, the address of its counterparty and the defaults; a mapping or
    /// further columns may follow before it is written by `Insert` or `Update`.
    TargetRow Head(const DocumentHead& head) const;
    /// Inserts a head and returns its RECORD_ID.
    qint64 Insert(TargetRow& head);
    /// Rewrites the head of that RECORD_ID.
    void Update(TargetRow& head, qint64 id);
    /// The source has the document of that head, whatever becomes of it; heads that are written need not be told.
    void Saw(qint64 head) { m_run.Remember(m_seen, head); }
    /// A row of a head: what the fields tell, description and units of its article, its amount; further columns may
    /// follow before it is inserted.
    TargetRow Row(qint64 head, const DocumentHead& of, const DocumentRow& row) const;
    /// Has a row that is there keep what the source lacks, its amount and remaining quantity with it; one of another
    /// article keeps nothing. @param row as the source tells it @param lacking columns that the source lacks
    void Keep(TargetRow& target, qint64 id, DocumentRow row, const QStringList& lacking) const;
    /// RECORD_ID of a row of a head by its number, of an import where one has written it; 0 when there is none.
    /// @param but rows that have been rewritten already: a number may come twice
    qint64 FindRow(qint64 head, int number, const QSet<qint64>& but = {}) const;
    /// The same, to be rewritten when its document is imported again: somebody's own is none.
    /// @param article of the row: one of it that somebody has entered, and an import has changed last, is no longer
    /// somebody's own, as earlier releases wrote over those; not told: it is
    qint64 FindImportedRow(qint64 head, int number, const QSet<qint64>& but = {},
                           const std::optional<QString>& article = {}) const;
    /// The rows that an import has written to a head, as it is now. @param lacking columns that the source lacks
    ImportedRows RowsOfImports(qint64 head, const QStringList& lacking) const;
    /// The number for a new row of a head which the source does not number: its own, else the next free one by tens; 0
    /// where the source numbers none.
    int FreeNumber(qint64 head, int number) const;
    /// Tells which rows an import has written to a head beyond those of this run: they were imported before and are no
    /// longer in the source, yet they still count in the totals. @param name of the document
    /// @param written RECORD_ID of those of this run
    /// @param leftOut those that the source has and this run leaves out: they are told apart
    /// @return their number
    qint64 TellRowsLeft(qint64 head, const QString& name, const QSet<qint64>& written, LeftOutRows leftOut = {}) const;
    /// Tells which documents of these causes, of that day or later, an earlier import has written and this run has not
    /// come across: deleted in the source or, where only open ones are read, settled there. They stay as they are. A
    /// run of a single code tells none.
    /// @param others where else documents of these causes are imported from; empty: nowhere
    void TellDocumentsLeft(const QStringList& causes, const QDate& from, const QString& others = {}) const;
    /// Recomputes the totals of a head from its rows.
    void Total(qint64 head) const;

private:
    template<class Condition>
    qint64 FirstRow(qint64 head, int number, const QSet<qint64>& but, Condition counts) const;
    void SetAddress(TargetRow& row, const DocumentHead& head) const;
    QString DestinationName(const DocumentHead& head, const QString& counterpartyName) const;
    QString VatOf(const DocumentRow& row, const QString& ofArticle) const;
    void TellExchangeRate(const TargetRow& head) const;

    ImportRun& m_run;
    Family m_family;
    QHash<QString, Cause> m_causes;
    QSet<qint64> m_seen; ///< heads whose documents the source has
};

/// The columns that a mapping writes, with those that the layout of the source adds.
QStringList WrittenColumns(const Session& session, const Mapping& mapping);
/// The same, and further ones, but for those whose columns the open source lacks: what was there stays.
QStringList EmptiedColumns(Session& session, const Mapping& mapping, const QStringList& further = {});
/// Sets those of the columns to Null that nothing has been set to: of a row that is written over, what was there before
/// does not stay.
void EmptyOthers(TargetRow& row, const QStringList& columns);

/// What the source says that a document comes to.
struct SourceTotals {
    double gifts = 0; ///< amount of the rows that are given away
    // Without one that of the rows stays.
    std::optional<double> goods = {};
    std::optional<double> taxable = {};
    std::optional<double> tax = {};
    std::optional<double> total = {};
};
/// Writes them over those that follow from the rows, as they are on the paper; those that differ are logged.
/// @param head RECORD_ID of a document whose totals have been written
void SetTotals(ImportRun& run, const Family& family, qint64 head, const SourceTotals& totals);

} // namespace contract
