#include "platform/layout/LayoutExpression.hpp"
#include "platform/layout/SolverConstraint.hpp"

#include <gtest/gtest.h>

using ns::LayoutExpression;
using ns::LayoutVariable;
using ns::SolverConstraint;

TEST(LayoutExpression, ArithmeticBuildsTermsAndConstant) {
    LayoutVariable x("x");
    LayoutVariable y("y");
    LayoutExpression e = 2 * x - (y + 3) / 2 + 8;
    ASSERT_EQ(e.terms().size(), 2u);
    EXPECT_EQ(e.terms()[0].variable, x);
    EXPECT_EQ(e.terms()[0].coefficient, 2);
    EXPECT_EQ(e.terms()[1].variable, y);
    EXPECT_EQ(e.terms()[1].coefficient, -0.5);
    EXPECT_EQ(e.constant(), 6.5);

    x.setValue(10);
    y.setValue(4);
    EXPECT_EQ(e.value(), 20 - 2 + 6.5);
    EXPECT_EQ(e.description(), "2 * x + -0.5 * y + 6.5");
}

TEST(LayoutExpression, SimplifiedMergesRepeatsAndDropsZeros) {
    LayoutVariable x("x");
    LayoutVariable y("y");
    LayoutVariable z;
    LayoutExpression e = x + y - x + 2 * z + z - y;
    LayoutExpression s = e.simplified();
    ASSERT_EQ(s.terms().size(), 1u);
    EXPECT_EQ(s.terms()[0].variable, z);
    EXPECT_EQ(s.terms()[0].coefficient, 3);
    EXPECT_EQ(s.description(), "3 * <variable>");
    EXPECT_EQ(LayoutExpression(-0.25).description(), "-0.25");
}

TEST(LayoutExpression, VariablesAreIdentitiesNotNames) {
    LayoutVariable a("same");
    LayoutVariable b("same");
    LayoutVariable copy = a;
    EXPECT_FALSE(a == b);
    EXPECT_TRUE(a == copy);
    copy.setValue(3);
    EXPECT_EQ(a.value(), 3);
    EXPECT_EQ(a.description(), "same = 3");
    EXPECT_EQ((a + b - a).simplified().terms().size(), 1u);
}

TEST(SolverConstraint, StoresLeftMinusRightSimplified) {
    LayoutVariable left("left");
    LayoutVariable width("width");
    SolverConstraint c(left + width, SolverConstraint::Relation::LessOrEqual, left + 100, 250);
    ASSERT_EQ(c.expression().terms().size(), 1u);
    EXPECT_EQ(c.expression().terms()[0].variable, width);
    EXPECT_EQ(c.expression().constant(), -100);
    EXPECT_FALSE(c.isRequired());
    EXPECT_EQ(c.description(), "width + -100 <= 0 @250");

    SolverConstraint required(width, SolverConstraint::Relation::GreaterOrEqual, 10);
    EXPECT_TRUE(required.isRequired());
    EXPECT_EQ(required.description(), "width + -10 >= 0");
    SolverConstraint copy = required;
    EXPECT_TRUE(copy == required);
    EXPECT_FALSE(SolverConstraint(width, SolverConstraint::Relation::GreaterOrEqual, 10) == required);
}
