#include "sql/engines/mysql/mySqlMeaning.h"

#include "sql/engines/meaning.h"

namespace {

constexpr const char* MustHaveValue = "la colonna '%1'%T deve avere un valore";

/// Of a foreign key: table, column, and the table that it refers to, in the quotes of the session or of any other.
constexpr QLatin1String
    ForeignKey("[`\"]([^`\"]+)[`\"], CONSTRAINT .* FOREIGN KEY \\([`\"](.+?)[`\"]\\) REFERENCES [`\"]([^`\"]+)[`\"]");

constexpr meaning::Refusal MySqlRefusals[] = {
    {QLatin1String("1062"), QLatin1String("Duplicate entry '(.*)' for key '(?:[^']*\\.)?([^']+)'"),
     "il valore '%1' è già presente nella chiave '%2'%T, che non ammette doppioni"},
    {QLatin1String("1048"), QLatin1String("Column '(.+?)' cannot be null"), MustHaveValue},
    {QLatin1String("1364"), QLatin1String("Field '(.+?)' doesn't have a default value"), MustHaveValue},
    {QLatin1String("1451"), ForeignKey,
     "altre righe (tabella '%1', colonna '%2') rimandano a quella della tabella '%3' da cambiare o togliere"},
    {QLatin1String("1452"), ForeignKey,
     "la colonna '%2' della tabella '%1' rimanda a una riga che nella tabella '%3' non c'è"},
    {QLatin1String("1406"), QLatin1String("Data too long for column '(.+?)'"),
     "il valore per la colonna '%1'%T è troppo lungo"},
    {QLatin1String("1264"), QLatin1String("Out of range value for column '(.+?)'"),
     "il numero per la colonna '%1'%T è troppo grande"},
    {QLatin1String("1366"), QLatin1String("Incorrect (\\w+) value: '(.*)' for column .*[`\"]([^`\"]+)[`\"] at row"),
     "il valore '%2' non va nella colonna '%3'%T"},
    {QLatin1String("1146"), QLatin1String("Table '(?:.+?\\.)?(.+?)' doesn't exist"),
     "la tabella '%1' non c'è nel database"},
    {QLatin1String("1054"), QLatin1String("Unknown column '(.+?)'"), "la colonna '%1' non c'è"},
    {QLatin1String("1045"), {}, meaning::WrongPassword},
    {QLatin1String("1792"), {}, "la connessione legge soltanto: l'istruzione non è stata eseguita"},
    {QLatin1String("1044"), {}, "l'utente non ha diritti sul database"},
    {QLatin1String("1049"), {}, "il database non esiste"},
    {QLatin1String("1142"),
     QLatin1String("^(?:.*\\] ?)?(.+?) command denied to user .* for table (?:.*\\.)?[`']?([^`']+?)[`']?$"),
     meaning::NoRight, false, true},
    {QLatin1String("1143"), QLatin1String("^(?:.*\\] ?)?(.+?) command denied to user .* for column '(.+?)'"),
     "all'utente manca il diritto %1 sulla colonna '%2'%T", false, true},
    {QLatin1String("1290"), QLatin1String("read-only"), "il server è di sola lettura", false, true},
    {QLatin1String("1153"), {}, "l'istruzione è più lunga di max_allowed_packet del server"},
    {QLatin1String("1205"), {}, meaning::InUse, true},
    {QLatin1String("1213"), {}, meaning::InUse, true},
    {QLatin1String("2002"), {}, meaning::NoAnswer, true},
    {QLatin1String("2003"), {}, meaning::NoAnswer, true},
    {QLatin1String("2005"), {}, meaning::NoAnswer, true},
    {QLatin1String("2006"), {}, meaning::NoAnswer, true}, // while connecting; later the connection has fallen
    {QLatin1String("2013"), {}, meaning::NoAnswer, true},
};

} // namespace

bool ExplainMySql(SqlError& error) { return meaning::Explain(error, MySqlRefusals); }
