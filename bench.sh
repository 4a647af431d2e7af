#!/usr/bin/env bash
# Measures CommonUi against the bare system calls; sets up what this machine lacks first.
set -euo pipefail
source "$(dirname "${BASH_SOURCE[0]}")/tools/lib.sh"

case "${1:-}" in
-h | --help)
    cat <<'TEXT'
usage: ./bench.sh [--help] [BENCHMARK_OPTION...]

Builds the preset bench, runs its pairs interleaved on a virtual display (five to fifteen minutes), prints
the table of ratios and writes it to build/benchmarks.csv. A goal that is missed is told in the
table; the command fails only when something could not be measured.
BENCHMARK_OPTIONs are Google Benchmark's: --benchmark_filter=Paint
TEXT
    exit 0
    ;;
esac

cd "$commonui_root"
tools/setup
mkdir -p build
exec 8>build/lock
flock 8
tools/build bench 8>&-
flock -u 8
say "measuring (five to fifteen minutes)"
COMMONUI_TIMEOUT=1500 tools/with-desktop --size 1920x1200 \
    tools/run-under-wine build/bench/bin/Benchmarks.exe build/benchmarks.csv "$@"
