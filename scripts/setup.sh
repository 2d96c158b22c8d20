#!/usr/bin/env bash
# Installs the Debian packages the project builds and runs with, when any are missing.
# Safe to run again: it does nothing when everything is present.
set -euo pipefail

packages=(
    g++ cmake make pkg-config
    libgtest-dev libgmock-dev googletest libbenchmark-dev
    libcairo2-dev libpango1.0-dev libfontconfig-dev fonts-dejavu-core
    libplist-dev libplist++-dev
    python3 python3-kiwisolver
    xdg-utils
)

missing=()
for p in "${packages[@]}"; do
    if ! dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q "install ok installed"; then
        missing+=("$p")
    fi
done
[ ${#missing[@]} -eq 0 ] && exit 0

echo "setup: installing ${missing[*]}"
sudo=()
if [ "$(id -u)" -ne 0 ]; then
    command -v sudo >/dev/null || { echo "setup: run as root, or install: ${missing[*]}" >&2; exit 1; }
    sudo=(sudo)
fi
export DEBIAN_FRONTEND=noninteractive
"${sudo[@]}" apt-get update -qq
"${sudo[@]}" apt-get install -y -qq --no-install-recommends "${missing[@]}"
