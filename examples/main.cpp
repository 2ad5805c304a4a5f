#include "examples/examples.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QTextStream>

namespace {

constexpr int WrongUsage = 2;

QString ListOfExamples() {
    QString text = QStringLiteral("Crea dati di prova nel formato di altri programmi.\n\nEsempi:");
    for (const examples::Example& example : examples::Examples()) {
        text += QStringLiteral("\n  %1: %2 (tabelle: %3)")
                    .arg(example.name, example.description, example.groups.join(QStringLiteral(", ")));
    }
    return text;
}

/// The examples for scripts: name, origin, source and imports, separated by tabs.
QString TableOfExamples() {
    QString text;
    for (const examples::Example& example : examples::Examples()) {
        text +=
            QStringList{example.name, example.origin, example.source, example.imports.join(u' ')}.join(u'\t') + u'\n';
    }
    return text;
}

void AddOptions(QCommandLineParser& parser) {
    parser.setApplicationDescription(ListOfExamples());
    parser.addHelpOption();
    parser.addPositionalArgument("esempio", "Quale esempio creare.");
    parser.addOptions({
        {"rows", "Righe delle tabelle principali.", "numero", "1000"},
        {"seed", "Seme dei dati: lo stesso seme dà gli stessi dati.", "numero", "1"},
        {"out", "Cartella in cui scrivere.", "cartella"},
        {"tables", "Solo queste tabelle (più volte, o separate da virgole).", "tabelle"},
        {"company", "Azienda Quadrix che lo script quadrix.sql prepara.", "codice", "DEM"},
        {"cycles", "Distinte base che contengono se stesse."},
        {"list", "Elenca gli esempi per uno script: nome, origine, sorgente, importazioni."},
    });
}

/// Reads the options; false when one of them is wrong.
bool Read(const QCommandLineParser& parser, examples::Options& options) {
    bool hasRows = false;
    bool hasSeed = false;
    options.rows = parser.value("rows").toLongLong(&hasRows);
    options.seed = parser.value("seed").toULongLong(&hasSeed);
    options.folder = parser.value("out");
    options.company = parser.value("company");
    options.hasCycles = parser.isSet("cycles");
    for (const QString& value : parser.values("tables")) {
        options.tables += value.split(u',', Qt::SkipEmptyParts);
    }
    return hasRows && hasSeed && !options.folder.isEmpty() && parser.positionalArguments().size() == 1;
}

} // namespace

int main(int argc, char** argv) {
    const QCoreApplication application(argc, argv);
    QCommandLineParser parser;
    AddOptions(parser);
    parser.process(application);
    if (parser.isSet("list")) {
        QTextStream(stdout) << TableOfExamples();
        return 0;
    }
    examples::Options options;
    QTextStream err(stderr);
    if (!Read(parser, options)) {
        err << QStringLiteral("Uso: quadrix-examples ESEMPIO --rows N --out CARTELLA; --help per l'aiuto\n");
        return WrongUsage;
    }
    try {
        QTextStream out(stdout);
        for (const auto& total : examples::Make(parser.positionalArguments().first(), options)) {
            out << total.first << ": " << total.second << '\n';
        }
    } catch (const examples::ExampleError& error) {
        err << error.Message() << '\n';
        return 1;
    }
    return 0;
}
