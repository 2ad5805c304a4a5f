#include "app/template/headerTexts.h"

#include <algorithm>
#include <array>

namespace sheetTemplate {

namespace {

constexpr std::array Texts{
    // counterparties
    HeaderText{
        "COCGE", "Codice",
        "Il codice che il cliente o il fornitore ha da chi compila; Quadrix gliene dà uno suo e conserva questo. "
        "Reimportato, ritrova la stessa controparte: nome, indirizzo e condizioni restano quelli di Quadrix.",
        "ESEMPIO-1"},
    HeaderText{"CORAS", "Ragione sociale", "Oltre 35 caratteri continua nella seconda riga, CORA2.",
               "Esempio S.r.l. (da sovrascrivere)"},
    HeaderText{"CORA2", "Ragione sociale, seguito"},
    HeaderText{"COIND", "Indirizzo", "Senza il numero civico.", "Via Roma"},
    HeaderText{"CONRC", "Numero civico", "", "12/a"},
    HeaderText{"COCAP", "CAP", "", "00184"},
    HeaderText{"COCIT", "Città", "", "Roma"},
    HeaderText{"COPRO", "Provincia", "La sigla, come RM.", "RM"},
    HeaderText{"CONAZ", "Nazione", "Vuota: Italia."},
    HeaderText{"COIVA", "Partita IVA", "Righe con la stessa partita IVA diventano una sola controparte.",
               "12345678903"},
    HeaderText{"COFIS", "Codice fiscale", "", "12345678903"},
    HeaderText{"COMOP", "Pagamento", "", AnyCode},
    HeaderText{"COABI", "ABI", "", "05428"},
    HeaderText{"COCAB", "CAB", "", "11101"},
    HeaderText{"COCOC", "Conto corrente", "", "000000123456"},
    HeaderText{"COIBA", "IBAN", "", "IT60X0542811101000000123456"},
    HeaderText{"COSC1", "Sconto", "In percento.", "10"},
    HeaderText{"COAGE", "Agente", "", AnyCode},
    HeaderText{"COLSC", "Listino", "", AnyCode},
    HeaderText{"COVAL", "Valuta", "Vuota: euro.", "EUR"},
    HeaderText{"CONOT", "Note", "", "Riga di esempio: sovrascriverla o cancellarla"},
    HeaderText{"COCLI", "È un cliente", "Vuota: lo è chi non è segnato come fornitore.", "1"},
    HeaderText{"COFOR", "È un fornitore", "", "0"},
    HeaderText{"NUM_TEL.Ufficio", "Telefono", "", "06 1234567"},
    HeaderText{"NUM_TEL.Fax (uff.)", "Fax", "", "06 1234568"},
    HeaderText{"NUM_TEL.Cellulare", "Cellulare", "", "333 1234567"},
    HeaderText{"IND_WEB.E", "E-mail", "", "info@example.com"},
    HeaderText{"IND_WEB.W", "Sito web", "", "www.example.com"},
    // articles
    HeaderText{"CDART", "Codice articolo", "Reimportato, aggiorna lo stesso articolo.", "ESEMPIO-1"},
    HeaderText{"ARDES", "Descrizione", "", "Articolo di esempio (da sovrascrivere)"},
    HeaderText{"ARDE2", "Seconda descrizione"},
    HeaderText{"ARUMS", "Unità di misura", "Quella del magazzino; vuota: NR.", "NR"},
    HeaderText{"ARUM2", "Seconda unità di misura"},
    HeaderText{"ARCOE", "Coefficiente", "Di conversione tra le due unità di misura."},
    HeaderText{"ARIVA", "Codice IVA", "Vuoto: 022.", "022"},
    HeaderText{"ARCLA", "Classe"},
    HeaderText{"ARFAM", "Famiglia", "", AnyCode},
    HeaderText{"ARMAT", "Materiale", "", AnyCode},
    HeaderText{"ARCOS", "Costo", "", "10"},
    HeaderText{"ARPRZ", "Prezzo", "Il ricarico se ne calcola col costo.", "15.5"},
    HeaderText{"ARPSN", "Peso netto", "", "1.2"},
    HeaderText{"ARPSL", "Peso lordo", "", "1.35"},
    HeaderText{"ARDMX", "Lunghezza"},
    HeaderText{"ARDMY", "Larghezza"},
    HeaderText{"ARDMZ", "Spessore o altezza"},
    HeaderText{"ARSMN", "Scorta minima", "", "5"},
    HeaderText{"ARLOR", "Lotto di riordino", "", "20"},
    HeaderText{"ARGGA", "Giorni di approvvigionamento", "", "7"},
    HeaderText{"ARNOT", "Note", "", "Riga di esempio: sovrascriverla o cancellarla"},
    HeaderText{"ART_FOR.COFGE", "Fornitore", "Il codice con cui il fornitore è stato importato: va importato prima."},
    HeaderText{"ART_COD.CDCOD", "Codice del fornitore", "Quello che l'articolo ha dal fornitore."},
    HeaderText{"UBI_ART.CDUBI", "Ubicazione"},
};

} // namespace

const HeaderText* TextOf(const QString& header) {
    const auto text = std::find_if(Texts.begin(), Texts.end(),
                                   [&header](const HeaderText& each) { return header == QLatin1String(each.header); });
    return text == Texts.end() ? nullptr : &*text;
}

} // namespace sheetTemplate
