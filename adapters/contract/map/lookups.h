#pragma once

#include "core/Session.h"

namespace contract {

class ImportRun;

/// One column of the first row of a Quadrix table (bare name) whose key column has that value, as it is or in capitals,
/// as text without surrounding blanks; empty when there is no such row. By COCGE and COFGE a counterparty is also found
/// under the source codes that it has beside them, and one code of several is that of the one that an import of it has
/// written last (`JoinedParty`), which the log tells.
QString LookUp(Session& session, const QString& table, const QString& keyColumn, const QString& keyValue,
               const QString& column);

/// A counterparty that was looked for, as it was found. Raises `ImportError` when it is empty: a row of a counterparty
/// that is not there is given up.
/// @param role what the source's code is one of, "cliente" or "fornitore"; empty where it tells no roles apart
QString FoundParty(const QString& found, const QString& sourceCode, const QString& role);
/// The word for the role in messages.
QString RoleText(bool customer);
/// The column of CON_TRO with the code that a counterparty has in the source in that role: "COCGE", "COFGE".
QString SourceCodeColumn(bool customer);

/// RECORD_ID of the first row of a Quadrix table that meets a condition (without WHERE); 0 when there is none.
qint64 IdWhere(Session& session, const QString& table, const QString& condition);

/// "COLUMN = literal": a condition on a text of the target. Codes are written in capitals, and not every engine takes
/// "à" for "À": of a text with such a letter, "COLUMN IN (literal, literal in capitals)".
QString Equals(const Session& session, const QString& column, const QString& text);
/// Whether a row's user (USINS, USMDF) is the one that imports write as.
bool IsImportUser(const QString& user);
/// The condition on rows of the target that an import has inserted; on those that one has changed last with USMDF.
QString OfImports(const Session& session, const QString& userColumn = QStringLiteral("USINS"));
/// "COLUMN = number".
QString Equals(const QString& column, qint64 number);

/// "COLUMN = day": a condition on a day of the target; "COLUMN IS NULL" for a blank one.
QString OnDay(const Session& session, const QString& column, const QVariant& day);

/// The Quadrix code of a source code: what SYS_IMP says, else the code itself when a Quadrix table (bare name) has it;
/// empty, and recorded in SYS_IMP, when there is none.
QString TranslatedCode(Session& session, const QString& table, const QString& field, const QString& code,
                       const QString& codeTable);

/// The VAT code of Quadrix for one of the source: what SYS_IMP says, else the code itself when TAB_IVA has it, else the
/// ordinary rate; the code is recorded in SYS_IMP then, and the log names it with the row under way. Empty for a blank
/// one.
QString VatCodeOf(Session& session, const QString& table, const QString& field, const QString& code);

/// The currency of Quadrix for one of the source: what SYS_IMP says, else the code itself when TAB_VAL has it, else the
/// euro; the code is recorded in SYS_IMP then, and the log names it with the row under way. The euro for a blank one.
QString CurrencyOf(Session& session, const QString& table, const QString& field, const QString& code);

/// CDART of an article of the source: translated through SYS_IMP, else the code itself in the case of key fields; one
/// of more than 50 characters is cut, and logged.
QString ArticleCodeOf(Session& session, const QString& table, const QString& field, const QString& code);

/// What SYS_IMP says of a code of the source at this moment, without blanks around it: empty for one that is only
/// recorded, none for one that is not there.
std::optional<QString> StoredNewCode(Session& session, const QString& table, const QString& field,
                                     const QString& oldCode);

/// Whose word a translation is.
enum class Word { OfImport, OfPerson };

/// Writes what a code of the source has become into SYS_IMP, in place of what stands there, so that later lookups find
/// it. USINS tells whose word it is: that of an import is the one who imports, somebody's is Null.
void StoreNewCode(ImportRun& run, const QString& table, const QString& field, const QString& oldCode,
                  const QString& newCode, Word word = Word::OfImport);

/// Whether a row of a Quadrix table has that value, as it is or in capitals, in that column.
bool IsThere(Session& session, const QString& table, const QString& column, const QString& value);

} // namespace contract
