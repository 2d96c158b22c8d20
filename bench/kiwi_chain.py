#!/usr/bin/python3
"""Times kiwisolver on the systems of bench/solver_bench.cpp (see the comment there for the chain
of views) and prints one JSON object: for each case, seconds per operation (median of the runs)
in wall-clock time (time.perf_counter) and in process CPU time (time.process_time), the latter
being what to compare when other work shares the machine.

Run with Debian's interpreter (/usr/bin/python3), which has python3-kiwisolver.
Priorities map to kiwi strengths: required -> required, 750 -> strong, 250 -> medium.
"""

import json
import statistics
import sys
import time

import kiwisolver as kiwi


class Chain:
    def __init__(self, count, edit_first_width=False):
        self.left = [kiwi.Variable("left%d" % i) for i in range(count)]
        self.width = [kiwi.Variable("width%d" % i) for i in range(count)]
        self.constraints = [self.left[0] == 0]
        self.links = []
        for i in range(count):
            self.constraints.append(self.width[i] >= 10)
            if not (edit_first_width and i == 0):
                self.constraints.append((self.width[i] == 50) | "strong")
            self.constraints.append((self.width[i] <= 40) | "medium")
            if i > 0:
                link = self.left[i] == self.left[i - 1] + self.width[i - 1] + 8
                self.links.append(link)
                self.constraints.append(link)

    def solver(self):
        solver = kiwi.Solver()
        for constraint in self.constraints:
            solver.addConstraint(constraint)
        return solver

    def check(self, first_width=50):
        expected = (len(self.left) - 1) * 58 + (first_width - 50)
        if self.left[-1].value() != expected:
            sys.exit("kiwi: wrong solution %r, expected %r" % (self.left[-1].value(), expected))


def edited_width(step):
    return 50 + (step % 7) * 3


class Clock:
    """Wall-clock and CPU time of one timed stretch."""

    def __init__(self):
        self.wall = []
        self.cpu = []

    def __enter__(self):
        self.start = (time.perf_counter(), time.process_time())
        return self

    def __exit__(self, *exc):
        self.wall.append(time.perf_counter() - self.start[0])
        self.cpu.append(time.process_time() - self.start[1])

    def per(self, count):
        return {"wall": statistics.median(self.wall) / count, "cpu": statistics.median(self.cpu) / count}


def build_solve(count, runs):
    chain = Chain(count)
    clock = Clock()
    for _ in range(runs):
        with clock:
            solver = chain.solver()
            solver.updateVariables()
    chain.check()
    return clock.per(1)


def suggest_value(count, edits, runs):
    chain = Chain(count, edit_first_width=True)
    solver = chain.solver()
    solver.addEditVariable(chain.width[0], "strong")
    clock = Clock()
    step = 0
    for _ in range(runs):
        with clock:
            for _ in range(edits):
                step += 1
                solver.suggestValue(chain.width[0], edited_width(step))
                solver.updateVariables()
    chain.check(edited_width(step))
    return clock.per(edits)


def remove_readd(count, runs):
    chain = Chain(count)
    solver = chain.solver()
    link = chain.links[1]  # left[2] == left[1] + width[1] + 8
    clock = Clock()
    for _ in range(runs):
        with clock:
            solver.removeConstraint(link)
            solver.addConstraint(link)
            solver.updateVariables()
    chain.check()
    return clock.per(1)


def main():
    results = {
        "ChainBuildSolve/100": build_solve(100, 21),
        "ChainBuildSolve/1000": build_solve(1000, 5),
        "ChainBuildSolve/5000": build_solve(5000, 1),
        "ChainSuggestValue/1000": suggest_value(1000, 1000, 3),
        "ChainRemoveReadd/1000": remove_readd(1000, 1),
    }
    json.dump({"kiwisolver": kiwi.__version__, "results": results}, sys.stdout, indent=1)
    print()


if __name__ == "__main__":
    main()
