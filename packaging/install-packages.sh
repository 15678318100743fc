#!/bin/sh
# Installs the Debian packages of the named sections of debian-packages.txt (build, run, …) that are missing.
# Touches neither network nor privileges when nothing is, so that repeats are quick and work offline.
# usage: packaging/install-packages.sh SECTION…
set -eu

list=$(dirname "$0")/debian-packages.txt
export LC_ALL=C

packages_of() {
    awk -v wanted="$1" '
        /^\[/ { section = substr($0, 2, length($0) - 2); found = found || section == wanted; next }
        /^#/ || /^$/ { next }
        section == wanted { print $1 }
        END { exit !found }' "$list" || { echo "$list has no section [$1]" >&2; exit 2; }
}

is_installed() {
    [ "$(dpkg-query -W -f '${db:Status-Status}' "$1" 2>/dev/null)" = installed ]
}

as_root() {
    if [ "$(id -u)" = 0 ]; then
        "$@"
    elif command -v sudo >/dev/null; then
        sudo "$@"
    else
        echo "Installing packages needs root, and there is no sudo. As root, run: $*" >&2
        exit 1
    fi
}

if ! command -v dpkg-query >/dev/null || ! command -v apt-get >/dev/null; then
    echo "This is no Debian: make sure that the counterparts of $list are installed." >&2
    exit 0
fi

missing=
for section in "$@"; do
    packages=$(packages_of "$section")
    for package in $packages; do
        is_installed "$package" || missing="$missing $package"
    done
done
[ -n "$missing" ] || exit 0

echo "Installing:$missing"
as_root apt-get update -qq
# shellcheck disable=SC2086 # one word for each package
as_root env DEBIAN_FRONTEND=noninteractive apt-get install -qq -y --no-install-recommends \
    -o DPkg::Lock::Timeout=300 $missing
