#include "adapters/registry.h"
#include "tests/support/QuadrixTest.h"
#include "tests/support/rows.h"

#include <QSet>
#include <QTest>

using namespace contract;

class TestRegistry : public QObject {
    Q_OBJECT

    static QString Marks(const Origin& origin) {
        QString marks;
        for (const ButtonRow& row : origin.buttons) {
            marks += row.shown == Shown::Keep ? '-' : row.shown == Shown::Yes ? 'Y' : 'N';
        }
        return marks;
    }

private slots:
    void listHasEveryOriginInItsOrder() {
        const QString expected =
            "Ad-Hoc|Tessera|Tessera + Solution|Solution|Gamma TeamSystem|Lumen|Arca 2000|SAM|LibertyCommerce|"
            "Memphis|Visual Space|Mexal|OSL GP90|DOMINIO|OS1|Factory|EsaSoftware \"e\"|Metodo|Lantek 24|"
            "Kordel NetSuite|Excel|Access|SIGIP|Arca Evolution|Mago NET|Lantek Expert 30|Ferrobrio|"
            "Zucchetti G2|Access Velmoran|Vision SQL|Dss Waps|Axis|Ad-Hoc Windows|Excel scarico AS/400|"
            "Gemini|Fenice|Sigla|Gescom|WinProgest|MexalDB|Cometa|Albalog|Puzzle|Nubrio Excel|"
            "Gamma DB SqlServer|BMS|Panthera|Factory (SqlServer)|Brantel|Punta|Terrauna|Scala|Veldra|Facile|"
            "Borgo|Lamina|Siderea";
        QStringList names;
        for (const Origin* origin : registry::Origins()) {
            names.append(origin->name);
        }
        QCOMPARE(names, expected.split('|'));
    }

    void everyOriginIsBuilt() {
        for (const Origin* origin : registry::Origins()) {
            QVERIFY2(origin->module.startsWith("modImport_"), qPrintable(origin->name));
            QVERIFY2(!origin->source.kind.isEmpty(), qPrintable(origin->name));
            QVERIFY2(!origin->procedures.empty(), qPrintable(origin->name));
        }
    }

    /// Their captions stand in the pages of the mappings.
    void rowsOfButtons_data() {
        Columns<QString, Shown>("marks", "sequence");
        Row("AD-HOC", "YYNNY-NY", Shown::Keep);
        Row("AD-HOC WINDOWS", "YYNNN-NN", Shown::Keep);
        Row("TESSERA + SOLUTION", "YYYYY---", Shown::Keep);
        Row("GAMMA TEAMSYSTEM", "YNNNNNYY", Shown::Keep);
        Row("LUMEN", "NNNNN---", Shown::Keep);
        Row("ARCA 2000", "YYNNNNYY", Shown::Yes);
        Row("FACTORY", "YYYYYYY-", Shown::Keep);
        Row("ESASOFTWARE \"E\"", "--------", Shown::Keep);
        Row("METODO", "YYYYYYYY", Shown::Keep);
        Row("VISUAL SPACE", "YYYYYYN-", Shown::Keep);
        Row("VISION SQL", "YYN-----", Shown::Keep);
        Row("PANTHERA", "NNYNNNNY", Shown::Keep);
        Row("BORGO", "NYYYYNYN", Shown::Keep);
        Row("SIDEREA", "NNNNNNNY", Shown::No);
    }
    void rowsOfButtons() {
        const Origin* found = registry::Find(QTest::currentDataTag());
        QVERIFY(found != nullptr);
        QTEST(Marks(*found), "marks");
        QTEST(found->sequence, "sequence");
    }

    void findComparesWithoutCase() {
        QCOMPARE(registry::Find("arca 2000"), registry::Find("Arca 2000"));
        QVERIFY(registry::Find("Arca") == nullptr);
    }

    /// A procedure is reached by its button and its name (two buttons may lead to the same); one that no visible button
    /// leads to could not be started.
    void proceduresStandBehindButtonsThatCanBeSeen() {
        for (const Origin* origin : registry::Origins()) {
            QSet<QString> names;
            for (const Procedure& procedure : origin->procedures) {
                const QString reached =
                    (procedure.button ? ButtonName(*procedure.button) : QString("-")) + ' ' + procedure.name;
                const QString place = origin->name + ' ' + reached;
                QVERIFY2(!names.contains(reached), qPrintable(place));
                names.insert(reached);
                QVERIFY2(!procedure.button || origin->buttons[size_t(*procedure.button)].shown != Shown::No,
                         qPrintable(place));
                QVERIFY2(procedure.run != nullptr, qPrintable(place));
            }
        }
    }

    void buttonNames() {
        for (int button = 0; button < ButtonCount; ++button) {
            QCOMPARE(ButtonFromName(ButtonName(Button(button)).toUpper()), std::optional(Button(button)));
        }
        QVERIFY(!ButtonFromName("clienti"));
    }
};

Q_DECLARE_METATYPE(Shown)

QUADRIX_TEST(TestRegistry)
#include "test_registry.moc"
