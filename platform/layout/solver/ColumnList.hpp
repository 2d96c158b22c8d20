#pragma once

#include "platform/layout/solver/Symbol.hpp"

#include <algorithm>
#include <cstdint>
#include <utility>

namespace ns::solver {

// The rows that mention one symbol. Most symbols sit in one to three rows, so those are stored
// inline; a column allocates only when it grows past that.
class ColumnList {
public:
    ColumnList() = default;
    ColumnList(const ColumnList& other) { *this = other; }
    ColumnList(ColumnList&& other) noexcept { *this = std::move(other); }
    ~ColumnList() { release(); }

    ColumnList& operator=(const ColumnList& other) {
        if (this != &other) {
            release();
            reserve(other.m_size);
            std::copy(other.begin(), other.end(), data());
            m_size = other.m_size;
        }
        return *this;
    }
    ColumnList& operator=(ColumnList&& other) noexcept {
        if (this != &other) {
            release();
            if (other.isInline()) {
                std::copy(other.m_inline, other.m_inline + other.m_size, m_inline);
            } else {
                m_heap = other.m_heap;
                m_capacity = other.m_capacity;
                other.m_capacity = InlineCapacity;
            }
            m_size = other.m_size;
            other.m_size = 0;
        }
        return *this;
    }

    std::uint32_t size() const { return m_size; }
    bool empty() const { return m_size == 0; }
    const RowId* begin() const { return data(); }
    const RowId* end() const { return data() + m_size; }
    RowId operator[](std::uint32_t index) const { return data()[index]; }
    RowId& operator[](std::uint32_t index) { return data()[index]; }
    RowId back() const { return data()[m_size - 1]; }

    void push_back(RowId id) {
        reserve(m_size + 1);
        data()[m_size++] = id;
    }
    void pop_back() { --m_size; }
    void clear() {
        release();
        m_size = 0;
    }

private:
    static constexpr std::uint32_t InlineCapacity = 3;

    bool isInline() const { return m_capacity == InlineCapacity; }
    RowId* data() { return isInline() ? m_inline : m_heap; }
    const RowId* data() const { return isInline() ? m_inline : m_heap; }

    void reserve(std::uint32_t capacity) {
        if (capacity <= m_capacity) {
            return;
        }
        std::uint32_t grown = std::max(capacity, m_capacity * 2);
        RowId* heap = new RowId[grown];
        std::copy(begin(), end(), heap);
        release();
        m_heap = heap;
        m_capacity = grown;
    }
    void release() {
        if (!isInline()) {
            delete[] m_heap;
            m_capacity = InlineCapacity;
        }
    }

    std::uint32_t m_size = 0;
    std::uint32_t m_capacity = InlineCapacity;
    union {
        RowId m_inline[InlineCapacity];
        RowId* m_heap;
    };
};

} // namespace ns::solver
