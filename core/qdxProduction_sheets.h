#pragma once

#include "core/Session.h"

/// Calculations of the production component on sheet metal. Lengths are in mm, weights in kg, densities in kg/dm3.
namespace qdxProduction {

/// Measures of a sheet.
struct SheetSize {
    double length = 0;
    double width = 0;
    double thickness = 0;
};

/// Weight of a sheet: length x width x thickness x density / 1,000,000, rounded to 3 decimals.
double qdxPesoArticoloLamiera(const SheetSize& size, double density);

/// Code of a format: its length and width with "X" between, in as few digits as they take: "3000X1500", "2500.5X1250".
QString qdxCalcolaCodiceFormatoArticolo(double length, double width);

/// Code of a sheet article: "LM", its material and its thickness with "-" between, in upper case: "LM-S235JR-1.5".
QString qdxAnaGetCodeArtSheet(const QString& material, double thickness);

/// CDART of the sheet article of that material (CDMAT) and thickness, the first by code; empty when there is none.
QString qdxGetCodiceLamieraEsterno(Session& session, const QString& material, double thickness);

} // namespace qdxProduction
