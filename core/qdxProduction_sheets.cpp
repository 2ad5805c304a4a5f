#include "core/qdxProduction_sheets.h"

#include "sql/mod_ovTools.h"

#include <cmath>

namespace qdxProduction {

double qdxPesoArticoloLamiera(const SheetSize& size, double density) {
    constexpr double cubicMillimetres = 1e6; // of a cubic decimetre
    return std::round(size.length * size.width * size.thickness * density / cubicMillimetres * 1000) / 1000;
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
    const Provider provider = session.Quadrix.ProviderType;
    const Recordset found = session.Quadrix.ExecuteWC(
        QStringLiteral("SELECT CDART FROM %1\rWHERE ARLAM = 1 AND ARMAT = %2 AND ARDMZ = %3\rORDER BY CDART")
            .arg(session.Quadrix.GetFullTableName("ART_ICO"),
                 mod_ovTools::FormatSqlValue(material, DataType::NVarChar, provider),
                 mod_ovTools::FormatSqlValue(thickness, DataType::Double, provider)));
    return found.Eof() ? QString() : mod_ovTools::ToText(found.Value("CDART")).trimmed();
}

} // namespace qdxProduction
