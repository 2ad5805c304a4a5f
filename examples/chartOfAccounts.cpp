#include "examples/chartOfAccounts.h"

namespace examples::described::chart {

namespace {

enum class Section { Assets, Liabilities, Costs, Revenues };

struct Ledger {
    Section section;
    const char16_t* text;
    std::array<const char16_t*, AccountsOfLedger> accounts;
};

constexpr std::array<Ledger, Ledgers> All{
    {{Section::Assets,
      u"Immobilizzazioni",
      {u"Fabbricati industriali", u"Impianti e macchinari", u"Attrezzature", u"Automezzi"}},
     {Section::Assets, u"Disponibilità liquide", {u"Cassa contanti", u"Cassa valori", u"Banca c/c", u"Posta c/c"}},
     {Section::Assets,
      u"Crediti",
      {u"Erario c/IVA", u"Crediti per imposte", u"Anticipi a fornitori", u"Cauzioni attive"}},
     {Section::Liabilities,
      u"Patrimonio netto",
      {u"Capitale sociale", u"Riserva legale", u"Utile d'esercizio", u"Utili a nuovo"}},
     {Section::Liabilities,
      u"Debiti",
      {u"Mutui passivi", u"Debiti verso dipendenti", u"Debiti verso istituti di previdenza", u"Ritenute d'acconto"}},
     {Section::Costs,
      u"Acquisti",
      {u"Acciaio c/acquisti", u"Componenti c/acquisti", u"Materiali di consumo", u"Imballaggi"}},
     {Section::Costs, u"Servizi", {u"Lavorazioni esterne", u"Energia elettrica", u"Trasporti", u"Manutenzioni"}},
     {Section::Costs, u"Personale", {u"Salari", u"Stipendi", u"Oneri sociali", u"Trattamento di fine rapporto"}},
     {Section::Revenues,
      u"Ricavi",
      {u"Prodotti c/vendite", u"Lavorazioni per conto terzi", u"Rottami c/vendite", u"Abbuoni attivi"}}}};

const Ledger& LedgerAt(qint64 row) { return All[static_cast<std::size_t>(row % Ledgers)]; }

} // namespace

Rule LedgerText() {
    return [](const Place& place) { return QVariant(QString::fromUtf16(LedgerAt(place.row).text)); };
}

Rule AccountText() {
    return [](const Place& place) {
        const auto& accounts = LedgerAt(place.row / AccountsOfLedger).accounts;
        return QVariant(QString::fromUtf16(accounts[static_cast<std::size_t>(place.row % AccountsOfLedger)]));
    };
}

Rule BySection(const QVariant& assets, const QVariant& liabilities, const QVariant& costs, const QVariant& revenues) {
    return [=](const Place& place) {
        switch (LedgerAt(place.row).section) {
        case Section::Assets:
            return assets;
        case Section::Liabilities:
            return liabilities;
        case Section::Costs:
            return costs;
        default:
            return revenues;
        }
    };
}

} // namespace examples::described::chart
