#include "adapters/mappingPages.h"
#include "adapters/registry.h"
#include "tests/support/QuadrixTest.h"

#include <QDir>
#include <QTest>

using namespace contract;

class TestMappings : public QObject {
    Q_OBJECT

private slots:
    /// The pages under docs/mappings are those of the code as it is; scripts/mappings writes them anew.
    void PagesAreCurrent() {
        const QDir folder(QStringLiteral(QUADRIX_SOURCE_DIR "/docs/mappings"));
        const auto pages = mappingPages::Pages(registry::Origins());
        QCOMPARE(folder.entryList({"*.md"}, QDir::Files, QDir::Name), pages.keys());
        for (auto page = pages.cbegin(); page != pages.cend(); ++page) {
            QFile file(folder.filePath(page.key()));
            QVERIFY(file.open(QIODevice::ReadOnly));
            QVERIFY2(QString::fromUtf8(file.readAll()) == page.value(), qPrintable(page.key()));
        }
    }

    /// A module of two origins; a procedure behind two buttons; what a mapping tells is not told again.
    void PageOfAModule() {
        static const Mapping mapping{
            "TAB_IVA", "aliquote", {{"CDIVA", "codice", rules::Code()}, {"IVALI", "perc", rules::AsRead()}}};
        const Needs needs{{&mapping},
                          {{"aliquote", {"codice", "tipo"}}, {"ditta", {"nome"}}, {"ditta", {"nome", "via"}}},
                          {{"TAB_IVA", {"IVALI"}}}};
        Origin first{"Prova", "modImport_Prova", {"CSV", {}}, {}, Shown::Keep, {}};
        first.buttons[static_cast<size_t>(Button::Art)].caption = "Importa IVA";
        first.procedures = {{Button::Art, "ImportIva", {}, needs}, {Button::Doc, "ImportIva", {}, needs}};
        Origin second = first;
        second.name = "Prova SQL";
        second.source.kind = "SQL Server";
        second.procedures = {{std::nullopt, "ImportAltro", {}, {}}};
        const Origin announced{"Altro", "modImport_Altro", {"CSV", {}}, {}, Shown::Keep, {}};

        const auto pages = mappingPages::Pages({&first, &announced, &second});
        QCOMPARE(pages.keys(), (QStringList{"README.md", "modImport_Prova.md"}));
        QVERIFY(pages["README.md"].endsWith(
            "| [modImport_Prova](modImport_Prova.md) | Prova (CSV), Prova SQL (SQL Server) |\n"));
        const QString page = pages["modImport_Prova.md"];
        QCOMPARE(page.section("\n\n", 2), QString("Origins: Prova (CSV), Prova SQL (SQL Server)\n\n"
                                                  "## ImportIva\n\n"
                                                  "Buttons: Prova: `art` \"Importa IVA\", Prova: `doc`\n\n"
                                                  "### TAB_IVA from aliquote\n\n"
                                                  "| Target | Source | Rule |\n"
                                                  "|---|---|---|\n"
                                                  "| `CDIVA` | `codice` | code assigned to the row |\n"
                                                  "| `IVALI` | `perc` | as read |\n\n"
                                                  "### Read from the source, beyond the mappings\n\n"
                                                  "| Table | Columns |\n"
                                                  "|---|---|\n"
                                                  "| `aliquote` | `tipo` |\n"
                                                  "| `ditta` | `nome`, `via` |\n\n"
                                                  "## ImportAltro\n\n"
                                                  "Buttons: Prova SQL: no button, by its name\n"));
    }
};

QUADRIX_TEST(TestMappings)
#include "test_mappings.moc"
