#!/usr/bin/env bash
# Installs the build and test dependencies from Debian packages when any is missing.
# Idempotent: when everything is present it only asks dpkg and returns.
set -euo pipefail

packages=(cmake make g++ pkg-config libexpat1-dev libpcre3-dev zlib1g-dev
          libgtest-dev libgmock-dev googletest libbenchmark-dev
          # test-only: an independent Fast Infoset codec (Java), GMP as an arithmetic
          # oracle, time zones, coverage and the fuzzing compiler
          default-jdk-headless libfastinfoset-java libgmp-dev tzdata gcovr clang)

missing=()
for p in "${packages[@]}"; do
    if ! dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q 'install ok installed'; then
        missing+=("$p")
    fi
done

if [ ${#missing[@]} -gt 0 ]; then
    echo "setup: installing ${missing[*]}"
    SUDO=""
    if [ "$(id -u)" -ne 0 ]; then SUDO="sudo"; fi
    export DEBIAN_FRONTEND=noninteractive
    $SUDO apt-get update -qq
    $SUDO apt-get install -y -qq --no-install-recommends "${missing[@]}"
fi
