#include "examples/chartOfAccounts.h"

namespace examples::described {

QVector<Account> Chart(int firstLevel, int lastLevel) {
    static const QVector<Account> all{{"01", "Immobilizzazioni", "A"},
                                      {"0101", "Immobilizzazioni materiali", "A"},
                                      {"01010001", "Impianti e macchinari", "A"},
                                      {"01010002", "Attrezzature", "A"},
                                      {"04", "Crediti", "A"},
                                      {"0401", "Clienti", "A"},
                                      {"04010001", "Clienti Italia", "A"},
                                      {"05", "Debiti", "P"},
                                      {"0501", "Fornitori", "P"},
                                      {"05010001", "Fornitori Italia", "P"},
                                      {"06", "Liquidità", "A"},
                                      {"0601", "Banche", "A"},
                                      {"06010001", "Banca c/c ordinario", "A"},
                                      {"60", "Costi", "C"},
                                      {"6001", "Acquisti", "C"},
                                      {"60010001", "Acquisti di materie prime", "C"},
                                      {"60010002", "Lavorazioni di terzi", "C"},
                                      {"70", "Ricavi", "R"},
                                      {"7001", "Ricavi di vendita", "R"},
                                      {"70010001", "Vendite Italia", "R"},
                                      {"70010002", "Vendite all'estero", "R"},
                                      {"90", "Conti d'ordine", "O"},
                                      {"9001", "Beni di terzi", "O"},
                                      {"90010001", "Merce in conto visione", "O"}};
    QVector<Account> asked = all;
    asked.removeIf([=](const Account& account) { return account.Level() < firstLevel || account.Level() > lastLevel; });
    return asked;
}

} // namespace examples::described
