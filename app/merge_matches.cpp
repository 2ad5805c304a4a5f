#include "app/mergeParts.h"
#include "core/identifyingNumber.h"
#include "sql/mod_ovTools.h"
#include "sql/textLiteral.h"

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

/// Texts without case, accents and blanks around: what is one for a database is one of these, whatever its collation.
QString Folded(const QString& text) {
    QString folded = text.normalized(QString::NormalizationForm_KD);
    folded.removeIf([](QChar character) { return character.isMark(); });
    return folded.toUpper();
}

/// Names that are searched for a part. All are one text, or 20,000 searches among 20,000 names would take minutes.
class Names {
public:
    void Add(const QString& name) { m_text += Folded(name) + u'\n'; }
    /// Whether a search for a part may find one of them. A database decides what it finds; a part that it takes for a
    /// pattern may find any.
    bool MayHold(const QString& part) const {
        static const QRegularExpression wildcard(QStringLiteral("[%_\\[\\\\]"));
        return m_text.contains(Folded(part)) || (!m_text.isEmpty() && part.contains(wildcard));
    }

private:
    QString m_text;
};

/// The counterparties that the merge adds before the one at hand: not yet in the destination, but found as if they
/// were. The source holds them as the destination will, and is asked: a database finds what no comparison here would.
class Additions {
public:
    void Add(const QString& oldCode, const Found& added, const QString& vatNumber, const QString& taxCode) {
        m_added.insert(oldCode, added);
        m_numbers.insert(Folded(vatNumber).trimmed());
        m_numbers.insert(Folded(taxCode).trimmed());
        m_names.Add(added.name);
    }
    /// Whether one of them may be found by a number, or by a part of its name.
    bool MayHold(MergeCriterion criterion, const QString& text) const {
        return criterion == MergeCriterion::Name ? m_names.MayHold(text) : m_numbers.contains(Folded(text).trimmed());
    }
    /// The one that has that code in the source.
    std::optional<Found> At(const QString& oldCode) const {
        const auto added = m_added.constFind(oldCode);
        return added == m_added.cend() ? std::nullopt : std::optional(*added);
    }

private:
    QHash<QString, Found> m_added;
    QSet<QString> m_numbers;
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
            m_additions.Add(match.oldCode, {match.newCode, match.newName}, vatNumber, taxCode);
        }
        return match;
    }

private:
    /// The criteria in their order. A blank text, and a number that tells nobody, is none: it would match anybody.
    std::optional<Found> Find(MergeMatch& match, const QString& vatNumber, const QString& taxCode) {
        std::optional<Found> found;
        match.isRecognisable = false;
        const auto attempt = [&](MergeCriterion criterion, const QString& text, const QString& condition) {
            const bool isNumber = criterion != MergeCriterion::Name;
            if ((isNumber ? IdentifyingNumber(text) : text.trimmed()).isEmpty()) {
                return;
            }
            match.isRecognisable = true;
            if (found) {
                return;
            }
            if (isNumber || m_names.MayHold(text)) { // a search for a name reads all of them
                found = InDestination(condition);
            }
            if (!found && m_additions.MayHold(criterion, text)) {
                found = AmongAdditions(condition);
            }
            match.criterion = found ? criterion : MergeCriterion::New;
        };
        attempt(MergeCriterion::VatNumber, vatNumber, u"COIVA = " + TextLiteral(m_session.Quadrix, vatNumber));
        attempt(MergeCriterion::TaxCode, taxCode, u"COFIS = " + TextLiteral(m_session.Quadrix, taxCode));
        attempt(MergeCriterion::Name, match.oldName, NameCondition(match.oldName));
        return found;
    }

    std::optional<Found> InDestination(const QString& condition) {
        const Recordset rows =
            m_session.Quadrix.ExecuteWC(u"SELECT CDCON, CORAS FROM " + TableOf(m_companies.to, Master) + u"\rWHERE " +
                                        condition + u"\rORDER BY RECORD_ID");
        return rows.Eof() ? std::nullopt : std::optional(Found{TextOf(rows, "CDCON"), TextOf(rows, "CORAS")});
    }

    /// The first that will stand in the destination: they are copied by their codes.
    std::optional<Found> AmongAdditions(const QString& condition) {
        Recordset rows = m_session.Quadrix.ExecuteWC(u"SELECT CDCON FROM " + TableOf(m_companies.from, Master) +
                                                     u"\rWHERE " + condition + u"\rORDER BY CDCON");
        for (; !rows.Eof(); rows.MoveNext()) {
            if (auto added = m_additions.At(TextOf(rows, "CDCON"))) {
                return added;
            }
        }
        return std::nullopt;
    }

    /// Where the database takes a part of the name for a pattern, the name itself would not be found: a copy of an
    /// earlier merge.
    QString NameCondition(const QString& name) const {
        static const QRegularExpression pattern(QStringLiteral("[\\[\\\\]"));
        const QString like = u"CORAS LIKE " + TextLiteral(m_session.Quadrix, u'%' + name + u'%');
        return name.contains(pattern)
                   ? QString(u'(' + like + u" OR CORAS = " + TextLiteral(m_session.Quadrix, name) + u')')
                   : like;
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
