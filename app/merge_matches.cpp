#include "app/mergeParts.h"
#include "sql/mod_ovTools.h"

#include <QRegularExpression>

using modMain::MergeCriterion;
using modMain::MergeMatch;

namespace merge {

namespace {

const QString Master = QStringLiteral("CON_TRO");
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

/// The counterparties that the merge adds before the one at hand: not yet in the database, but found as if they were.
class Additions {
public:
    void Add(const Found& added, const QString& vatNumber, const QString& taxCode) {
        const auto position = static_cast<int>(m_added.size());
        m_added.push_back(added);
        AddOnce(m_byVatNumber, vatNumber, position);
        AddOnce(m_byTaxCode, taxCode, position);
        m_starts.push_back(m_names.size());
        m_names += added.name.toUpper() + u'\n';
    }
    const Found* ByVatNumber(const QString& vatNumber) const {
        return At(m_byVatNumber.value(vatNumber.toUpper(), -1));
    }
    const Found* ByTaxCode(const QString& taxCode) const { return At(m_byTaxCode.value(taxCode.toUpper(), -1)); }
    /// The first whose name contains the text. All names are one text, or 20,000 of them would take minutes.
    const Found* ByName(const QString& part) const {
        const qsizetype place = m_names.indexOf(part.toUpper());
        if (place < 0) {
            return nullptr;
        }
        const auto after = std::upper_bound(m_starts.begin(), m_starts.end(), place);
        return At(static_cast<int>(after - m_starts.begin()) - 1);
    }

private:
    static void AddOnce(QHash<QString, int>& index, const QString& value, int position) {
        if (!value.trimmed().isEmpty() && !index.contains(value.toUpper())) {
            index.insert(value.toUpper(), position);
        }
    }
    const Found* At(int position) const {
        return position < 0 ? nullptr : &m_added[static_cast<std::size_t>(position)];
    }

    std::vector<Found> m_added;
    QHash<QString, int> m_byVatNumber;
    QHash<QString, int> m_byTaxCode;
    QString m_names;                 ///< in capitals, each ended by a line break
    std::vector<qsizetype> m_starts; ///< where each name starts
};

/// Finds the matches one after the other, as if each were merged before the next is looked at.
class Matcher {
public:
    Matcher(Session& session, const Companies& companies)
        : m_session(session),
          m_companies(companies) {
        m_next = CheckDestination() + 1;
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
    /// The criteria in their order. A blank text is none: it would match anybody.
    std::optional<Found> Find(MergeMatch& match, const QString& vatNumber, const QString& taxCode) {
        std::optional<Found> found;
        const auto attempt = [&](MergeCriterion criterion, const QString& text, const QString& condition,
                                 const Found* (Additions::*among)(const QString&) const) {
            if (found || text.trimmed().isEmpty()) {
                return;
            }
            found = InDatabase(condition);
            if (const Found* added = found ? nullptr : (m_additions.*among)(text)) {
                found = *added;
            }
            match.criterion = found ? criterion : MergeCriterion::New;
        };
        attempt(MergeCriterion::VatNumber, vatNumber, u"COIVA = " + Quoted(m_session, vatNumber),
                &Additions::ByVatNumber);
        attempt(MergeCriterion::TaxCode, taxCode, u"COFIS = " + Quoted(m_session, taxCode), &Additions::ByTaxCode);
        attempt(MergeCriterion::Name, match.oldName, u"CORAS LIKE " + Quoted(m_session, u'%' + match.oldName + u'%'),
                &Additions::ByName);
        return found;
    }

    std::optional<Found> InDatabase(const QString& condition) {
        const Recordset rows =
            m_session.Quadrix.ExecuteWC(u"SELECT CDCON, CORAS FROM " + TableOf(m_companies.to, Master) + u"\rWHERE " +
                                        condition + u"\rORDER BY RECORD_ID");
        return rows.Eof() ? std::nullopt : std::optional(Found{TextOf(rows, "CDCON"), TextOf(rows, "CORAS")});
    }

    /// The destination's highest code; every one must be a number for the highest to be one.
    int CheckDestination() {
        int highest = 0;
        Recordset rows = m_session.Quadrix.ExecuteWC(u"SELECT CDCON FROM " + TableOf(m_companies.to, Master));
        for (; !rows.Eof(); rows.MoveNext()) {
            highest = std::max(highest, CheckedCode(m_companies.to, rows.Value("CDCON")).toInt());
        }
        return highest;
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
