#include "examples/lantek.h"

namespace examples::lantek {

namespace {

struct MaterialRow {
    const char* code;
    const char* description;
    double density;
};
constexpr std::array<MaterialRow, Materials> MaterialRows{
    {{"S235", "Acciaio S235", 7.85}, {"AISI304", "Acciaio inossidabile", 8}, {"AL5754", "Alluminio", 2.66}}};
constexpr std::array<double, 4> Thicknesses{1.5, 2, 3, 5};
constexpr std::array<std::array<int, 2>, 2> Formats{{{3000, 1500}, {2000, 1000}}};

const MaterialRow& MaterialOf(qint64 row) { return MaterialRows[static_cast<std::size_t>(row % Materials)]; }

double ThicknessOf(qint64 sheet) {
    return Thicknesses[static_cast<std::size_t>(sheet / Materials) % Thicknesses.size()];
}

/// @param side 0 the long one
int SideOf(qint64 sheet, std::size_t side) { return Formats[static_cast<std::size_t>(sheet / 12) % 2][side]; }

Rule OfSheet(const std::function<QVariant(qint64)>& value) {
    return [value](const Place& place) { return value(place.row); };
}

} // namespace

qint64 Bought(const Options& options) { return options.rows / 4 + 1; }

qint64 Parts(const Options& options) { return options.rows; }

qint64 Assemblies(const Options& options) { return options.rows / 5 + 1; }

qint64 Products(const Options& options) {
    return Sheets + Remnants + Bought(options) + Parts(options) + Assemblies(options);
}

Rule SheetCode() {
    return OfSheet([](qint64 sheet) {
        return QVariant(QStringLiteral("%1-%2-%3")
                            .arg(QLatin1String(MaterialOf(sheet).code))
                            .arg(ThicknessOf(sheet))
                            .arg(SideOf(sheet, 0)));
    });
}

Rule SheetMaterial() { return MaterialCode(); }

Rule SheetThickness() {
    return OfSheet([](qint64 sheet) { return QVariant(ThicknessOf(sheet)); });
}

Rule SheetLength() {
    return OfSheet([](qint64 sheet) { return QVariant(SideOf(sheet, 0)); });
}

Rule SheetWidth() {
    return OfSheet([](qint64 sheet) { return QVariant(SideOf(sheet, 1)); });
}

Rule MaterialCode() {
    return OfSheet([](qint64 row) { return QVariant(QString(MaterialOf(row).code)); });
}

Rule Density() {
    return OfSheet([](qint64 row) { return QVariant(MaterialOf(row).density); });
}

Rule BoughtCode() { return Code("COM-", 4); }

Rule PartCode() { return Code("PZ-", 5); }

Rule AssemblyCode() { return Code("ASS-", 4); }

Rule RemnantCode() { return Code("RIT-", 3, 100); }

void PrepareMaterials(QuadrixScript& script) {
    for (const MaterialRow& material : MaterialRows) {
        script.Material(material.code, material.description);
    }
}

void Prepare(QuadrixScript& script) {
    PrepareMaterials(script);
    script.VatCode("22", "IVA 22%", 22);
    script.Translate("PPRR_PPRR", "UntName", "kg", "KG");
    script.Translate("PPRR_PPRR", "PGroup", "MECC", "MECCANICA");
    script.Translate("MMNN_PPOO", "OprRef", "TAGL", "TAGLIO");
    script.Translate("WWHH_IIVV", "WrhRef", "W1", "001");
    script.WorkCentre("TAGLIO", "Taglio laser");
    script.WorkCentre("PIEGA", "Piegatura");
    script.WorkCentre("SALD", "Saldatura");
    script.DocumentReason("ORD", "ORDFL", "ORD");
}

} // namespace examples::lantek
