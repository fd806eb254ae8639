# The Debian packages that the other scripts need, and their installation. Bash, to be
# sourced.

build_packages=(g++ cmake ninja-build pkg-config qt6-base-dev libsystemd-dev libfontconfig-dev
                libwayland-dev wayland-protocols fonts-inter fonts-dejavu-core)
# A virtual display and session, and what the UI test driver uses.
display_packages=(xvfb openbox xdotool dbus at-spi2-core python3-gi
                  imagemagick x11-utils x11-xserver-utils procps)
test_packages=(libgtest-dev libgmock-dev fonts-noto-core locales xclip
               desktop-file-utils appstream man-db)
# What scripts/test --all adds.
check_packages=(clang-14 clang-tidy-14 clang-format-14 libclang-rt-14-dev reuse
                libbenchmark-dev libxcb1-dev libxcb-damage0-dev)

# ensure_packages NAME...: installs those that are missing, after a message.
ensure_packages() {
    local missing=() package
    for package in "$@"; do
        dpkg-query -W -f='${Status}' "$package" 2>/dev/null | grep -q 'install ok installed' ||
            missing+=("$package")
    done
    [ ${#missing[@]} -eq 0 ] && return 0
    local as_root=()
    if [ "$(id -u)" -ne 0 ]; then
        command -v sudo >/dev/null || {
            echo "These packages are missing, and there is neither root nor sudo to install them: ${missing[*]}" >&2
            return 1
        }
        as_root=(sudo)
    fi
    echo "Installing with apt-get: ${missing[*]}"
    local log
    log=$(mktemp)
    if ! { "${as_root[@]}" apt-get update &&
        "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive \
            apt-get install -y --no-install-recommends "${missing[@]}"; } >"$log" 2>&1 </dev/null; then
        tail -n 20 "$log" >&2
        echo "The installation failed; all of its output is in $log" >&2
        return 1
    fi
    rm -f "$log"
}

# configure PRESET: unless that was done since CMakePresets.json changed. The build itself
# configures anew for any other change.
configure() {
    [ "build/$1/build.ninja" -nt CMakePresets.json ] || cmake --preset "$1" >/dev/null
}
