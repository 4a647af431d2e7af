# about: the servers and clients that sockets are tested with (about 30 MB, 20 seconds)
# depends: cmake/recipes/apt.sh
# check: bin/socat -V
version=1
set -euo pipefail
source "$(dirname "$0")/apt.sh"

# Unpacked with every library down to libc, so that neither the machine's services nor its versions
# matter: nothing is installed, nothing is started, and no root is needed.
folder=$1
root="$folder/root"
private_apt "$folder/apt" amd64 deb
apt-get update
apt-get -y --download-only install nginx openssh-server socat openssl

mkdir -p "$root" "$folder/bin"
for package in "$folder"/apt/cache/archives/*.deb; do
    case ${package##*/} in
    perl* | libperl* | dpkg_* | debconf_* | iproute2_* | passwd_* | procps_*) continue ;;
    esac
    dpkg-deb --fsys-tarfile "$package" |
        tar -x -C "$root" --exclude=./usr/share --exclude=./etc --exclude=./var --exclude='*/gconv'
done
rm -rf "$folder/apt"

# The path is inherited by the libraries' own libraries, but not by the programs that these start.
libraries="$root/lib/x86_64-linux-gnu:$root/usr/lib/x86_64-linux-gnu"
for program in sbin/nginx sbin/sshd bin/ssh-keygen bin/socat bin/openssl; do
    patchelf --set-interpreter "$root/lib/x86_64-linux-gnu/ld-linux-x86-64.so.2" \
        --force-rpath --set-rpath "$libraries" "$root/usr/$program"
    ln -s "$root/usr/$program" "$folder/bin/"
done
"$folder/bin/nginx" -v
"$folder/bin/openssl" version
"$folder/bin/socat" -V
