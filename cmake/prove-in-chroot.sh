#!/usr/bin/env bash
# SPDX-FileCopyrightText: The RuvMod authors
# SPDX-License-Identifier: Apache-2.0
#
# cmake/prove-in-chroot.sh FOLDER, as root: shows that a clone on a fresh minimal Debian 12 needs nothing but
# ./run and ./test. FOLDER must not exist; it takes some gigabytes and stays, for a look at what happened.
set -euo pipefail
here=$(cd "$(dirname "$(readlink -f "$0")")/.." && pwd)
[[ $# -eq 1 ]] || { echo "usage: $0 FOLDER" >&2; exit 2; }
[[ $(id -u) -eq 0 ]] || { echo "$0: only root can debootstrap" >&2; exit 1; }
[[ ! -e $1 ]] || { echo "$0: $1 exists already" >&2; exit 1; }
mkdir -p "$1"
root=$(cd "$1" && pwd)

# The machine's own mirror and how it is reached.
# shellcheck disable=SC2016 # the dollar is for apt
mirror=$(apt-get indextargets --format '$(SITE)' 'Created-By: Packages' | grep -m 1 -E "/debian/?$" || true)
debootstrap --variant=minbase --include=ca-certificates,git bookworm "$root" "${mirror:-http://deb.debian.org/debian}"
cp /etc/resolv.conf /etc/hosts "$root/etc/"
for file in /etc/apt/sources.list /etc/apt/sources.list.d/debian.sources; do
    if [[ -e $file ]]; then
        cp "$file" "$root$file"
    fi
done
apt-config dump | grep -iE '^Acquire::(https?|ftp)::' >"$root/etc/apt/apt.conf.d/90machine" || true
cp -r /etc/ssl/certs/. "$root/etc/ssl/certs/"
if [[ -d /usr/local/share/ca-certificates ]]; then
    cp -rL /usr/local/share/ca-certificates/. "$root/usr/local/share/ca-certificates/"
fi

mounted=()
unmount() {
    for folder in "${mounted[@]}"; do
        umount --lazy "$folder"
    done
}
trap unmount EXIT
mount -t proc proc "$root/proc" && mounted+=("$root/proc")
mount --rbind /dev "$root/dev" && mount --make-rslave "$root/dev" && mounted+=("$root/dev")

git clone --no-local "$here" "$root/root/ruvmod"
inside() {
    local started=$SECONDS
    echo "==== $*"
    env -i HOME=/root TERM=dumb PATH=/usr/sbin:/usr/bin:/sbin:/bin \
        ${http_proxy:+http_proxy="$http_proxy"} ${https_proxy:+https_proxy="$https_proxy"} \
        chroot "$root" sh -c "cd /root/ruvmod && $*"
    echo "==== $* took $((SECONDS - started)) s"
}
inside ./run
inside ./run mask 400 4662=0,8 press:105
inside ./test
echo "A fresh Debian runs and tests the clone in $root/root/ruvmod."
