#include "adapters/registry.h"
#include "tests/support/QuadrixTest.h"
#include "ui/buttonState.h"
#include "ui/mnemonics.h"

#include <QTest>

using contract::Button;

namespace {

const contract::Origin& OriginOf(const char* name) {
    const contract::Origin* origin = registry::Find(name);
    if (origin == nullptr) {
        qFatal("no origin %s", name);
    }
    return *origin;
}

/// The window after the origins were chosen one after the other.
WindowState After(std::initializer_list<const char*> origins, StartMode mode = StartMode::None) {
    WindowState state = InitialState();
    ApplyStartMode(state, mode);
    for (const char* origin : origins) {
        ApplyOrigin(state, OriginOf(origin));
    }
    return state;
}

/// "YYNN...": which of the eight buttons are shown.
QString Shown(const WindowState& state) {
    QString shown;
    for (const ButtonState& button : state.imports) {
        shown += button.visible ? 'Y' : 'N';
    }
    return shown;
}

} // namespace

class TestButtonState : public QObject {
    Q_OBJECT

private slots:
    void ReadsTheWholeCommandLine_data() {
        QTest::addColumn<QString>("commandLine");
        QTest::addColumn<int>("mode");
        QTest::newRow("none") << "" << 0;
        QTest::newRow("first, in lower case") << "/fast" << 1;
        QTest::newRow("second") << "/FAST2" << 2;
        QTest::newRow("third") << "/Fast3" << 3;
        QTest::newRow("fourth") << "/FAST4" << 4;
        QTest::newRow("blank behind it") << "/FAST " << 0;
        QTest::newRow("second argument") << "/FAST X" << 0;
        QTest::newRow("not one of them") << "/FAST5" << 0;
    }
    void ReadsTheWholeCommandLine() {
        QFETCH(QString, commandLine);
        QFETCH(int, mode);
        QCOMPARE(static_cast<int>(ParseStartMode(commandLine)), mode);
    }

    void AnOriginKeepsWhatItsRowDoesNotMention() {
        const WindowState state = After({"Ad-Hoc", "Mexal"});
        QCOMPARE(Shown(state), QString("YYYYYYYY"));
        QCOMPARE(state.At(Button::Acq).caption, QString("Importa Tabelle Generali"));
        QCOMPARE(state.At(Button::Disegni).caption, QString("Importa Costi/Prezzi"));
        // Fenice mentions two buttons alone.
        QCOMPARE(Shown(After({"Nubrio Excel", "Fenice"})), QString("NNYNNNNN"));
        QCOMPARE(Shown(After({"Fenice"})), QString("NNYYYYYY"));
    }

    void TheStockButtonTakesItsOwnCaptionBack() {
        QCOMPARE(After({"Lamina"}).At(Button::Saldi).caption, QString("Importa Sedi Clienti"));
        QCOMPARE(After({"Lamina", "Mexal"}).At(Button::Saldi).caption, QString("Importa Saldi di Magazzino"));
        QCOMPARE(After({"Lamina", "Mexal"}).At(Button::Piano).caption, QString("Importa Lavorazioni Distinte"));
    }

    void TwoOriginsMoveTheSequenceButton() {
        QVERIFY(!After({"Siderea"}).sequence);
        QVERIFY(!After({"Siderea", "Mexal"}).sequence);
        QVERIFY(After({"Siderea", "Arca 2000"}).sequence);
    }

    void AStartModeLeavesOneTask_data() {
        QTest::addColumn<int>("mode");
        QTest::addColumn<QString>("shown");
        QTest::addColumn<QString>("caption");
        QTest::addColumn<bool>("locked");
        QTest::newRow("1") << 1 << "NNYNNNNN"
                           << "&Importa Distinta Base" << false;
        QTest::newRow("2") << 2 << "NNNNNYNN"
                           << "&Importa Movimenti" << true;
        QTest::newRow("3") << 3 << "NNNNNNNY"
                           << "&Sistema Disegni Sfridi" << false;
        QTest::newRow("4") << 4 << "NNNNNNNY"
                           << "&Sistema Packing List" << false;
    }
    void AStartModeLeavesOneTask() {
        QFETCH(int, mode);
        QFETCH(QString, shown);
        QFETCH(QString, caption);
        QFETCH(bool, locked);
        for (const WindowState& state :
             {After({}, static_cast<StartMode>(mode)), After({"Arca 2000"}, static_cast<StartMode>(mode))}) {
            QCOMPARE(Shown(state), shown);
            QCOMPARE(state.imports.at(static_cast<size_t>(shown.indexOf('Y'))).caption, caption);
            QCOMPARE(state.locked, locked);
            QVERIFY(!state.sequence && !state.reset);
        }
    }

    void SwitchesHideUntilAnOriginShowsAgain() {
        WindowState state = InitialState();
        QStringList asked;
        ApplySwitches(state, [&asked](const QString& key) {
            asked.append(key);
            return key == "Disable_ImportCli" || key == "Disable_ImportDisegni" || key == "Disable_Reset";
        });
        QCOMPARE(Shown(state), QString("NYYYYYYN"));
        QVERIFY(!state.reset && state.sequence && !state.locked);
        QCOMPARE(asked.size(), 11);
        ApplyOrigin(state, OriginOf("Arca 2000"));
        QVERIFY(state.At(Button::Cli).visible && state.At(Button::Disegni).visible);
        QVERIFY(!state.reset);
    }

    void MnemonicsDoNotClash_data() {
        QTest::addColumn<QStringList>("captions");
        QTest::addColumn<QStringList>("expected");
        QTest::newRow("heads of later words") << QStringList{"Importa Controparti", "Importa Articoli"}
                                              << QStringList{"Importa &Controparti", "Importa &Articoli"};
        QTest::newRow("own ones come first")
            << QStringList{"Importa Clienti", "&Chiudi"} << QStringList{"&Importa Clienti", "&Chiudi"};
        QTest::newRow("inside a word") << QStringList{"Dati", "Dadi", "Dado"} << QStringList{"&Dati", "D&adi", "Dad&o"};
        QTest::newRow("no letter left") << QStringList{"A", "Aa"} << QStringList{"&A", "Aa"};
        QTest::newRow("a written ampersand is none") << QStringList{"R&&D"} << QStringList{"&R&&D"};
    }
    void MnemonicsDoNotClash() {
        QFETCH(QStringList, captions);
        QFETCH(QStringList, expected);
        QCOMPARE(WithMnemonics(captions, {}), expected);
    }
};

QUADRIX_TEST(TestButtonState)
#include "test_buttonState.moc"
