#include "core/qdxProduction_sheets.h"

#include "core/amounts.h"
#include "sql/mod_ovTools.h"
#include "sql/textLiteral.h"

#include <numbers>

namespace qdxProduction {

namespace {

/// @param volume in mm3
double WeightOf(double volume, double density) {
    constexpr double cubicMillimetres = 1e6; // of a cubic decimetre
    constexpr int decimals = 3;
    return RoundedTo(volume * density / cubicMillimetres, decimals);
}

void CheckWall(const TubeSize& size) {
    const double smaller = size.sideB == 0 ? size.sideA : std::min(size.sideA, size.sideB);
    if (size.length < 0 || size.sideA < 0 || size.sideB < 0 || size.thickness < 0 || size.thickness * 2 > smaller) {
        using mod_ovTools::NumberText;
        throw ImportError(QStringLiteral("un tubolare di %1 x %2 non può avere lo spessore %3 e la lunghezza %4 (mm)")
                              .arg(NumberText(size.sideA), NumberText(size.sideB), NumberText(size.thickness),
                                   NumberText(size.length)));
    }
}

} // namespace

double qdxPesoArticoloLamiera(const SheetSize& size, double density) {
    return WeightOf(size.length * size.width * size.thickness, density);
}

double qdxPesoFormato(Session& session, const QString& article, double length, double width, double density) {
    const double thickness = mod_ovTools::ToDouble(session.Quadrix.GetDbValue("ART_ICO", "CDART", article, "ARDMZ", 0));
    return qdxPesoArticoloLamiera({length, width, thickness}, density);
}

double qdxPesoArticoloTubolare(const TubeSize& size, double density) {
    CheckWall(size);
    const double wall = size.thickness;
    const double area = size.sideB == 0 ? std::numbers::pi * wall * (size.sideA - wall)
                                        : 2 * wall * (size.sideA + size.sideB - 2 * wall);
    return WeightOf(area * size.length, density);
}

QString qdxCalcolaCodiceFormatoArticolo(double length, double width) {
    return mod_ovTools::NumberText(length) + u'X' + mod_ovTools::NumberText(width);
}

QString qdxAnaGetCodeArtSheet(const QString& material, double thickness) {
    return (QStringLiteral("LM-") + material.trimmed() + u'-' + mod_ovTools::NumberText(thickness)).toUpper();
}

QString qdxGetCodiceLamieraEsterno(Session& session, const QString& material, double thickness) {
    if (material.isEmpty()) {
        return {};
    }
    const Recordset found = session.Quadrix.ExecuteWC(
        QStringLiteral("SELECT CDART FROM %1\rWHERE ARLAM = 1 AND ARMAT = %2 AND ARDMZ = %3\rORDER BY CDART")
            .arg(session.Quadrix.GetFullTableName("ART_ICO"), TextLiteral(session.Quadrix, material),
                 mod_ovTools::FormatSqlValue(thickness, DataType::Double, session.Quadrix.ProviderType)));
    return found.Eof() ? QString() : mod_ovTools::ToText(found.Value("CDART")).trimmed();
}

} // namespace qdxProduction
