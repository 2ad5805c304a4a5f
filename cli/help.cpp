#include "cli/help.h"

#include "cli/commands.h"

namespace cli {

namespace {

constexpr int NameWidth = 22; ///< of the left column

QString Line(const QString& name, const QString& text) {
    return QStringLiteral("  %1 %2\n").arg(name, -NameWidth).arg(text);
}

QString OptionLines(const QList<QCommandLineOption>& options) {
    QString text;
    for (const QCommandLineOption& option : options) {
        const QString value = option.valueName().isEmpty() ? QString() : QString(u' ' + option.valueName());
        text += Line(QString("--" + option.names().constLast() + value), option.description());
    }
    return text;
}

} // namespace

const QList<QCommandLineOption>& GlobalOptions() {
    static const QList<QCommandLineOption> options{
        {"config", "Cartella di Quadrix.ini; senza: la variabile QUADRIX_CONFIG, poi la cartella dati dell'utente.",
         "CARTELLA"},
        {"trace", "Scrive nel file tutte le istruzioni eseguite, nell'ordine.", "FILE"},
        {"json", "Scrive il risultato come un oggetto JSON; i messaggi vanno sull'uscita degli errori."},
        {{"h", "help"}, "Mostra questo aiuto."},
        {"version", "Mostra la versione del programma."},
    };
    return options;
}

QString ProgramHelp() {
    QString text = "Uso: quadrix-import-cli [--config CARTELLA] COMANDO [OPZIONI]\n\nComandi:\n";
    for (const Command& command : Commands()) {
        text += Line(command.name, command.summary);
    }
    text += "\nOpzioni di ogni comando:\n" + OptionLines(GlobalOptions());
    text += "\nCodici d'uscita: 0 completato, 1 fallito, 2 uso errato, 3 annullato, 4 completato ma con righe "
            "abbandonate o ricerche non riuscite.\n"
            "quadrix-import-cli COMANDO --help, o help COMANDO, mostra le opzioni di un comando.";
    return text;
}

QString CommandHelp(const Command& command) {
    const QString actions = command.Actions().isEmpty() ? QString() : QString(u' ' + command.Actions().join(u'|'));
    QString text = "Uso: quadrix-import-cli " + command.name + actions + " [OPZIONI]\n\n" +
                   command.summary.left(1).toUpper() + command.summary.mid(1) + u'\n';
    if (!command.details.isEmpty()) {
        text += command.details + u'\n';
    }
    if (!command.options.isEmpty()) {
        text += "\nOpzioni:\n" + OptionLines(command.options);
    }
    return QString(text + "\nOpzioni di ogni comando:\n" + OptionLines(GlobalOptions())).trimmed();
}

} // namespace cli
