#pragma once

#include <QString>

#include <unordered_map>

/// Hash of short names such as those of columns. Every value that is read or written goes by its name, for which the
/// general hash took an eighth of an import.
struct NameHash {
    size_t operator()(const QString& name) const noexcept {
        size_t hash = 0xcbf29ce484222325;
        for (const QChar c : name) {
            hash = (hash ^ c.unicode()) * 0x100000001b3;
        }
        return hash;
    }
};

template<class Value>
using NameMap = std::unordered_map<QString, Value, NameHash>;
