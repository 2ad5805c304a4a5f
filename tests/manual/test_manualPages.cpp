#include "docs/manual/codeText.h"
#include "docs/manual/commandTexts.h"
#include "docs/manual/manualFaults.h"
#include "tests/support/files.h"
#include "tests/support/QuadrixTest.h"
#include "tests/support/rows.h"

#include <QTemporaryDir>
#include <QTest>

using namespace manual;

/// docs/manuale against the code, and what is found when they disagree.
class TestManualPages : public QObject {
    Q_OBJECT

    static SettingUses SettingsOf(const QString& code) {
        SettingUses uses;
        AddSettingsOf(code, uses);
        return uses;
    }

private slots:
    /// scripts/manual fills the pages anew and tells what is to be described.
    void PagesAreCurrent() {
        const QDir root(QUADRIX_SOURCE_DIR);
        const InCode code = ReadCode(root);
        for (const char* known : {"DOC_DateStart", "PasswordEncryption", "AUTOMA_Servername", "TEXTFIELD_CHAR"}) {
            QVERIFY2(code.settings.contains(known), known); // the code is still read as it is written
        }
        for (const char* known : {"CODICE IVA NON TROVATO", "… NON TROVATO", "RIGA NASCOSTA", "NUMERO RIDOTTO"}) {
            QVERIFY2(code.annotations.contains(known), known);
        }
        const QList<CommandText> commands = CommandTexts(QUADRIX_CLI);
        QVERIFY(commands.size() > 5);
        const auto pages = PagesOfCode(root, commands);
        for (auto page = pages.cbegin(); page != pages.cend(); ++page) {
            QVERIFY2(page.value() == TextOf(root.filePath("docs/manuale/" + page.key())), qPrintable(page.key()));
        }
        QCOMPARE(Faults(root), QStringList());
    }

    void ReadsSettings_data() {
        Columns<QString, QString, QString, QString>("code", "key", "section", "otherwise");
        Row("a call", QString(R"re(modMain::GetAppConfig(session, "IMPORT", "Giorno", "1");)re"), QString("Giorno"),
            QString("IMPORT"), QString("1"));
        Row("names of the file",
            QString(
                R"re(const QString Part = QStringLiteral("AHR"); m_session.Config.PeekAppConfig(Part, "Giorno"))re"),
            QString("Giorno"), QString("AHR"), QString());
        Row("an argument that is a call", QString(R"re(Setting(f(a, "b, c"), "Giorno", g("x", y)))re"),
            QString("Giorno"), QString("IMPORT"), QString());
        Row("the end of a key",
            QString(R"re(modMain::GetAppConfig(s, "IMPORT", front + QStringLiteral("_Giorno"), {}))re"),
            QString("_Giorno"), QString("IMPORT"), QString(""));
        Row("a list of names", QString(R"re(const ServerKeys keys{"IMPORT", "0", "Giorno"};)re"), QString("Giorno"),
            QString(), QString());
    }
    void ReadsSettings() {
        QFETCH(QString, key);
        QFETCH(QString, section);
        QFETCH(QString, otherwise);
        QFETCH(QString, code);
        const SettingUses uses = SettingsOf(code);
        QCOMPARE(uses.keys(), QStringList{key});
        QCOMPARE(uses[key].sections.values().join(','), section);
        const QString told = uses[key].defaults.isEmpty() ? QString() : *uses[key].defaults.begin();
        QCOMPARE(told, otherwise);
        QCOMPARE(told.isNull(), otherwise.isNull());
    }

    void FillsAndFindsSettings() {
        const SettingUses uses = SettingsOf(R"(modMain::GetAppConfig(s, "IMPORT", "Giorno", "7");
                                               modMain::GetAppConfig(s, "IMPORT", "Nuova", "");)");
        const QString head = "## [AHR]\n\n| Chiave | Predefinito | Significato |\n|---|---|---|\n";
        QCOMPARE(WithSettings(QString("# [IMPORT]\n" + head.mid(9)) + "| `Giorno` | `1` | il giorno |\n", uses),
                 QString("# [IMPORT]\n" + head.mid(9)) +
                     "| `Giorno` | `7` | il giorno |\n\n## Da descrivere\n\n"
                     "| Chiave | Predefinito | Significato |\n|---|---|---|\n| `Nuova` | `` | |\n");
        QCOMPARE(FaultsOfSettings(head + "| `Giorno` | `7` | il giorno |\n| `Vecchia` | `1` | niente |\n", uses),
                 QStringList({"nothing reads Vecchia", "Giorno is read from [IMPORT]"}));
    }

    void FindsAnnotations() {
        InCode code;
        AddAnnotationsOf(R"(run.Log(QStringLiteral("CASSA VUOTA: %1").arg(key)); Execute("SELECT ALL");)",
                         "adapters/origins/Mago/x.cpp", code.annotations);
        AddAnnotationsOf(
            R"(run.Log(QStringLiteral("%1 NON TROVATO: %2").arg(what, key)); Ask("ATTENZIONE: \nsicuro?");)",
            "adapters/contract/x.cpp", code.annotations);
        code.originNames.insert("Mago", "Mago NET");
        const QString head =
            "| Annotazione | Che cosa significa | Che cosa fare | Chi la scrive |\n|---|---|---|---|\n";
        QCOMPARE(
            WithAnnotations(head + "| `CASSA VUOTA` | è vuota | riempirla | |\n| `… NON TROVATO` | a | b | c |\n",
                            code),
            head + "| `CASSA VUOTA` | è vuota | riempirla | Mago NET |\n| `… NON TROVATO` | a | b | ogni origine |\n");
        Annotations logged;
        AddAnnotationsOfLog("05/03/2024 10:20:30 - CLIENTE NON TROVATO: 'a'\n05/03/2024 10:20:30 - CASSA PIENA: 'a'\n"
                            "05/03/2024 10:20:30 - Riga abbandonata: 'a'\n",
                            logged);
        QCOMPARE(FaultsOfAnnotations(head + "| `… NON TROVATO` | a | b | c |\n| `TETTO APERTO` | a | b | c |\n",
                                     code.annotations, logged),
                 QStringList({"nothing writes TETTO APERTO", "CASSA PIENA stands in logs and not here"}));
    }

    void FindsLinksThatLeadNowhere() {
        const QTemporaryDir docs;
        QVERIFY(QDir(docs.path()).mkpath("manuale"));
        WriteFile(docs.filePath("manuale/README.md"), "[a](a.md) ![b](../b.png)\n| x | y |\n|---|---|\n| 1 | |\n");
        WriteFile(docs.filePath("manuale/a.md"), "[indice](README.md)");
        WriteFile(docs.filePath("manuale/c.md"), "testo");
        QCOMPARE(FaultsOfPages(QDir(docs.path())),
                 QStringList({"README.md: nothing at ../b.png", "README.md: a cell is empty: | 1 | |",
                              "c.md: no page links to it"}));
    }
};

QUADRIX_TEST(TestManualPages)
#include "test_manualPages.moc"
