#pragma once

#include "adapters/contract/run/Emptying.h"
#include "adapters/contract/write/ImportedLists.h"
#include "adapters/contract/write/ImportingModules.h"
#include "sql/mod_ovTools.h"

#include <QSet>

#include <map>
#include <optional>

namespace contract {

/// What the writer below writes: of price lists, and of work price lists.
std::vector<TableNeed> PriceListNeeds();
std::vector<TableNeed> WorkListNeeds();

/// What a reset of the price lists empties.
Emptying PriceListEmptying();

/// Days between which a price holds; Null for open. An end that the source does not tell of leaves the one that is
/// there.
struct Validity {
    QVariant from;
    std::optional<QVariant> to = {};
};

/// A price up to a quantity. A quantity of 0, blank or Null is any quantity: the price holds without a limit.
struct Scale {
    QVariant quantity;
    QVariant price;
    std::vector<QVariant> discounts = {}; ///< as many as the source tells of, at most three; Null for none
};

/// A list in one direction. A sales list and a purchase list may bear the same code.
struct ListHead {
    QString code;
    qint64 id = 0; ///< RECORD_ID
};

/// The price of a work on an article at a supplier.
struct WorkPrice {
    QString work = {}; ///< blank: not known
    QString article = {};
    QString supplier = {}; ///< CDCON; blank: not there
    Validity validity = {};
    Scale scale = {};
    QVariant created = {}; ///< moment of the line in the source; Null for the moment of the import
};

/// Writes price lists. It knows the target, never the origin.
/// Every operation raises `SqlError`, `RowGivenUp` or, for a value that does not fit, `ImportError`.
class PriceListWriter {
public:
    /// @param part what tells the parts of a procedure apart; empty where it has one
    explicit PriceListWriter(ImportRun& run, const QString& part = {})
        : m_run(run),
          m_modules(run, QStringLiteral("LIS_TES")),
          m_imported(run, part) {}

    /// Makes sure that the list has its head, and brings name and currency up to date; another currency that it had is
    /// logged. Within one import a list has one currency: a row in another raises `ImportError`.
    /// @param direction "V" sales or "A" purchases @param currency empty: the euro, or what the head has
    /// @param since day from which it holds; Null: that of the import
    ListHead Head(const QString& list, const QString& direction, const QString& description,
                  const QString& currency = {}, const QVariant& since = {});
    /// Makes sure that an article is in a list from a day on, and brings end and note up to date, where they are told;
    /// another end that it had is logged. @return RECORD_ID of its row
    qint64 Article(const ListHead& list, const QString& article, const Validity& validity,
                   const std::optional<QString>& note = {});
    /// Writes a scale of an article's row; one of the same quantity is rewritten, and another price that it had is
    /// logged. `EndLists` follows behind the last one of the source.
    RowOutcome AddScale(qint64 articleRow, const Scale& scale);
    /// Writes a price that holds from its quantity on, up to where the next one begins. All of an article's row belong
    /// together: `EndSteps` follows behind the last of them, and one that comes after it raises `ImportError`. The
    /// lowest one holds for less than its quantity too, as Quadrix knows no lower limit, which is logged.
    RowOutcome AddScaleFrom(qint64 articleRow, const Scale& scale);
    /// A row of the source whose article is not there is left out: what is in the lists of that article is not told as
    /// gone.
    void LeaveOut(const QString& article) { m_run.Remember(m_leftOut, mod_ovTools::UpperChars(article)); }
    /// Deletes the prices that an earlier import wrote from quantities on which the source has no more, and logs them:
    /// they would go on holding beside the others.
    void EndSteps();
    /// Behind the last row of the source: deletes the scales that an earlier import wrote for an article's row and that
    /// `AddScale` has not met, and logs them, as they would go on holding; where rows were given up, which may have
    /// them, or another module imports prices too, it tells them only. Prices which hold today and have not come it
    /// tells too, where no other module imports prices: those of the lists that were met, and of those that this part
    /// of the procedure alone has imported earlier. Nothing in a run that takes some of the source rows alone.
    void EndLists();
    /// A row of the source with all works of an article follows. Two codes of the source may be one article.
    void BeginWorks(const QString& article);
    /// Writes the price of a work on an article at a supplier, with one scale; the one that was written before this row
    /// of the source for the same work, article, supplier, first day and quantity is rewritten. A row that has several
    /// alike has each of them written once.
    void Work(const WorkPrice& price);
    /// Behind the last row of the source: of the articles that have begun, deletes the prices that an earlier import
    /// wrote and that `Work` has not met where one of the same work, supplier and first day has come, beside which they
    /// would go on holding, and logs them. The others that hold today, and those that a hand has changed since, it
    /// tells only; so it does with all of them where rows were given up, which may have them. Nothing in a run that
    /// takes some of the source rows alone.
    void EndWorks();

private:
    /// RECORD_IDs of a work price and of its scale; 0 for none.
    struct KnownWork {
        qint64 price = 0;
        qint64 scale = 0;
    };
    /// A scale with the quantity that it holds from.
    struct Step {
        double from;   ///< 0 for the lowest of an earlier import, which may have been written from more
        qint64 id;     ///< RECORD_ID
        double to = 0; ///< of an earlier import: the last quantity of it
    };
    /// The scales of an article's row while its rows are read, in the order of their quantities.
    struct Steps {
        QString lowest; ///< the row of the lowest one, and its quantity, in a message
        std::vector<Step> written;
        std::vector<Step> earlier; ///< of an import before; those found again are taken out
    };
    KnownWork FindWork(const WorkPrice& price) const;
    void EndWorksOf(const QString& article);
    ListHead NewHead(const QString& list, const QString& direction, const QString& description, const QString& currency,
                     const QVariant& since) const;
    ListHead KnownHead(const QString& list, const QString& direction, const QString& description,
                       const QString& currency) const;
    void ReadScales(qint64 articleRow);
    void EndScales(bool areDeleted);
    std::map<qint64, QString> ListsToLookAt();
    void TellRowsLeft(qint64 list, const QString& code) const;
    Steps& StepsOf(qint64 articleRow);
    std::vector<Step> EarlierSteps(qint64 articleRow) const;
    void TellStepGone(qint64 articleRow, const Step& step) const;
    RowOutcome WriteStep(Steps& steps, qint64 articleRow, double from, Scale scale);
    void Rewrite(qint64 id, const Scale& scale) const;
    void TellWorkGone(const QString& article, const QString& supplier, const QDate& from,
                      const QVariant& quantity) const;

    ImportRun& m_run;
    ImportingModules m_modules;
    ImportedLists m_imported;
    /// A list that this import has met, and the currency of its rows; empty while none has told one.
    struct MetList {
        ListHead head;
        QString currency;
    };
    QHash<QString, MetList> m_lists;            ///< by direction and code
    std::map<qint64, Steps> m_steps;            ///< by article's row, of the rows that belong together
    QSet<qint64> m_done;                        ///< article's rows whose steps are written
    QSet<qint64> m_rows;                        ///< article's rows that this import has met
    QSet<QString> m_leftOut;                    ///< articles, in capitals
    QSet<qint64> m_scaled;                      ///< those of them whose scales of before are known
    std::map<qint64, std::vector<Step>> m_left; ///< by article's row: its scales of before that have not come
    QSet<qint64> m_noted;                       ///< article's rows of which a row of the source has told a note
    QSet<qint64> m_works;                       ///< RECORD_IDs of the work prices written so far
    QSet<qint64> m_worksOfRow;                  ///< those of the source row under way
    QSet<QString> m_worked;                     ///< articles that have work prices
};

} // namespace contract
