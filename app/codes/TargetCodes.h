#pragma once

#include "app/codes/CodeLists.h"
#include "core/Session.h"

namespace codes {

/// A code that Quadrix has.
struct TargetCode {
    QString code;
    QString description = {};
    QString external = {};           ///< the code that its source had; empty where the table keeps none
    std::optional<double> rate = {}; ///< of a VAT code, in percent
    QVector<int> days = {};          ///< of a payment term: those of its instalments, else those that its words tell
};

/// The codes of one base table of the company under work, as they are in the database now.
class TargetCodes {
public:
    /// Raises `SqlError`.
    TargetCodes(Session& session, const BaseTable& base);

    const BaseTable& Base() const { return m_base; }
    /// In the order of the codes.
    const std::vector<TargetCode>& All() const { return m_codes; }
    /// The code in any case; null when Quadrix does not have it.
    const TargetCode* Find(const QString& code) const;
    /// Those whose description is the same but for case, blanks and signs.
    std::vector<const TargetCode*> WithDescription(const QString& text) const;
    /// Those whose code is the same but for the zeros in front.
    std::vector<const TargetCode*> WithPadding(const QString& code) const;
    /// Those that the source of an import had as this code.
    std::vector<const TargetCode*> WithExternal(const QString& code) const;

private:
    void ReadDays(Session& session);

    BaseTable m_base;
    std::vector<TargetCode> m_codes;
    QHash<QString, int> m_positions;          ///< by code, in upper case
    QMultiHash<QString, int> m_byDescription; ///< by its letters and digits, in upper case
    QMultiHash<QString, int> m_byExternal;    ///< by external code, in upper case
    QMultiHash<QString, int> m_byBareCode;    ///< by code without the zeros in front
};

/// The days that a text tells, in order: "RB 30/60/90 gg fm" tells 30, 60 and 90; empty when it tells none.
QVector<int> DaysIn(const QString& text);

/// The letters and digits of a text, in upper case.
QString LettersOf(const QString& text);

/// Whether a row of a base table says all there is to say with its code and its description, so that it can be made
/// from those of a source.
bool CanBeMade(const BaseTable& base);

/// The column of a base table with the descriptions of its codes; empty without one.
QString DescriptionColumn(const BaseTable& base);
/// The column of the codes that a source had for them; empty where the table keeps none.
QString ExternalColumn(const BaseTable& base);

} // namespace codes
