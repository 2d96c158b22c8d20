#include "platform/layout/solver/SymbolicWeight.hpp"

#include "platform/layout/LayoutExpression.hpp"
#include "platform/layout/solver/Symbol.hpp"

#include <algorithm>
#include <cmath>
#include <cstring>

namespace ns::solver {

namespace {

bool negligible(double value) {
    return std::fabs(value) < SymbolicWeight::Epsilon;
}

} // namespace

SymbolicWeight::SymbolicWeight(float priority, double value) {
    if (!negligible(value)) {
        m_inline[0] = {priority, value};
        m_size = 1;
    }
}

SymbolicWeight::SymbolicWeight(const SymbolicWeight& other) {
    *this = other;
}

SymbolicWeight::SymbolicWeight(SymbolicWeight&& other) noexcept {
    *this = std::move(other);
}

SymbolicWeight& SymbolicWeight::operator=(const SymbolicWeight& other) {
    if (this == &other) {
        return *this;
    }
    m_size = 0;
    reserve(other.m_size);
    std::copy(other.begin(), other.end(), data());
    m_size = other.m_size;
    return *this;
}

SymbolicWeight& SymbolicWeight::operator=(SymbolicWeight&& other) noexcept {
    if (this == &other) {
        return *this;
    }
    delete[] m_heap;
    m_heap = other.m_heap;
    m_capacity = other.m_capacity;
    m_size = other.m_size;
    std::copy(other.m_inline, other.m_inline + InlineCapacity, m_inline);
    other.m_heap = nullptr;
    other.m_capacity = InlineCapacity;
    other.m_size = 0;
    return *this;
}

SymbolicWeight::~SymbolicWeight() {
    delete[] m_heap;
}

void SymbolicWeight::reserve(std::uint32_t capacity) {
    if (capacity <= m_capacity) {
        return;
    }
    std::uint32_t grown = std::max(capacity, m_capacity * 2);
    Component* heap = new Component[grown];
    std::copy(begin(), end(), heap);
    delete[] m_heap;
    m_heap = heap;
    m_capacity = grown;
}

int SymbolicWeight::sign() const {
    if (m_size == 0) {
        return 0;
    }
    return data()[0].value < 0 ? -1 : 1;
}

double SymbolicWeight::valueAt(float priority) const {
    for (const Component& component : *this) {
        if (component.priority == priority) {
            return component.value;
        }
        if (component.priority < priority) {
            break;
        }
    }
    return 0;
}

void SymbolicWeight::add(float priority, double value) {
    Component* components = data();
    std::uint32_t i = 0;
    while (i < m_size && components[i].priority > priority) {
        ++i;
    }
    if (i < m_size && components[i].priority == priority) {
        components[i].value += value;
        if (negligible(components[i].value)) {
            std::copy(components + i + 1, components + m_size, components + i);
            --m_size;
        }
        return;
    }
    if (negligible(value)) {
        return;
    }
    reserve(m_size + 1);
    components = data();
    std::copy_backward(components + i, components + m_size, components + m_size + 1);
    components[i] = {priority, value};
    ++m_size;
}

void SymbolicWeight::addScaled(const SymbolicWeight& other, double factor) {
    if (&other == this) {
        SymbolicWeight copy(other);
        addScaled(copy, factor);
        return;
    }
    for (const Component& component : other) {
        add(component.priority, component.value * factor);
    }
}

int SymbolicWeight::compareScaled(const SymbolicWeight* a, double aScale, const SymbolicWeight* b,
                                  double bScale) {
    static const SymbolicWeight zero;
    if (!a) {
        a = &zero;
    }
    if (!b) {
        b = &zero;
    }
    const Component* x = a->begin();
    const Component* y = b->begin();
    while (x != a->end() || y != b->end()) {
        double xv = 0;
        double yv = 0;
        if (y == b->end() || (x != a->end() && x->priority > y->priority)) {
            xv = (x++)->value * aScale;
        } else if (x == a->end() || y->priority > x->priority) {
            yv = (y++)->value * bScale;
        } else {
            xv = (x++)->value * aScale;
            yv = (y++)->value * bScale;
        }
        double difference = xv - yv;
        if (!negligible(difference)) {
            return difference < 0 ? -1 : 1;
        }
    }
    return 0;
}

std::string SymbolicWeight::description() const {
    std::string text = "{";
    for (const Component& component : *this) {
        if (text.size() > 1) {
            text += ", ";
        }
        text += formatLayoutNumber(component.priority) + ": " + formatLayoutNumber(component.value);
    }
    return text + "}";
}

} // namespace ns::solver
