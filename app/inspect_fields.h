#pragma once

#include <QStringList>

#include <vector>

/// What the columns of an ERP usually hold, by their names in Italian and English, and by the look of their values.
namespace inspection {

/// What every value of a column looks like.
enum class Look {
    None, ///< nothing in particular
    VatNumber,
    TaxCode,
    Iban,
    Email,
    Date,
    PostCode,
    Province,
    Telephone,
};

/// What a column is about.
struct Field {
    QString name;          ///< for the operator: "partita IVA"
    QStringList spellings; ///< written out and without signs, in upper case: "PARTITAIVA", "VATNUMBER"
    QStringList targets;   ///< columns of Quadrix that it feeds
    Look look = Look::None;
};

/// All that are known.
const std::vector<Field>& Fields();
/// The field that a name tells, as a whole or by the longest run of its words; null when it tells none.
const Field* FieldOfName(const QString& name);
/// The field that columns of Quadrix ("CON_TRO.COIVA") hold; null when they hold none of those that are known.
const Field* FieldOfTargets(const QStringList& targets);
/// The kind of table that a name tells, such as "clienti e fornitori"; empty when it tells none.
QString KindOfTable(const QString& name);

/// Whether a value looks so.
bool HasLook(const QString& value, Look look);
/// What all of the values look like. Fewer than three different ones tell nothing.
Look LookOf(const QStringList& values);
/// How the operator is told a look: "partita IVA"; empty for none.
QString LookText(Look look);

} // namespace inspection
