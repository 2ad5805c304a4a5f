#pragma once

#include "examples/TableWriter.h"

#include <QPair>
#include <QStringList>

namespace examples {

/// What is asked of an example.
struct Options {
    qint64 rows = 1000;                      ///< of each main table (counterparties, articles); others follow from them
    quint64 seed = 1;                        ///< the same seed and rows give the same bytes, everywhere
    QString folder;                          ///< where it is written; made when it does not exist
    QStringList tables;                      ///< groups of tables that are made, see `Example::groups`; empty for all
    QString company = QStringLiteral("DEM"); ///< code of the Quadrix company that the script "quadrix.sql" prepares
    bool hasCycles = false;                  ///< bills of materials that contain themselves are planted
};

/// What an import of the example must give, in the order of the tables: what is counted and its number.
using Totals = QVector<QPair<QString, QString>>;

/// An example: the data of one origin.
struct Example {
    QString name;        ///< "arca2000"
    QString description; ///< one line, Italian
    QString origin;      ///< as the list of origins has it; empty where it is the second source of one
    QString source;      ///< what "Databasename" names, inside the folder; empty for the folder
    /// What is imported of it, in this order: buttons or names of procedures, with the answers to what they ask behind
    /// colons ("cli:no"); "%SOURCE%" in one stands for the path of the source.
    QStringList imports;
    QStringList groups; ///< what `Options::tables` may name, e.g. "controparti"
    /// Writes the tables. Raises `ExampleError`.
    Totals (*make)(const Options& options);
};

/// All examples.
const QVector<Example>& Examples();
/// Makes an example and writes its totals beside the tables, as "totali.csv"; most examples also bring "quadrix.sql",
/// the translations and base rows that an import of theirs needs in the Quadrix database. Raises `ExampleError` naming
/// what is there to choose from when there is no such example or group.
Totals Make(const QString& example, const Options& options);

/// Whether a group of tables is asked for.
bool IsAsked(const Options& options, const QString& group);
/// The number of digits that codes of so many rows take, at least `digits`.
int CodeDigits(qint64 rows, int digits);
/// Writes a file. Raises `ExampleError`.
void WriteText(const QString& path, const QByteArray& text);
/// A code: the letter and the number with leading zeros, e.g. "C00001".
QString MakeCode(QChar letter, qint64 number, int digits);

// The examples, in the order of the list.
Totals MakeAdHoc(const Options& options);
Totals MakeTessera(const Options& options);
Totals MakeTesseraSolution(const Options& options);
Totals MakeSolution(const Options& options);
Totals MakeGammaTeamsystem(const Options& options);
Totals MakeArca2000(const Options& options);
Totals MakeSam(const Options& options);
Totals MakeLibertyCommerce(const Options& options);
Totals MakeMemphis(const Options& options);
Totals MakeVisualSpace(const Options& options);
Totals MakeMexal(const Options& options);
Totals MakeOSL(const Options& options);
Totals MakeDominio(const Options& options);
Totals MakeOS1(const Options& options);
Totals MakeFactory(const Options& options);
Totals MakeEsatto(const Options& options);
Totals MakeMetodo(const Options& options);
Totals MakeLantek24(const Options& options);
Totals MakeNetSuite(const Options& options);
Totals MakeSIGIP(const Options& options);
Totals MakeArcaEvolution(const Options& options);
Totals MakeMago(const Options& options);
Totals MakeLantek30(const Options& options);
Totals MakeFerrobrio(const Options& options);
Totals MakeG2(const Options& options);
Totals MakeVision(const Options& options);
Totals MakeAdHocWindows(const Options& options);
Totals MakeGemini(const Options& options);
Totals MakeFenice(const Options& options);
Totals MakeSigla(const Options& options);
Totals MakeGescom(const Options& options);
Totals MakeWinProgest(const Options& options);
Totals MakeWinProgestServer(const Options& options);
Totals MakeMexalDb(const Options& options);
Totals MakeCometa(const Options& options);
Totals MakeAlbalog(const Options& options);
Totals MakePuzzle(const Options& options);
Totals MakeGammaSqlServer(const Options& options);
Totals MakeBMS(const Options& options);
Totals MakePanthera(const Options& options);
Totals MakeAutoma(const Options& options);

} // namespace examples
