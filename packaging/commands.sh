# What ./run, ./test, ./bench and .ci/run share; read by them with "." in the project's folder.

# prepare SECTION…: the packages, and a build folder that this person may write to.
prepare() {
    packaging/install-packages.sh "$@"
    mkdir -p build 2>/dev/null || true
    local foreign
    foreign=$(find build -maxdepth 2 ! -writable -print -quit 2>/dev/null || echo build)
    if [ ! -d build ] || [ -n "$foreign" ]; then
        echo "$PWD/build belongs to $(stat -c %U build 2>/dev/null || stat -c %U .): remove it or build as that user." >&2
        exit 1
    fi
}

# The compiler's cache serves every clone of the project, wherever it lies.
export CCACHE_BASEDIR=$PWD CCACHE_NOHASHDIR=true

# build PRESET [TARGET…]: configures and builds.
build() {
    local preset=$1
    shift
    cmake --preset "$preset" --log-level=WARNING
    cmake --build --preset "$preset" ${1:+--target "$@"}
}

# Whether a display is named in the environment and answers.
has_display() {
    if [ -n "${DISPLAY:-}" ] && xdpyinfo >/dev/null 2>&1; then
        return 0
    fi
    [ -n "${WAYLAND_DISPLAY:-}" ] && [ -S "$(wayland_socket)" ]
}

wayland_socket() {
    case $WAYLAND_DISPLAY in
    /*) echo "$WAYLAND_DISPLAY" ;;
    *) echo "${XDG_RUNTIME_DIR:-/nowhere}/$WAYLAND_DISPLAY" ;;
    esac
}
