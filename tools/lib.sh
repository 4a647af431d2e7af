# Shared by the scripts of this folder; sourced, never run. Bash, set -euo pipefail in the caller.

commonui_root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)

# What is expensive to make and the same for every clone lives outside the clone.
commonui_cache=${COMMONUI_CACHE:-${XDG_CACHE_HOME:-$HOME/.cache}/commonui}

# One line of progress; nothing on standard output, which belongs to the results.
say() { printf '%s\n' "-- $*" >&2; }

# One line that names what failed and what to do; ends the script.
die() {
    printf '%s\n' "${0##*/}: $*" >&2
    exit 1
}

# Prints the folder of a recipe's product: its name, its version and a hash of all that decides it.
recipe_folder() {
    local name=$1 recipe="$commonui_root/cmake/recipes/$1.sh" version extra
    version=$(sed -n 's/^version=//p' "$recipe" | head -1)
    extra=$(sed -n 's/^# depends: //p' "$recipe" | head -1)
    local hash files=("$recipe")
    for dependency in $extra; do
        files+=("$commonui_root/$dependency")
    done
    hash=$(cat "${files[@]}" | sha256sum | cut -c1-12)
    printf '%s\n' "$commonui_cache/$name-$version-$hash"
}
