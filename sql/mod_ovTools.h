#pragma once

#include "sql/types.h"

#include <QDateTime>
#include <QString>
#include <QVariant>

#include <optional>

class ovQueryConstructor;
class ValueWriter;

#ifdef GetUserName // a macro of the Windows headers
#undef GetUserName
#endif

/// Small procedures that adapters, lookups and the statement builder share. None of them raises an error:
/// what cannot be converted gives the fallback named with each.
namespace mod_ovTools {

/// How a locale writes numbers.
struct LocaleSeparators {
    QString decimal;
    QString thousands; ///< empty for a locale without one
};

/// The separators of the user's locale, read once.
const LocaleSeparators& UserSeparators();

/// Text of a locale item: 14 is the decimal separator, 15 the thousands separator; "-1" for any other item.
/// @param systemLocale the machine's locale instead of the user's, where the system keeps two
QString GetLocaleString(int item, bool systemLocale = false);

/// The text in upper case, character for character: it keeps its length, and what stays different ("ß" and "SS") is
/// not taken for the same.
QString UpperChars(QString text);

// --- Literals ---------------------------------------------------------------------------------------------------

/// The SQL literal of a value. "Null" for a null variant and for the text "Null"; otherwise by `type`:
/// - text types: quoted, quotes doubled;
/// - integers: "0" for the empty text, else the number the text begins with (decimal mark ".", exponent allowed), 0
///   when it begins with none. Halves round to the even neighbour: 2.5 gives 2, 12.7 gives 13. Long and
///   BigAutoIncrement columns hold 64 bits, Integer and AutoIncrement 32; a number beyond its column gives "Null";
/// - Double: "0" for the empty text, else `ToDouble` with "." as decimal mark, in as many digits as give the same
///   number when read back; "Null" beyond the range of a double;
/// - Date, Time, DateTime: as the provider writes them; a value that `ReadDate` refuses gives "Null", under Visual
///   FoxPro "{00:00:00}". A DateTime that is no date is "Null" under every provider that has no braces;
/// - Bit: "0" for the texts "", "0" and "False" (any case), false and zero; else "1";
/// - TinyInt: the number rounded, halves to even; "Null" when the whole text is no number or outside 0 to 255;
/// - Duration: hhhhmmss in quotes from "h:mm:ss", "h:mm" or digits alone; '00000000' when it is none;
/// - Expression: the value unquoted; Guid: the value, under SQL Server wrapped in CONVERT;
/// - every other type: "Null".
///
/// A boolean in a number column is 1 or 0.
QString FormatSqlValue(const QVariant& value, DataType type, Provider provider,
                       const LocaleSeparators& separators = UserSeparators());

/// Appends the literal of `FormatSqlValue` to a statement under construction.
void AppendSqlValue(QString& statement, const QVariant& value, DataType type, Provider provider,
                    const LocaleSeparators& separators = UserSeparators());

/// Hands a value to a writer by the rules of `FormatSqlValue`, which writes it as a literal or keeps it apart.
void WriteSqlValue(ValueWriter& out, const QVariant& value, DataType type, Provider provider,
                   const LocaleSeparators& separators = UserSeparators());

/// Text of the call of a stored procedure: "EXEC " and its name and a carriage return, then the fields of
/// `parameters` (null for none) as indented "name = literal" lines.
QString StoredProcedureText(const QString& procedure, const ovQueryConstructor* parameters, Provider provider);

// --- Texts and numbers ------------------------------------------------------------------------------------------

/// Text of a value, the same under every locale: numbers in full ("100000", never "1e+05") with ".", booleans as
/// "True" and "False", dates as "yyyy-MM-dd", date-times as "yyyy-MM-dd hh:mm:ss" (a midnight and the zero date are
/// left out), bytes as UTF-8; empty for Null.
QString ToText(const QVariant& value);

/// Shortest text that reads back as the same number, with "."; an exponent only from 1e17 on and below 1e-7.
QString NumberText(double number);

/// Number in SQL form: the locale's thousands separators go, its decimal separator and every "," become ".".
QString ToSqlNumber(const QString& number, const LocaleSeparators& separators = UserSeparators());

/// The number that a value is as a whole: a number, or a text with one decimal mark (".", "," or the locale's), a
/// sign in front or a "-" behind, an exponent. Nothing when it is none or is beyond a
/// double.
std::optional<double> ReadNumber(const QVariant& value, const LocaleSeparators& separators = UserSeparators());

/// A number written with either separator. A text that is none is read by its digits, a leading "-" and
/// its last separator, which divides integers from decimals: "1.234,50" gives 1234.5; 0 without digits and for Null,
/// infinite beyond a double.
double ToDouble(const QVariant& value, const LocaleSeparators& separators = UserSeparators());

/// @param zero true: 0 for Null and blank text, else the value; false: the text "Null" for Null, the empty text and
/// a number that is zero, else the value
QVariant NzNumber(const QVariant& value, bool zero = true);

/// @param empty true: the empty text for Null, else the value; false: the text "Null" for Null and the empty text
QVariant NzText(const QVariant& value, bool empty = true);

/// Quantity times unit price, less up to three discounts in percent, one on what the other left. A discount of 0 or
/// less is skipped, one of 100 or more makes the amount 0.
double ApplyDiscounts(double quantity, double unitPrice, double discount1, double discount2, double discount3);

/// The given percentage of an amount.
double Percentage(double amount, double percentage);

// --- Booleans and dates -----------------------------------------------------------------------------------------

/// Truth of a value: the texts "TRUE" and "-1" (blanks around and case do not matter), and every number but 0. Null,
/// the empty text and any text that is no number are false.
bool ToBoolean(const QVariant& value);

/// The date of a value, with its time of day as written (kept as UTC, so that no clock change can move it).
/// Reads dates, times (on the zero date, 30 December 1899) and the texts "yyyy-MM-dd", "dd/MM/yyyy" (also with "." or
/// "/" and "-" exchanged, and one-digit days and months), "yyyyMMdd", "yyyyMMddhhmmss", each of the first three alone
/// or followed by a blank or "T" and "hh:mm", "hh:mm:ss", "hh.mm.ss" with or without decimals of a second; "hh:mm:ss"
/// and "hh:mm" alone. Nothing for everything else: empty texts, impossible days, years of two digits, numbers.
std::optional<QDateTime> ReadDate(const QVariant& value);

/// As `ReadDate`, with the zero date (30 December 1899, midnight) for a value that is no date.
QDateTime ToDate(const QVariant& value);

// --- Paths, files, system ---------------------------------------------------------------------------------------

/// Trims a path and turns its "/" into "\". @param add ends it with a "\"; otherwise a "\" at its end goes.
/// An empty path stays empty.
QString AddBackslash(const QString& path, bool add = true);

/// Whether the file or folder exists.
bool FileExists(const QString& path);

/// The long form of a path; the path itself where the system has no short names, or it does not exist.
QString GetLongPath(const QString& path);

/// The short (8.3) form of a path; the path itself where the system has no short names, or it does not exist.
QString GetShortPath(const QString& path);

/// The name of a new, empty file "Quadrix......tmp" in a folder, which the caller removes; the empty text when it
/// cannot be made. @param folder the system's temporary folder when empty
QString GetTempFile(const QString& folder = {});

/// The environment variable "TEMP"; the system's temporary folder where it is not set.
QString GetTempFolder();

/// Starts a program, with its arguments as on a command line, and waits until it ends. Its output is discarded.
/// Returns whether it could be started; its exit code does not matter.
bool ShellAndWait(const QString& commandLine);

/// Network name of the user that is signed on; empty when the system does not tell it.
QString GetUserName();

// --- Bank codes -------------------------------------------------------------------------------------------------

/// IBAN of an account, with check digits by ISO 13616. The empty text when any part is blank.
QString MakeIban(const QString& country, const QString& cin, const QString& bankCode, const QString& branchCode,
                 const QString& account);

/// As `MakeIban`, of an Italian account.
QString MakeItalianIban(const QString& cin, const QString& bankCode, const QString& branchCode, const QString& account);

} // namespace mod_ovTools
