#include "app/reset.h"
#include "tests/support/QuadrixTest.h"
#include "tests/support/rows.h"
#include "tests/support/TestTarget.h"

#include <QTest>

namespace {

/// The options whose names stand in a list such as "AnaArt DocVen"; all of them for "*".
ResetOptions Named(const QString& names) {
    ResetOptions options;
    const QStringList wanted = names.split(' ', Qt::SkipEmptyParts);
    int found = 0;
    for (const ResetChoice& choice : ResetChoices()) {
        options.*choice.option = names == "*" || wanted.contains(QString(choice.name));
        found += options.*choice.option ? 1 : 0;
    }
    if (names != "*" && found != wanted.size()) {
        qFatal("unknown option in %s", qPrintable(names));
    }
    return options;
}

QString NamesOf(const ResetOptions& options) {
    QStringList names;
    for (const ResetChoice& choice : ResetChoices()) {
        if (options.*choice.option) {
            names.append(QString(choice.name));
        }
    }
    return names.join(' ');
}

/// Every table that some option empties, with one row in each.
QStringList FillResetTables(TestTarget& target) {
    QStringList tables;
    for (const ResetGroup& group : ResetGroups()) {
        tables += group.tables;
    }
    for (const QString& table : std::as_const(tables)) {
        const QString name = target.Db().GetFullTableName(table);
        target.Execute("DELETE " + name);
        target.Execute("INSERT INTO " + name + " DEFAULT VALUES");
    }
    return tables;
}

/// Those of the tables that hold no row any more.
QStringList EmptiedOf(TestTarget& target, const QStringList& tables) {
    QStringList empty;
    for (const QString& table : tables) {
        if (target.Value("SELECT COUNT(*) FROM " + target.Db().GetFullTableName(table)) == "0") {
            empty.append(table);
        }
    }
    return empty;
}

QStringList NamesOf(const EmptyingResult& result) {
    QStringList names;
    for (const EmptyingResult::Table& table : result.tables) {
        names.append(table.name);
    }
    return names;
}

} // namespace

class TestReset : public QObject {
    Q_OBJECT

private slots:
    void ClickingABoxMovesTheOthers_data() {
        Columns<QString, QString, QString>("before", "clicked", "after");
        const QString allButSystemAndContacts = "Rilevamenti OrdProd PrevProd DisBas DocVen DocAcq AnaArt MagaLam Maga";
        Row("articles take along what refers to them", "", "AnaArt", allButSystemAndContacts);
        Row("counterparties take documents and, through sales, production", "", "AnaCon",
            "Rilevamenti OrdProd PrevProd DocVen DocAcq AnaCon");
        Row("sales take production", "", "DocVen", "Rilevamenti OrdProd PrevProd DocVen");
        Row("production orders", "", "OrdProd", "Rilevamenti OrdProd PrevProd");
        Row("purchases alone", "", "DocAcq", "DocAcq");
        Row("bills alone", "", "DisBas", "DisBas");
        Row("system alone", "", "SystemTable", "SystemTable");
        Row("kept recordings keep orders, sales and all master data", "*", "Rilevamenti",
            "SystemTable PrevProd DisBas DocAcq MagaLam Maga");
        Row("kept estimates keep sales and articles, not the orders", "*", "PrevProd",
            "SystemTable Rilevamenti OrdProd DisBas DocAcq MagaLam Maga");
        Row("kept orders", "*", "OrdProd", "SystemTable Rilevamenti PrevProd DisBas DocAcq MagaLam Maga");
        Row("kept sales", "*", "DocVen", "SystemTable Rilevamenti OrdProd PrevProd DisBas DocAcq MagaLam Maga");
        Row("kept purchases keep master data, not sales", "*", "DocAcq",
            "SystemTable Rilevamenti OrdProd PrevProd DisBas DocVen MagaLam Maga");
        Row("kept bills keep the articles alone", "*", "DisBas",
            "SystemTable Rilevamenti OrdProd PrevProd DocVen DocAcq AnaCon MagaLam Maga");
        Row("kept stock", "*", "Maga", "SystemTable Rilevamenti OrdProd PrevProd DisBas DocVen DocAcq AnaCon MagaLam");
        Row("kept formats", "*", "MagaLam",
            "SystemTable Rilevamenti OrdProd PrevProd DisBas DocVen DocAcq AnaCon Maga");
        Row("kept articles change nothing else", "*", "AnaArt",
            "SystemTable Rilevamenti OrdProd PrevProd DisBas DocVen DocAcq AnaCon MagaLam Maga");
        Row("recordings cleared behind ticked articles", allButSystemAndContacts + " AnaCon", "Rilevamenti",
            "PrevProd DisBas DocAcq MagaLam Maga");
    }
    void ClickingABoxMovesTheOthers() {
        QFETCH(QString, before);
        QFETCH(QString, clicked);
        QFETCH(QString, after);
        ResetOptions options = Named(before);
        for (const ResetChoice& choice : ResetChoices()) {
            if (clicked == choice.name) {
                options.*choice.option = !(options.*choice.option);
                options = AfterClick(options, choice.option);
            }
        }
        QCOMPARE(NamesOf(options), after);
    }

    void DeletesTheTablesOfTheChosenOptions_data() {
        Columns<QString, QStringList>("chosen", "emptied");
        Row("purchases alone delete nothing", "DocAcq", QStringList{});
        Row("sales delete purchases too", "DocVen",
            QStringList{"DOC_VER", "DOC_VED", "DOC_VEN", "DOC_ACR", "DOC_ACD", "DOC_ACQ"});
        Row("order of deletion is that of the groups", "AnaCon MagaLam Rilevamenti",
            QStringList{"RIL_TEM", "RIL_PRE", "ART_FMT", "CON_SED", "CON_RIF", "CON_TRO"});
        Row("system", "SystemTable",
            QStringList{"IMA_GES", "SYS_LOG", "SYS_MSG", "SYS_ATT", "SYS_PIT", "SYS_CFG", "SYS_LAY"});
    }
    void DeletesTheTablesOfTheChosenOptions() {
        QFETCH(QString, chosen);
        QFETCH(QStringList, emptied);
        TestTarget target;
        target.AddCompany("X02", "Prova Due S.r.l.");
        const QStringList tables = FillResetTables(target);
        target.Execute("INSERT INTO X02_DOC_VEN DEFAULT VALUES");
        const EmptyingResult result = ResetDatabase(target.Get(), Named(chosen));
        QCOMPARE(EmptiedOf(target, tables), emptied);
        QCOMPARE(target.Value("SELECT COUNT(*) FROM X02_DOC_VEN"), QString("1"));
        QStringList names;
        for (const QString& table : emptied) {
            names.append(target.Db().GetFullTableName(table));
        }
        QCOMPARE(NamesOf(result), names);
        QCOMPARE(target.Person.Messages.last().text, QString("Reset Database eseguito con successo!"));
        QVERIFY(target.Person.Progresses.front().closed);
        // two for each option, and never all of it
        QCOMPARE(target.Person.Progresses.front().max, 1.0001F + 2 * static_cast<float>(chosen.split(' ').size()));
    }

    void ACancelStopsBetweenTwoTables() {
        TestTarget target;
        const QStringList tables = FillResetTables(target);
        target.Person.CancelAt = 2;
        const EmptyingResult result = ResetDatabase(target.Get(), Named("DocVen AnaCon"));
        QCOMPARE(result.outcome, RunResult::Outcome::Cancelled);
        QCOMPARE(EmptiedOf(target, tables), QStringList({"DOC_VER", "DOC_VED"}));
        QVERIFY(target.Person.Messages.isEmpty());
        QVERIFY(!target.Person.IsBusy());
    }

    /// Before the operator agrees he sees how much goes; a table that is not there takes its option's number away.
    void CountsWhatWouldGo() {
        TestTarget target;
        FillResetTables(target);
        target.Execute("INSERT INTO X01_ART_FMT DEFAULT VALUES");
        target.Execute("DROP TABLE X01_DOC_ACD");
        target.Get().Errors.Action = ErrorAction::Ask;
        QHash<QString, qint64> counted;
        for (const auto& [option, rows] : CountResetRows(target.Get())) {
            for (const ResetChoice& choice : ResetChoices()) {
                if (choice.option == option) {
                    counted.insert(choice.name, rows);
                }
            }
        }
        QCOMPARE(counted.value("MagaLam"), 2);
        QCOMPARE(counted.value("AnaArt"), 2);
        QVERIFY(!counted.contains("DocVen") && !counted.contains("DocAcq"));
        QVERIFY(target.Person.Events.isEmpty());
        QCOMPARE(target.Get().Errors.Action, ErrorAction::Ask);
    }

    /// Whoever gets the code next would have the telephones of another counterparty, the attributes of another article.
    /// A cancel behind the last table of the group leaves them as little.
    void WhatHangsOnMasterDataGoesAlong_data() {
        Columns<QString, int, QStringList, QStringList>("chosen", "cancelAt", "told", "left");
        const QStringList ofArticles{
            "Con gli articoli vanno i testi in lingua e le righe che le importazioni vi hanno appeso: 3 (SYS_LNG: 1, "
            "X01_FLD_VAL: 1, X01_ART_FOR: 1)",
            "Vanno anche testi in lingua scritti a mano, che nessuna importazione riporta: 1 (SYS_LNG: 1)",
            "Restano le righe inserite a mano, che passano a chi avrà il codice del loro articolo: 1 (X01_ART_FOR: 1)",
            "Restano righe di altre tabelle che nominano gli articoli, e passano a chi avrà i loro codici: "
            "X01_LIS_ART (CDART): 1, SYS_ATT (ATKEY): 1"};
        const QStringList ofParties{
            "Con le controparti vanno le righe che le importazioni vi hanno appeso: 3 (X01_NUM_TEL: 2, X01_FLD_VAL: 1)",
            "Restano le righe inserite a mano, che passano a chi avrà il codice della loro controparte: 1 "
            "(X01_NUM_TEL: 1)"};
        const QStringList suppliers{
            "Restano righe di altre tabelle che nominano le controparti, e passano a chi avrà i "
            "loro codici: X01_ART_FOR (CDCON): 2"};
        const QStringList articles{"for|MARIO", "lng|X02_ART_ICO"};
        const QStringList parties{"tel|000002", "tel|01"};
        Row("counterparties", "AnaCon", 99, ofParties + suppliers,
            QStringList{"fld|ART_ICO", "for|MARIO", "for|SYSTEM_IMPORT", "lng|X01_ART_ICO", "lng|X02_ART_ICO"} +
                parties);
        Row("articles", "AnaArt", 99, ofArticles,
            QStringList("fld|CON_TRO") + articles + QStringList{"tel|000001", "tel|000002", "tel|01", "tel|7"});
        Row("both", "AnaArt AnaCon", 99, ofArticles + ofParties, articles + parties);
        Row("cancelled at their end", "AnaArt AnaCon", 5, ofArticles + ofParties, articles + parties);
    }
    void WhatHangsOnMasterDataGoesAlong() {
        QFETCH(QString, chosen);
        QFETCH(int, cancelAt);
        TestTarget target;
        FillResetTables(target);
        target.Execute("DELETE FROM X01_NUM_TEL");
        target.Execute("DROP TABLE X01_IMA_GES"); // no table of the reset itself
        for (const char* row : {"'CON_TRO', '000001', 'SYSTEM_IMPORT'", "'CON_RIF', '7', 'SYSTEM_IMPORT'",
                                "'CON_TRO', '000002', 'MARIO'", "'TAB_AGE', '01', 'SYSTEM_IMPORT'"}) {
            target.Execute(QString("INSERT INTO X01_NUM_TEL (TBNAM, TBKEY, USINS) VALUES (%1)").arg(row));
        }
        for (const char* row :
             {"X01_CON_TRO (CDCON) VALUES ('000001')", "X01_ART_ICO (CDART) VALUES ('A')",
              "X01_ART_FOR (CDART, CDCON, USINS) VALUES ('A', '000001', 'SYSTEM_IMPORT'), ('A', '000001', 'MARIO')",
              "SYS_LNG (LNTBL, LNKEY, USINS) VALUES ('X01_ART_ICO', 'A', 'MARIO'), ('X02_ART_ICO', 'A', 'MARIO')",
              "X01_FLD_VAL (FLTAB, FLKEY, USINS) VALUES ('ART_ICO', 'A', 'SYSTEM_IMPORT'), "
              "('CON_TRO', '000001', 'SYSTEM_IMPORT')",
              "X01_LIS_ART (CDART) VALUES ('A')", "SYS_ATT (ATTBL, ATKEY) VALUES ('ART_ICO', 'A')"}) {
            target.Execute(QString("INSERT INTO ") + row);
        }
        QTEST(BesidesReset(target.Get(), Named(chosen)), "told");
        target.Person.CancelAt = static_cast<float>(cancelAt);
        const EmptyingResult result = ResetDatabase(target.Get(), Named(chosen));
        QTEST(result.told, "told");
        QCOMPARE(result.outcome == RunResult::Outcome::Cancelled, cancelAt < 99);
        QTEST(target.Rows("SELECT 'tel', TBKEY FROM X01_NUM_TEL UNION ALL SELECT 'for', USINS FROM X01_ART_FOR "
                          "UNION ALL SELECT 'lng', LNTBL FROM SYS_LNG UNION ALL SELECT 'fld', FLTAB FROM "
                          "X01_FLD_VAL ORDER BY 1, 2"),
              "left");
    }

    void AFailureLeavesWhatWasEmptiedBefore() {
        TestTarget target;
        QStringList tables = FillResetTables(target);
        target.Execute("DROP TABLE X01_DOC_ACD");
        tables.removeOne("DOC_ACD");
        const EmptyingResult result = ResetDatabase(target.Get(), Named("DocVen AnaCon"));
        QCOMPARE(result.outcome, RunResult::Outcome::Failed);
        QCOMPARE(EmptiedOf(target, tables), QStringList({"DOC_VER", "DOC_VED", "DOC_VEN", "DOC_ACR"}));
        QCOMPARE(target.Person.Reported.size(), 1);
        QCOMPARE(target.Person.Reported.first().module, QString("frmImport"));
        QCOMPARE(target.Person.Reported.first().procedure, QString("cmdReset_Click"));
        QVERIFY(target.Person.Reported.first().statement.contains("X01_DOC_ACD"));
        QVERIFY(target.Person.Messages.isEmpty());
        QVERIFY(target.Person.Progresses.front().closed);
        QVERIFY(!target.Person.IsBusy());
    }
};

QUADRIX_TEST(TestReset)
#include "test_reset.moc"
