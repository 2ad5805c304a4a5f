#pragma once

#include <QAnyStringView>
#include <QString>

#include <algorithm>
#include <cstring>
#include <type_traits>
#include <utility>
#include <vector>

/// Values by short names such as those of columns, compared with case, in whatever encoding they are asked for. Every
/// value that is read or written goes by its name: the general hash took an eighth of an import, and making texts of
/// literals another part.
template<class Value>
class NameMap {
public:
    /// The value of a name; null when there is none.
    const Value* Find(QAnyStringView name) const {
        return name.visit([this](auto view) { return FindIn(view); });
    }
    /// Adds a name that is not there, and gives back its value.
    const Value& Insert(const QString& name, Value value) {
        constexpr size_t fewest = 16;
        if (m_entries.size() * 2 >= m_slots.size()) {
            m_slots.assign(std::max(m_slots.size() * 2, fewest), None);
            for (size_t entry = 0; entry < m_entries.size(); ++entry) {
                Place(entry);
            }
        }
        m_entries.emplace_back(name, std::move(value));
        Place(m_entries.size() - 1);
        return m_entries.back().second;
    }
    void Clear() {
        m_entries.clear();
        m_slots.clear();
    }

private:
    static constexpr size_t None = ~size_t(0);

    /// Names of a table are of one length and begin alike: their ends tell them apart.
    template<class Unit>
    static size_t Hash(const Unit* name, qsizetype size) {
        if (size == 0) {
            return 0;
        }
        constexpr size_t factor = 31;
        const auto last = static_cast<size_t>(name[size - 1]);
        const auto beforeLast = static_cast<size_t>(name[size > 1 ? size - 2 : 0]);
        const auto middle = static_cast<size_t>(name[size / 2]);
        return (((static_cast<size_t>(size) * factor + static_cast<size_t>(name[0])) * factor + middle) * factor +
                beforeLast) *
                   factor +
               last;
    }

    template<class Unit>
    const Value* FindUnits(const Unit* name, qsizetype size) const {
        if (m_slots.empty()) {
            return nullptr;
        }
        for (size_t slot = Hash(name, size);; ++slot) {
            const size_t entry = m_slots[slot & (m_slots.size() - 1)];
            if (entry == None) {
                return nullptr;
            }
            if (IsSame(m_entries[entry].first, name, size)) {
                return &m_entries[entry].second;
            }
        }
    }
    template<class Unit>
    static bool IsSame(const QString& known, const Unit* name, qsizetype size) {
        if (known.size() != size) {
            return false;
        }
        const QChar* units = known.constData();
        if constexpr (std::is_same_v<Unit, char16_t>) {
            return std::memcmp(units, name, static_cast<size_t>(size) * sizeof(Unit)) == 0;
        } else {
            return std::equal(name, name + size, units, [](Unit a, QChar b) { return a == b.unicode(); });
        }
    }
    const Value* FindIn(QStringView name) const { return FindUnits(name.utf16(), name.size()); }
    const Value* FindIn(QLatin1String name) const {
        return FindUnits(reinterpret_cast<const unsigned char*>(name.data()), name.size());
    }
    const Value* FindIn(QUtf8StringView name) const {
        const auto* bytes = reinterpret_cast<const unsigned char*>(name.data());
        constexpr unsigned char beyondPlain = 128;
        const bool isPlain = std::all_of(bytes, bytes + name.size(), [](unsigned char c) { return c < beyondPlain; });
        return isPlain ? FindUnits(bytes, name.size()) : FindIn(QStringView(name.toString()));
    }

    void Place(size_t entry) {
        const QString& name = m_entries[entry].first;
        size_t slot = Hash(name.utf16(), name.size());
        while (m_slots[slot & (m_slots.size() - 1)] != None) {
            ++slot;
        }
        m_slots[slot & (m_slots.size() - 1)] = entry;
    }

    std::vector<std::pair<QString, Value>> m_entries;
    std::vector<size_t> m_slots; ///< twice as many as entries at least, a power of two: where each name leads
};
