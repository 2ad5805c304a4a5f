#include "adapters/announced.h"
#include "adapters/registry.h"
#include "tests/support/QuadrixTest.h"

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
    static QString Captions(const Origin& origin) {
        QStringList captions;
        for (int button = 0; button < ButtonCount; ++button) {
            const QString& caption = origin.buttons[size_t(button)].caption;
            if (!caption.isEmpty()) {
                captions.append(ButtonName(Button(button)) + '=' + caption);
            }
        }
        return captions.join(';');
    }

private slots:
    void listHasEveryOriginInItsOrder() {
        const QStringList expected{"Ad-Hoc",
                                   "Tessera",
                                   "Tessera + Solution",
                                   "Solution",
                                   "Gamma TeamSystem",
                                   "Lumen",
                                   "Arca 2000",
                                   "SAM",
                                   "LibertyCommerce",
                                   "Memphis",
                                   "Visual Space",
                                   "Mexal",
                                   "OSL GP90",
                                   "DOMINIO",
                                   "OS1",
                                   "Factory",
                                   "EsaSoftware \"e\"",
                                   "Metodo",
                                   "Lantek 24",
                                   "Kordel NetSuite",
                                   "Excel",
                                   "Access",
                                   "SIGIP",
                                   "Arca Evolution",
                                   "Mago NET",
                                   "Lantek Expert 30",
                                   "Ferrobrio",
                                   "Zucchetti G2",
                                   "Access Velmoran",
                                   "Vision SQL",
                                   "Dss Waps",
                                   "Axis",
                                   "Ad-Hoc Windows",
                                   "Excel scarico AS/400",
                                   "Gemini",
                                   "Fenice",
                                   "Sigla",
                                   "Gescom",
                                   "WinProgest",
                                   "MexalDB",
                                   "Cometa",
                                   "Albalog",
                                   "Puzzle",
                                   "Nubrio Excel",
                                   "Gamma DB SqlServer",
                                   "BMS",
                                   "Panthera",
                                   "Factory (SqlServer)",
                                   "Brantel",
                                   "Punta",
                                   "Terrauna",
                                   "Scala",
                                   "Veldra",
                                   "Facile",
                                   "Borgo",
                                   "Lamina",
                                   "Siderea"};
        QStringList names;
        for (const Origin* origin : registry::Origins()) {
            names.append(origin->name);
        }
        QCOMPARE(names, expected);
        QCOMPARE(names.size(), 57);
    }

    /// An announced row that no line of the list asks for would be a module's leftover.
    void everyOriginIsEitherBuiltOrAnnounced() {
        int announcedOnes = 0;
        for (const Origin* origin : registry::Origins()) {
            QVERIFY2(origin->module.startsWith("modImport_"), qPrintable(origin->name));
            QVERIFY2(!origin->source.kind.isEmpty(), qPrintable(origin->name));
            announcedOnes += origin->procedures.empty() ? 1 : 0;
        }
        QCOMPARE(announcedOnes, announced::Count());
    }

    void rowsOfButtons_data() {
        QTest::addColumn<QString>("origin");
        QTest::addColumn<QString>("marks");
        QTest::addColumn<QString>("captions");
        QTest::addColumn<Shown>("sequence");
        const auto row = [](const char* origin, const char* marks, const char* captions, Shown sequence = Shown::Keep) {
            QTest::newRow(origin) << QString(origin) << QString(marks) << QString(captions) << sequence;
        };
        row("AD-HOC", "YYNNY-NY", "acq=Importa Tabelle Generali;disegni=Importa Lamiere");
        row("AD-HOC WINDOWS", "YYNNN-NN", "acq=Importa Tabelle Generali;disegni=Importa Lamiere");
        row("TESSERA + SOLUTION", "YYYYY---", "");
        row("GAMMA TEAMSYSTEM", "YNNNNNYY", "piano=Importa Sedi;disegni=Importa Riferimenti");
        row("LUMEN", "NNNNN---", "");
        row("ARCA 2000", "YYNNNNYY", "disegni=Importa Listini", Shown::Yes);
        row("FACTORY", "YYYYYYY-",
            "cli=Importa Controlli;doc=Importa Commesse aperte;acq=Importa Commesse aperte XLS;piano=Importa Allegati");
        row("ESASOFTWARE \"E\"", "--------", "");
        row("METODO", "YYYYYYYY",
            "dis=(Riallinea N° Tel e Fax);doc=Importa Documenti;acq=Importa Nr. Documento;saldi=Importa Mod. "
            "Pagamento;disegni=Importa Banche");
        row("MEXAL", "YYYYYYYY", "disegni=Importa Costi/Prezzi");
        row("VISUAL SPACE", "YYYYYYN-", "");
        row("VISION SQL", "YYN-----", "");
        row("PANTHERA", "NNYNNNNN", "disegni=Importa Listini");
        row("BORGO", "NYYYYNYN",
            "doc=Importa Ordini Vendita;acq=Importa Ordini Acquisto;piano=Ricodifica Articoli Lamiera");
        row("SIDEREA", "NNNNNNNN", "disegni=Importa Listini", Shown::No);
    }
    void rowsOfButtons() {
        QFETCH(QString, origin);
        const Origin* found = registry::Find(origin);
        QVERIFY(found != nullptr);
        QTEST(Marks(*found), "marks");
        QTEST(Captions(*found), "captions");
        QTEST(found->sequence, "sequence");
    }

    void findComparesWithoutCase() {
        QCOMPARE(registry::Find("arca 2000"), registry::Find("Arca 2000"));
        QVERIFY(registry::Find("Arca") == nullptr);
        QVERIFY_EXCEPTION_THROWN(announced::Find("Arca"), ImportError);
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
