#pragma once

#include "platform/layout/LayoutVariable.hpp"

#include <string>
#include <vector>

namespace ns {

struct LayoutTerm {
    LayoutVariable variable;
    double coefficient = 1;
};

// A linear expression: sum of coefficient * variable, plus a constant. The arithmetic operators
// below build one from variables and numbers (`left + width + 8`, `2 * x - y`). Terms are kept as
// given; a variable may occur more than once until simplified() merges them.
class LayoutExpression {
public:
    LayoutExpression(double constant = 0) : m_constant(constant) {}
    LayoutExpression(const LayoutVariable& variable, double coefficient = 1);
    LayoutExpression(std::vector<LayoutTerm> terms, double constant);

    const std::vector<LayoutTerm>& terms() const { return m_terms; }
    double constant() const { return m_constant; }
    void setConstant(double constant) { m_constant = constant; }

    // The same expression with each variable once and no zero coefficients, in order of first
    // occurrence.
    LayoutExpression simplified() const;

    // The expression evaluated with the variables' current values.
    double value() const;

    // "2 * x + -1 * y + 8"; a variable without a name prints as "<variable>".
    std::string description() const;

    LayoutExpression& operator+=(const LayoutExpression& other);
    LayoutExpression& operator-=(const LayoutExpression& other);
    LayoutExpression& operator*=(double factor);
    LayoutExpression& operator/=(double divisor);

private:
    std::vector<LayoutTerm> m_terms;
    double m_constant = 0;
};

LayoutExpression operator+(LayoutExpression lhs, const LayoutExpression& rhs);
LayoutExpression operator-(LayoutExpression lhs, const LayoutExpression& rhs);
LayoutExpression operator-(LayoutExpression expression);
LayoutExpression operator*(LayoutExpression expression, double factor);
LayoutExpression operator*(double factor, LayoutExpression expression);
LayoutExpression operator/(LayoutExpression expression, double divisor);

// The shortest text that reads back as the same double ("50", "0.1", "-3.25"); used by the
// descriptions of the layout types.
std::string formatLayoutNumber(double value);

} // namespace ns
