# about: 32-bit Wine, fetched and unpacked beside the system (about 160 MB, 20 seconds)
# depends: cmake/recipes/apt.sh
version=8.0
set -euo pipefail
source "$(dirname "$0")/apt.sh"

# The machine's own i386 packages would have to match its amd64 ones to the letter, which a machine
# that is newer than the archive cannot offer. A private unpack needs no root, no foreign
# architecture, and gives every machine the same Wine.
folder=$1
root="$folder/root"
private_apt "$folder/apt" i386 deb
apt-get update
apt-get -y --download-only install wine32 fonts-wine fonts-liberation fonts-droid-fallback

mkdir -p "$root"
for package in "$folder"/apt/cache/archives/*.deb; do
    dpkg-deb --fsys-tarfile "$package" |
        tar -x -C "$root" --exclude=./usr/share/doc --exclude=./usr/share/man \
            --exclude='*/x86_64-windows'
done
rm -rf "$folder/apt"

# Wine takes a DLL for its own by a mark in the DOS stub; Debian ships zlib without that mark.
zlib="$root/usr/i686-w64-mingw32/lib/zlib1.dll"
{
    head -c 64 "$zlib"
    printf 'Wine builtin DLL'
    head -c 16 /dev/zero
    tail -c +97 "$zlib"
} >"$root/usr/lib/i386-linux-gnu/wine/i386-windows/zlib1.dll"

# Beside the loader stands a script that looks for the server in the system's own folders only.
mv "$root/usr/lib/wine/wineserver32" "$root/usr/lib/wine/wineserver"
mkdir -p "$folder/bin"
for program in wine wineserver; do
    patchelf --set-interpreter "$root/lib/i386-linux-gnu/ld-linux.so.2" "$root/usr/lib/wine/$program"
    cat >"$folder/bin/$program" <<TEXT
#!/bin/sh
export LD_LIBRARY_PATH="$root/lib/i386-linux-gnu:$root/usr/lib/i386-linux-gnu"
exec "$root/usr/lib/wine/$program" "\$@"
TEXT
    chmod +x "$folder/bin/$program"
done
timeout 60 "$folder/bin/wine" --version
