# Installs the Debian packages that a script names and that this machine lacks. Sourced by run.sh and test.sh.

build_packages=(g++ cmake ninja-build ccache libacl1-dev libcli11-dev libcurl4-openssl-dev libsystemd-dev
    nlohmann-json3-dev)
# For the graphical program: the toolkit, what it shows vector pictures with, and the desktop's event sounds.
# shellcheck disable=SC2034
gui_packages=(qt6-base-dev qt6-svg-dev libcanberra-dev)
test_packages=(libgtest-dev libgmock-dev openssl python3-aiosmtpd)
# For another system: the compiler, the tests' library as sources, and what runs the result.
# shellcheck disable=SC2034
windows_packages=(g++-mingw-w64-x86-64-posix googletest wine64)
# shellcheck disable=SC2034
bench_packages=(libbenchmark-dev openssl acl aide time)

install_missing() {
    local package missing=()
    for package in "$@"; do
        [ "$(dpkg-query -W -f '${db:Status-Status}' "$package" 2>/dev/null)" = installed ] || missing+=("$package")
    done
    [ ${#missing[@]} -eq 0 ] && return
    echo "Installing from Debian: ${missing[*]}" >&2
    if [ "$(id -u)" -ne 0 ]; then
        echo "That needs root. As root: apt-get install ${missing[*]}" >&2
        exit 4
    fi
    export DEBIAN_FRONTEND=noninteractive
    # A fresh machine may be at its own first upgrade, and a mirror busy.
    local patience=(-o DPkg::Lock::Timeout=600 -o Acquire::Retries=5)
    {
        apt-get "${patience[@]}" update &&
            apt-get "${patience[@]}" install -y --no-install-recommends "${missing[@]}"
    } >/tmp/corvalence-apt.$$ 2>&1 || {
        cat /tmp/corvalence-apt.$$ >&2
        rm -f /tmp/corvalence-apt.$$
        echo "The packages could not be installed." >&2
        exit 4
    }
    rm -f /tmp/corvalence-apt.$$
}
