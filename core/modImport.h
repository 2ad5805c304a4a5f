#pragma once

#include "core/Session.h"

/// What every import procedure shares: code translation, lookups, the import log, the case of keys and texts.
/// A look-up that fails gives the same result as a code that is not there, and its row goes on: it is counted and
/// logged with the row's key, and each different failure is reported through the error collector once in a run. Only
/// `RowGivenUp` passes through a look-up: the operator has given the row up.
namespace modImport {

/// Translates a source code through SYS_IMP. Translations are remembered for the run; missing codes are not.
/// @param tableName,fieldName list and field that the code belongs to; their first 20 characters count
/// @param oldCode the code in the source; the empty code has no translation
/// @param addIfMissing records a code without translation in SYS_IMP, with an empty new code, for the operator
/// @return the Quadrix code; empty when there is none
QString GetNewCode(Session& session, const QString& tableName, const QString& fieldName, const QString& oldCode,
                   bool addIfMissing);

/// The same of a code that may be known otherwise: nothing is recorded or told of one without a translation.
QString FindNewCode(Session& session, const QString& tableName, const QString& fieldName, const QString& oldCode);

/// Takes in a translation that has been written into SYS_IMP just now, in place of the one remembered.
void RememberNewCode(Session& session, const QString& tableName, const QString& fieldName, const QString& oldCode,
                     const QString& newCode);

/// Finds the counterparty made from a source customer or supplier code. With neither flag both codes are looked at;
/// asCustomer wins over asSupplier. A partial match looks for the code anywhere in the stored one. The code goes
/// between quotes as it is: a quote in it must come doubled.
/// @return its CDCON, of the first row that the database gives; empty when there is none
QString GetNewControparteFromCodExt(Session& session, const QString& sourceCode, bool asCustomer, bool asSupplier,
                                    bool partialMatch);

/// Converts between the code of a base table and the code that the source system had.
/// @param toQuadrix true: `code` is the source's and the Quadrix code comes back; false: the other way round
/// @return empty when there is none, or when the table keeps no external code
QString GetExternalCode(Session& session, const QString& tableName, const QString& code, bool toQuadrix);

/// Number of a document type ("ORD" is 5), in any case; -1 when it is none.
qint16 GetDocTypeIndex(const QString& docType);

/// Whether a document is addressed to one of the company's own warehouses rather than to its counterparty.
/// @param family 0 sales, 1 purchases, 2 subcontracting, 3 intra-company
bool IsWarehouseDestination(int family, int docTypeIndex);

/// Writes one line "dd/MM/yyyy HH:mm:ss - message" to the import log, in code page 1252 with CR LF; the file is closed
/// after each line. Characters that the code page lacks are written as "?", those that are not seen as `VisibleText`
/// shows them; the line breaks of the message stay.
/// @param startNew empties the file first
/// @param fileName empty for the default log of the session
/// @return true; raises `ImportError` naming the file when it cannot be written
bool WriteImportLog(Session& session, const QString& message, bool startNew, const QString& fileName = {});
/// Appends such a line for each message to a log of its own, in one go. Raises `ImportError` naming the file.
void WriteLog(const Session& session, const QStringList& messages, const QString& fileName);

/// Writes the lines of rows that are committed now, in one go, and notes them for the result of the run; the observer
/// is told of the rows. Until then `WriteImportLog` and `LogNote` hold what goes to the default log. Raises
/// `ImportError` naming the file.
void WriteHeldLines(Session& session);

/// Tells the observer of the run, where there is one, what the row under way does: with its commit, outside a row at
/// once.
void Tell(Session& session, std::function<void(RunObserver&)> tale);

/// Appends what there is to tell about the row under way to the default log, as one line, and notes it for the
/// result of the run.
void LogNote(Session& session, const QString& message);
/// The same, unless it is what the row has told last: of a value that two columns want.
void LogNoteOnce(Session& session, const QString& message);

/// The value in upper case, character for character, when the configuration key KEYFIELD_CHAR (default "1") is 1, else
/// as it is. The key is read at each call.
QString FormatKeyField(Session& session, const QString& value);
/// The same for the configuration key TEXTFIELD_CHAR (default "0").
QString FormatTextField(Session& session, const QString& value);

/// What both keys say, read once for the many values of a run.
struct FieldCase {
    bool upperKeys = true;
    bool upperTexts = false;
};
FieldCase ReadFieldCase(Session& session);
/// A line for each of them that is no number, and so counts as 0.
QStringList FieldCaseLines(Session& session);

/// Whether the first character is one of "0" to "9". Raises `ImportError` on an empty text.
bool IsDigitChar(const QString& text);
/// Whether the first character is ".". Raises `ImportError` on an empty text.
bool IsDotChar(const QString& text);

} // namespace modImport
