#include "platform/layout/Solver.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <random>
#include <vector>

using ns::LayoutExpression;
using ns::LayoutVariable;
using ns::Solver;
using ns::SolverConstraint;
using ns::SolverStatus;
using Relation = ns::SolverConstraint::Relation;

namespace {

SolverConstraint eq(const LayoutExpression& lhs, const LayoutExpression& rhs,
                    float priority = SolverConstraint::Required) {
    return SolverConstraint(lhs, Relation::Equal, rhs, priority);
}
SolverConstraint ge(const LayoutExpression& lhs, const LayoutExpression& rhs,
                    float priority = SolverConstraint::Required) {
    return SolverConstraint(lhs, Relation::GreaterOrEqual, rhs, priority);
}
SolverConstraint le(const LayoutExpression& lhs, const LayoutExpression& rhs,
                    float priority = SolverConstraint::Required) {
    return SolverConstraint(lhs, Relation::LessOrEqual, rhs, priority);
}

// "left3" (built by appending: GCC 12 warns falsely about `"left" + std::to_string(i)`).
std::string named(const char* prefix, int index) {
    std::string name = prefix;
    name += std::to_string(index);
    return name;
}

// Views in a row: each at least 10 wide, preferring 50 (750) over 40 (250), 8 apart, from 0.
struct Chain {
    std::vector<LayoutVariable> left;
    std::vector<LayoutVariable> width;
    std::vector<SolverConstraint> links; // links[i]: left[i + 1] == left[i] + width[i] + 8
    std::vector<SolverConstraint> preferredWidth;
    std::vector<SolverConstraint> all;

    explicit Chain(int count) {
        for (int i = 0; i < count; ++i) {
            left.emplace_back(named("left", i));
            width.emplace_back(named("width", i));
        }
        all.push_back(eq(left[0], 0));
        for (int i = 0; i < count; ++i) {
            all.push_back(ge(width[i], 10));
            preferredWidth.push_back(eq(width[i], 50, 750));
            all.push_back(preferredWidth.back());
            all.push_back(le(width[i], 40, 250));
            if (i + 1 < count) {
                links.push_back(eq(left[i + 1], left[i] + width[i] + 8));
                all.push_back(links.back());
            }
        }
    }
    void addTo(Solver& solver) const {
        for (const SolverConstraint& constraint : all) {
            ASSERT_EQ(solver.addConstraint(constraint), SolverStatus::Ok) << constraint.description();
        }
    }
};

// Adds constraints the solver must accept.
void addAll(Solver& solver, std::initializer_list<SolverConstraint> constraints) {
    for (const SolverConstraint& constraint : constraints) {
        ASSERT_EQ(solver.addConstraint(constraint), SolverStatus::Ok) << constraint.description();
    }
}

// The variable's value in the solver's current solution.
double solved(Solver& solver, const LayoutVariable& variable) {
    solver.updateVariables();
    return variable.value();
}

std::vector<double> values(const std::vector<LayoutVariable>& variables) {
    std::vector<double> result;
    for (const LayoutVariable& variable : variables) {
        result.push_back(variable.value());
    }
    return result;
}

} // namespace

// ---------------------------------------------------------------------------------------------

TEST(Solver, ChainIsSolvedExactlyWhateverTheOrderOfItsConstraints) {
    Chain reference(8);
    Solver solver;
    reference.addTo(solver);
    solver.updateVariables();
    std::vector<double> expected = values(reference.left);
    for (int i = 0; i < 8; ++i) {
        EXPECT_DOUBLE_EQ(reference.width[i].value(), 50) << i;
        EXPECT_DOUBLE_EQ(expected[i], 58.0 * i) << i;
    }

    std::mt19937 random(7);
    for (int round = 0; round < 20; ++round) {
        Chain chain(8);
        std::vector<SolverConstraint> order = chain.all;
        std::shuffle(order.begin(), order.end(), random);
        Solver shuffled;
        for (const SolverConstraint& constraint : order) {
            ASSERT_EQ(shuffled.addConstraint(constraint), SolverStatus::Ok);
        }
        shuffled.updateVariables();
        std::vector<double> actual = values(chain.left);
        for (std::size_t i = 0; i < expected.size(); ++i) {
            EXPECT_NEAR(actual[i], expected[i], 1e-9) << "round " << round << " view " << i;
        }
    }
}

TEST(Solver, EmptySolverAndUnconstrainedVariables) {
    Solver solver;
    solver.updateVariables();
    LayoutVariable x("x");
    LayoutVariable y("y");
    // x only appears through y; nothing pins it, so it rests at 0 and y follows.
    ASSERT_EQ(solver.addConstraint(eq(y, x + 5)), SolverStatus::Ok);
    x.setValue(99);
    EXPECT_DOUBLE_EQ(solved(solver, x), 0);
    EXPECT_DOUBLE_EQ(y.value(), 5);
}

// ---------------------------------------------------------------------------------------------
// Priorities

TEST(SolverPriorities, HigherPriorityBeatsAnyNumberOfLowerOnes) {
    Solver solver;
    LayoutVariable x("x");
    ASSERT_EQ(solver.addConstraint(eq(x, 20, 751)), SolverStatus::Ok);
    for (int i = 0; i < 1000; ++i) {
        ASSERT_EQ(solver.addConstraint(eq(x, 10, 750)), SolverStatus::Ok);
    }
    EXPECT_DOUBLE_EQ(solved(solver, x), 20);
}

TEST(SolverPriorities, HigherPriorityAddedLastTakesOverAndGivesBack) {
    // Identical rivals on one variable make each pivot touch all of them (degenerate simplex), so
    // this order uses fewer of them to stay quick under sanitizers.
    Solver solver;
    LayoutVariable x("x");
    for (int i = 0; i < 200; ++i) {
        ASSERT_EQ(solver.addConstraint(eq(x, 10, 750)), SolverStatus::Ok);
    }
    SolverConstraint high = eq(x, 20, 751);
    ASSERT_EQ(solver.addConstraint(high), SolverStatus::Ok);
    EXPECT_DOUBLE_EQ(solved(solver, x), 20);
    ASSERT_EQ(solver.removeConstraint(high), SolverStatus::Ok);
    EXPECT_DOUBLE_EQ(solved(solver, x), 10);
}

TEST(SolverPriorities, ManyLowerOnesAddedAfterTheHigherOneStillLose) {
    Solver solver;
    LayoutVariable x("x");
    LayoutVariable y("y");
    ASSERT_EQ(solver.addConstraint(eq(x + y, 100, 2)), SolverStatus::Ok);
    for (int i = 0; i < 300; ++i) {
        ASSERT_EQ(solver.addConstraint(eq(x, 0, 1)), SolverStatus::Ok);
        ASSERT_EQ(solver.addConstraint(eq(y, 0, 1)), SolverStatus::Ok);
    }
    solver.updateVariables();
    EXPECT_DOUBLE_EQ(x.value() + y.value(), 100);
}

TEST(SolverPriorities, WithinOnePriorityTheSmallerTotalErrorWins) {
    Solver solver;
    LayoutVariable x("x");
    addAll(solver, {eq(x, 10, 500), eq(x, 30, 500), eq(x, 30, 500)});
    EXPECT_DOUBLE_EQ(solved(solver, x), 30);
}

TEST(SolverPriorities, LowerPriorityDecidesWhatHigherOnesLeaveOpen) {
    Solver solver;
    LayoutVariable x("x");
    addAll(solver, {ge(x, 10, 750), le(x, 30, 750), eq(x, 100, 1)});
    EXPECT_DOUBLE_EQ(solved(solver, x), 30);
}

TEST(SolverPriorities, SetPriorityMovesAPreferenceInPlace) {
    Solver solver;
    LayoutVariable x("x");
    SolverConstraint low = eq(x, 10, 250);
    SolverConstraint high = eq(x, 20, 750);
    addAll(solver, {low, high});
    EXPECT_DOUBLE_EQ(solved(solver, x), 20);

    EXPECT_EQ(solver.setPriority(low, 900), SolverStatus::Ok);
    EXPECT_EQ(low.priority(), 900);
    EXPECT_DOUBLE_EQ(solved(solver, x), 10);

    EXPECT_EQ(solver.setPriority(high, SolverConstraint::Required), SolverStatus::Ok);
    EXPECT_TRUE(high.isRequired());
    EXPECT_DOUBLE_EQ(solved(solver, x), 20);

    EXPECT_EQ(solver.setPriority(high, 100), SolverStatus::Ok);
    EXPECT_DOUBLE_EQ(solved(solver, x), 10);
}

TEST(SolverPriorities, SetPriorityToRequiredIsRefusedWhenItContradicts) {
    Solver solver;
    LayoutVariable x("x");
    SolverConstraint pinned = eq(x, 10);
    SolverConstraint wish = eq(x, 20, 500);
    addAll(solver, {pinned, wish});
    std::string tableau = solver.description();
    EXPECT_EQ(solver.setPriority(wish, SolverConstraint::Required), SolverStatus::UnsatisfiableConstraint);
    EXPECT_EQ(wish.priority(), 500);
    EXPECT_EQ(solver.description(), tableau);
    EXPECT_TRUE(solver.hasConstraint(wish));
    EXPECT_DOUBLE_EQ(solved(solver, x), 10);
}

// ---------------------------------------------------------------------------------------------
// Required constraints

TEST(SolverRequired, AreNeverBrokenForAPreference) {
    Solver solver;
    LayoutVariable x("x");
    LayoutVariable y("y");
    addAll(solver, {eq(x + y, 100), ge(x, 70), eq(x, 0, 999), eq(y, 90, 999)});
    EXPECT_DOUBLE_EQ(solved(solver, x), 70);
    EXPECT_DOUBLE_EQ(y.value(), 30);
}

TEST(SolverRequired, ContradictionIsRefusedAndLeavesTheSolutionAsItWas) {
    Solver solver;
    Chain chain(6);
    chain.addTo(solver);
    LayoutVariable right("right");
    addAll(solver, {eq(right, chain.left[5] + chain.width[5]), le(right, 400, 500)});
    solver.updateVariables();
    std::vector<double> before = values(chain.left);
    std::string description = solver.description();
    std::size_t count = solver.constraintCount();

    // Each of these contradicts the chain's required part in a different way: a plain equation
    // on determined variables, an inequality, and a repeat of an equation with another constant.
    std::vector<SolverConstraint> contradictions = {
        eq(chain.left[3], 5), le(right, 50),         le(chain.left[2] - chain.left[1], 15),
        eq(chain.left[0], 1), le(chain.width[4], 9),
    };
    for (const SolverConstraint& contradiction : contradictions) {
        EXPECT_EQ(solver.addConstraint(contradiction), SolverStatus::UnsatisfiableConstraint)
            << contradiction.description();
        EXPECT_FALSE(solver.hasConstraint(contradiction));
        EXPECT_EQ(solver.constraintCount(), count);
        solver.updateVariables();
        EXPECT_EQ(values(chain.left), before) << contradiction.description();
    }
    // Refusals restore the tableau itself, not just the values.
    EXPECT_EQ(solver.description(), description);

    // And the solver keeps working afterwards.
    ASSERT_EQ(solver.addConstraint(eq(chain.width[0], 20)), SolverStatus::Ok);
    EXPECT_DOUBLE_EQ(solved(solver, chain.left[5]), 20 + 8 + 4 * 58.0);
}

TEST(SolverRequired, ConstraintsWithoutVariables) {
    Solver solver;
    LayoutVariable x("x");
    EXPECT_EQ(solver.addConstraint(eq(0, 0)), SolverStatus::Ok);
    EXPECT_EQ(solver.addConstraint(eq(x, x + 5)), SolverStatus::UnsatisfiableConstraint); // 0 == 5
    EXPECT_EQ(solver.addConstraint(ge(0, 1)), SolverStatus::UnsatisfiableConstraint);
    SolverConstraint wish = eq(1, 0, 500);
    EXPECT_EQ(solver.addConstraint(wish), SolverStatus::Ok); // a preference can simply lose
    EXPECT_EQ(solver.removeConstraint(wish), SolverStatus::Ok);
    EXPECT_EQ(solver.constraintCount(), 1u);
}

TEST(SolverRequired, RedundantEquationIsAcceptedAndRemovable) {
    Solver solver;
    LayoutVariable x("x");
    LayoutVariable y("y");
    SolverConstraint first = eq(x, 10);
    SolverConstraint second = eq(y, x + 5);
    SolverConstraint same = eq(y, 15);
    addAll(solver, {first, second, same});
    EXPECT_EQ(solver.addConstraint(eq(y, 16)), SolverStatus::UnsatisfiableConstraint);
    ASSERT_EQ(solver.removeConstraint(first), SolverStatus::Ok);
    EXPECT_DOUBLE_EQ(solved(solver, x), 10);
    EXPECT_DOUBLE_EQ(y.value(), 15);
    ASSERT_EQ(solver.removeConstraint(same), SolverStatus::Ok);
    ASSERT_EQ(solver.addConstraint(eq(x, 1)), SolverStatus::Ok);
    EXPECT_DOUBLE_EQ(solved(solver, y), 6);
}

// ---------------------------------------------------------------------------------------------
// Inequalities

TEST(SolverInequalities, HoldAtTheBoundOrWithSlack) {
    Solver solver;
    LayoutVariable x("x");
    SolverConstraint atLeast = ge(x, 10);
    SolverConstraint atMost = le(x, 100);
    SolverConstraint wish = eq(x, 0, 500);
    addAll(solver, {atLeast, atMost, wish});
    EXPECT_DOUBLE_EQ(solved(solver, x), 10);                    // pressed against the lower bound
    ASSERT_EQ(solver.setConstant(wish, -50), SolverStatus::Ok); // x == 50: inside, both slack
    EXPECT_DOUBLE_EQ(solved(solver, x), 50);
    ASSERT_EQ(solver.setConstant(wish, -500), SolverStatus::Ok); // x == 500: the upper bound
    EXPECT_DOUBLE_EQ(solved(solver, x), 100);
    ASSERT_EQ(solver.removeConstraint(atMost), SolverStatus::Ok);
    EXPECT_DOUBLE_EQ(solved(solver, x), 500);
}

TEST(SolverInequalities, PreferredInequalityGivesWayOnlyAsFarAsNeeded) {
    Solver solver;
    LayoutVariable x("x");
    LayoutVariable y("y");
    addAll(solver, {eq(x + y, 100), ge(x, 80, 300), ge(y, 30, 700)});
    EXPECT_DOUBLE_EQ(solved(solver, y), 30);
    EXPECT_DOUBLE_EQ(x.value(), 70);
}

// ---------------------------------------------------------------------------------------------
// Removal

TEST(SolverRemoval, CutsTheChainAndJoinsItAgain) {
    Solver solver;
    Chain chain(10);
    chain.addTo(solver);
    ASSERT_EQ(solver.removeConstraint(chain.links[1]), SolverStatus::Ok);
    // Views 2.. lose their anchor and rest at 0 (the solver puts free variables at 0).
    EXPECT_DOUBLE_EQ(solved(solver, chain.left[1]), 58);
    EXPECT_DOUBLE_EQ(chain.left[2].value(), 0);
    EXPECT_DOUBLE_EQ(chain.left[3].value(), 58);

    ASSERT_EQ(solver.addConstraint(chain.links[1]), SolverStatus::Ok);
    solver.updateVariables();
    for (int i = 0; i < 10; ++i) {
        EXPECT_DOUBLE_EQ(chain.left[i].value(), 58.0 * i) << i;
    }
}

TEST(SolverRemoval, EveryConstraintInTurn) {
    Chain chain(5);
    // Weak stays at levels of their own keep the answer unique once a constraint is gone.
    for (int i = 0; i < 5; ++i) {
        chain.all.push_back(eq(chain.width[i], 30, 1.0f + i));
        chain.all.push_back(eq(chain.left[i], 0, 10.0f + i));
    }
    for (std::size_t removed = 0; removed < chain.all.size() - 10; ++removed) {
        Solver incremental;
        chain.addTo(incremental);
        ASSERT_EQ(incremental.removeConstraint(chain.all[removed]), SolverStatus::Ok);
        incremental.updateVariables();
        std::vector<double> actual = values(chain.width);
        std::vector<double> actualLeft = values(chain.left);

        Solver fresh;
        for (std::size_t i = 0; i < chain.all.size(); ++i) {
            if (i != removed) {
                ASSERT_EQ(fresh.addConstraint(chain.all[i]), SolverStatus::Ok);
            }
        }
        fresh.updateVariables();
        for (std::size_t i = 0; i < actual.size(); ++i) {
            EXPECT_NEAR(actual[i], chain.width[i].value(), 1e-9) << chain.all[removed].description();
            EXPECT_NEAR(actualLeft[i], chain.left[i].value(), 1e-9) << chain.all[removed].description();
        }
    }
}

TEST(SolverRemoval, ForgetsVariablesNoConstraintUses) {
    Solver solver;
    LayoutVariable x("x");
    SolverConstraint pin = eq(x, 42);
    ASSERT_EQ(solver.addConstraint(pin), SolverStatus::Ok);
    EXPECT_NE(solver.description().find("x = 42"), std::string::npos) << solver.description();
    ASSERT_EQ(solver.removeConstraint(pin), SolverStatus::Ok);
    x.setValue(7);
    EXPECT_DOUBLE_EQ(solved(solver, x), 7); // not written any more
    EXPECT_EQ(solver.description().find("x ="), std::string::npos);
}

// ---------------------------------------------------------------------------------------------
// Changing constants

TEST(SolverSetConstant, MatchesRemovingAndAddingAgain) {
    const std::vector<double> constants = {-60, -5, -100, -50, -10, -75};
    for (std::size_t which : {std::size_t(0), std::size_t(3), std::size_t(7)}) {
        Chain inPlace(8);
        Solver solver;
        inPlace.addTo(solver);
        Chain replaced(8);
        Solver other;
        replaced.addTo(other);

        for (double constant : constants) {
            ASSERT_EQ(solver.setConstant(inPlace.preferredWidth[which], constant), SolverStatus::Ok);
            EXPECT_EQ(inPlace.preferredWidth[which].expression().constant(), constant);
            solver.updateVariables();

            ASSERT_EQ(other.removeConstraint(replaced.preferredWidth[which]), SolverStatus::Ok);
            replaced.preferredWidth[which] = eq(replaced.width[which], -constant, 750);
            ASSERT_EQ(other.addConstraint(replaced.preferredWidth[which]), SolverStatus::Ok);
            other.updateVariables();

            for (int i = 0; i < 8; ++i) {
                EXPECT_NEAR(inPlace.left[i].value(), replaced.left[i].value(), 1e-9) << constant;
                EXPECT_NEAR(inPlace.width[i].value(), replaced.width[i].value(), 1e-9) << constant;
            }
            EXPECT_DOUBLE_EQ(inPlace.width[which].value(), std::max(10.0, -constant));
        }
    }
}

TEST(SolverSetConstant, WorksOnRequiredLinksAndRefusesContradictions) {
    Solver solver;
    Chain chain(6);
    chain.addTo(solver);
    ASSERT_EQ(solver.addConstraint(le(chain.left[5], 400)), SolverStatus::Ok);

    // left[2] == left[1] + width[1] + 8  ->  the expression's constant is -8; widen the gap to 20.
    ASSERT_EQ(solver.setConstant(chain.links[1], -20), SolverStatus::Ok);
    EXPECT_DOUBLE_EQ(solved(solver, chain.left[2]), 58 + 70);
    EXPECT_DOUBLE_EQ(chain.left[5].value(), 5 * 58 + 12);

    // A gap that pushes left[5] past 400 squeezes the widths (required >= 10 still holds).
    ASSERT_EQ(solver.setConstant(chain.links[1], -150), SolverStatus::Ok);
    EXPECT_DOUBLE_EQ(solved(solver, chain.left[5]), 400);
    for (const LayoutVariable& width : chain.width) {
        EXPECT_GE(width.value(), 10 - 1e-9);
    }

    // Beyond what the widths can give, it is refused and the previous gap stays: the tableau is
    // restored exactly, not just to the same values.
    std::vector<double> before = values(chain.left);
    std::string tableau = solver.description();
    EXPECT_EQ(solver.setConstant(chain.links[1], -400), SolverStatus::UnsatisfiableConstraint);
    EXPECT_EQ(chain.links[1].expression().constant(), -150);
    EXPECT_EQ(solver.description(), tableau);
    solver.updateVariables();
    EXPECT_EQ(values(chain.left), before);

    ASSERT_EQ(solver.setConstant(chain.links[1], -8), SolverStatus::Ok);
    EXPECT_DOUBLE_EQ(solved(solver, chain.left[5]), 5 * 58);
}

TEST(SolverSetConstant, OnARedundantEquationCanOnlyKeepItConsistent) {
    Solver solver;
    LayoutVariable x("x");
    SolverConstraint a = eq(x, 10);
    SolverConstraint b = eq(x, 10);
    addAll(solver, {a, b});
    EXPECT_EQ(solver.setConstant(b, -11), SolverStatus::UnsatisfiableConstraint);
    ASSERT_EQ(solver.removeConstraint(a), SolverStatus::Ok);
    ASSERT_EQ(solver.setConstant(b, -11), SolverStatus::Ok);
    EXPECT_DOUBLE_EQ(solved(solver, x), 11);
}

// ---------------------------------------------------------------------------------------------
// Edit variables

TEST(SolverEdit, SuggestedValuesAreFollowedWithinRequiredLimits) {
    Solver solver;
    LayoutVariable left("left");
    LayoutVariable width("width");
    LayoutVariable right("right");
    addAll(solver,
           {eq(right, left + width), eq(left, 0), ge(width, 20), le(width, 300), eq(width, 100, 250)});

    ASSERT_EQ(solver.addEditVariable(right, 500), SolverStatus::Ok);
    EXPECT_TRUE(solver.hasEditVariable(right));
    for (double suggestion : {150.0, 5.0, 1000.0, 260.0}) {
        ASSERT_EQ(solver.suggestValue(right, suggestion), SolverStatus::Ok);
        EXPECT_DOUBLE_EQ(solved(solver, right), std::clamp(suggestion, 20.0, 300.0)) << suggestion;
    }
    ASSERT_EQ(solver.removeEditVariable(right), SolverStatus::Ok);
    EXPECT_DOUBLE_EQ(solved(solver, right), 100);
}

TEST(SolverEdit, StartsFromTheVariablesCurrentValue) {
    Solver solver;
    LayoutVariable x("x");
    ASSERT_EQ(solver.addConstraint(eq(x, 10, 1)), SolverStatus::Ok);
    x.setValue(64);
    ASSERT_EQ(solver.addEditVariable(x, 100), SolverStatus::Ok);
    EXPECT_DOUBLE_EQ(solved(solver, x), 64);
}

TEST(SolverEdit, StrongerConstraintsWinOverTheEdit) {
    Solver solver;
    LayoutVariable x("x");
    ASSERT_EQ(solver.addConstraint(le(x, 50, 800)), SolverStatus::Ok);
    ASSERT_EQ(solver.addEditVariable(x, 700), SolverStatus::Ok);
    ASSERT_EQ(solver.suggestValue(x, 80), SolverStatus::Ok);
    EXPECT_DOUBLE_EQ(solved(solver, x), 50);
    ASSERT_EQ(solver.suggestValue(x, 30), SolverStatus::Ok);
    EXPECT_DOUBLE_EQ(solved(solver, x), 30);
}

TEST(SolverEdit, RefusesMisuse) {
    Solver solver;
    LayoutVariable x("x");
    EXPECT_EQ(solver.suggestValue(x, 1), SolverStatus::UnknownEditVariable);
    EXPECT_EQ(solver.removeEditVariable(x), SolverStatus::UnknownEditVariable);
    EXPECT_EQ(solver.addEditVariable(x, SolverConstraint::Required), SolverStatus::InvalidPriority);
    EXPECT_EQ(solver.addEditVariable(x, 0), SolverStatus::InvalidPriority);
    ASSERT_EQ(solver.addEditVariable(x, 500), SolverStatus::Ok);
    EXPECT_EQ(solver.addEditVariable(x, 600), SolverStatus::DuplicateEditVariable);
    EXPECT_EQ(solver.suggestValue(x, std::numeric_limits<double>::quiet_NaN()), SolverStatus::InvalidValue);
    EXPECT_EQ(solver.constraintCount(), 1u);
}

// ---------------------------------------------------------------------------------------------
// Refusals and bookkeeping

TEST(SolverStatuses, RefusalsLeaveTheSolverAlone) {
    Solver solver;
    LayoutVariable x("x");
    SolverConstraint c = eq(x, 10);
    ASSERT_EQ(solver.addConstraint(c), SolverStatus::Ok);
    EXPECT_EQ(solver.addConstraint(c), SolverStatus::DuplicateConstraint);
    EXPECT_EQ(solver.addConstraint(eq(x, 1, 0)), SolverStatus::InvalidPriority);
    EXPECT_EQ(solver.addConstraint(eq(x, 1, 1000.5f)), SolverStatus::InvalidPriority);
    EXPECT_EQ(solver.addConstraint(eq(x, 1, std::numeric_limits<float>::quiet_NaN())),
              SolverStatus::InvalidPriority);
    EXPECT_EQ(solver.addConstraint(eq(x, std::numeric_limits<double>::infinity(), 5)),
              SolverStatus::InvalidValue);
    SolverConstraint stranger = eq(x, 3);
    EXPECT_EQ(solver.removeConstraint(stranger), SolverStatus::UnknownConstraint);
    EXPECT_EQ(solver.setConstant(stranger, 1), SolverStatus::UnknownConstraint);
    EXPECT_EQ(solver.setPriority(stranger, 5), SolverStatus::UnknownConstraint);
    EXPECT_EQ(solver.setPriority(c, -1), SolverStatus::InvalidPriority);
    EXPECT_FALSE(solver.hasConstraint(stranger));
    EXPECT_TRUE(solver.hasConstraint(c));
    EXPECT_EQ(solver.constraintCount(), 1u);
    EXPECT_DOUBLE_EQ(solved(solver, x), 10);
    EXPECT_STREQ(ns::toString(SolverStatus::UnsatisfiableConstraint), "UnsatisfiableConstraint");
}

TEST(SolverStatuses, ResetForgetsEverything) {
    Solver solver;
    LayoutVariable x("x");
    SolverConstraint c = eq(x, 10);
    ASSERT_EQ(solver.addConstraint(c), SolverStatus::Ok);
    ASSERT_EQ(solver.addEditVariable(x, 10), SolverStatus::Ok);
    solver.reset();
    EXPECT_FALSE(solver.hasConstraint(c));
    EXPECT_FALSE(solver.hasEditVariable(x));
    EXPECT_EQ(solver.constraintCount(), 0u);
    ASSERT_EQ(solver.addConstraint(c), SolverStatus::Ok);
    ASSERT_EQ(solver.addConstraint(eq(x, 5)), SolverStatus::UnsatisfiableConstraint);
}

// ---------------------------------------------------------------------------------------------
// Randomised cross-check: whatever path the incremental solver took, its answer must equal that
// of a solver built fresh from the constraints it holds. Every variable gets its own weak "stay"
// at a level of its own, below the random preferences, which makes the optimum unique.

namespace {

struct RandomSystem {
    std::mt19937 random;
    std::vector<LayoutVariable> variables;
    std::vector<SolverConstraint> stays;
    bool viewLike = false;

    RandomSystem(unsigned seed, int count, bool viewLikeConstraints = false)
        : random(seed), viewLike(viewLikeConstraints) {
        for (int i = 0; i < count; ++i) {
            variables.emplace_back(named("v", i));
            stays.push_back(eq(variables.back(), pick({0, 10, 20, 35}), 1.0f + i));
        }
    }
    double pick(std::initializer_list<double> choices) {
        return *(choices.begin() + std::uniform_int_distribution<std::size_t>(0, choices.size() - 1)(random));
    }
    const LayoutVariable& anyVariable() {
        return variables[std::uniform_int_distribution<std::size_t>(0, variables.size() - 1)(random)];
    }
    // Either what views write (`a == m * b + c`, m mostly 1, now and then a third term) or one to
    // three terms with mixed coefficients, which makes for worse conditioned tableaus.
    SolverConstraint constraint() {
        LayoutExpression expression(std::uniform_int_distribution<int>(-60, 60)(random));
        if (viewLike) {
            expression += LayoutExpression(anyVariable());
            expression -= pick({1, 1, 1, 1, 1, 1, 1, 2, 0.5, -1}) * LayoutExpression(anyVariable());
            if (random() % 4 == 0) {
                expression += LayoutExpression(anyVariable());
            }
        } else {
            int terms = std::uniform_int_distribution<int>(1, 3)(random);
            for (int t = 0; t < terms; ++t) {
                expression += LayoutExpression(anyVariable(), pick({-2, -1, -0.5, 1, 1, 2, 3}));
            }
        }
        Relation relation = static_cast<Relation>(std::uniform_int_distribution<int>(0, 2)(random));
        float priority = static_cast<float>(pick({1000, 1000, 1000, 900, 750, 500, 250, 100}));
        return SolverConstraint(expression, relation, 0, priority);
    }
};

// Runs `steps` random additions, removals and constant changes, then compares the solution with
// that of a solver built fresh from the constraints that are left.
void crossCheck(unsigned seed, int variables, int steps, bool viewLike = false) {
    RandomSystem system(seed, variables, viewLike);
    Solver solver;
    for (const SolverConstraint& stay : system.stays) {
        ASSERT_EQ(solver.addConstraint(stay), SolverStatus::Ok);
    }
    std::vector<SolverConstraint> held;
    for (int step = 0; step < steps; ++step) {
        int action = std::uniform_int_distribution<int>(0, 9)(system.random);
        if (action < 6 || held.empty()) {
            SolverConstraint constraint = system.constraint();
            solver.updateVariables();
            std::vector<double> before = values(system.variables);
            SolverStatus status = solver.addConstraint(constraint);
            if (status == SolverStatus::Ok) {
                held.push_back(constraint);
            } else {
                ASSERT_EQ(status, SolverStatus::UnsatisfiableConstraint);
                ASSERT_TRUE(constraint.isRequired());
                solver.updateVariables();
                ASSERT_EQ(values(system.variables), before) << "seed " << seed << " step " << step;
            }
        } else {
            std::size_t index = std::uniform_int_distribution<std::size_t>(0, held.size() - 1)(system.random);
            if (action < 8) {
                ASSERT_EQ(solver.removeConstraint(held[index]), SolverStatus::Ok);
                held.erase(held.begin() + static_cast<std::ptrdiff_t>(index));
            } else {
                double constant = std::uniform_int_distribution<int>(-60, 60)(system.random);
                SolverStatus status = solver.setConstant(held[index], constant);
                ASSERT_TRUE(status == SolverStatus::Ok ||
                            (status == SolverStatus::UnsatisfiableConstraint && held[index].isRequired()));
            }
        }
    }
    solver.updateVariables();
    std::vector<double> incremental = values(system.variables);
    // Tolerances are relative: long sessions reach values in the thousands, where rounding of a
    // part in a billion is a few millionths.
    for (const SolverConstraint& constraint : held) {
        if (!constraint.isRequired()) {
            continue;
        }
        double value = constraint.expression().value();
        double scale = std::fabs(constraint.expression().constant());
        for (const ns::LayoutTerm& term : constraint.expression().terms()) {
            scale += std::fabs(term.coefficient * term.variable.value());
        }
        double tolerance = 1e-7 * std::max(1.0, scale);
        switch (constraint.relation()) {
        case Relation::Equal:
            EXPECT_NEAR(value, 0, tolerance) << constraint.description();
            break;
        case Relation::LessOrEqual:
            EXPECT_LE(value, tolerance) << constraint.description();
            break;
        case Relation::GreaterOrEqual:
            EXPECT_GE(value, -tolerance) << constraint.description();
            break;
        }
    }

    Solver fresh;
    for (const SolverConstraint& stay : system.stays) {
        ASSERT_EQ(fresh.addConstraint(stay), SolverStatus::Ok);
    }
    for (const SolverConstraint& constraint : held) {
        ASSERT_EQ(fresh.addConstraint(constraint), SolverStatus::Ok) << "seed " << seed;
    }
    fresh.updateVariables();
    for (std::size_t i = 0; i < incremental.size(); ++i) {
        EXPECT_NEAR(incremental[i], system.variables[i].value(),
                    1e-6 * std::max(1.0, std::fabs(incremental[i])))
            << "seed " << seed << " variable " << i << "\n"
            << solver.description();
    }
}

} // namespace

TEST(SolverRandomised, IncrementalMatchesFreshlyBuilt) {
    for (unsigned seed = 1; seed <= 150; ++seed) {
        crossCheck(seed, 2 + static_cast<int>(seed % 5), 30);
    }
}

TEST(SolverRandomised, LongerSessionsOnMoreVariables) {
    // Hundreds of pivots on one tableau, where rounding error has room to build up.
    for (unsigned seed = 1; seed <= 3; ++seed) {
        crossCheck(seed, 16, 160);
        crossCheck(seed, 16, 160, true);
    }
}

// Minutes of the same in a Release build; run on demand with --gtest_also_run_disabled_tests.
TEST(SolverRandomised, DISABLED_LongSessionsStress) {
    for (unsigned seed = 1; seed <= 2000; ++seed) {
        crossCheck(seed, 2 + static_cast<int>(seed % 9), 20 + static_cast<int>(seed % 60), seed % 2 == 0);
    }
    for (unsigned seed = 1; seed <= 100; ++seed) {
        crossCheck(seed, 20, 200, seed % 2 == 0);
        crossCheck(seed, 40, 300, true);
    }
}
