# SPDX-FileCopyrightText: The RuvMod authors
# SPDX-License-Identifier: Apache-2.0
#
# Sourced by ./run, ./test and .ci/run from the top folder.
# shellcheck shell=bash

fail() {
    echo "$(basename "$0"): $*" >&2
    exit 1
}

# CMake takes a semicolon in a path for the end of it, but not behind a link.
if [[ $PWD == *';'* ]]; then
    link=${XDG_CACHE_HOME:-$HOME/.cache}/ruvmod-$(printf '%s' "$PWD" | cksum | cut -d ' ' -f 1)
    mkdir -p "$(dirname "$link")"
    ln -sfn "$PWD" "$link"
    cd "$link" || exit
fi

# need_packages SECTION... installs what is missing of these sections of cmake/packages.txt.
need_packages() {
    local -a wanted=() missing=() root=()
    local section package installed
    for section in "$@"; do
        mapfile -t -O "${#wanted[@]}" wanted < <(awk -v header="[$section]" \
            '/^\[/ { inside = ($0 == header); next } inside && NF && !/^#/ { print $1 }' cmake/packages.txt)
    done
    if ! command -v dpkg-query >/dev/null; then
        echo "This is no Debian: what the build needs is listed in cmake/packages.txt." >&2
        return
    fi
    installed=$(dpkg-query --show --showformat='${db:Status-Status} ${Package}\n' "${wanted[@]}" 2>/dev/null || true)
    for package in "${wanted[@]}"; do
        grep -qxF "installed $package" <<<"$installed" || missing+=("$package")
    done
    [[ ${#missing[@]} -gt 0 ]] || return 0

    if [[ $(id -u) -ne 0 ]]; then
        command -v sudo >/dev/null ||
            fail "please install these packages as root, then call again: ${missing[*]}"
        root=(sudo)
    fi
    echo "Installing: ${missing[*]}" >&2
    "${root[@]}" apt-get update -q >&2 || true # what is not found is said below
    "${root[@]}" env DEBIAN_FRONTEND=noninteractive \
        apt-get install -q -y --no-install-recommends "${missing[@]}" >&2 ||
        fail "these packages are missing and could not be installed (is there a network?): ${missing[*]}"
}

# Sections that the workstation adds, empty while the tree has none.
desktop_section() {
    if [[ -e standalone/desktop/main.cpp ]]; then
        echo desktop
    fi
}

configure() {
    local log
    log=$(cmake --preset "$1" 2>&1) || fail "configuring the preset $1 failed:"$'\n'"$log"
}

# build PRESET [TARGET]: configures and builds; what the tools say goes to stderr.
build() {
    configure "$1"
    cmake --build --preset "$1" --parallel "$(nproc)" --target "${2:-all}" >&2
}
