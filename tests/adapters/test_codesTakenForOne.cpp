#include "adapters/contract/map/lookups.h"
#include "adapters/contract/write/Article.h"
#include "adapters/contract/write/BaseTable.h"
#include "adapters/contract/write/Counterparty.h"
#include "adapters/contract/write/FreeAttribute.h"
#include "adapters/contract/write/PriceList.h"
#include "core/modImport.h"
#include "tests/support/errorOf.h"
#include "tests/support/QuadrixTest.h"
#include "tests/support/rows.h"
#include "tests/support/TestTarget.h"

#include <QTest>

using namespace contract;
using namespace contract::rules;

namespace {

/// A run of which every row writes something that has a code, and the codes that there are of it.
struct Case {
    const char* name;
    void (*write)(ImportRun&, const QString& code);
    const char* query;
    bool isUnique; ///< the database holds one of two that it takes for one
};

void WriteMapped(ImportRun& run, const QString& table, const QString& code, bool isArticle) {
    const Recordset rows = run.GetSession().Quadrix.ExecuteWC("SELECT 'Nome' NOME");
    const SourceRow row(rows);
    if (isArticle) {
        ArticleWriter(run).Write({table, "FONTE", {{"ARDES", "NOME", Text()}}}, row, {code});
    } else {
        WriteByCode(run, {table, "FONTE", {{"CDMOP", "NOME", Code()}}}, row, {code});
    }
}

void WriteParty(ImportRun& run, const QString& code) {
    const Recordset rows = run.GetSession().Quadrix.ExecuteWC("SELECT 'Nome' NOME");
    CounterpartyRegister parties(run);
    const SourceIdentity source{"CLIENTI", "CODICE", code, RoleOf(true), "Nome", {}, {}};
    parties.Meet(source);
    const Mapping mapping{"CON_TRO", "CLIENTI", {{"CDCON", "NOME", Code()}, {"CORAS", "NOME", Text()}}};
    CounterpartyWriter(run, {}).Write(CounterpartyMapping(mapping), SourceRow(rows), parties.Place(source),
                                      RoleOf(true), [&](TargetRow& party) { party.Set("COCGE", code); });
}

/// The code that the operator has given for one of the source, which nobody has yet.
void PlaceTold(ImportRun& run, const QString& code) {
    CounterpartyRegister parties(run);
    const Placement place = parties.Settle({"CLIENTI", "CODICE", {}, RoleOf(true), "Nome", {}, {}}, code);
    if (!place.known) {
        TargetRow(run, "CON_TRO").Set("CDCON", code).Set("CORAS", "Nome").Insert();
    }
}

const std::array Cases{
    Case{"articles", [](ImportRun& run, const QString& code) { WriteMapped(run, "ART_ICO", code, true); },
         "SELECT CDART FROM X01_ART_ICO", true},
    Case{"terms", [](ImportRun& run, const QString& code) { WriteMapped(run, "TAB_MOP", code, false); },
         "SELECT CDMOP FROM TAB_MOP WHERE CDMOP LIKE 'T_1' OR CDMOP LIKE 'Z_1'", true},
    Case{"counterparties", WriteParty, "SELECT COCGE FROM X01_CON_TRO", false},
    Case{"counterparties whose code is told", PlaceTold, "SELECT CDCON FROM X01_CON_TRO", true},
    Case{"translations",
         [](ImportRun& run, const QString& code) { StoreNewCode(run, "PAGAMENTI", "CODICE", code, code + 'N'); },
         "SELECT TBOLD FROM SYS_IMP", false},
    Case{"codes that wait",
         [](ImportRun& run, const QString& code) {
             run.GetSession().Translations.clear();
             modImport::GetNewCode(run.GetSession(), "PAGAMENTI", "CODICE", code, true);
         },
         "SELECT TBOLD FROM SYS_IMP", false},
    Case{"price lists",
         [](ImportRun& run, const QString& code) { PriceListWriter(run).Head(code, "V", code, "EUR", {}); },
         "SELECT CDLIS FROM X01_LIS_TES", false},
    Case{"locations", [](ImportRun& run, const QString& code) { ArticleWriter(run).Location("VITE", code); },
         "SELECT CDUBI FROM X01_UBI_MAG", false},
    Case{"locations of an article",
         [](ImportRun& run, const QString& code) { ArticleWriter(run).Location("VITE", code); },
         "SELECT CDUBI FROM X01_UBI_ART", false},
    Case{"further codes", [](ImportRun& run, const QString& code) { ArticleWriter(run).InternalCode("VITE", code); },
         "SELECT CDCOD FROM X01_ART_COD", false},
    Case{"codes at a counterparty",
         [](ImportRun& run, const QString& code) { ArticleWriter(run).CodeAtCounterparty("VITE", code, "000001"); },
         "SELECT CDCOD FROM X01_ART_COD", false},
    Case{"attributes",
         [](ImportRun& run, const QString& code) {
             FreeAttributeWriter(run).Write({"ART_ICO", "VITE", code, "valore"});
         },
         "SELECT FLFLD FROM X01_FLD_VAL", false},
};

} // namespace

/// Two codes that the collation of a database takes for one are two: both are written, or where the database holds one
/// alone the second is refused by its name.
class TestCodesTakenForOne : public QObject {
    Q_OBJECT

private slots:
    void AreToldApart_data() {
        Columns<TestTarget::On, int, QString, QString>("engine", "index", "first", "second");
        const std::array pairs{std::pair("TÈ1", "TE1"), std::pair("TE1", "TÈ1"), std::pair("ZS1", "Zß1")};
        for (const auto& [engine, name] : {std::pair(TestTarget::On::MariaDbAgain, "MariaDB"),
                                           std::pair(TestTarget::On::OdbcAgain, "MariaDB over ODBC"),
                                           std::pair(TestTarget::On::Embedded, "SQLite")}) {
            for (size_t i = 0; i < Cases.size(); ++i) {
                for (const auto& [first, second] : pairs) {
                    QTest::addRow("%s, %s, %s and %s", name, Cases[i].name, first, second)
                        << engine << int(i) << QString::fromUtf8(first) << QString::fromUtf8(second);
                }
            }
        }
    }
    void AreToldApart() {
        QFETCH(const TestTarget::On, engine);
        QFETCH(const int, index);
        QFETCH(const QString, first);
        QFETCH(const QString, second);
        const bool isServer = engine != TestTarget::On::Embedded;
        if (isServer && !TestTarget::HasMariaDb()) {
            QSKIP("needs the MariaDB server of scripts/test");
        }
        const Case& written = Cases[static_cast<size_t>(index)];
        TestTarget target(engine);
        const bool isRefused = written.isUnique && isServer;
        const QStringList left = isRefused ? QStringList{first} : QStringList{first, second};
        for (int time = 0; time < 2; ++time) { // an import finds what an earlier one has left
            ImportRun run(target.Get(), "modImport_Prova", "Prova", {});
            target.Get().Translations.clear();
            written.write(run, first);
            const auto error = ErrorOf<ImportError>([&] { written.write(run, second); });
            QCOMPARE(error.has_value(), isRefused);
            const QString told = "il codice '" + second + "' è per il database lo stesso di '" + first + "'";
            QVERIFY2(!error || error->Message().contains(told), qPrintable(error ? error->Message() : QString()));
            QCOMPARE(target.Rows(written.query + QString(" ORDER BY RECORD_ID")), left);
        }
    }

    /// Nobody else is found by such a code: documents and prices of an article that was given up are not another's.
    void AreNotFoundForEachOther_data() {
        Columns<TestTarget::On>("engine");
        Row("MariaDB", TestTarget::On::MariaDbAgain);
        Row("SQLite", TestTarget::On::Embedded);
    }
    void AreNotFoundForEachOther() {
        QFETCH(const TestTarget::On, engine);
        if (engine != TestTarget::On::Embedded && !TestTarget::HasMariaDb()) {
            QSKIP("needs the MariaDB server of scripts/test");
        }
        TestTarget target(engine);
        Session& session = target.Get();
        target.Execute("INSERT INTO X01_CON_TRO (CDCON, COCGE, COFGE) VALUES ('000001', 'ZA1', 'F1')");
        target.Execute("INSERT INTO X01_CON_TRO (CDCON, COCGE, COFGE) VALUES ('000002', 'ZÀ1', 'ZA1')");
        const QString marked = QStringLiteral("ZÀ1");
        for (const auto& [code, party] :
             {std::pair(marked, "000002"), std::pair(marked.toLower(), "000002"),
              std::pair(QStringLiteral("za1"), "000001"), std::pair(QStringLiteral("ZÁ1"), "")}) {
            QCOMPARE(LookUp(session, "CON_TRO", "COCGE", code, "CDCON"), QString(party));
            QCOMPARE(IsThere(session, "CON_TRO", "COCGE", code), *party != '\0');
        }
        QCOMPARE(modImport::GetNewControparteFromCodExt(session, marked, true, false, false), QString("000002"));
        QCOMPARE(modImport::GetNewControparteFromCodExt(session, "ZÁ1", false, false, false), QString());
        QCOMPARE(modImport::GetNewControparteFromCodExt(session, "ZA1", false, false, false), QString("000001"));
    }
};

QUADRIX_TEST(TestCodesTakenForOne)

#include "test_codesTakenForOne.moc"
