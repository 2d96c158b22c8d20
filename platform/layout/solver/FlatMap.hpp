#pragma once

#include "platform/layout/solver/Symbol.hpp"

#include <array>
#include <cstddef>
#include <cstdint>
#include <type_traits>
#include <utility>
#include <vector>

namespace ns::solver {

// A small open-addressing hash map (linear probing, backward-shift erase) from a symbol or a
// pointer to V. Rows are mostly a handful of cells, but a few (the objective, a row that sums a
// long chain) grow large; this keeps lookups O(1) for both without a node allocation per entry.
// Up to InlineCapacity slots live inside the map itself, so a short row allocates nothing.
template <typename Key, typename V, std::size_t InlineCapacity = 0>
class FlatMap {
    static_assert((InlineCapacity & (InlineCapacity - 1)) == 0, "inline capacity must be a power of two");

public:
    // The key that marks an empty slot: NoSymbol for symbols, null for pointers.
    static constexpr Key NoKey = [] {
        if constexpr (std::is_pointer_v<Key>) {
            return Key(nullptr);
        } else {
            return Key(NoSymbol);
        }
    }();

    struct Entry {
        Key key = NoKey;
        V value{};
    };

    FlatMap() { m_shift = shiftFor(m_capacity); }
    FlatMap(const FlatMap&) = default;
    FlatMap& operator=(const FlatMap&) = default;
    FlatMap(FlatMap&& other) noexcept { *this = std::move(other); }
    FlatMap& operator=(FlatMap&& other) noexcept {
        if (this != &other) {
            m_inline = std::move(other.m_inline);
            m_heap = std::move(other.m_heap);
            m_capacity = other.m_capacity;
            m_size = other.m_size;
            m_shift = other.m_shift;
            other.clear();
        }
        return *this;
    }

    std::size_t size() const { return m_size; }
    bool empty() const { return m_size == 0; }

    V* find(Key key) {
        if (m_size == 0) {
            return nullptr;
        }
        Entry* entries = slots();
        for (std::size_t i = home(key);; i = (i + 1) & mask()) {
            Entry& entry = entries[i];
            if (entry.key == key) {
                return &entry.value;
            }
            if (entry.key == NoKey) {
                return nullptr;
            }
        }
    }
    const V* find(Key key) const { return const_cast<FlatMap*>(this)->find(key); }
    bool contains(Key key) const { return find(key) != nullptr; }

    // The value for `key`, value-initialised and inserted when absent; the flag says whether it was.
    std::pair<V*, bool> findOrInsert(Key key) {
        if ((m_size + 1) * 4 > m_capacity * 3) {
            grow();
        }
        Entry* entries = slots();
        for (std::size_t i = home(key);; i = (i + 1) & mask()) {
            Entry& entry = entries[i];
            if (entry.key == key) {
                return {&entry.value, false};
            }
            if (entry.key == NoKey) {
                entry.key = key;
                entry.value = V{};
                ++m_size;
                return {&entry.value, true};
            }
        }
    }

    // Removes `key`; false when it was absent. Pointers into the map are invalidated.
    bool erase(Key key) {
        if (m_size == 0) {
            return false;
        }
        Entry* entries = slots();
        std::size_t i = home(key);
        while (entries[i].key != key) {
            if (entries[i].key == NoKey) {
                return false;
            }
            i = (i + 1) & mask();
        }
        // Shift later members of the probe run back so that lookups never stop early.
        for (std::size_t j = (i + 1) & mask(); entries[j].key != NoKey; j = (j + 1) & mask()) {
            std::size_t wanted = home(entries[j].key);
            if (((j - wanted) & mask()) >= ((j - i) & mask())) {
                entries[i] = std::move(entries[j]);
                i = j;
            }
        }
        entries[i].key = NoKey;
        entries[i].value = V{};
        --m_size;
        return true;
    }

    void clear() {
        m_inline.fill(Entry{});
        std::vector<Entry>().swap(m_heap);
        m_capacity = InlineCapacity;
        m_size = 0;
        m_shift = shiftFor(m_capacity);
    }

    // Calls f(key, value) for every entry, in storage order.
    template <typename F>
    void forEach(F&& f) const {
        if (m_size == 0) {
            return;
        }
        const Entry* entries = const_cast<FlatMap*>(this)->slots();
        for (std::size_t i = 0; i < m_capacity; ++i) {
            if (entries[i].key != NoKey) {
                f(entries[i].key, entries[i].value);
            }
        }
    }
    template <typename F>
    void forEachMutable(F&& f) {
        if (m_size == 0) {
            return;
        }
        Entry* entries = slots();
        for (std::size_t i = 0; i < m_capacity; ++i) {
            if (entries[i].key != NoKey) {
                f(entries[i].key, entries[i].value);
            }
        }
    }

private:
    Entry* slots() { return m_capacity > InlineCapacity ? m_heap.data() : m_inline.data(); }
    std::size_t mask() const { return m_capacity - 1; }

    static unsigned shiftFor(std::size_t capacity) {
        unsigned shift = 64;
        for (std::size_t c = capacity; c > 1; c >>= 1) {
            --shift;
        }
        return shift;
    }

    std::size_t home(Key key) const {
        // Fibonacci hashing spreads sequential symbol numbers and aligned addresses alike.
        std::uint64_t bits;
        if constexpr (std::is_pointer_v<Key>) {
            bits = reinterpret_cast<std::uintptr_t>(key);
        } else {
            bits = key;
        }
        return static_cast<std::size_t>((bits * 0x9e3779b97f4a7c15ull) >> m_shift);
    }

    void grow() {
        std::size_t capacity = m_capacity == 0 ? 4 : m_capacity * 2;
        std::vector<Entry> entries(capacity);
        Entry* old = slots();
        std::size_t oldCapacity = m_capacity;
        m_capacity = capacity;
        m_shift = shiftFor(capacity);
        for (std::size_t k = 0; k < oldCapacity; ++k) {
            if (old[k].key == NoKey) {
                continue;
            }
            std::size_t i = home(old[k].key);
            while (entries[i].key != NoKey) {
                i = (i + 1) & mask();
            }
            entries[i] = std::move(old[k]);
        }
        m_heap = std::move(entries);
        if (oldCapacity <= InlineCapacity) {
            m_inline.fill(Entry{});
        }
    }

    std::array<Entry, InlineCapacity> m_inline{};
    std::vector<Entry> m_heap;
    std::size_t m_capacity = InlineCapacity;
    std::size_t m_size = 0;
    unsigned m_shift = 64;
};

template <typename V, std::size_t InlineCapacity = 0>
using FlatSymbolMap = FlatMap<Symbol, V, InlineCapacity>;

} // namespace ns::solver
