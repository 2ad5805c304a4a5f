# Shared by the scripts of this folder: what the project needs, installed when missing, and the build.

root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)

# Without it ccache keeps nothing that is compiled with a precompiled header, which is everything here.
export CCACHE_SLOPPINESS=pch_defines,time_macros

packages=(
    g++ lld cmake ninja-build ccache pkg-config
    qt6-base-dev qt6-base-dev-tools libmariadb-dev
    mariadb-server openssl unixodbc-dev odbcinst odbc-mariadb libsqliteodbc tdsodbc
    libsqlite3-dev sqlite3 libcsv-dev mdbtools-dev libzip-dev libxlsxwriter-dev python3-sqlglot libgl1-mesa-dev
    libqt6svg6 qt6-translations-l10n fonts-dejavu-core
)

# Installs the Debian packages named that are missing; silent when all are there.
install_missing() {
    local missing=()
    local name
    for name in "$@"; do
        dpkg-query -W -f='${Status}' "$name" 2>/dev/null | grep -q 'install ok installed' || missing+=("$name")
    done
    [ ${#missing[@]} -eq 0 ] && return 0
    local sudo=()
    [ "$(id -u)" -eq 0 ] || sudo=(sudo)
    echo "Installing: ${missing[*]}" >&2
    "${sudo[@]}" apt-get update -qq >&2
    DEBIAN_FRONTEND=noninteractive "${sudo[@]}" apt-get install -y -qq --no-install-recommends "${missing[@]}" >&2
}

# Prints the path of a database that Access itself has written, which a package of the npm registry ships; nothing where
# the registry cannot be reached.
access_sample() {
    local folder="$root/build/samples"
    local sample="$folder/package/test/fruit.mdb"
    if [ ! -f "$sample" ]; then
        command -v npm >/dev/null || install_missing npm || return 0
        mkdir -p "$folder"
        (cd "$folder" && npm pack --silent --fetch-retries=0 --fetch-timeout=20000 mdb@0.1.0 >/dev/null 2>&1 &&
            tar -xzf mdb-0.1.0.tgz package/test/fruit.mdb) || return 0
    fi
    echo "$sample"
}

# build PRESET [TARGET...]: configures once and builds.
build() {
    local preset=$1
    shift
    [ -f "$root/build/$preset/build.ninja" ] || cmake -S "$root" --preset "$preset" >&2
    cmake --build "$root/build/$preset" ${1:+--target "$@"} >&2
}
