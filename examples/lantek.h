#pragma once

#include "examples/describedRules.h"

/// The products of a workshop that cuts sheets, as its CAM software keeps them; the warehouses beside it name them too.
namespace examples::lantek {

using namespace described;

inline constexpr qint64 Sheets = 24;
inline constexpr qint64 Remnants = 6; ///< cut from the first sheets
inline constexpr int Materials = 3;

qint64 Bought(const Options& options);
qint64 Parts(const Options& options);
qint64 Assemblies(const Options& options);
qint64 Products(const Options& options);

// Of a sheet.
Rule SheetCode(); ///< e.g. "S235-1.5-3000"
Rule SheetMaterial();
Rule SheetThickness(); ///< mm
Rule SheetLength();    ///< mm
Rule SheetWidth();     ///< mm

// Of a material.
Rule MaterialCode();
Rule Density(); ///< kg/dm3

Rule BoughtCode();
/// The material of a part is that of one of the sheets.
Rule PartCode();
Rule AssemblyCode();
Rule RemnantCode();

/// The materials of the sheets.
void PrepareMaterials(QuadrixScript& script);
/// The translations and base rows that an import needs.
void Prepare(QuadrixScript& script);

} // namespace examples::lantek
