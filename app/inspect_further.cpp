#include "app/inspect_further.h"

#include "app/inspect_draft.h"
#include "core/Schema.h"
#include "sources/layout/LayoutFile.h"
#include "sql/names.h"

#include <QSet>

namespace inspection {

namespace {

using sources::LayoutEdit;
using sources::LayoutFile;

const QString ConstantMark = QStringLiteral("costante:");

/// Whether the value of an added column is one for every table, or comes from that one.
bool IsFor(const QString& value, const QString& table) {
    return value.startsWith(ConstantMark, Qt::CaseInsensitive) || value.startsWith(table + u'.', Qt::CaseInsensitive);
}

} // namespace

Further ReadFurther(const Session& session, const contract::Origin& origin, const QString& table) {
    Further further;
    const auto file = LayoutFile::Read(LayoutPath(session, origin));
    if (!file) {
        return further;
    }
    for (const LayoutFile::Entry& entry : file->Entries(LayoutFile::Filters)) {
        further.filter = names::AreSame(entry.key, table) ? entry.value : further.filter;
    }
    for (const LayoutFile::Entry& entry : file->Entries(LayoutFile::Added)) {
        if (IsFor(entry.value, table)) {
            further.added.push_back({entry.key, entry.value});
        }
    }
    return further;
}

QStringList FreeTargets(const contract::Origin& origin, const QString& table) {
    static const QSet<QString> audit{"RECORD_ID", "USINS", "DTINS", "USMDF", "DTMDF"};
    QStringList targets;
    QSet<QString> filled;
    for (const contract::Procedure& procedure : origin.procedures) {
        for (const contract::Mapping* mapping : procedure.needs.mappings) {
            if (mapping->isPart || !names::AreSame(mapping->sourceTable, table)) {
                continue;
            }
            for (const contract::MapLine& line : mapping->lines) {
                if (!line.sources.isEmpty()) {
                    filled.insert(mapping->targetTable + u'.' + line.target);
                }
            }
            const schema::Table* target = schema::FindTable(mapping->targetTable);
            for (const schema::Column& column : target == nullptr ? std::vector<schema::Column>() : target->columns) {
                const QString name = mapping->targetTable + u'.' + column.name;
                if (!target->key.contains(column.name) && !audit.contains(column.name) && !targets.contains(name)) {
                    targets.append(name);
                }
            }
        }
    }
    targets.removeIf([&filled](const QString& target) { return filled.contains(target); });
    return targets;
}

QString SetFilter(Session& session, const contract::Origin& origin, const QString& table, const QString& condition) {
    return ChangeLayout(session, origin, [&](LayoutEdit& edit) {
        if (condition.trimmed().isEmpty()) {
            edit.Remove(LayoutFile::Filters, table);
        } else {
            edit.Set(LayoutFile::Filters, table, condition.trimmed());
        }
    });
}

QString SetAdded(Session& session, const contract::Origin& origin, const QString& target, const QString& value) {
    return ChangeLayout(session, origin, [&](LayoutEdit& edit) { edit.Set(LayoutFile::Added, target, value); });
}

QString RemoveAdded(Session& session, const contract::Origin& origin, const QString& target) {
    return ChangeLayout(session, origin, [&](LayoutEdit& edit) { edit.Remove(LayoutFile::Added, target); });
}

QString AddedValue(const QString& table, const QString& typed, const QString& rule) {
    const QString column = typed.trimmed();
    if (column.startsWith(ConstantMark, Qt::CaseInsensitive)) {
        return ConstantMark + column.mid(ConstantMark.size()).trimmed();
    }
    const bool isPlain = !column.contains(QLatin1String("->"));
    const QString read = table + u'.' + (isPlain ? LayoutEdit::Written(column) : QString(u'[' + column + u']'));
    return rule.trimmed().isEmpty() ? read : QString(read + QStringLiteral(" -> ") + rule.trimmed());
}

} // namespace inspection
