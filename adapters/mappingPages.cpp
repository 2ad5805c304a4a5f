#include "adapters/mappingPages.h"

#include "sources/layout/LayoutFile.h"
#include "sql/errors.h"

#include <QFile>

using namespace contract;

namespace mappingPages {

namespace {

const QString MadeBy =
    QStringLiteral("Scritta da `scripts/mappings` con le tabelle che guidano le importazioni; non si cambia a mano.\n");

/// Tables in the order in which they come, each with its columns, each once.
class Tables {
public:
    void Add(const QString& table, const QStringList& columns) {
        if (!m_columns.contains(table)) {
            m_order.append(table);
        }
        m_columns[table] += columns;
        m_columns[table].removeDuplicates();
    }

    /// A Markdown table under a heading, without the columns that are told elsewhere; empty when nothing is left.
    QString Text(const QString& heading, const Tables& elsewhere) const {
        QString lines;
        for (const QString& table : m_order) {
            QStringList columns = m_columns.value(table);
            columns.removeIf([&](const QString& column) { return elsewhere.m_columns.value(table).contains(column); });
            if (!columns.isEmpty()) {
                lines += QStringLiteral("| `%1` | `%2` |\n").arg(table, columns.join(QStringLiteral("`, `")));
            }
        }
        return lines.isEmpty()
                   ? lines
                   : QStringLiteral("### %1\n\n| Tabella | Colonne |\n|---|---|\n").arg(heading) + lines + u'\n';
    }

private:
    QStringList m_order;
    QMap<QString, QStringList> m_columns;
};

QString NeedsText(const Needs& needs) {
    QString text;
    Tables mappedFrom;
    Tables mappedTo;
    for (const Mapping* mapping : needs.mappings) {
        text += mapping->Page() + u'\n';
        mappedFrom.Add(mapping->sourceTable, mapping->SourceColumns());
        mappedTo.Add(mapping->targetTable, mapping->TargetColumns());
    }
    Tables reads;
    for (const TableNeed& need : needs.reads) {
        reads.Add(need.table, need.columns + need.optional);
    }
    Tables writes;
    for (const TableNeed& need : needs.writes) {
        writes.Add(need.table, need.columns);
    }
    return text + reads.Text(QStringLiteral("Letto dalla sorgente, oltre alle corrispondenze"), mappedFrom) +
           writes.Text(QStringLiteral("Usato in Quadrix, oltre alle corrispondenze"), mappedTo);
}

QString ButtonText(const Origin& origin, const Procedure& procedure) {
    if (!procedure.button) {
        return QStringLiteral("%1: senza pulsante, col suo nome").arg(origin.name);
    }
    const QString& caption = origin.buttons[static_cast<size_t>(*procedure.button)].caption;
    return QStringLiteral("%1: `%2`%3")
        .arg(origin.name, ButtonName(*procedure.button),
             caption.isEmpty() ? QString() : QStringLiteral(" \"%1\"").arg(caption));
}

/// A procedure, with every button that leads to it.
struct Entry {
    const Procedure* procedure;
    QStringList buttons;
};

/// The procedures of a module in their order, each once.
std::vector<Entry> EntriesOf(const std::vector<const Origin*>& origins) {
    std::vector<Entry> entries;
    for (const Origin* origin : origins) {
        for (const Procedure& procedure : origin->procedures) {
            auto known = std::find_if(entries.begin(), entries.end(),
                                      [&](const Entry& entry) { return entry.procedure->name == procedure.name; });
            if (known == entries.end()) {
                known = entries.insert(entries.end(), Entry{&procedure, {}});
            }
            known->buttons.append(ButtonText(*origin, procedure));
        }
    }
    return entries;
}

QString OriginsText(const std::vector<const Origin*>& origins) {
    QStringList texts;
    for (const Origin* origin : origins) {
        texts.append(QStringLiteral("%1 (%2)").arg(origin->name, origin->source.kind));
    }
    return texts.join(QStringLiteral(", "));
}

/// What is to be known of names that no source has yet confirmed; empty of those that are known.
QString NamingText(const Origin& origin) {
    return origin.source.names == contract::Naming::TheirOwn
               ? QString()
               : QStringLiteral(
                     "\nI nomi di tabelle e colonne sono per lo più una lettura di questo programma. Dove la sorgente "
                     "ne ha altri li dice `%1` (\"Esamina...\", e [LAYOUT.md](../LAYOUT.md)).\n")
                     .arg(sources::LayoutFile::PathOf(QStringLiteral("Tracciati"), origin.name));
}

/// @param note about the page itself, under its heading
QString ModulePage(const QString& module, const std::vector<const Origin*>& origins, const QString& note) {
    QString page = QStringLiteral("# %1\n\n%2Origini: %3\n").arg(module, note, OriginsText(origins));
    for (const Origin* origin : origins) {
        page += NamingText(*origin);
    }
    for (const Entry& entry : EntriesOf(origins)) {
        const QString needs = NeedsText(entry.procedure->needs).trimmed();
        page += QStringLiteral("\n## %1\n\nPulsanti: %2\n")
                    .arg(entry.procedure->name, entry.buttons.join(QStringLiteral(", ")));
        page += needs.isEmpty() ? QString() : QString(u'\n' + needs + u'\n');
    }
    return page;
}

/// What the first lines of a module tell of its source, as one text.
QString HeadOf(const QString& module, const QString& sources) {
    const QString name = module.mid(module.indexOf(u'_') + 1);
    QFile file(QStringLiteral("%1/adapters/origins/%2/%3.cpp").arg(sources, name, module));
    QString head;
    if (file.open(QIODevice::ReadOnly)) {
        for (QString line = QString::fromUtf8(file.readLine()); line.startsWith(QLatin1String("//"));
             line = QString::fromUtf8(file.readLine())) {
            head += line.mid(2).simplified() + u' ';
        }
    }
    if (head.isEmpty()) {
        throw ImportError(QStringLiteral("'%1': il modulo non comincia con la sua descrizione").arg(file.fileName()));
    }
    return head.trimmed();
}

/// "`ImportArticoliVision` (art), `ImportListiniVision` (cli \"Importa Listini\")"
QString ProceduresText(const Origin& origin) {
    QStringList texts;
    for (const Procedure& procedure : origin.procedures) {
        texts.append(
            QStringLiteral("`%1` (%2)")
                .arg(procedure.name, procedure.button ? ButtonName(*procedure.button) : QStringLiteral("no button")));
    }
    return texts.join(QStringLiteral(", "));
}

} // namespace

QString OriginsPage(const std::vector<const Origin*>& origins, const QString& sources) {
    QString page = QStringLiteral("# Origins\n\nMade by `scripts/mappings` from the code; not to be edited by "
                                  "hand.\n\n| Origin | Source | Module | Procedures (button) | Names of the "
                                  "source |\n|---|---|---|---|---|\n");
    QMap<QString, QStringList> modules;
    for (const Origin* origin : origins) {
        page +=
            QStringLiteral("| %1 | %2 | [%3](mappings/%3.md) | %4 | %5 |\n")
                .arg(origin->name, origin->source.kind, origin->module, ProceduresText(*origin),
                     origin->source.names == contract::Naming::TheirOwn ? QStringLiteral("known")
                                                                        : QStringLiteral("this system's own reading"));
        modules[origin->module].append(origin->name);
    }
    page += QStringLiteral("\n## What each module knows of its source, and what it leaves out\n");
    for (const auto& [module, names] : modules.asKeyValueRange()) {
        page += QStringLiteral("\n### %1\n\n%2\n").arg(names.join(QStringLiteral(", ")), HeadOf(module, sources));
    }
    return page;
}

QString PageOf(const Origin& origin) {
    return origin.procedures.empty() ? QString() : ModulePage(origin.module, {&origin}, {});
}

QMap<QString, QString> Pages(const std::vector<const Origin*>& origins) {
    QMap<QString, std::vector<const Origin*>> modules;
    for (const Origin* origin : origins) {
        if (!origin->procedures.empty()) {
            modules[origin->module].push_back(origin);
        }
    }
    QMap<QString, QString> pages;
    QString list = QStringLiteral("# Corrispondenze\n\n%1\n| Modulo | Origini |\n|---|---|\n").arg(MadeBy);
    for (auto module = modules.cbegin(); module != modules.cend(); ++module) {
        const QString file = module.key() + QStringLiteral(".md");
        pages.insert(file, ModulePage(module.key(), module.value(), MadeBy + u'\n'));
        list += QStringLiteral("| [%1](%2) | %3 |\n").arg(module.key(), file, OriginsText(module.value()));
    }
    pages.insert(QStringLiteral("README.md"), list);
    return pages;
}

} // namespace mappingPages
