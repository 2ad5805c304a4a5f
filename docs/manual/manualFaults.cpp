#include "docs/manual/manualFaults.h"

#include "docs/manual/codeText.h"
#include "docs/manual/manualTable.h"

#include <QDirIterator>
#include <QRegularExpression>

namespace manual {

namespace {

const QString Folder = QStringLiteral("manuale/");
const QString First = QStringLiteral("README.md");

bool IsRead(const QString& key, const SettingUses& settings) {
    const QStringList read = settings.keys();
    return settings.contains(key) || std::any_of(read.begin(), read.end(), [&key](const QString& piece) {
               return (piece.startsWith(u'_') && key.endsWith(piece)) ||
                      (piece.endsWith(u'_') && key.startsWith(piece));
           });
}

/// The links of a page as they are written; those of pictures too.
QStringList LinksOf(const QString& page) {
    static const QRegularExpression link(QStringLiteral(R"(\]\(([^)\s]+)\))"));
    QStringList links;
    for (auto found = link.globalMatch(page); found.hasNext();) {
        links.append(found.next().captured(1));
    }
    return links;
}

QStringList EmptyCells(const QString& page) {
    QStringList faults;
    for (const QString& line : page.split(u'\n')) {
        if (line.startsWith(u'|') && line.contains(QRegularExpression(QStringLiteral(R"(\|\s*\|)")))) {
            faults.append(QStringLiteral("a cell is empty: ") + line);
        }
    }
    return faults;
}

/// The kinds of annotations in the logs that the tests expect.
Annotations LoggedKinds(const QDir& root) {
    Annotations kinds;
    QDirIterator logs(root.filePath(QStringLiteral("tests/adapters/fixtures")), {"expected.txt"}, QDir::Files,
                      QDirIterator::Subdirectories);
    while (logs.hasNext()) {
        AddAnnotationsOfLog(TextOf(logs.next()), kinds);
    }
    return kinds;
}

QStringList Named(const QString& page, const QStringList& faults) {
    QStringList named;
    for (const QString& fault : faults) {
        named.append(page + QStringLiteral(": ") + fault);
    }
    return named;
}

} // namespace

QStringList FaultsOfSettings(const QString& page, const SettingUses& settings) {
    QStringList faults;
    QMap<QString, QString> headings;
    for (const PageRow& row : RowsOf(page, QStringLiteral("Chiave"))) {
        for (const QString& key : row.Names()) {
            headings[key] += row.heading;
            if (!IsRead(key, settings)) {
                faults.append(QStringLiteral("nothing reads %1").arg(key));
            }
        }
    }
    for (auto use = settings.cbegin(); use != settings.cend(); ++use) {
        for (const QString& section : use->sections) {
            if (headings.contains(use.key()) && !headings.value(use.key()).contains(u'[' + section + u']')) {
                faults.append(QStringLiteral("%1 is read from [%2]").arg(use.key(), section));
            }
        }
    }
    return faults;
}

QStringList FaultsOfAnnotations(const QString& page, const Annotations& annotations, const Annotations& logged) {
    QStringList faults;
    QStringList told;
    for (const PageRow& row : RowsOf(page, QStringLiteral("Annotazione"))) {
        told += row.Names();
    }
    for (const QString& kind : std::as_const(told)) {
        if (!annotations.contains(kind)) {
            faults.append(QStringLiteral("nothing writes %1").arg(kind));
        }
    }
    for (const QString& kind : logged.keys()) {
        if (std::none_of(told.begin(), told.end(),
                         [&kind](const QString& pattern) { return kind == pattern || IsFilledFrom(kind, pattern); })) {
            faults.append(QStringLiteral("%1 stands in logs and not here").arg(kind));
        }
    }
    return faults;
}

QStringList FaultsOfPages(const QDir& folder) {
    QStringList faults;
    QSet<QString> linked{First};
    const QStringList pages = QDir(folder.filePath(Folder)).entryList({"*.md"}, QDir::Files, QDir::Name);
    for (const QString& page : pages) {
        const QString text = TextOf(folder.filePath(Folder + page));
        for (const QString& link : LinksOf(text)) {
            linked.insert(link);
            if (!QFileInfo(folder.filePath(Folder + link)).isFile()) {
                faults.append(page + QStringLiteral(": nothing at ") + link);
            }
        }
        faults += Named(page, EmptyCells(text));
    }
    for (const QString& page : pages) {
        if (!linked.contains(page)) {
            faults.append(page + QStringLiteral(": no page links to it"));
        }
    }
    return faults;
}

QStringList Faults(const QDir& root) {
    const InCode code = ReadCode(root);
    const QDir docs(root.filePath(QStringLiteral("docs")));
    const auto page = [&docs](const QString& name) { return TextOf(docs.filePath(Folder + name)); };
    const QString settings = QStringLiteral("impostazioni.md");
    const QString annotations = QStringLiteral("annotazioni.md");
    return Named(settings, FaultsOfSettings(page(settings), code.settings)) +
           Named(annotations, FaultsOfAnnotations(page(annotations), code.annotations, LoggedKinds(root))) +
           FaultsOfPages(docs);
}

} // namespace manual
