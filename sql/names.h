#pragma once

#include <QStringList>

/// Names of tables, columns and settings, which are one whatever their case.
namespace names {

inline bool AreSame(QStringView left, QStringView right) { return left.compare(right, Qt::CaseInsensitive) == 0; }

inline bool Has(const QStringList& names, const QString& name) { return names.contains(name, Qt::CaseInsensitive); }

/// Adds a name that is not there yet.
inline void AddOnce(QStringList& names, const QString& name) {
    if (!Has(names, name)) {
        names.append(name);
    }
}

} // namespace names
