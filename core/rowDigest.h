#pragma once

#include "sql/types.h"

#include <QVariant>

/// The digest of a row's values, by which is known later whether anybody has changed them. It is the same whatever kind
/// of value an engine gives back for what was written: a number, or its text; a date, or its text; Null or nothing.
class RowDigest {
public:
    /// Takes a column in, in the order of the columns. @param type that its schema tells
    void Add(const QVariant& value, DataType type);
    qint64 Value() const { return static_cast<qint64>(m_hash); }

private:
    void Add(QStringView text);

    quint64 m_hash = 0xcbf29ce484222325; // FNV-1a, so that it is the same on every machine
};
