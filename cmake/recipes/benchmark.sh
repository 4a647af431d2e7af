# about: Google Benchmark from Debian's source package, cross-built (about 20 seconds)
# depends: cmake/recipes/apt.sh cmake/recipes/source.sh cmake/mingw-i686.cmake
version=1.7.1
source "$(dirname "$0")/source.sh"
# Outside a git checkout its build scripts find no version; they are told.
build_source_package "$1" benchmark -DBENCHMARK_ENABLE_TESTING=OFF \
    -DBENCHMARK_ENABLE_GTEST_TESTS=OFF -DGENERIC_LIB_VERSION=$version -DGENERIC_LIB_SOVERSION=1
