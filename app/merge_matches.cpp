#include "app/mergeParts.h"
#include "core/identifyingNumber.h"
#include "sql/mod_ovTools.h"

#include <QRegularExpression>

using modMain::MergeCriterion;
using modMain::MergeMatch;

namespace merge {

namespace {

constexpr int LastCode = 999999;

QString CheckedCode(const QString& company, const QVariant& value) {
    static const QRegularExpression form(QStringLiteral("^[0-9]{6}$"));
    const QString code = mod_ovTools::ToText(value);
    if (!form.match(code).hasMatch()) {
        throw ImportError(QStringLiteral("Tabella %1, colonna CDCON: '%2' non è un codice di sei cifre; correggerlo "
                                         "prima della fusione")
                              .arg(TableOf(company, Master), code));
    }
    return code;
}

QString TextOf(const Recordset& rows, const char* column) {
    return mod_ovTools::ToText(rows.Value(QLatin1String(column)));
}

/// A counterparty found in the destination.
struct Found {
    QString code;
    QString name;
};

/// Names that are searched for a part. All are one text, or 20,000 searches among 20,000 names would take minutes.
class Names {
public:
    void Add(const QString& name) {
        m_starts.push_back(m_text.size());
        m_text += Folded(name) + u'\n';
    }
    /// Number of the first name that contains the part, whatever its case and accents; -1 when there is none.
    int Find(const QString& part) const {
        const qsizetype place = m_text.indexOf(Folded(part));
        const auto after = std::upper_bound(m_starts.begin(), m_starts.end(), place);
        return static_cast<int>(after - m_starts.begin()) - 1;
    }

private:
    static QString Folded(const QString& name) {
        QString text = name.normalized(QString::NormalizationForm_KD);
        text.removeIf([](QChar character) { return character.isMark(); });
        return text.toUpper();
    }

    QString m_text;
    std::vector<qsizetype> m_starts;
};

/// The counterparties that the merge adds before the one at hand: not yet in the database, but found as if they were.
class Additions {
public:
    void Add(const Found& added, const QString& vatNumber, const QString& taxCode) {
        const auto position = static_cast<int>(m_added.size());
        m_added.push_back(added);
        AddOnce(m_byVatNumber, vatNumber, position);
        AddOnce(m_byTaxCode, taxCode, position);
        m_names.Add(added.name);
    }
    const Found* ByVatNumber(const QString& vatNumber) const {
        return At(m_byVatNumber.value(vatNumber.toUpper(), -1));
    }
    const Found* ByTaxCode(const QString& taxCode) const { return At(m_byTaxCode.value(taxCode.toUpper(), -1)); }
    const Found* ByName(const QString& part) const { return At(m_names.Find(part)); }

private:
    static void AddOnce(QHash<QString, int>& index, const QString& value, int position) {
        if (!IdentifyingNumber(value).isEmpty() && !index.contains(value.toUpper())) {
            index.insert(value.toUpper(), position);
        }
    }
    const Found* At(int position) const {
        return position < 0 ? nullptr : &m_added[static_cast<std::size_t>(position)];
    }

    std::vector<Found> m_added;
    QHash<QString, int> m_byVatNumber;
    QHash<QString, int> m_byTaxCode;
    Names m_names;
};

/// Finds the matches one after the other, as if each were merged before the next is looked at.
class Matcher {
public:
    Matcher(Session& session, Companies companies)
        : m_session(session),
          m_companies(std::move(companies)) {
        ReadDestination();
    }

    MergeMatch Match(const Recordset& row) {
        MergeMatch match;
        match.oldCode = CheckedCode(m_companies.from, row.Value("CDCON"));
        match.oldName = TextOf(row, "CORAS");
        const QString vatNumber = TextOf(row, "COIVA");
        const QString taxCode = TextOf(row, "COFIS");
        const auto found = Find(match, vatNumber, taxCode);
        match.newCode = found ? found->code : NextCode();
        match.newName = found ? found->name : match.oldName;
        if (!found) {
            m_additions.Add({match.newCode, match.newName}, vatNumber, taxCode);
        }
        return match;
    }

private:
    /// The criteria in their order. A blank text, and a number that tells nobody, is none: it would match anybody.
    std::optional<Found> Find(MergeMatch& match, const QString& vatNumber, const QString& taxCode) {
        std::optional<Found> found;
        match.isRecognisable = false;
        const auto attempt = [&](MergeCriterion criterion, const QString& text, auto inDatabase,
                                 const Found* (Additions::*among)(const QString&) const) {
            const bool isNumber = criterion != MergeCriterion::Name;
            if ((isNumber ? IdentifyingNumber(text) : text.trimmed()).isEmpty()) {
                return;
            }
            match.isRecognisable = true;
            if (found) {
                return;
            }
            found = inDatabase(text);
            if (const Found* added = found ? nullptr : (m_additions.*among)(text)) {
                found = *added;
            }
            match.criterion = found ? criterion : MergeCriterion::New;
        };
        const auto equal = [this](const char* column) {
            return [this, column](const QString& text) {
                return InDatabase(QLatin1String(column) + u" = " + Quoted(m_session, text));
            };
        };
        attempt(MergeCriterion::VatNumber, vatNumber, equal("COIVA"), &Additions::ByVatNumber);
        attempt(MergeCriterion::TaxCode, taxCode, equal("COFIS"), &Additions::ByTaxCode);
        attempt(
            MergeCriterion::Name, match.oldName, [this](const QString& name) { return NameInDatabase(name); },
            &Additions::ByName);
        return found;
    }

    std::optional<Found> InDatabase(const QString& condition) {
        const Recordset rows =
            m_session.Quadrix.ExecuteWC(u"SELECT CDCON, CORAS FROM " + TableOf(m_companies.to, Master) + u"\rWHERE " +
                                        condition + u"\rORDER BY RECORD_ID");
        return rows.Eof() ? std::nullopt : std::optional(Found{TextOf(rows, "CDCON"), TextOf(rows, "CORAS")});
    }

    /// The database decides; it is spared the names that are found nowhere, each of which would scan its table. Where
    /// it takes a part of the name for a pattern, the name itself would not be found: a copy of an earlier merge.
    std::optional<Found> NameInDatabase(const QString& name) {
        static const QRegularExpression wildcard(QStringLiteral("[%_\\[\\\\]"));
        static const QRegularExpression pattern(QStringLiteral("[\\[\\\\]"));
        if (m_names.Find(name) < 0 && !name.contains(wildcard)) {
            return std::nullopt;
        }
        const QString like = u"CORAS LIKE " + Quoted(m_session, u'%' + name + u'%');
        return InDatabase(
            name.contains(pattern) ? QString(u'(' + like + u" OR CORAS = " + Quoted(m_session, name) + u')') : like);
    }

    /// The destination's names and its highest code; every code must be a number for the highest to be one.
    void ReadDestination() {
        Recordset rows = m_session.Quadrix.ExecuteWC(u"SELECT CDCON, CORAS FROM " + TableOf(m_companies.to, Master));
        for (; !rows.Eof(); rows.MoveNext()) {
            m_next = std::max(m_next, CheckedCode(m_companies.to, rows.Value("CDCON")).toInt() + 1);
            m_names.Add(TextOf(rows, "CORAS"));
        }
    }

    QString NextCode() {
        if (m_next > LastCode) {
            throw ImportError(QStringLiteral("Tabella %1: i codici di sei cifre sono finiti, l'ultimo è %2")
                                  .arg(TableOf(m_companies.to, Master))
                                  .arg(LastCode));
        }
        return QStringLiteral("%1").arg(m_next++, 6, 10, QChar(u'0'));
    }

    Session& m_session;
    Companies m_companies;
    Names m_names; ///< of the destination
    Additions m_additions;
    int m_next = 1;
};

} // namespace

std::optional<QVector<MergeMatch>> FindMatches(Session& session, const Companies& companies, Progress& progress) {
    const QString source = TableOf(companies.from, Master);
    const qint64 count = session.Quadrix.ExecuteCommand(u"SELECT COUNT(RECORD_ID) FROM " + source);
    progress.SetStep(QStringLiteral("ricerca delle corrispondenze"));
    progress.SetMax(static_cast<float>(count));
    Matcher matcher(session, companies);
    QVector<MergeMatch> matches;
    matches.reserve(count);
    Recordset rows = session.Quadrix.ExecuteWC(u"SELECT * FROM " + source + u"\rORDER BY CDCON");
    for (; !rows.Eof(); rows.MoveNext()) {
        if (progress.Cancel()) {
            return std::nullopt;
        }
        matches.append(matcher.Match(rows));
        progress.SetValue(static_cast<float>(matches.size()));
    }
    return matches;
}

} // namespace merge
