# about: GoogleTest from Debian's source package, cross-built (about 20 seconds)
# depends: cmake/recipes/apt.sh cmake/recipes/source.sh cmake/mingw-i686.cmake
version=1.12
source "$(dirname "$0")/source.sh"
build_source_package "$1" googletest
