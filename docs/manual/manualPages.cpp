#include "docs/manual/manualPages.h"

#include "docs/manual/codeText.h"
#include "docs/manual/manualTable.h"

#include <QDirIterator>
#include <QRegularExpression>

namespace manual {

namespace {

const QString KeyTitle = QStringLiteral("Chiave");
const QString AnnotationTitle = QStringLiteral("Annotazione");
constexpr int DefaultCell = 1;
constexpr int WriterCell = 3;

/// The default that all calls tell; null when they do not, or tell several.
QString DefaultOf(const SettingUse& use) { return use.defaults.size() == 1 ? *use.defaults.begin() : QString(); }

/// Adds the rows of what the page lacks, to be described.
QString WithUndescribed(QString page, const QString& header, const QStringList& rows) {
    if (rows.isEmpty()) {
        return page;
    }
    page += QStringLiteral("\n## Da descrivere\n\n") + header + u'\n';
    page += QString(header).replace(QRegularExpression(QStringLiteral("[^|]+")), QStringLiteral("---")) + u'\n';
    return page + rows.join(u'\n') + u'\n';
}

QSet<QString> NamesOf(const QString& page, const QString& title) {
    QSet<QString> names;
    for (const PageRow& row : RowsOf(page, title)) {
        for (const QString& name : row.Names()) {
            names.insert(name);
        }
    }
    return names;
}

/// Whether one of the keys has the piece of a key that is put together.
bool HoldsPiece(const QSet<QString>& keys, const QString& piece) {
    return std::any_of(keys.begin(), keys.end(), [&piece](const QString& key) {
        return piece.startsWith(u'_') ? key.endsWith(piece) : key.startsWith(piece);
    });
}

QString WritersOf(const InCode& code, const QString& kind) {
    const QSet<QString> folders = code.annotations.value(kind);
    if (folders.contains(QString())) {
        return QStringLiteral("ogni origine");
    }
    QStringList names;
    for (const QString& folder : folders) {
        names.append(code.originNames.value(folder, folder));
    }
    names.sort();
    return names.join(QStringLiteral(", "));
}

/// The names of the origins, from the list of the pages of their mappings.
QMap<QString, QString> OriginNames(const QDir& root) {
    static const QRegularExpression line(QStringLiteral(R"(\| \[modImport_(\w+)\]\S* \| (.+) \|)"));
    static const QRegularExpression kind(QStringLiteral(R"( \([^()]*\)(?=,|$))"));
    QMap<QString, QString> names;
    for (auto found = line.globalMatch(TextOf(root.filePath(QStringLiteral("docs/mappings/README.md"))));
         found.hasNext();) {
        const auto match = found.next();
        names.insert(match.captured(1), match.captured(2).remove(kind));
    }
    return names;
}

} // namespace

InCode ReadCode(const QDir& root) {
    InCode code;
    for (const QString& path : SourceFiles(root)) {
        const QString text = TextOf(root.filePath(path));
        AddSettingsOf(text, code.settings);
        AddAnnotationsOf(text, path, code.annotations);
    }
    code.originNames = OriginNames(root);
    return code;
}

QString WithSettings(const QString& page, const SettingUses& settings) {
    const QString filled = WithRows(page, KeyTitle, [&settings](PageRow& row) {
        const QStringList names = row.Names();
        const SettingUse use = names.size() == 1 ? settings.value(names.first()) : SettingUse();
        const QString usual = DefaultOf(use);
        if (row.cells.size() > DefaultCell && !usual.isNull() && row.IsOf(use.sections)) {
            row.cells[DefaultCell] = usual.isEmpty() ? QStringLiteral("vuoto") : AsCode(usual);
        }
    });
    const QSet<QString> told = NamesOf(page, KeyTitle);
    QStringList untold;
    for (const QString& key : settings.keys()) {
        if (!told.contains(key) && !HoldsPiece(told, key)) {
            untold.append(RowLine({AsCode(key), AsCode(DefaultOf(settings.value(key))), QString()}));
        }
    }
    return WithUndescribed(filled, QStringLiteral("| Chiave | Predefinito | Significato |"), untold);
}

QString WithAnnotations(const QString& page, const InCode& code) {
    const QString filled = WithRows(page, AnnotationTitle, [&code](PageRow& row) {
        const QStringList names = row.Names();
        if (row.cells.size() > WriterCell && !names.isEmpty()) {
            row.cells[WriterCell] = WritersOf(code, names.first());
        }
    });
    const QSet<QString> told = NamesOf(page, AnnotationTitle);
    QStringList untold;
    for (const QString& kind : code.annotations.keys()) {
        if (!told.contains(kind)) {
            untold.append(RowLine({AsCode(kind), QString(), QString(), WritersOf(code, kind)}));
        }
    }
    return WithUndescribed(
        filled, QStringLiteral("| Annotazione | Che cosa significa | Che cosa fare | Chi la scrive |"), untold);
}

QString WithCommands(const QString& page, const QList<CommandText>& commands) {
    const qsizetype heading = page.lastIndexOf(QStringLiteral("\n## "));
    QString filled = page.left(page.indexOf(u'\n', heading + 1) + 1);
    for (const CommandText& command : commands) {
        const QString help = command.help.section(QStringLiteral("\nOpzioni di ogni comando:"), 0, 0).trimmed();
        filled += QStringLiteral("\n### %1\n\n```text\n%2\n```\n").arg(command.name, help);
    }
    return filled;
}

QMap<QString, QString> PagesOfCode(const QDir& root, const QList<CommandText>& commands) {
    const InCode code = ReadCode(root);
    const auto page = [&root](const char* name) {
        return TextOf(root.filePath(QStringLiteral("docs/manuale/") + QLatin1String(name)));
    };
    return {{"impostazioni.md", WithSettings(page("impostazioni.md"), code.settings)},
            {"annotazioni.md", WithAnnotations(page("annotazioni.md"), code)},
            {"riga-di-comando.md", WithCommands(page("riga-di-comando.md"), commands)}};
}

} // namespace manual
