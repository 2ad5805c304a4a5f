#include "app/codes/suggestions.h"

#include "core/nearNames.h"
#include "sql/mod_ovTools.h"

#include <QRegularExpression>

#include <algorithm>

namespace codes {

namespace {

constexpr size_t MostSuggested = 5;
constexpr size_t MostLookedThrough = 5000; ///< codes of a table that are compared letter by letter

/// The suggestions of one code under construction.
class Finding {
public:
    Finding(const Code& code, const TargetCodes& targets, std::vector<Suggestion>& found)
        : m_code(code),
          m_targets(targets),
          m_text(code.description.isEmpty() ? code.oldCode : code.description),
          m_found(found) {}

    void LookAtCodes() {
        for (const TargetCode* each : m_targets.WithExternal(m_code.oldCode.trimmed())) {
            Add(*each, Ground::External, QStringLiteral("importato da questo codice"));
        }
        const QString old = m_code.oldCode.trimmed();
        if (const TargetCode* same = m_targets.Find(old)) {
            Add(*same, Ground::EqualCode, QStringLiteral("codice uguale"));
        }
        for (const TargetCode* each : m_targets.WithPadding(old)) {
            Add(*each, Ground::PaddedCode, QStringLiteral("codice uguale, a parte gli zeri iniziali"));
        }
    }

    void LookAtDescriptions() {
        for (const TargetCode* each : m_targets.WithDescription(m_text)) {
            Add(*each, Ground::EqualDescription, QStringLiteral("descrizione uguale"));
        }
        LookAtRates();
        LookAtDays();
        LookAtNearOnes();
    }

private:
    void Add(const TargetCode& target, Ground ground, const QString& reason) {
        const bool isThere = std::any_of(m_found.begin(), m_found.end(),
                                         [&target](const Suggestion& each) { return each.code == target.code; });
        if (!isThere && m_found.size() < MostSuggested) {
            m_found.push_back({target.code, target.description, ground, reason});
        }
    }

    void LookAtRates() {
        const auto rate = RateIn(m_text);
        for (const TargetCode& each : m_targets.All()) {
            if (rate && each.rate && *each.rate == *rate) {
                Add(each, Ground::SameRate, QStringLiteral("stessa aliquota: %1").arg(*rate));
            }
        }
    }

    void LookAtDays() {
        const QVector<int> days = DaysIn(m_text);
        for (const TargetCode& each : m_targets.All()) {
            if (!days.isEmpty() && each.days == days) {
                Add(each, Ground::SameDays, QStringLiteral("stessi giorni: ") + TextOf(days));
            }
        }
    }

    static QString TextOf(const QVector<int>& days) {
        QStringList texts;
        for (const int day : days) {
            texts.append(QString::number(day));
        }
        return texts.join(QStringLiteral(", "));
    }

    void LookAtNearOnes() {
        constexpr qsizetype leastToCompare = 4; // what is shorter is near to everything
        if (LettersOf(m_text).size() < leastToCompare || m_targets.All().size() > MostLookedThrough) {
            return;
        }
        QStringList descriptions;
        for (const TargetCode& each : m_targets.All()) {
            descriptions.append(each.description);
        }
        for (const QString& near : NearNames(m_text, descriptions)) {
            for (const TargetCode* each : m_targets.WithDescription(near)) {
                Add(*each, Ground::NearDescription, QStringLiteral("descrizione simile"));
            }
        }
    }

    const Code& m_code;
    const TargetCodes& m_targets;
    QString m_text; ///< of the description; the code itself tells what it means where there is none
    std::vector<Suggestion>& m_found;
};

} // namespace

std::optional<double> RateIn(const QString& text) {
    static const QRegularExpression numbers(QStringLiteral("\\d+(?:[.,]\\d+)?"));
    std::optional<double> rate;
    for (auto number = numbers.globalMatch(text); number.hasNext();) {
        if (rate) {
            return std::nullopt;
        }
        rate = number.next().captured().replace(u',', u'.').toDouble();
    }
    return rate;
}

std::vector<Suggestion> Suggester::For(const Code& code) {
    const CodeList& list = m_worklist.ListOf(code);
    std::vector<Suggestion> found;
    AddUsedBefore(code, list, found);
    if (const TargetCodes* targets = m_worklist.ChoicesOf(list)) {
        Finding finding(code, *targets, found);
        finding.LookAtCodes();
        finding.LookAtDescriptions();
    }
    return found;
}

/// A code of another list that becomes one of the same table, or goes to the same column.
void Suggester::AddUsedBefore(const Code& code, const CodeList& list, std::vector<Suggestion>& found) {
    if (!m_hasGiven) {
        for (size_t i = 0; i < m_worklist.Codes().size(); ++i) {
            if (const Code& each = m_worklist.Codes()[i]; !each.IsOpen()) {
                m_given.insert(each.oldCode.trimmed().toUpper(), i);
            }
        }
        m_hasGiven = true;
    }
    for (const size_t position : m_given.values(code.oldCode.trimmed().toUpper())) {
        const Code& given = m_worklist.Codes()[position];
        const CodeList& other = m_worklist.ListOf(given);
        const bool isOfSame = list.bases.empty()
                                  ? std::any_of(list.feeds.begin(), list.feeds.end(),
                                                [&other](const QString& feed) { return other.feeds.contains(feed); })
                                  : list.bases == other.bases;
        const TargetCodes* targets = m_worklist.ChoicesOf(list);
        const TargetCode* target = targets == nullptr ? nullptr : targets->Find(given.newCode);
        const bool isThere = std::any_of(found.begin(), found.end(),
                                         [&given](const Suggestion& each) { return each.code == given.newCode; });
        if (KeyOf(given.table, given.field) != KeyOf(code.table, code.field) && isOfSame && !isThere &&
            (targets == nullptr || target != nullptr) && found.size() < MostSuggested) {
            found.push_back({given.newCode, target == nullptr ? QString() : target->description, Ground::UsedBefore,
                             QStringLiteral("già dato a %1.%2").arg(given.table, given.field)});
        }
    }
}

} // namespace codes
