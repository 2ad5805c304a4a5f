#pragma once

#include "core/Session.h"

/// Calculations of the production component on sheet metal and tubes. Lengths are in mm, weights in kg, densities in
/// kg/dm3.
namespace qdxProduction {

/// Measures of a sheet.
struct SheetSize {
    double length = 0;
    double width = 0;
    double thickness = 0;
};

/// Weight of a sheet: length x width x thickness x density / 1,000,000, rounded to 3 decimals.
double qdxPesoArticoloLamiera(const SheetSize& size, double density);

/// Weight of a format of a sheet article, whose thickness (ARDMZ) it has, as `qdxPesoArticoloLamiera` tells it; 0 when
/// the article is not there or its thickness is not known. Raises `SqlError`.
double qdxPesoFormato(Session& session, const QString& article, double length, double width, double density);

/// Measures of a tube.
struct TubeSize {
    double length = 0;
    double sideA = 0;     ///< of the outside; the outer diameter of a round tube
    double sideB = 0;     ///< of the outside; 0: the tube is round
    double thickness = 0; ///< of the wall
};

/// Weight of a tube: the area of its wall in mm2 x length x density / 1,000,000, rounded to 3 decimals. The area is
/// pi x thickness x (diameter - thickness), or 2 x thickness x (A + B - 2 x thickness) with sharp corners; a wall of
/// half the diameter or of half the smaller side leaves no hollow. Raises `ImportError` telling the measures of a wall
/// that is thicker than that, or of a negative one.
double qdxPesoArticoloTubolare(const TubeSize& size, double density);

/// Code of a format: its length and width with "X" between, in as few digits as they take: "3000X1500", "2500.5X1250".
QString qdxCalcolaCodiceFormatoArticolo(double length, double width);

/// Code of a sheet article: "LM", its material and its thickness with "-" between, in upper case: "LM-S235JR-1.5".
QString qdxAnaGetCodeArtSheet(const QString& material, double thickness);

/// CDART of the sheet article of that material (CDMAT) and thickness, the first by code; empty when there is none.
QString qdxGetCodiceLamieraEsterno(Session& session, const QString& material, double thickness);

} // namespace qdxProduction
