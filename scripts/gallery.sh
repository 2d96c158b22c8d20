#!/usr/bin/env bash
# Builds the gallery and renders the kit's scenes to out/gallery (PNG files and index.html).
set -euo pipefail
cd "$(dirname "$0")/.."
scripts/setup.sh
cmake -S . -B build -DCMAKE_BUILD_TYPE=Release >/dev/null
cmake --build build -j "$(nproc)" --target corvane_gallery
build/apps/gallery/corvane_gallery "${1:-out/gallery}"
