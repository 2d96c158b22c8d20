#!/usr/bin/env bash
# Builds everything with AddressSanitizer and UndefinedBehaviorSanitizer and runs every test.
set -euo pipefail
cd "$(dirname "$0")/.."
scripts/setup.sh
jobs=$(nproc)
cmake -S . -B build-test -DCMAKE_BUILD_TYPE=Debug -DCORVANE_SANITIZE=ON >/dev/null
cmake --build build-test -j "$jobs"
export ASAN_OPTIONS=detect_leaks=1:abort_on_error=0:strict_string_checks=1
export UBSAN_OPTIONS=print_stacktrace=1:halt_on_error=1
ctest --test-dir build-test --output-on-failure -j "$jobs" "$@"
