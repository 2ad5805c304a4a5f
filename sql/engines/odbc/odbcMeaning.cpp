#include "sql/engines/odbc/odbcMeaning.h"

#include "sql/engines/meaning.h"
#include "sql/engines/mysql/mySqlMeaning.h"

namespace odbc {

namespace {

constexpr meaning::Refusal SqlServer[] = {
    {QLatin1String("2601"),
     QLatin1String("object '(.+?)' with unique index '(.+?)'.*duplicate key value is \\((.*)\\)"),
     "il valore (%3) è già presente nella chiave '%2' della tabella '%1', che non ammette doppioni"},
    {QLatin1String("2601"), QLatin1String("object '(.+?)' with unique index '(.+?)'"),
     "lo stesso valore è già presente nella chiave '%2' della tabella '%1', che non ammette doppioni"},
    {QLatin1String("2627"),
     QLatin1String("constraint '(.+?)'.*duplicate key in object '(.+?)'.*duplicate key value is \\((.*)\\)"),
     "il valore (%3) è già presente nella chiave '%1' della tabella '%2', che non ammette doppioni"},
    {QLatin1String("2627"), QLatin1String("constraint '(.+?)'.*duplicate key in object '(.+?)'"),
     "lo stesso valore è già presente nella chiave '%1' della tabella '%2', che non ammette doppioni"},
    {QLatin1String("515"), QLatin1String("NULL into column '(.+?)', table '(.+?)'"),
     "la colonna '%1' della tabella '%2' deve avere un valore"},
    {QLatin1String("547"), QLatin1String("FOREIGN KEY constraint \"(.+?)\".*table \"(.+?)\""),
     "la riga%T rimanda a una riga che nella tabella '%2' non c'è (vincolo '%1')"},
    {QLatin1String("547"), QLatin1String("REFERENCE constraint \"(.+?)\".*table \"(.+?)\""),
     "altre righe della tabella '%2' rimandano a quella%T da cambiare o togliere (vincolo '%1')"},
    {QLatin1String("547"), QLatin1String("CHECK constraint \"(.+?)\""),
     "la riga%T non rispetta la regola '%1' del database"},
    {QLatin1String("2628"), QLatin1String("truncated in table '(.+?)', column '(.+?)'"),
     "il testo per la colonna '%2' della tabella '%1' è troppo lungo"},
    {QLatin1String("8152"), {}, "un testo è troppo lungo per la sua colonna%T"},
    {QLatin1String("208"), QLatin1String("Invalid object name '(.+?)'"), "la tabella '%1' non c'è nel database"},
    {QLatin1String("207"), QLatin1String("Invalid column name '(.+?)'"), "la colonna '%1' non c'è"},
    {QLatin1String("18456"), {}, meaning::WrongPassword},
    {QLatin1String("229"), QLatin1String("The (\\w+) permission was denied on the object '(.+?)'"), meaning::NoRight,
     false, true},
    {QLatin1String("1088"), QLatin1String("Cannot find the object \"(.+?)\""),
     "la tabella '%1' non c'è, o all'utente manca il diritto ALTER su di essa", false, true},
    {QLatin1String("4701"), QLatin1String("Cannot .* \"(.+?)\""),
     "la tabella '%1' non c'è, o all'utente manca il diritto ALTER su di essa", false, true},
    {QLatin1String("4060"), {}, "il database non esiste o l'utente non vi ha accesso"},
    {QLatin1String("1205"), {}, meaning::InUse, true},
    {QLatin1String("1222"), {}, meaning::InUse, true},
};

constexpr meaning::Refusal Oracle[] = {
    {QLatin1String("1"), QLatin1String("ORA-00001.*\\((.+?)\\)"),
     "lo stesso valore è già presente nella chiave '%1'%T, che non ammette doppioni"},
    {QLatin1String("1400"), QLatin1String("ORA-01400.*\\((.+?)\\)"), "la colonna %1 deve avere un valore"},
    {QLatin1String("2291"), QLatin1String("ORA-02291.*\\((.+?)\\)"),
     "la riga%T rimanda a una riga che non c'è (vincolo '%1')"},
    {QLatin1String("2292"), QLatin1String("ORA-02292.*\\((.+?)\\)"),
     "altre righe rimandano a quella%T da cambiare o togliere (vincolo '%1')"},
    {QLatin1String("12899"), QLatin1String("for column (\\S+)"), "il testo per la colonna %1 è troppo lungo"},
    {QLatin1String("1031"), QLatin1String("ORA-01031"), "all'utente manca un diritto%T", false, true},
    {QLatin1String("54"), QLatin1String("ORA-00054"), meaning::InUse, true},
    {QLatin1String("60"), QLatin1String("ORA-00060"), meaning::InUse, true},
};

} // namespace

void Explain(SqlError& error) {
    if (!meaning::Explain(error, SqlServer) && !meaning::Explain(error, Oracle)) {
        ExplainMySql(error);
    }
}

} // namespace odbc
