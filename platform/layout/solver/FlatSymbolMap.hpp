#pragma once

#include "platform/layout/solver/Symbol.hpp"

#include <cstddef>
#include <utility>
#include <vector>

namespace ns::solver {

// A small open-addressing hash map from Symbol to V (linear probing, backward-shift erase).
// Rows are mostly a handful of cells, but a few (the objective, a row that sums a long chain)
// grow large; this keeps lookups O(1) for both without a node allocation per cell.
template <typename V>
class FlatSymbolMap {
public:
    struct Entry {
        Symbol key = NoSymbol;
        V value{};
    };

    std::size_t size() const { return m_size; }
    bool empty() const { return m_size == 0; }

    V* find(Symbol key) {
        if (m_size == 0) {
            return nullptr;
        }
        for (std::size_t i = home(key);; i = (i + 1) & mask()) {
            Entry& entry = m_entries[i];
            if (entry.key == key) {
                return &entry.value;
            }
            if (entry.key == NoSymbol) {
                return nullptr;
            }
        }
    }
    const V* find(Symbol key) const { return const_cast<FlatSymbolMap*>(this)->find(key); }
    bool contains(Symbol key) const { return find(key) != nullptr; }

    // The value for `key`, value-initialised and inserted when absent; the flag says whether it was.
    std::pair<V*, bool> findOrInsert(Symbol key) {
        if ((m_size + 1) * 4 > m_entries.size() * 3) {
            grow();
        }
        for (std::size_t i = home(key);; i = (i + 1) & mask()) {
            Entry& entry = m_entries[i];
            if (entry.key == key) {
                return {&entry.value, false};
            }
            if (entry.key == NoSymbol) {
                entry.key = key;
                entry.value = V{};
                ++m_size;
                return {&entry.value, true};
            }
        }
    }

    // Removes `key`; false when it was absent. Pointers into the map are invalidated.
    bool erase(Symbol key) {
        if (m_size == 0) {
            return false;
        }
        std::size_t i = home(key);
        while (m_entries[i].key != key) {
            if (m_entries[i].key == NoSymbol) {
                return false;
            }
            i = (i + 1) & mask();
        }
        // Shift later members of the probe run back so that lookups never stop early.
        for (std::size_t j = (i + 1) & mask(); m_entries[j].key != NoSymbol; j = (j + 1) & mask()) {
            std::size_t wanted = home(m_entries[j].key);
            if (((j - wanted) & mask()) >= ((j - i) & mask())) {
                m_entries[i] = std::move(m_entries[j]);
                i = j;
            }
        }
        m_entries[i].key = NoSymbol;
        m_entries[i].value = V{};
        --m_size;
        return true;
    }

    void clear() {
        m_entries.clear();
        m_size = 0;
        m_shift = 32;
    }

    // Calls f(symbol, value) for every entry, in storage order.
    template <typename F>
    void forEach(F&& f) const {
        if (m_size == 0) {
            return;
        }
        for (const Entry& entry : m_entries) {
            if (entry.key != NoSymbol) {
                f(entry.key, entry.value);
            }
        }
    }
    template <typename F>
    void forEachMutable(F&& f) {
        if (m_size == 0) {
            return;
        }
        for (Entry& entry : m_entries) {
            if (entry.key != NoSymbol) {
                f(entry.key, entry.value);
            }
        }
    }

private:
    std::size_t mask() const { return m_entries.size() - 1; }
    std::size_t home(Symbol key) const {
        // Fibonacci hashing spreads the sequential symbol numbers over the table.
        return static_cast<std::uint32_t>(key * 2654435769u) >> m_shift;
    }

    void grow() {
        std::size_t capacity = m_entries.empty() ? 4 : m_entries.size() * 2;
        std::vector<Entry> old = std::move(m_entries);
        m_entries.assign(capacity, Entry{});
        m_shift = 32;
        for (std::size_t c = capacity; c > 1; c >>= 1) {
            --m_shift;
        }
        for (Entry& entry : old) {
            if (entry.key == NoSymbol) {
                continue;
            }
            std::size_t i = home(entry.key);
            while (m_entries[i].key != NoSymbol) {
                i = (i + 1) & mask();
            }
            m_entries[i] = std::move(entry);
        }
    }

    std::vector<Entry> m_entries;
    std::size_t m_size = 0;
    unsigned m_shift = 32;
};

} // namespace ns::solver
