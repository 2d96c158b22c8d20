#include "platform/layout/LayoutExpression.hpp"

#include <charconv>
#include <unordered_map>

namespace ns {

LayoutExpression::LayoutExpression(const LayoutVariable& variable, double coefficient)
    : m_terms{{variable, coefficient}} {}

LayoutExpression::LayoutExpression(std::vector<LayoutTerm> terms, double constant)
    : m_terms(std::move(terms)), m_constant(constant) {}

LayoutExpression LayoutExpression::simplified() const {
    std::unordered_map<LayoutVariable, std::size_t> index;
    std::vector<LayoutTerm> merged;
    for (const LayoutTerm& term : m_terms) {
        auto [it, inserted] = index.try_emplace(term.variable, merged.size());
        if (inserted) {
            merged.push_back(term);
        } else {
            merged[it->second].coefficient += term.coefficient;
        }
    }
    std::erase_if(merged, [](const LayoutTerm& term) { return term.coefficient == 0; });
    return LayoutExpression(std::move(merged), m_constant);
}

double LayoutExpression::value() const {
    double result = m_constant;
    for (const LayoutTerm& term : m_terms) {
        result += term.coefficient * term.variable.value();
    }
    return result;
}

std::string LayoutExpression::description() const {
    std::string text;
    for (const LayoutTerm& term : m_terms) {
        if (!text.empty()) {
            text += " + ";
        }
        if (term.coefficient != 1) {
            text += formatLayoutNumber(term.coefficient) + " * ";
        }
        text += term.variable.name().empty() ? std::string("<variable>") : term.variable.name();
    }
    if (text.empty()) {
        return formatLayoutNumber(m_constant);
    }
    if (m_constant != 0) {
        text += " + " + formatLayoutNumber(m_constant);
    }
    return text;
}

LayoutExpression& LayoutExpression::operator+=(const LayoutExpression& other) {
    m_terms.insert(m_terms.end(), other.m_terms.begin(), other.m_terms.end());
    m_constant += other.m_constant;
    return *this;
}

LayoutExpression& LayoutExpression::operator-=(const LayoutExpression& other) {
    for (const LayoutTerm& term : other.m_terms) {
        m_terms.push_back({term.variable, -term.coefficient});
    }
    m_constant -= other.m_constant;
    return *this;
}

LayoutExpression& LayoutExpression::operator*=(double factor) {
    for (LayoutTerm& term : m_terms) {
        term.coefficient *= factor;
    }
    m_constant *= factor;
    return *this;
}

LayoutExpression& LayoutExpression::operator/=(double divisor) {
    for (LayoutTerm& term : m_terms) {
        term.coefficient /= divisor;
    }
    m_constant /= divisor;
    return *this;
}

LayoutExpression operator+(LayoutExpression lhs, const LayoutExpression& rhs) {
    return lhs += rhs;
}
LayoutExpression operator-(LayoutExpression lhs, const LayoutExpression& rhs) {
    return lhs -= rhs;
}
LayoutExpression operator-(LayoutExpression expression) {
    return expression *= -1;
}
LayoutExpression operator*(LayoutExpression expression, double factor) {
    return expression *= factor;
}
LayoutExpression operator*(double factor, LayoutExpression expression) {
    return expression *= factor;
}
LayoutExpression operator/(LayoutExpression expression, double divisor) {
    return expression /= divisor;
}

std::string formatLayoutNumber(double value) {
    char buffer[32];
    auto result = std::to_chars(buffer, buffer + sizeof buffer, value);
    return std::string(buffer, result.ptr);
}

} // namespace ns
