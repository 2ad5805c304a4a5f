#include "examples/italianWords.h"

namespace examples::italian {

const std::vector<Town>& Towns() {
    static const std::vector<Town> towns{
        {u"Agrigento", u"AG", u"92100", u"A089", u"0922"},
        {u"Alessandria", u"AL", u"15121", u"A182", u"0131"},
        {u"Ancona", u"AN", u"60121", u"A271", u"071"},
        {u"Aosta", u"AO", u"11100", u"A326", u"0165"},
        {u"Arezzo", u"AR", u"52100", u"A390", u"0575"},
        {u"Asti", u"AT", u"14100", u"A479", u"0141"},
        {u"Avellino", u"AV", u"83100", u"A509", u"0825"},
        {u"Bari", u"BA", u"70121", u"A662", u"080"},
        {u"Belluno", u"BL", u"32100", u"A757", u"0437"},
        {u"Benevento", u"BN", u"82100", u"A783", u"0824"},
        {u"Bergamo", u"BG", u"24121", u"A794", u"035"},
        {u"Biella", u"BI", u"13900", u"A859", u"015"},
        {u"Bologna", u"BO", u"40121", u"A944", u"051"},
        {u"Bolzano", u"BZ", u"39100", u"A952", u"0471"},
        {u"Brescia", u"BS", u"25121", u"B157", u"030"},
        {u"Bressanone", u"BZ", u"39042", u"B160", u"0472"},
        {u"Cagliari", u"CA", u"09121", u"B354", u"070"},
        {u"Cantù", u"CO", u"22063", u"B639", u"031"},
        {u"Caserta", u"CE", u"81100", u"B963", u"0823"},
        {u"Catania", u"CT", u"95121", u"C351", u"095"},
        {u"Catanzaro", u"CZ", u"88100", u"C352", u"0961"},
        {u"Cesena", u"FC", u"47521", u"C573", u"0547"},
        {u"Chieti", u"CH", u"66100", u"C632", u"0871"},
        {u"Città di Castello", u"PG", u"06012", u"C745", u"075"},
        {u"Como", u"CO", u"22100", u"C933", u"031"},
        {u"Cosenza", u"CS", u"87100", u"D086", u"0984"},
        {u"Cremona", u"CR", u"26100", u"D150", u"0372"},
        {u"Cuneo", u"CN", u"12100", u"D205", u"0171"},
        {u"Ferrara", u"FE", u"44121", u"D548", u"0532"},
        {u"Firenze", u"FI", u"50121", u"D612", u"055"},
        {u"Foggia", u"FG", u"71121", u"D643", u"0881"},
        {u"Forlì", u"FC", u"47121", u"D704", u"0543"},
        {u"Genova", u"GE", u"16121", u"D969", u"010"},
        {u"Gorizia", u"GO", u"34170", u"E098", u"0481"},
        {u"Imperia", u"IM", u"18100", u"E290", u"0183"},
        {u"L'Aquila", u"AQ", u"67100", u"A345", u"0862"},
        {u"La Spezia", u"SP", u"19121", u"E463", u"0187"},
        {u"Latina", u"LT", u"04100", u"E472", u"0773"},
        {u"Lecce", u"LE", u"73100", u"E506", u"0832"},
        {u"Livorno", u"LI", u"57121", u"E625", u"0586"},
        {u"Lucca", u"LU", u"55100", u"E715", u"0583"},
        {u"Mantova", u"MN", u"46100", u"E897", u"0376"},
        {u"Merano", u"BZ", u"39012", u"F132", u"0473"},
        {u"Messina", u"ME", u"98121", u"F158", u"090"},
        {u"Milano", u"MI", u"20121", u"F205", u"02"},
        {u"Modena", u"MO", u"41121", u"F257", u"059"},
        {u"Mondovì", u"CN", u"12084", u"F351", u"0174"},
        {u"Monza", u"MB", u"20900", u"F704", u"039"},
        {u"Napoli", u"NA", u"80121", u"F839", u"081"},
        {u"Nardò", u"LE", u"73048", u"F842", u"0833"},
        {u"Novara", u"NO", u"28100", u"F952", u"0321"},
        {u"Nuoro", u"NU", u"08100", u"F979", u"0784"},
        {u"Padova", u"PD", u"35121", u"G224", u"049"},
        {u"Palermo", u"PA", u"90121", u"G273", u"091"},
        {u"Parma", u"PR", u"43121", u"G337", u"0521"},
        {u"Pavia", u"PV", u"27100", u"G388", u"0382"},
        {u"Perugia", u"PG", u"06121", u"G478", u"075"},
        {u"Pesaro", u"PU", u"61121", u"G479", u"0721"},
        {u"Pescara", u"PE", u"65121", u"G482", u"085"},
        {u"Piacenza", u"PC", u"29121", u"G535", u"0523"},
        {u"Pisa", u"PI", u"56121", u"G702", u"050"},
        {u"Pordenone", u"PN", u"33170", u"G888", u"0434"},
        {u"Potenza", u"PZ", u"85100", u"G942", u"0971"},
        {u"Prato", u"PO", u"59100", u"G999", u"0574"},
        {u"Ragusa", u"RG", u"97100", u"H163", u"0932"},
        {u"Ravenna", u"RA", u"48121", u"H199", u"0544"},
        {u"Reggio nell'Emilia", u"RE", u"42121", u"H223", u"0522"},
        {u"Rimini", u"RN", u"47921", u"H294", u"0541"},
        {u"Roma", u"RM", u"00184", u"H501", u"06"},
        {u"Rovigo", u"RO", u"45100", u"H620", u"0425"},
        {u"Salerno", u"SA", u"84121", u"H703", u"089"},
        {u"San Donà di Piave", u"VE", u"30027", u"H823", u"0421"},
        {u"Sassari", u"SS", u"07100", u"I452", u"079"},
        {u"Savona", u"SV", u"17100", u"I480", u"019"},
        {u"Siena", u"SI", u"53100", u"I726", u"0577"},
        {u"Siracusa", u"SR", u"96100", u"I754", u"0931"},
        {u"Teramo", u"TE", u"64100", u"L103", u"0861"},
        {u"Terni", u"TR", u"05100", u"L117", u"0744"},
        {u"Torino", u"TO", u"10121", u"L219", u"011"},
        {u"Trapani", u"TP", u"91100", u"L331", u"0923"},
        {u"Trento", u"TN", u"38121", u"L378", u"0461"},
        {u"Treviso", u"TV", u"31100", u"L407", u"0422"},
        {u"Trieste", u"TS", u"34121", u"L424", u"040"},
        {u"Udine", u"UD", u"33100", u"L483", u"0432"},
        {u"Varese", u"VA", u"21100", u"L682", u"0332"},
        {u"Venezia", u"VE", u"30121", u"L736", u"041"},
        {u"Vercelli", u"VC", u"13100", u"L750", u"0161"},
        {u"Verona", u"VR", u"37121", u"L781", u"045"},
        {u"Vicenza", u"VI", u"36100", u"L840", u"0444"},
        {u"Viterbo", u"VT", u"01100", u"M082", u"0761"},
    };
    return towns;
}

const std::vector<const char16_t*>& Streets() {
    static const std::vector<const char16_t*> streets{
        u"Via Roma",
        u"Via Giuseppe Garibaldi",
        u"Corso Italia",
        u"Via Giuseppe Mazzini",
        u"Piazza Dante",
        u"Viale della Libertà",
        u"Via XX Settembre",
        u"Via IV Novembre",
        u"Corso Vittorio Emanuele",
        u"Via Cavour",
        u"Via dell'Artigianato",
        u"Via dell'Industria",
        u"Via del Lavoro",
        u"Via Guglielmo Marconi",
        u"Via Verdi",
        u"Via Alessandro Volta",
        u"Via Galileo Galilei",
        u"Via Leonardo da Vinci",
        u"Strada Statale 12",
        u"Località Cà Bianca",
        u"Via della Repubblica",
        u"Viale Europa",
        u"Via Papa Giovanni XXIII",
        u"Via Trento",
        u"Via Trieste",
        u"Via Carducci",
        u"Vicolo Stretto",
        u"Via delle Rose",
        u"Via San Francesco",
        u"Contrada Sant'Andrea",
        u"Largo Aldo Moro",
        u"Via Alcide De Gasperi",
        u"Via Enrico Fermi",
        u"Via Toscana",
        u"Via Primo Maggio",
        u"Piazzale Michelangelo",
        u"Via Ponte Vecchio",
        u"Via al Mulino",
        u"Zona Industriale Nord",
        u"Via Fratelli Cervi",
    };
    return streets;
}

const std::vector<const char16_t*>& Surnames() {
    static const std::vector<const char16_t*> surnames{
        u"Rossi",      u"Russo",     u"Ferrari",   u"Esposito",   u"Bianchi",    u"Romano",     u"Colombo",
        u"Ricci",      u"Marino",    u"Greco",     u"Bruno",      u"Gallo",      u"Conti",      u"De Luca",
        u"Mancini",    u"Costa",     u"Giordano",  u"Rizzo",      u"Lombardi",   u"Moretti",    u"Barbieri",
        u"Fontana",    u"Santoro",   u"Mariani",   u"Rinaldi",    u"Caruso",     u"Ferrara",    u"Galli",
        u"Martini",    u"Leone",     u"Longo",     u"Gentile",    u"Martinelli", u"Vitale",     u"Lombardo",
        u"Serra",      u"Coppola",   u"De Santis", u"D'Angelo",   u"Marchetti",  u"Parisi",     u"Villa",
        u"Conte",      u"Ferraro",   u"Ferri",     u"Fabbri",     u"Bianco",     u"Marini",     u"Grasso",
        u"Valentini",  u"Messina",   u"Sala",      u"De Angelis", u"Gatti",      u"Pellegrini", u"Palumbo",
        u"Sanna",      u"Farina",    u"Rizzi",     u"Monti",      u"Cattaneo",   u"Morelli",    u"Amato",
        u"Silvestri",  u"Mazza",     u"Testa",     u"Grassi",     u"Pellegrino", u"Carbone",    u"Giuliani",
        u"Benedetti",  u"Barone",    u"Rossetti",  u"Caputo",     u"Montanari",  u"Guerra",     u"Palmieri",
        u"Bernardi",   u"Martino",   u"Fiore",     u"De Rosa",    u"Ferretti",   u"Bellini",    u"Basile",
        u"Riva",       u"Donati",    u"Piras",     u"Vitali",     u"Battaglia",  u"Sartori",    u"Neri",
        u"Costantini", u"Milani",    u"Pagano",    u"Ruggiero",   u"Sorrentino", u"D'Amico",    u"Orlando",
        u"Negri",      u"Mantovani", u"Però",      u"Corrà",      u"Mastelè",    u"Fo",
    };
    return surnames;
}

const std::vector<const char16_t*>& MenNames() {
    static const std::vector<const char16_t*> names{
        u"Alessandro", u"Andrea",   u"Antonio",  u"Carlo",   u"Davide",    u"Enrico", u"Fabio",   u"Francesco",
        u"Giorgio",    u"Giovanni", u"Giuseppe", u"Luca",    u"Luigi",     u"Marco",  u"Mario",   u"Matteo",
        u"Nicolò",     u"Paolo",    u"Pietro",   u"Roberto", u"Salvatore", u"Simone", u"Stefano", u"Vincenzo",
    };
    return names;
}

const std::vector<const char16_t*>& WomenNames() {
    static const std::vector<const char16_t*> names{
        u"Alice",   u"Anna",  u"Barbara", u"Chiara", u"Cristina", u"Elena",     u"Federica", u"Francesca",
        u"Giulia",  u"Laura", u"Lucia",   u"Maria",  u"Martina",  u"Monica",    u"Noemi",    u"Paola",
        u"Roberta", u"Rosa",  u"Sara",    u"Silvia", u"Simona",   u"Valentina", u"Eva",      u"Zoé",
    };
    return names;
}

const std::vector<const char16_t*>& Trades() {
    static const std::vector<const char16_t*> trades{
        u"Officine Meccaniche",
        u"Carpenteria",
        u"Torneria",
        u"Fonderia",
        u"Falegnameria",
        u"Tipografia",
        u"Autotrasporti",
        u"Edilizia",
        u"Impianti Elettrici",
        u"Termoidraulica",
        u"Verniciatura",
        u"Stampaggio Plastica",
        u"Costruzioni",
        u"Serramenti",
        u"Marmi e Graniti",
        u"Ferramenta",
        u"Utensileria",
        u"Caseificio",
        u"Pastificio",
        u"Cantine",
        u"Tessitura",
        u"Maglificio",
        u"Calzaturificio",
        u"Arredamenti",
        u"Ceramiche",
        u"Vetreria",
        u"Elettronica",
        u"Informatica",
        u"Automazione",
        u"Imballaggi",
        u"Lavorazione Lamiere",
        u"Trattamenti Termici",
        u"Galvanica",
        u"Stampi e Matrici",
        u"Macchine Agricole",
        u"Società Agricola",
        u"Ricambi",
        u"Cartotecnica",
        u"Oleodinamica",
        u"Zincheria",
    };
    return trades;
}

const std::vector<const char16_t*>& CompanyForms() {
    static const std::vector<const char16_t*> forms{
        u"S.r.l.", u"S.r.l.", u"S.r.l.", u"S.p.A.", u"S.n.c.", u"S.a.s.", u"S.r.l. Unipersonale", u"Soc. Coop. a r.l.",
    };
    return forms;
}

} // namespace examples::italian
