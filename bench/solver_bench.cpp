// Layout solver benchmarks. The same systems are timed in kiwisolver by bench/kiwi_chain.py;
// bench/run_solver_comparison.sh runs both and prints them side by side.
//
// The "chain of views" (n views in a row, as a horizontal stack lays them out):
//
//   left[0] == 0                                          required
//   for each view i:
//     width[i] >= 10                                      required   (can never collapse)
//     width[i] == 50                                      750        (preferred width)
//     width[i] <= 40                                      250        (a weaker wish that loses to it)
//     left[i] == left[i-1] + width[i-1] + 8   (i > 0)     required   (8 points after the previous view)
//
// Constraints are added in that order, view by view. The solution is width 50 and left 58 * i.
// In kiwisolver, 750 is "strong" and 250 is "medium".
//
// Cases:
//   ChainBuildSolve/n      create a solver, add the whole chain, write the values (updateVariables);
//                          20,000 views shows how the cost grows
//   ChainSetConstant/n     on a built chain, change the constant of view 0's preferred width in place
//                          (setConstant) and write the values; view 0 resizes, every view after it moves
//   ChainSuggestValue/n    the same through an edit variable on width[0] (its preferred-width
//                          constraint replaced by the edit, which is how kiwisolver has to do it)
//   ChainRemoveReadd/n     remove the required link between views 1 and 2, add it back, write the values

#include "platform/layout/Solver.hpp"

#include <benchmark/benchmark.h>

#include <string>
#include <vector>

namespace {

using ns::LayoutVariable;
using ns::Solver;
using ns::SolverConstraint;
using Relation = ns::SolverConstraint::Relation;

struct Chain {
    std::vector<LayoutVariable> left;
    std::vector<LayoutVariable> width;
    std::vector<SolverConstraint> constraints;
    std::vector<SolverConstraint> preferredWidth;
    std::vector<SolverConstraint> links; // links[i - 1]: left[i] == left[i - 1] + width[i - 1] + 8

    explicit Chain(int count) {
        left.reserve(count);
        width.reserve(count);
        for (int i = 0; i < count; ++i) {
            left.emplace_back();
            width.emplace_back();
        }
        constraints.emplace_back(left[0], Relation::Equal, 0);
        for (int i = 0; i < count; ++i) {
            constraints.emplace_back(width[i], Relation::GreaterOrEqual, 10);
            preferredWidth.emplace_back(width[i], Relation::Equal, 50, 750);
            constraints.push_back(preferredWidth.back());
            constraints.emplace_back(width[i], Relation::LessOrEqual, 40, 250);
            if (i > 0) {
                links.emplace_back(left[i], Relation::Equal, left[i - 1] + width[i - 1] + 8);
                constraints.push_back(links.back());
            }
        }
    }

    void addTo(Solver& solver, bool skipFirstPreferredWidth = false) const {
        for (const SolverConstraint& constraint : constraints) {
            if (skipFirstPreferredWidth && constraint == preferredWidth[0]) {
                continue;
            }
            solver.addConstraint(constraint);
        }
    }

    bool solved(double firstWidth = 50) const {
        double expected = (left.size() - 1) * 58.0 + (firstWidth - 50);
        return left.back().value() == expected;
    }
};

void ChainBuildSolve(benchmark::State& state) {
    Chain chain(static_cast<int>(state.range(0)));
    for (auto _ : state) {
        Solver solver;
        chain.addTo(solver);
        solver.updateVariables();
        benchmark::DoNotOptimize(chain.left.back().value());
    }
    if (!chain.solved()) {
        state.SkipWithError("wrong solution");
    }
}
BENCHMARK(ChainBuildSolve)->Arg(100)->Arg(1000)->Arg(5000)->Arg(20000)->Unit(benchmark::kMillisecond);

double editedWidth(std::size_t step) {
    return 50 + static_cast<double>(step % 7) * 3;
}

void ChainSetConstant(benchmark::State& state) {
    Chain chain(static_cast<int>(state.range(0)));
    Solver solver;
    chain.addTo(solver);
    std::size_t step = 0;
    for (auto _ : state) {
        solver.setConstant(chain.preferredWidth[0], -editedWidth(++step));
        solver.updateVariables();
    }
    if (!chain.solved(editedWidth(step))) {
        state.SkipWithError("wrong solution");
    }
}
BENCHMARK(ChainSetConstant)->Arg(1000)->Arg(5000)->Unit(benchmark::kMicrosecond);

void ChainSuggestValue(benchmark::State& state) {
    Chain chain(static_cast<int>(state.range(0)));
    Solver solver;
    chain.addTo(solver, true);
    solver.addEditVariable(chain.width[0], 750);
    std::size_t step = 0;
    for (auto _ : state) {
        solver.suggestValue(chain.width[0], editedWidth(++step));
        solver.updateVariables();
    }
    if (!chain.solved(editedWidth(step))) {
        state.SkipWithError("wrong solution");
    }
}
BENCHMARK(ChainSuggestValue)->Arg(1000)->Arg(5000)->Unit(benchmark::kMicrosecond);

void ChainRemoveReadd(benchmark::State& state) {
    Chain chain(static_cast<int>(state.range(0)));
    Solver solver;
    chain.addTo(solver);
    const SolverConstraint& link = chain.links[1]; // left[2] == left[1] + width[1] + 8
    for (auto _ : state) {
        solver.removeConstraint(link);
        solver.addConstraint(link);
        solver.updateVariables();
    }
    if (!chain.solved()) {
        state.SkipWithError("wrong solution");
    }
}
BENCHMARK(ChainRemoveReadd)->Arg(1000)->Arg(5000)->Unit(benchmark::kMicrosecond);

} // namespace

BENCHMARK_MAIN();
