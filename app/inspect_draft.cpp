#include "app/inspect_draft.h"

#include "sources/layout/LayoutEdit.h"
#include "sources/layout/LayoutFile.h"

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

void TakeNames(const Inspection& inspection, const QMap<QString, QString>& names) {
    LayoutEdit edit(LayoutFile::TextOf(inspection.layoutFile));
    for (const auto& [key, name] : names.asKeyValueRange()) {
        const bool isTable = std::any_of(inspection.tables.begin(), inspection.tables.end(),
                                         [&key](const Table& table) { return table.name == key; });
        edit.Set(isTable ? LayoutFile::Tables : LayoutFile::Columns, key,
                 name.isEmpty() ? name : LayoutEdit::Written(name));
    }
    sources::WriteLayoutFile(inspection.layoutFile, edit.Text());
}

QMap<QString, QString> ProposedNames(const Inspection& inspection) {
    QMap<QString, QString> names;
    for (const Table& table : inspection.tables) {
        const Suggestion* its = table.isFound ? nullptr : Proposed(table.suggestions);
        if (its != nullptr) {
            names.insert(table.name, its->name);
        }
        for (const Column& column : table.columns) {
            const Suggestion* proposed = IsOpen(column) ? Proposed(column.suggestions) : nullptr;
            if (proposed != nullptr && (table.isFound || its != nullptr)) {
                names.insert(table.name + u'.' + column.name, proposed->name);
            }
        }
    }
    return names;
}

} // namespace inspection
