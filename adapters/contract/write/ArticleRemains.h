#pragma once

#include "adapters/contract/run/ImportRun.h"

#include <QSet>

#include <map>

namespace contract {

/// What earlier imports have hung on articles, and the source no longer shows: their further codes, their texts in
/// other languages, their default location. It is found article by article while the source is read, and taken away
/// behind the last row. What somebody has entered stays. Every operation raises `SqlError`.
class ArticleRemains {
public:
    /// What the source tells of its articles; the rest is not looked at.
    struct Told {
        bool internalCodes = false;
        bool counterpartyCodes = false;
        bool texts = false; ///< descriptions in other languages
        bool location = false;
    };

    explicit ArticleRemains(ImportRun& run)
        : m_run(run) {}

    /// A run that takes some of the source rows alone leaves everything as it is.
    void Begin(const Told& told);
    /// A row of an article (CDART) follows, of which nothing is written yet.
    void RowBegins(const QString& article);
    /// What the row shows of its article. @param counterparty CDCON; empty for a code of the company's own
    void Shows(const QString& article, const QString& code, const QString& counterparty);
    /// The same of a counterparty that it names, whether or not with a code.
    void ShowsCounterparty(const QString& article, const QString& counterparty);
    void ShowsText(const QString& article, const QString& language);
    void ShowsLocation(const QString& article);
    /// The row is carried over.
    void RowEnds(const QString& article);
    /// Behind the last row: what no row has shown goes, and is logged. What may have been in a row that was given up is
    /// told only, and so is the code at a counterparty that the source does not name with the article any more.
    void Close();

private:
    enum class Kind { InternalCode, CounterpartyCode, Text, Location };
    struct Remain {
        Kind kind;
        QString id;   ///< RECORD_ID
        QString what; ///< code, language, location
        QString counterparty = {};
        bool isReplaced = true; ///< whether the source tells otherwise now, rather than nothing
    };
    struct Remains {
        QString article; ///< CDART
        std::vector<Remain> all = {};
    };

    bool LooksAtAny() const;
    void ReadCodes(Remains& into) const;
    void ReadTexts(Remains& into) const;
    void ReadLocations(Remains& into) const;
    template<class Condition>
    void Found(const QString& article, Condition condition);
    void Tell(const QString& article, const Remain& remain) const;
    void TakeAway(const QString& article, const Remain& remain) const;

    ImportRun& m_run;
    Told m_told;
    QSet<QString> m_read;              ///< articles, in capitals
    std::map<QString, Remains> m_left; ///< by the same
    QHash<QString, int> m_begun;       ///< by the same: rows that have not ended
};

} // namespace contract
