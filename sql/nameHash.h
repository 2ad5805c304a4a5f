#pragma once

#include <QAnyStringView>
#include <QString>

#include <algorithm>
#include <unordered_map>

/// Hash of short names such as those of columns, the same in every encoding. Every value that is read or written goes
/// by its name, for which the general hash took an eighth of an import, and making texts of literals another part.
struct NameHash {
    using is_transparent = void;
    size_t operator()(QAnyStringView name) const noexcept {
        return name.visit([](auto view) { return Of(view); });
    }

private:
    template<class Unit>
    static size_t OfUnits(const Unit* units, qsizetype count) noexcept {
        size_t hash = 0xcbf29ce484222325;
        for (const Unit* unit = units; unit != units + count; ++unit) {
            hash = (hash ^ *unit) * 0x100000001b3;
        }
        return hash;
    }
    static size_t Of(QStringView name) noexcept { return OfUnits(name.utf16(), name.size()); }
    static size_t Of(QLatin1String name) noexcept {
        return OfUnits(reinterpret_cast<const unsigned char*>(name.data()), name.size());
    }
    static size_t Of(QUtf8StringView name) noexcept {
        const auto* bytes = reinterpret_cast<const unsigned char*>(name.data());
        const bool isPlain = std::all_of(bytes, bytes + name.size(), [](unsigned char c) { return c < 128; });
        return isPlain ? OfUnits(bytes, name.size()) : Of(QStringView(name.toString()));
    }
};

/// Whether two such names are the same, with case.
struct NameEqual {
    using is_transparent = void;
    bool operator()(QAnyStringView left, QAnyStringView right) const noexcept {
        return left.visit([right](auto own) { return right.visit([own](auto other) { return Same(own, other); }); });
    }

private:
    static bool Same(QStringView left, QStringView right) noexcept {
        return left.size() == right.size() &&
               (left.utf16() == right.utf16() || std::equal(left.utf16(), left.utf16() + left.size(), right.utf16()));
    }
    template<class Left, class Right>
    static bool Same(Left left, Right right) noexcept {
        return QAnyStringView(left) == QAnyStringView(right);
    }
};

template<class Value>
using NameMap = std::unordered_map<QString, Value, NameHash, NameEqual>;
