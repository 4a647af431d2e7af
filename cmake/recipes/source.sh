# Builds a Debian source package for our target with CMake. Sourced by recipes.
set -euo pipefail
source "$(dirname "$0")/apt.sh"

# build_source_package FOLDER NAME [CMAKE_OPTION...]: installs into FOLDER.
build_source_package() {
    local folder=$1 name=$2 recipes
    shift 2
    recipes=$(cd "$(dirname "$0")" && pwd)
    private_apt "$folder/apt" amd64 deb-src
    apt-get update
    (cd "$folder/apt" && apt-get source --download-only "$name" &&
        dpkg-source --no-check -x ./*.dsc source)
    cmake -G Ninja -S "$folder/apt/source" -B "$folder/apt/build" \
        -DCMAKE_TOOLCHAIN_FILE="$recipes/../mingw-i686.cmake" -DCMAKE_BUILD_TYPE=Release \
        -DCMAKE_INSTALL_PREFIX="$folder" "$@"
    cmake --build "$folder/apt/build" --target install
    rm -rf "$folder/apt"
}
