#include "core/databaseContents.h"

namespace {

// One row a line.
// clang-format off
constexpr const char* VatCodes[] = {
    "022", "IVA 22%", "22",
    "020", "IVA 20%", "20",
    "010", "IVA 10%", "10",
    "005", "IVA 5%", "5",
    "004", "IVA 4%", "4",
    "N1", "Escluso art. 15", "0",
    "N2", "Non soggetto", "0",
    "N3", "Non imponibile", "0",
    "N4", "Esente", "0",
    "N5", "Regime del margine", "0",
    "N6", "Inversione contabile", "0",
    "N7", "IVA assolta in altro stato UE", "0",
};

constexpr const char* Currencies[] = {
    "EUR", "Euro",
    "USD", "Dollaro statunitense",
    "GBP", "Sterlina inglese",
    "CHF", "Franco svizzero",
    "JPY", "Yen giapponese",
    "CNY", "Renminbi cinese",
    "CAD", "Dollaro canadese",
    "AUD", "Dollaro australiano",
    "SEK", "Corona svedese",
    "NOK", "Corona norvegese",
    "DKK", "Corona danese",
    "PLN", "Zloty polacco",
    "CZK", "Corona ceca",
    "HUF", "Fiorino ungherese",
    "RON", "Leu rumeno",
    "TRY", "Lira turca",
};

// code, name, two-letter code as other systems use it
constexpr const char* Countries[] = {
    "ITA", "Italia", "IT",
    "SMR", "San Marino", "SM",
    "VAT", "Città del Vaticano", "VA",
    "AUT", "Austria", "AT",
    "BEL", "Belgio", "BE",
    "BGR", "Bulgaria", "BG",
    "HRV", "Croazia", "HR",
    "CYP", "Cipro", "CY",
    "CZE", "Repubblica Ceca", "CZ",
    "DNK", "Danimarca", "DK",
    "EST", "Estonia", "EE",
    "FIN", "Finlandia", "FI",
    "FRA", "Francia", "FR",
    "DEU", "Germania", "DE",
    "GRC", "Grecia", "GR",
    "HUN", "Ungheria", "HU",
    "IRL", "Irlanda", "IE",
    "LVA", "Lettonia", "LV",
    "LTU", "Lituania", "LT",
    "LUX", "Lussemburgo", "LU",
    "MLT", "Malta", "MT",
    "NLD", "Paesi Bassi", "NL",
    "POL", "Polonia", "PL",
    "PRT", "Portogallo", "PT",
    "ROU", "Romania", "RO",
    "SVK", "Slovacchia", "SK",
    "SVN", "Slovenia", "SI",
    "ESP", "Spagna", "ES",
    "SWE", "Svezia", "SE",
    "GBR", "Regno Unito", "GB",
    "CHE", "Svizzera", "CH",
    "LIE", "Liechtenstein", "LI",
    "MCO", "Monaco", "MC",
    "AND", "Andorra", "AD",
    "NOR", "Norvegia", "NO",
    "ISL", "Islanda", "IS",
    "ALB", "Albania", "AL",
    "BIH", "Bosnia ed Erzegovina", "BA",
    "MKD", "Macedonia del Nord", "MK",
    "MNE", "Montenegro", "ME",
    "SRB", "Serbia", "RS",
    "TUR", "Turchia", "TR",
    "UKR", "Ucraina", "UA",
    "RUS", "Russia", "RU",
    "ISR", "Israele", "IL",
    "EGY", "Egitto", "EG",
    "TUN", "Tunisia", "TN",
    "MAR", "Marocco", "MA",
    "DZA", "Algeria", "DZ",
    "ZAF", "Sudafrica", "ZA",
    "USA", "Stati Uniti", "US",
    "CAN", "Canada", "CA",
    "MEX", "Messico", "MX",
    "BRA", "Brasile", "BR",
    "ARG", "Argentina", "AR",
    "CHN", "Cina", "CN",
    "HKG", "Hong Kong", "HK",
    "TWN", "Taiwan", "TW",
    "JPN", "Giappone", "JP",
    "KOR", "Corea del Sud", "KR",
    "IND", "India", "IN",
    "ARE", "Emirati Arabi Uniti", "AE",
    "SAU", "Arabia Saudita", "SA",
    "AUS", "Australia", "AU",
    "NZL", "Nuova Zelanda", "NZ",
};

constexpr const char* Languages[] = {
    "IT", "Italiano",
    "EN", "Inglese",
    "FR", "Francese",
    "DE", "Tedesco",
    "ES", "Spagnolo",
};

constexpr const char* Units[] = {
    "NR", "Numero",
    "PZ", "Pezzi",
    "CF", "Confezione",
    "KG", "Chilogrammi",
    "GR", "Grammi",
    "TN", "Tonnellate",
    "MT", "Metri",
    "ML", "Metri lineari",
    "MM", "Millimetri",
    "MQ", "Metri quadri",
    "MC", "Metri cubi",
    "LT", "Litri",
    "HH", "Ore",
};
// clang-format on

} // namespace

std::span<const StartRows> BaseTableRows() {
    static constexpr StartRows Rows[] = {
        {"TAB_IVA", "CDIVA IVDES IVALI", VatCodes},  {"TAB_VAL", "CDVAL VADES", Currencies},
        {"TAB_NAZ", "CDNAZ NADES NAEXT", Countries}, {"TAB_LNG", "CDLNG LNDES", Languages},
        {"TAB_UMS", "CDUMS UMDES", Units},
    };
    return Rows;
}
