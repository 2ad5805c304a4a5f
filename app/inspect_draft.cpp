#include "app/inspect_draft.h"

#include "core/nearNames.h"
#include "sources/layout/LayoutFile.h"

#include <QFileInfo>

#include <algorithm>

namespace inspection {

namespace {

using sources::LayoutEdit;
using sources::LayoutFile;

/// "necessaria; alias: partita IVA; anche 'VAT'".
QString ReasonOf(const Column& column) {
    QStringList parts{column.isNecessary ? QStringLiteral("necessaria") : QStringLiteral("facoltativa")};
    if (column.suggestions.empty()) {
        parts.append(QStringLiteral("non si trova un nome"));
    } else {
        parts.append(GroundText(column.suggestions.front()));
    }
    for (size_t i = 1; i < column.suggestions.size(); ++i) {
        parts.append(QStringLiteral("oppure %1 (%2)")
                         .arg(LayoutEdit::Written(column.suggestions[i].name), GroundText(column.suggestions[i])));
    }
    return parts.join(QStringLiteral(", "));
}

QString FirstName(const std::vector<Suggestion>& suggestions) {
    return suggestions.empty() ? QString() : LayoutEdit::Written(suggestions.front().name);
}

bool IsOpen(const Column& column) { return column.IsMissing() && !column.isMarkedMissing; }

/// Whether a suggestion is the name but for case, blanks and signs, even where it comes from a layout file.
bool IsEqual(const QString& name, const Suggestion& suggestion) {
    const QList<GroundedName> grounded = GroundedNames(name, {suggestion.name});
    return !grounded.isEmpty() && grounded.front().ground == NameGround::Equal;
}

enum class Taken { All, Equal };

/// What is proposed; the columns of a table that is missing only where it is proposed too, and none of a table that the
/// chosen file is not.
QMap<QString, QString> NamesOf(const Inspection& inspection, Taken which) {
    const auto taken = [which](const QString& name, const std::vector<Suggestion>& suggestions) {
        const Suggestion* proposed = Proposed(suggestions);
        return proposed != nullptr && (which == Taken::All || IsEqual(name, *proposed)) ? proposed : nullptr;
    };
    QMap<QString, QString> names;
    for (const Table& table : inspection.tables) {
        if (!table.isRather.isEmpty()) {
            continue;
        }
        const Suggestion* its = table.isFound ? nullptr : taken(table.name, table.suggestions);
        if (its != nullptr) {
            names.insert(table.name, its->name);
        }
        for (const Column& column : table.columns) {
            const Suggestion* proposed = IsOpen(column) ? taken(column.name, column.suggestions) : nullptr;
            if (proposed != nullptr && (table.isFound || its != nullptr)) {
                names.insert(table.name + u'.' + column.name, proposed->name);
            }
        }
    }
    return names;
}

/// Of tables those that a change of a layout file says nothing of.
QStringList Untouched(QStringList tables, const QString& before, const QString& after) {
    const QStringList known = before.split(u'\n');
    QStringList changed = after.split(u'\n');
    changed.removeIf([&known](const QString& line) { return known.contains(line); });
    tables.removeIf([&changed](const QString& table) {
        return std::ranges::any_of(changed, [&table](const QString& line) {
            const QString entry = line.trimmed();
            return entry.startsWith(table + u'.', Qt::CaseInsensitive) ||
                   entry.startsWith(table + u'=', Qt::CaseInsensitive) ||
                   entry.contains(u'=' + table + u'.', Qt::CaseInsensitive);
        });
    });
    return tables;
}

} // namespace

QString Draft(const Inspection& inspection, const QString& text) {
    LayoutEdit edit(text);
    for (const Table& table : inspection.tables) {
        if (!table.isRather.isEmpty()) {
            continue; // a comment for it would stay when its own file is looked at
        }
        if (!table.isFound) {
            edit.Suggest(LayoutFile::Tables, table.name, FirstName(table.suggestions),
                         table.suggestions.empty() ? QStringLiteral("non si trova una tabella")
                                                   : GroundText(table.suggestions.front()));
        }
        for (const Column& column : table.columns) {
            if (IsOpen(column)) {
                edit.Suggest(LayoutFile::Columns, table.name + u'.' + column.name, FirstName(column.suggestions),
                             ReasonOf(column));
            }
        }
    }
    return edit.Text();
}

void WriteDraft(const Inspection& inspection) {
    sources::WriteLayoutFile(inspection.layoutFile, Draft(inspection, LayoutFile::TextOf(inspection.layoutFile)));
}

QString ChangeLayout(Session& session, const contract::Origin& origin, const std::function<void(LayoutEdit&)>& change) {
    const QString path = LayoutPath(session, origin);
    const bool wasThere = QFileInfo::exists(path);
    const QString before = LayoutFile::TextOf(path);
    const QStringList others = TablesOfOtherFiles(session, origin);
    LayoutEdit edit(before);
    const QString unchanged = edit.Text();
    try {
        change(edit);
    } catch (const ImportError& error) {
        return error.Message();
    }
    sources::WriteLayoutFile(path, edit.Text());
    const QString trouble = LayoutTrouble(session, origin, Untouched(others, unchanged, edit.Text()));
    if (!trouble.isEmpty() && wasThere) {
        sources::WriteLayoutFile(path, before);
    } else if (!trouble.isEmpty()) {
        QFile::remove(path);
    }
    return trouble;
}

QString TakeNames(Session& session, const contract::Origin& origin, const QMap<QString, QString>& names) {
    return ChangeLayout(session, origin, [&names](LayoutEdit& edit) {
        for (const auto& [key, name] : names.asKeyValueRange()) {
            const bool isColumn = key.contains(u'.');
            edit.Set(isColumn ? LayoutFile::Columns : LayoutFile::Tables, key,
                     name.isEmpty() ? name : LayoutEdit::Written(name));
        }
    });
}

QMap<QString, QString> ProposedNames(const Inspection& inspection) { return NamesOf(inspection, Taken::All); }

QMap<QString, QString> EqualNames(const Inspection& inspection) { return NamesOf(inspection, Taken::Equal); }

} // namespace inspection
