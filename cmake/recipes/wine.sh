# about: 32-bit Wine, fetched and unpacked beside the system (about 160 MB, 20 seconds)
# depends: cmake/recipes/apt.sh
# check: bin/wine --version
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
libraries="$root/lib/i386-linux-gnu:$root/usr/lib/i386-linux-gnu"
for program in wine wineserver; do
    patchelf --set-interpreter "$root/lib/i386-linux-gnu/ld-linux.so.2" "$root/usr/lib/wine/$program"
done

# Some virtual machines have a kernel that runs no 32-bit programs. There QEMU's user mode runs the
# loader, which finds itself again by a script of its own name; the server, whose protocol is the
# same for all, is the 64-bit one. Earlier QEMU than that of the backports lacks an mmap flag of
# Wine's, which costs a minute a process.
emulate_loader() {
    local suite
    suite="$(. /etc/os-release && echo "$VERSION_CODENAME")-backports"
    private_apt "$folder/apt" amd64 deb "$suite"
    apt-get update
    (cd "$folder/apt" && apt-get -t "$suite" download qemu-user && apt-get download wine64)
    mkdir -p "$folder/bin"
    dpkg-deb --fsys-tarfile "$folder"/apt/qemu-user_*.deb |
        tar -x -O ./usr/bin/qemu-i386 >"$folder/bin/qemu-i386"
    dpkg-deb --fsys-tarfile "$folder"/apt/wine64_*.deb |
        tar -x -O ./usr/lib/wine/wineserver64 >"$root/usr/lib/wine/wineserver"
    rm -rf "$folder/apt"
    mv "$root/usr/lib/wine/wine" "$root/usr/lib/wine/wine.elf"
    cat >"$root/usr/lib/wine/wine" <<TEXT
#!/bin/sh
exec "$folder/bin/qemu-i386" -0 "$root/usr/lib/wine/wine" -E "LD_LIBRARY_PATH=$libraries" \
    "$root/usr/lib/wine/wine.elf" "\$@"
TEXT
    chmod +x "$folder/bin/qemu-i386" "$root/usr/lib/wine/wine"
    # To map its memory first, the loader would start another one, past the emulator. Forbidden that,
    # it takes its own options for programs.
    environment='[ "$1" = --version ] || export WINELOADERNOEXEC=1'
}

environment="export LD_LIBRARY_PATH=\"$libraries\""
status=0
"$root/lib/i386-linux-gnu/ld-linux.so.2" --version >/dev/null 2>&1 || status=$?
[ $status -ne 126 ] || emulate_loader

mkdir -p "$folder/bin"
for program in wine wineserver; do
    cat >"$folder/bin/$program" <<TEXT
#!/bin/sh
$environment
exec "$root/usr/lib/wine/$program" "\$@"
TEXT
    chmod +x "$folder/bin/$program"
done
timeout 60 "$folder/bin/wine" --version
