#include "app/process.h"
#include "ui/frmImport.h"
#include "ui/frmManual.h"
#include "ui/SignalWatch.h"
#include "ui/WindowOperator.h"

#include <QApplication>
#include <QLibraryInfo>
#include <QStyleFactory>
#include <QTranslator>

#include <cstdio>
#include <cstring>

namespace {

/// The switches of the command line, as they were given.
QString CommandLine() { return QCoreApplication::arguments().mid(1).join(u' '); }

/// The words of the library's own dialogs, where their Italian translation is installed.
void UseItalian(QTranslator& translator) {
    if (translator.load(QStringLiteral("qtbase_it"), QLibraryInfo::path(QLibraryInfo::TranslationsPath))) {
        QCoreApplication::installTranslator(&translator);
    }
}

} // namespace

int main(int argc, char** argv) {
    process::Protect();
    if (argc == 2 && std::strcmp(argv[1], "--version") == 0) { // needs no screen
        std::puts(process::VersionText(QStringLiteral("quadrix-import")).toLocal8Bit().constData());
        return 0;
    }
#ifdef Q_OS_WIN
    // Lets the window follow the dark mode of the desktop.
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) {
        qputenv("QT_QPA_PLATFORM", "windows:darkmode=2");
    }
#endif
    const QApplication application(argc, argv);
    QApplication::setApplicationName(QStringLiteral("quadrix-import"));
    QApplication::setStyle(QStyleFactory::create(QStringLiteral("Fusion")));
    QTranslator translator;
    UseItalian(translator);
    ManualKey manual;
    QCoreApplication::instance()->installEventFilter(&manual);
    WindowOperator person;
    Session session(person);
    std::unique_ptr<frmImport> window;
    modMain::Main(session, modMain::SettingsFilePath(), [&] {
        window = std::make_unique<frmImport>(session, person);
        window->Form_Load(ParseStartMode(CommandLine()));
        window->show();
    });
    const SignalWatch watch([&window] {
        if (window) {
            window->End();
        }
    });
    return window ? QApplication::exec() : 1;
}
