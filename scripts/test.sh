#!/usr/bin/env bash
# Installs what is missing, builds the test configuration (address and undefined-behaviour
# sanitizers, warnings as errors) and runs every test.
set -euo pipefail
cd "$(dirname "$0")/.."

scripts/setup.sh
cmake --preset test
cmake --build --preset test
ctest --preset test
