#include "adapters/registry.h"
#include "tests/support/QuadrixTest.h"
#include "tests/support/rows.h"
#include "ui/buttonState.h"
#include "ui/mnemonics.h"

#include <QTest>

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
        Columns<QString, int>("commandLine", "mode");
        Row("none", "", 0);
        Row("first, in lower case", "/fast", 1);
        Row("second", "/FAST2", 2);
        Row("third", "/Fast3", 3);
        Row("fourth", "/FAST4", 4);
        Row("blank behind it", "/FAST ", 0);
        Row("second argument", "/FAST X", 0);
        Row("not one of them", "/FAST5", 0);
    }
    void ReadsTheWholeCommandLine() {
        QFETCH(QString, commandLine);
        QFETCH(int, mode);
        QCOMPARE(static_cast<int>(ParseStartMode(commandLine)), mode);
    }

    void TwoOriginsMoveTheSequenceButton() {
        QVERIFY(!After({"Siderea"}).sequence);
        QVERIFY(!After({"Siderea", "Mexal"}).sequence);
        QVERIFY(After({"Siderea", "Arca 2000"}).sequence);
    }

    void AStartModeLeavesOneTask_data() {
        Columns<int, QString, QString, bool>("mode", "shown", "caption", "locked");
        Row("1", 1, "NNYNNNNN", "&Importa Distinta Base", false);
        Row("2", 2, "NNNNNYNN", "&Importa Movimenti", true);
        Row("3", 3, "NNNNNNNY", "&Sistema Disegni Sfridi", false);
        Row("4", 4, "NNNNNNNY", "&Sistema Packing List", false);
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

    void MnemonicsDoNotClash_data() {
        Columns<QStringList, QStringList>("captions", "expected");
        Row("heads of later words", QStringList{"Importa Controparti", "Importa Articoli"},
            QStringList{"Importa &Controparti", "Importa &Articoli"});
        Row("own ones come first", QStringList{"Importa Clienti", "&Chiudi"},
            QStringList{"&Importa Clienti", "&Chiudi"});
        Row("inside a word", QStringList{"Dati", "Dadi", "Dado"}, QStringList{"&Dati", "D&adi", "Dad&o"});
        Row("no letter left", QStringList{"A", "Aa"}, QStringList{"&A", "Aa"});
        Row("a written ampersand is none", QStringList{"R&&D"}, QStringList{"&R&&D"});
    }
    void MnemonicsDoNotClash() {
        QFETCH(QStringList, captions);
        QFETCH(QStringList, expected);
        QCOMPARE(WithMnemonics(captions, {}), expected);
    }
};

QUADRIX_TEST(TestButtonState)
#include "test_buttonState.moc"
