# Sourced by what needs a bare root of a Debian release.

# make_root RELEASE: its folder is $root afterwards, and goes at the end; RK_ROOT names a folder to keep it in. Ends the
# script in peace, with a word why, where no root can be made.
make_root() {
    local release=$1
    [[ $(id -u) -eq 0 ]] || no_root "only root may make a root"
    command -v apt-get >/dev/null || no_root "this is no Debian system"
    unshare --mount --pid --fork true 2>/dev/null || no_root "mounts are not allowed here"
    require_packages debootstrap
    find_mirror

    root=${RK_ROOT:-$(mktemp -d)}
    [[ -n ${RK_ROOT:-} ]] || trap 'rm -rf --one-file-system "$root" "$root.log"' EXIT
    chmod 755 "$root"
    if [[ ! -e $root/etc/debian_version ]]; then
        debootstrap --variant=minbase "$release" "$root" "$mirror" >"$root.log" 2>&1 || { cat "$root.log" >&2; exit 1; }
    fi
    cp /etc/resolv.conf "$root/etc/resolv.conf"
    echo 'Acquire::Check-Valid-Until "false";' >"$root/etc/apt/apt.conf.d/snapshot"  # a mirror may stand still
    chroot "$root" apt-get -q update >/dev/null
}
no_root() {
    echo "What needs a bare root of Debian did not run: $1"
    exit 0
}
# Where the machine's own packages come from: $mirror.
find_mirror() {
    mirror=$(apt-get indextargets --format '$(REPO_URI)' 'Created-By: Packages' | grep -v security | sort -u | head -1 || true)
    [[ -n $mirror ]] || no_root "no package mirror is set up"
}

# in_root USER COMMAND: devices and processes of the root's own; what the machine has of them is out of reach.
in_root() {
    echo "-- in a bare root, $1: $2"
    unshare --mount --pid --fork --kill-child bash -euc '
        root=$1 user=$2 command=$3
        mount -t proc proc "$root/proc"
        mount -t tmpfs -o mode=755 devices "$root/dev"
        for device in null,3 zero,5 full,7 random,8 urandom,9; do
            mknod -m 666 "$root/dev/${device%,*}" c 1 "${device#*,}"
        done
        ln -s /proc/self/fd "$root/dev/fd"
        ln -s /proc/self/fd/1 "$root/dev/stdout"
        mkdir -m 1777 "$root/dev/shm"
        mkdir "$root/dev/pts"
        mount -t devpts -o newinstance,ptmxmode=0666,mode=620 terminals "$root/dev/pts"
        ln -s pts/ptmx "$root/dev/ptmx"
        home=$(chroot "$root" getent passwd "$user" | cut -d: -f6)
        exec env -i PATH=/usr/local/sbin:/usr/local/bin:/usr/sbin:/usr/bin:/sbin:/bin TERM=dumb HOME="$home" \
            RK_WERROR="${RK_WERROR:-OFF}" \
            CCACHE_DIR=/tmp/ccache CCACHE_UMASK=000 CCACHE_NOHASHDIR=1 CCACHE_BASEDIR="$home/RkUtilities" \
            chroot "$root" su "$user" -c "cd ~ && $command"' in_root "$root" "$1" "$2"
}
