#!/usr/bin/env bash
# Builds CommonUi and runs its tests; sets up what this machine lacks first.
set -euo pipefail
source "$(dirname "${BASH_SOURCE[0]}")/tools/lib.sh"

usage() {
    cat <<'TEXT'
usage: ./test.sh [--help] [release|debug|all] [CTEST_OPTION...]

Makes what is missing (packages, Wine, the cross-built dependencies: about three minutes the first
time), builds the preset (default: release, in build/release) and runs its tests under Wine on a
virtual display. Ends with ctest's summary. CTEST_OPTIONs choose tests: ./test.sh release -R View
TEXT
}

presets=(release)
case "${1:-}" in
-h | --help) usage; exit 0 ;;
release | debug) presets=("$1"); shift ;;
all) presets=(debug release); shift ;;
-* | '') ;;
*) usage >&2; exit 2 ;;
esac

cd "$commonui_root"
tools/setup
COMMONUI_DEPENDENCIES="$(recipe_folder googletest);$(recipe_folder benchmark);$(recipe_folder openssl)"
export COMMONUI_DEPENDENCIES

# Two runs in one clone would build into one folder: the second waits.
mkdir -p build
exec 8>build/lock
flock -n 8 || {
    say "another run is using this clone's build folder; waiting for it"
    flock 8
}

for preset in "${presets[@]}"; do
    tools/build "$preset" 8>&-
    say "testing $preset"
    tools/with-desktop ctest --preset "$preset" "$@" 8>&-
done
