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
    void AddText(QStringView text);
    void AddTime(const QDateTime& time);
    void AddNumber(double number);
    void Add(char16_t c) { m_hash = (m_hash ^ c) * 0x100000001b3; }

    quint64 m_hash = 0xcbf29ce484222325; // FNV-1a, so that it is the same on every machine
};
