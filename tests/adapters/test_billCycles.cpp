#include "adapters/contract/write/Bill.h"
#include "core/billCycles.h"
#include "tests/support/QuadrixTest.h"
#include "tests/support/rows.h"
#include "tests/support/TestTarget.h"

#include <QTest>

#include <random>
#include <set>

using namespace contract;
using namespace qdxProduction;

namespace {

using Path = std::vector<qint64>;

std::vector<Path> PathsOf(const std::vector<BillLink>& links) {
    std::vector<Path> paths;
    ForEachCycle(links, [&](const Path& path) { paths.push_back(path); });
    return paths;
}

/// "1>2 2>3" as links.
std::vector<BillLink> Links(const QString& text) {
    std::vector<BillLink> links;
    for (const QString& link : text.split(' ', Qt::SkipEmptyParts)) {
        links.push_back({link.section('>', 0, 0).toLongLong(), link.section('>', 1, 1).toLongLong()});
    }
    return links;
}

QString TextOf(const std::vector<Path>& paths) {
    QStringList texts;
    for (const Path& path : paths) {
        QStringList steps;
        for (const qint64 bill : path) {
            steps.append(QString::number(bill));
        }
        texts.append(steps.join('>'));
    }
    return texts.join(' ');
}

/// Which of a few bills contain themselves, by trying every way: reaches[a][b] over any number of levels.
std::set<qint64> ContainingThemselves(const std::vector<BillLink>& links, int count) {
    std::vector<std::vector<bool>> reaches(count, std::vector<bool>(count));
    for (const BillLink& link : links) {
        reaches[link.bill][link.part] = true;
    }
    for (int through = 0; through < count; ++through) {
        for (int from = 0; from < count; ++from) {
            for (int to = 0; to < count; ++to) {
                reaches[from][to] = reaches[from][to] || (reaches[from][through] && reaches[through][to]);
            }
        }
    }
    std::set<qint64> found;
    for (int bill = 0; bill < count; ++bill) {
        if (reaches[bill][bill]) {
            found.insert(bill);
        }
    }
    return found;
}

} // namespace

class TestBillCycles : public QObject {
    Q_OBJECT

private slots:
    void findsPaths_data() {
        Columns<QString, QString>("links", "paths");
        Row("nothing", "", "");
        Row("a tree with a shared part", "1>2 1>3 2>4 3>4 4>5", "");
        Row("itself", "7>7", "7>7");
        Row("two, entered from outside", "1>2 2>3 3>2", "2>3>2");
        Row("lowest first", "9>4 4>6 6>9", "4>6>9>4");
        Row("the same part twice", "1>2 1>2 2>1 2>1", "1>2>1");
        Row("shortest way", "1>2 2>3 3>1 2>1", "1>2>1 3>1>2>3");
        Row("one behind a closed one", "1>2 2>1 1>3 3>2", "1>2>1 3>2>1>3");
        Row("two apart", "1>2 2>1 2>5 5>6 6>5", "1>2>1 5>6>5");
    }
    void findsPaths() {
        QFETCH(const QString, links);
        QTEST(TextOf(PathsOf(Links(links))), "paths");
    }

    /// Every bill that contains itself is shown, and nothing but ways that there are.
    void showsEveryBillOfRandomBills() {
        std::mt19937 random(20240305);
        for (int round = 0; round < 400; ++round) {
            const int count = 2 + static_cast<int>(random() % 9);
            std::vector<BillLink> links(random() % 20);
            for (BillLink& link : links) {
                link = {static_cast<qint64>(random() % count), static_cast<qint64>(random() % count)};
            }
            std::set<std::pair<qint64, qint64>> known;
            for (const BillLink& link : links) {
                known.insert({link.bill, link.part});
            }
            std::set<qint64> shown;
            std::set<Path> seen;
            for (const Path& path : PathsOf(links)) {
                QCOMPARE(path.front(), path.back());
                QVERIFY2(seen.insert(path).second, "a path came twice");
                for (size_t i = 1; i < path.size(); ++i) {
                    QVERIFY2(known.count({path[i - 1], path[i]}) == 1, "a way that there is not");
                    shown.insert(path[i]);
                }
            }
            QVERIFY(shown == ContainingThemselves(links, count));
        }
    }

    /// Levels are as deep as the data say: a walk on the program's own stack would overflow.
    void goesDownAnyNumberOfLevels() {
        constexpr qint64 Count = 200000;
        std::vector<BillLink> links;
        for (qint64 bill = 1; bill < Count; ++bill) {
            links.push_back({bill, bill + 1});
        }
        QVERIFY(PathsOf(links).empty());
        links.push_back({Count, 1});
        const std::vector<Path> paths = PathsOf(links);
        QCOMPARE(paths.size(), size_t{1});
        QCOMPARE(paths.front().size(), size_t{Count + 1});
    }

    /// What the writer links, it logs once with the articles' codes; links to bills that are gone are taken away.
    void logsTheArticles() {
        TestTarget target;
        for (const char* article : {"A", "B", "C", "VITE"}) {
            target.Execute(QString("INSERT INTO X01_ART_ICO (CDART, ARCOS) VALUES ('%1', 1)").arg(article));
        }
        target.Person.Otherwise = true;
        ImportRun run(target.Get(), "modImport_Prova", "ImportDistinte", "A");
        BillWriter writer(run);
        const QStringList bills{"A:B,VITE", "B:C", "C:A"};
        for (const QString& bill : bills) {
            writer.Begin(bill.section(':', 0, 0), bill);
            const qint64 phase = writer.Write(Phase{});
            for (const QString& part : bill.section(':', 1).split(',')) {
                writer.Write(Component{part, 1}, phase);
            }
        }
        target.Execute("UPDATE X01_DIS_COM SET IDDBF = 99 WHERE DCART = 'VITE'");
        writer.LinkSubAssemblies();
        QCOMPARE(target.Rows("SELECT DCART, IDDBF FROM X01_DIS_COM ORDER BY RECORD_ID"),
                 QStringList({"B|2", "VITE|NULL", "C|3", "A|1"}));
        QCOMPARE(target.Log().count("CICLO NELLA DISTINTA"), 1);
        QVERIFY2(target.Log().contains("CICLO NELLA DISTINTA: A > B > C > A\r\n"), target.Log().constData());
    }
};

QUADRIX_TEST(TestBillCycles)
#include "test_billCycles.moc"
