#!/bin/bash
# Shows that a fresh Debian 12 with git and nothing else can run and test the project: builds such a system in a folder,
# clones this project into it, runs ./run and ./test as root and then, with the packages present, as an ordinary user who
# has a clone of their own. Prints what each step took. Needs root, debootstrap and the network of the packages.
# The bare system and the fetched packages are kept in CACHE and used again; the rest is made anew and removed.
# usage: packaging/check-clean.sh CACHE
set -eu

if (($# != 1)) || (($(id -u) != 0)); then
    sed -n '2,7s/^# //p' "$0" >&2
    exit 2
fi
project=$(cd "$(dirname "$0")/.." && pwd)
mkdir -p "$1"
cache=$(cd "$1" && pwd)
base=$cache/bookworm
system=$cache/system
user=person
times=()

mounted() {
    findmnt -rno TARGET | grep "^$system/" || true
}

unmount_all() {
    # The deepest first; a busy one goes as soon as its last user does.
    mounted | sort -r | while read -r target; do
        umount "$target" 2>/dev/null || umount -l "$target"
    done
}

# Programs that still run in the system, all of them started here.
stop_inside() {
    local process
    for process in /proc/[0-9]*; do
        if [ "$(readlink "$process/root" 2>/dev/null)" = "$system" ]; then
            kill -KILL "${process#/proc/}" 2>/dev/null || true
        fi
    done
}

finish() {
    trap - EXIT INT TERM
    stop_inside
    unmount_all
    if [ -n "$(mounted)" ]; then
        echo "Something is still mounted below $system; nothing is removed." >&2
    else
        rm -rf "$system"
    fi
}

# The machine's own sources, so that a mirror or a snapshot configured here is used there. Never part of the project.
apt_sources() {
    rm -f "$1/etc/apt/sources.list"
    cp -a /etc/apt/sources.list "$1/etc/apt/" 2>/dev/null || true
    local file
    for file in /etc/apt/sources.list.d/*; do
        if grep -qs debian-archive-keyring "$file" || grep -qsE 'debian(-security)?/? ' "$file"; then
            cp -a "$file" "$1/etc/apt/sources.list.d/"
        fi
    done
    cp -a /etc/apt/apt.conf "$1/etc/apt/" 2>/dev/null || true
    for file in /etc/apt/apt.conf.d/*; do
        if grep -qsiE 'proxy|Check-Valid-Until|Check-Date' "$file"; then
            cp -a "$file" "$1/etc/apt/apt.conf.d/"
        fi
    done
}

mirror() {
    apt-cache policy | sed -n 's,.* \(http[^ ]*/debian\) bookworm/main .*,\1,p' | head -n 1
}

make_base() {
    [ -e "$base/etc/debian_version" ] && return
    rm -rf "$base.part"
    debootstrap --variant=minbase --include=git,ca-certificates bookworm "$base.part" "$(mirror)"
    mv "$base.part" "$base"
}

make_system() {
    rm -rf "$system"
    cp -a "$base" "$system"
    apt_sources "$system"
    cp -L /etc/resolv.conf "$system/etc/resolv.conf"
    mount -t proc proc "$system/proc"
    mount -t sysfs -o ro sysfs "$system/sys"
    mount -t tmpfs -o mode=755 tmpfs "$system/dev"
    local device
    for device in null zero full random urandom tty; do
        touch "$system/dev/$device"
        mount --bind "/dev/$device" "$system/dev/$device"
    done
    ln -s /proc/self/fd "$system/dev/fd"
    mkdir "$system/dev/pts" "$system/dev/shm"
    mount -t devpts -o newinstance,ptmxmode=0666,mode=620 devpts "$system/dev/pts"
    ln -s pts/ptmx "$system/dev/ptmx"
    mount -t tmpfs -o mode=1777 tmpfs "$system/dev/shm"
    mkdir -p "$cache/archives"
    mount --bind "$cache/archives" "$system/var/cache/apt/archives"
    git clone --quiet --no-hardlinks "$project" "$system/root/project"
}

# inside USER COMMAND…: in that person's project folder, in a bare environment.
inside() {
    local name=$1 home
    shift
    home=$(chroot "$system" getent passwd "$name" | cut -d : -f 6)
    chroot --userspec="$name" "$system" /usr/bin/env -i HOME="$home" USER="$name" LANG=C \
        PATH=/usr/local/sbin:/usr/local/bin:/usr/sbin:/usr/bin:/sbin:/bin \
        sh -c 'cd "$HOME/project" && exec "$@"' sh "$@"
}

timed() {
    local start=$SECONDS status=0
    # In the background, so that a signal to this script is heard at once.
    inside "$@" </dev/null &
    wait $! || status=$?
    times+=("$(printf '%-40s %3d min %02d s, exit status %d' "$*" $(((SECONDS - start) / 60)) $(((SECONDS - start) % 60)) $status)")
    return $status
}

report() {
    printf '%s\n' "${times[@]}"
}

trap finish EXIT
trap 'exit 130' INT
trap 'exit 143' TERM
stop_inside
unmount_all
make_base
make_system

failures=0
for name in root $user; do
    if [ "$name" = "$user" ]; then
        chroot "$system" useradd -m -s /bin/sh "$user"
        git clone --quiet --no-hardlinks "$project" "$system/home/$user/project"
        chroot "$system" chown -R "$user:" "/home/$user/project"
    fi
    # The second ./run of each shows that it can be repeated.
    for command in ./run ./test ./run; do
        timed "$name" "$command" || failures=$((failures + 1))
        cp "$system$(chroot "$system" getent passwd "$name" | cut -d : -f 6)/project/build/run.png" "$cache/run-$name.png" || true
    done
done
report
exit $((failures > 0))
