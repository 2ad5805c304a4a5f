#include "sql/companyCode.h"

#include "sql/errors.h"
#include "sql/visibleText.h"

#include <QRegularExpression>

void CheckCompanyCode(const QString& code) {
    static const QRegularExpression form(QStringLiteral("\\A[A-Za-z0-9_]+\\z"));
    if (!form.match(code).hasMatch()) {
        throw ImportError(QStringLiteral("Azienda '%1': il codice (tabella SYS_AZI, colonna CDAZI) può essere fatto "
                                         "solo di lettere senza accenti, cifre e _, o non può stare nel nome di una "
                                         "tabella")
                              .arg(VisibleLine(code)));
    }
}
