#pragma once

#include "platform/layout/solver/Symbol.hpp"

#include <cstdint>
#include <string>

namespace ns::solver {

// A cost in the objective, kept apart per priority level and compared from the highest level
// down. This is what makes priorities strict: no amount of error at priority 750 can outweigh one
// unit at 751, which a single weighted sum of levels cannot promise.
//
// Layouts use few levels and most cells carry one or two, so the first two components live
// inline and only a cell touched by more levels allocates.
class SymbolicWeight {
public:
    struct Component {
        float priority;
        double value;
    };

    // Components smaller than this count as zero. It is coarser than the tableau's own tolerance
    // on purpose: a level is compared before every level below it, so rounding noise left in a
    // high level would otherwise hide a real cost at the levels under it and stop the simplex
    // short of the optimum.
    static constexpr double Epsilon = OptimalityEpsilon;

    SymbolicWeight() = default;
    SymbolicWeight(float priority, double value);
    SymbolicWeight(const SymbolicWeight& other);
    SymbolicWeight(SymbolicWeight&& other) noexcept;
    SymbolicWeight& operator=(const SymbolicWeight& other);
    SymbolicWeight& operator=(SymbolicWeight&& other) noexcept;
    ~SymbolicWeight();

    bool isZero() const { return m_size == 0; }
    // Sign of the highest level present: -1, 0 or 1.
    int sign() const;
    double valueAt(float priority) const;

    // Adds `value` at `priority`; a level that cancels to (near) zero is dropped.
    void add(float priority, double value);
    // this += factor * other.
    void addScaled(const SymbolicWeight& other, double factor);

    std::uint32_t size() const { return m_size; }
    const Component* begin() const { return data(); }
    const Component* end() const { return data() + m_size; }

    // Compares a * aScale with b * bScale level by level (a null weight is zero): -1, 0 or 1.
    static int compareScaled(const SymbolicWeight* a, double aScale, const SymbolicWeight* b, double bScale);

    // "{750: 2, 250: -1}".
    std::string description() const;

private:
    static constexpr std::uint32_t InlineCapacity = 2;

    Component* data() { return m_heap ? m_heap : m_inline; }
    const Component* data() const { return m_heap ? m_heap : m_inline; }
    void reserve(std::uint32_t capacity);

    // Components sorted by decreasing priority; values are never (near) zero.
    Component m_inline[InlineCapacity]{};
    Component* m_heap = nullptr;
    std::uint32_t m_size = 0;
    std::uint32_t m_capacity = InlineCapacity;
};

} // namespace ns::solver
