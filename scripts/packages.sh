# Sourced by the other scripts. `need PACKAGE...` makes sure that Debian packages are there: it installs what is missing
# as root or through sudo, and otherwise names it and stops.

need() {
    local missing=()
    local package
    for package in "$@"; do
        dpkg-query -W -f='${Status}' "$package" 2>/dev/null | grep -q 'ok installed' || missing+=("$package")
    done
    [ ${#missing[@]} -eq 0 ] && return 0
    local as_root=()
    if [ "$(id -u)" -ne 0 ]; then
        if ! sudo -n true 2>/dev/null; then
            printf 'These packages are missing:\n  %s\nInstall them with\n  apt-get install %s\n' \
                "${missing[*]}" "${missing[*]}" >&2
            exit 1
        fi
        as_root=(sudo -n)
    fi
    echo "Installing: ${missing[*]}"
    "${as_root[@]}" apt-get update -qq
    DEBIAN_FRONTEND=noninteractive "${as_root[@]}" apt-get install -y -qq --no-install-recommends "${missing[@]}" >/dev/null
}

BUILD_PACKAGES=(g++ mold cmake ninja-build qt6-base-dev qt6-qpa-plugins libpugixml-dev libminizip-dev libdeflate-dev zlib1g-dev pkgconf libproj-dev proj-data libgl-dev libxkbcommon-dev fonts-dejavu-core)
DATA_PACKAGES=(libgdal-dev) # brings HDF5, too; without it there is no lmx::datasources
TEST_PACKAGES=(libgtest-dev libgmock-dev xvfb xauth python3 unzip)
CLANG_PACKAGES=(clang libclang-rt-dev)
