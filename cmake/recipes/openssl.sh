# about: OpenSSL 3 from Debian's source package, cross-built (about 70 seconds)
# depends: cmake/recipes/apt.sh
version=3.0
set -euo pipefail
source "$(dirname "$0")/apt.sh"

folder=$1
private_apt "$folder/apt" amd64 deb-src
apt-get update
(cd "$folder/apt" && apt-get source --download-only openssl &&
    dpkg-source --no-check -x ./*.dsc source)
source="$folder/apt/source"
# Debian's change for position-independent code makes relocations that Windows' format lacks.
patch -R -p1 -d "$source" <"$source/debian/patches/pic.patch"

# A time_t of 64 bits, as every other build of these DLLs for Windows has: with the compiler's own of
# 32, certificates cannot outlast 2038. What neither certificates nor TLS need is left out.
mkdir "$folder/apt/build"
cd "$folder/apt/build"
"$source/Configure" mingw --cross-compile-prefix=i686-w64-mingw32- \
    shared no-tests no-engine no-module no-legacy no-cmp no-cms no-ct no-ts no-srp no-gost no-aria \
    no-bf no-camellia no-cast no-idea no-md4 no-mdc2 no-rc2 no-rc4 no-rc5 no-rmd160 no-seed no-sm2 \
    no-sm3 no-sm4 no-whirlpool no-blake2 no-ocsp no-psk no-sctp no-ssl-trace no-uplink \
    no-weak-ssl-ciphers -O2 -D__MINGW_USE_VC2005_COMPAT
make -j2 build_generated
make -j2 libcrypto-3.dll libssl-3.dll
mkdir "$folder/bin"
for library in libcrypto-3.dll libssl-3.dll; do
    i686-w64-mingw32-strip --strip-debug -o "$folder/bin/$library" "$library"
done
cp "$source/LICENSE.txt" "$folder/"
cd "$folder"
rm -rf "$folder/apt"
