# Sourced by run, test and .ci/run: strict mode, the project's folder, the packages each needs.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

run_packages=(g++ cmake ninja-build libicu-dev icu-devtools libexpat1-dev libsqlite3-dev)
test_packages=("${run_packages[@]}" libgtest-dev libgmock-dev libxml2-dev locales tzdata)

# Installs those of the packages that are missing; where that is not allowed, says what to ask for and ends the script.
# RK_INSTALL=no keeps it from installing anything.
require_packages() {
    if ! command -v dpkg-query >/dev/null; then
        echo "This is no Debian system: make sure that it has what these packages bring: $*" >&2
        return
    fi
    local missing=() package
    for package in "$@"; do
        [[ $(dpkg-query -W -f='${Status}' "$package" 2>/dev/null) == *" ok installed" ]] || missing+=("$package")
    done
    [[ ${#missing[@]} -gt 0 ]] || return 0

    local as_root=()
    [[ $(id -u) -eq 0 ]] || as_root=(sudo -n)
    if [[ ${RK_INSTALL:-yes} == no ]] || ! "${as_root[@]}" true 2>/dev/null; then
        printf 'Packages are missing and may not be installed from here. Ask an administrator for:\n' >&2
        printf '    apt-get install %s\n' "${missing[*]}" >&2
        exit 1
    fi
    echo "Installing: ${missing[*]}"
    "${as_root[@]}" apt-get -q update
    "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive \
        apt-get -q install -y --no-install-recommends "${missing[@]}" </dev/null
}

# Configures and builds one preset: build PRESET [target]. A ccache on the machine is used. Warnings are errors only
# where RK_WERROR=ON, which .ci/run sets: a newer compiler or library must not stop a user.
build() {
    cmake --preset "$1" -DCMAKE_CXX_COMPILER_LAUNCHER="$(command -v ccache || true)" \
        -DRKUTILITIES_WERROR="${RK_WERROR:-OFF}" "${build_options[@]}" >/dev/null
    cmake --build "build/$1" --parallel "$(nproc)" --target "${2:-all}"
}
build_options=()

# The newest version of a package of LLVM that the machine has: newest_clang clang-N.
newest_clang() {
    local names
    names=$(apt-cache pkgnames "${1%N}" 2>/dev/null; compgen -c "${1%N}" || true)
    sed -nE "s/^${1%N}([0-9]+)\$/\1/p" <<<"$names" | sort -n | tail -1
}

# Installs packages of LLVM in the newest version and says it in $clang: require_clang clang-N clang-tidy-N.
require_clang() {
    clang=$(newest_clang "$1")
    if [[ -z $clang && $(id -u) -eq 0 && ${RK_INSTALL:-yes} != no ]]; then
        apt-get -q update
        clang=$(newest_clang "$1")
    fi
    require_packages "${@/N/${clang:=14}}"
}
build_clang() {
    local build_options=(-DCMAKE_CXX_COMPILER="clang++-$clang")
    build "$@"
}
