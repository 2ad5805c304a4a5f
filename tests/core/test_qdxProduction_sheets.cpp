#include "core/qdxProduction_sheets.h"
#include "tests/support/errorOf.h"
#include "tests/support/QuadrixTest.h"
#include "tests/support/rows.h"
#include "tests/support/TestTarget.h"

#include <QTest>

using namespace qdxProduction;

/// Weights worked out by hand, and the codes of sheets.
class TestQdxProductionSheets : public QObject {
    Q_OBJECT

private slots:
    void sheets_data() {
        Columns<double, double, double, double, double>("length", "width", "thickness", "density", "weight");
        Row("a square metre of steel", 1000., 1000., 1., 7.85, 7.85);
        Row("3000 x 1500 x 1.5", 3000., 1500., 1.5, 7.85, 52.988); // 52.9875
        Row("half a gram", 100., 50., 1., 2.7, 0.014);             // 0.0135
        Row("without a density", 3000., 1500., 1.5, 0., 0.);
    }
    void sheets() {
        QFETCH(const double, length);
        QFETCH(const double, width);
        QFETCH(const double, thickness);
        QFETCH(const double, density);
        QTEST(qdxPesoArticoloLamiera({length, width, thickness}, density), "weight");
    }

    void tubes_data() {
        Columns<double, double, double, double, double, double>("length", "sideA", "sideB", "thickness", "density",
                                                                "weight");
        // 2 x 3 x (60 + 40 - 6) = 564 mm2
        Row("rectangular", 6000., 60., 40., 3., 7.85, 26.564);
        // 2 x 2 x (50 + 50 - 4) = 384 mm2
        Row("square", 1000., 50., 50., 2., 7.85, 3.014);
        // pi x 2.6 x (48.3 - 2.6) = 373.283 mm2
        Row("round", 6000., 48.3, 0., 2.6, 7.85, 17.582);
        // pi x 10 x 10 = 314.159 mm2
        Row("round, without a hollow", 1000., 20., 0., 10., 7.85, 2.466);
        // 40 x 20 mm2
        Row("flat, without a hollow", 1000., 40., 20., 10., 2.7, 2.16);
        Row("without a wall", 1000., 40., 20., 0., 7.85, 0.);
    }
    void tubes() {
        QFETCH(const double, length);
        QFETCH(const double, sideA);
        QFETCH(const double, sideB);
        QFETCH(const double, thickness);
        QFETCH(const double, density);
        QTEST(qdxPesoArticoloTubolare({length, sideA, sideB, thickness}, density), "weight");
    }

    void tubesThatCannotBe_data() {
        Columns<double, double, double, double>("length", "sideA", "sideB", "thickness");
        Row("wall beyond the half of the smaller side", 1000., 40., 20., 10.1);
        Row("wall beyond the radius", 1000., 40., 0., 20.1);
        Row("negative wall", 1000., 40., 20., -1.);
        Row("negative length", -1., 40., 20., 1.);
    }
    void tubesThatCannotBe() {
        QFETCH(const double, length);
        QFETCH(const double, sideA);
        QFETCH(const double, sideB);
        QFETCH(const double, thickness);
        const auto error = ErrorOf<ImportError>([&] {
            qdxPesoArticoloTubolare({length, sideA, sideB, thickness}, 7.85);
        });
        QVERIFY(error && error->Message().contains("tubolare di 40 x"));
    }

    void formats_data() {
        Columns<QString, double>("article", "weight");
        Row("known", "LM-FE-1.5", 52.988);
        Row("without a thickness", "LM-FE", 0.);
        Row("no such article", "MANCA", 0.);
    }
    void formats() {
        QFETCH(const QString, article);
        TestTarget target;
        target.Execute("INSERT INTO X01_ART_ICO (CDART, ARDMZ) VALUES ('LM-FE-1.5', 1.5)");
        target.Execute("INSERT INTO X01_ART_ICO (CDART) VALUES ('LM-FE')");
        QTEST(qdxPesoFormato(target.Get(), article, 3000, 1500, 7.85), "weight");
    }

    void codes() {
        QCOMPARE(qdxCalcolaCodiceFormatoArticolo(2500.5, 1250), QString("2500.5X1250"));
        QCOMPARE(qdxAnaGetCodeArtSheet(" s235jr ", 1.5), QString("LM-S235JR-1.5"));
    }
};

QUADRIX_TEST(TestQdxProductionSheets)
#include "test_qdxProduction_sheets.moc"
