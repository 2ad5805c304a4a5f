#pragma once

#include "adapters/contract/write/ImportingModules.h"

#include <QSet>

#include <map>

namespace contract {

/// What earlier imports have hung on articles, and the source no longer shows: their suppliers and further codes, their
/// texts in other languages, their default location. It is found article by article while the source is read, and told
/// behind the last row: it stays. Where another module imports articles too nothing is told, as it may be of that one.
/// What somebody has entered is not looked at. Every operation raises `SqlError`.
class ArticleRemains {
public:
    /// What the source tells of its articles; the rest is not looked at.
    struct Told {
        bool suppliers = false;
        bool internalCodes = false;
        bool counterpartyCodes = false;
        bool texts = false; ///< descriptions in other languages
        bool location = false;
        bool ofAllArticles = false; ///< codes also of articles that no row has met: the source has nothing but codes
    };

    explicit ArticleRemains(ImportRun& run)
        : m_run(run),
          m_modules(run, QStringLiteral("ART_ICO")) {}

    /// A run that takes some of the source rows alone leaves everything as it is.
    void Begin(const Told& told);
    /// A row of an article (CDART) follows, of which nothing is written yet.
    void RowBegins(const QString& article);
    /// What the row shows of its article. @param counterparty CDCON; empty for a code of the company's own
    void Shows(const QString& article, const QString& code, const QString& counterparty);
    void ShowsSupplier(const QString& article, const QString& supplier);
    /// One that is not there, and may be any of them under another code. @param ownCode his for the article
    void ShowsUnknownSupplier(const QString& article, const QString& ownCode);
    void ShowsText(const QString& article, const QString& language);
    void ShowsLocation(const QString& article);
    /// The row is carried over.
    void RowEnds(const QString& article);
    /// Behind the last row: tells what no row has shown. A code of the company's own that the run has written to
    /// another article is taken off the one that had it, and logged; off one that no row has met only where no other
    /// module imports articles, else it is told. A supplier that is told is the preferred one no more, unless somebody
    /// has changed the link.
    void Close();

private:
    enum class Kind { Supplier, InternalCode, CounterpartyCode, Text, Location };
    struct Remain {
        Kind kind;
        QString id;   ///< RECORD_ID
        QString what; ///< supplier, code, language, location
        QString counterparty = {};
    };
    struct Remains {
        QString article; ///< CDART
        std::vector<Remain> all = {};
    };

    bool LooksAtAny() const;
    void ReadSuppliers(Remains& into) const;
    void ReadCodes(Remains& into) const;
    void ReadCodesOfOthers();
    void AddCode(Remains& into, const SourceRow& row) const;
    void ReadTexts(Remains& into) const;
    void ReadLocations(Remains& into) const;
    template<class Condition>
    void Found(const QString& article, Condition condition);
    void Tell(const QString& article, const Remain& remain, bool loses) const;
    bool TakesMarkOff(const Remain& supplier) const;
    void TakeOff(const QString& article, const Remain& code) const;
    void TellOfTwo(const QString& article, const Remain& code) const;

    ImportRun& m_run;
    ImportingModules m_modules;
    Told m_told;
    QSet<QString> m_read;              ///< articles, in capitals
    std::map<QString, Remains> m_left; ///< by the same
    QHash<QString, int> m_begun;       ///< by the same: rows that have not ended
    QSet<size_t> m_codes;              ///< codes of the company's own that the run has written, in digests
};

} // namespace contract
