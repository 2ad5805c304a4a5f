#include "app/inspect_draft.h"

#include "sources/layout/LayoutFile.h"

#include <QFileInfo>

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

/// What is proposed on one of some grounds; the columns of a table that is missing only where it is proposed too.
QMap<QString, QString> NamesOn(const Inspection& inspection, const QList<Ground>& grounds) {
    const auto taken = [&grounds](const std::vector<Suggestion>& suggestions) {
        const Suggestion* proposed = Proposed(suggestions);
        return proposed != nullptr && grounds.contains(proposed->ground) ? proposed : nullptr;
    };
    QMap<QString, QString> names;
    for (const Table& table : inspection.tables) {
        const Suggestion* its = table.isFound ? nullptr : taken(table.suggestions);
        if (its != nullptr) {
            names.insert(table.name, its->name);
        }
        for (const Column& column : table.columns) {
            const Suggestion* proposed = IsOpen(column) ? taken(column.suggestions) : nullptr;
            if (proposed != nullptr && (table.isFound || its != nullptr)) {
                names.insert(table.name + u'.' + column.name, proposed->name);
            }
        }
    }
    return names;
}

} // namespace

QString Draft(const Inspection& inspection, const QString& text) {
    LayoutEdit edit(text);
    for (const Table& table : inspection.tables) {
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
    LayoutEdit edit(before);
    try {
        change(edit);
    } catch (const ImportError& error) {
        return error.Message();
    }
    sources::WriteLayoutFile(path, edit.Text());
    const QString trouble = LayoutTrouble(session, origin);
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

QMap<QString, QString> ProposedNames(const Inspection& inspection) {
    return NamesOn(inspection, {Ground::UsedBefore, Ground::Equal, Ground::WrittenOut, Ground::Renamed, Ground::Alias,
                                Ground::Values, Ground::Columns});
}

QMap<QString, QString> EqualNames(const Inspection& inspection) { return NamesOn(inspection, {Ground::Equal}); }

} // namespace inspection
