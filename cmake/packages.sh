# Installs what is missing of the Debian packages named as arguments; silent when nothing is.
# Works as root or with sudo.
need_packages() {
    local missing=() package
    for package in "$@"; do
        dpkg-query -W -f='${db:Status-Status}' "$package" 2>/dev/null | grep -qx installed ||
            missing+=("$package")
    done
    [ ${#missing[@]} -eq 0 ] && return 0
    local root=()
    if [ "$(id -u)" -ne 0 ]; then
        command -v sudo >/dev/null || {
            echo "These packages are missing and neither root nor sudo is there: ${missing[*]}" >&2
            return 1
        }
        root=(sudo)
    fi
    echo "Installing ${missing[*]}"
    # Of the database server its programs are wanted, not the one that the package would start.
    local clusters=/etc/postgresql-common/createcluster.conf
    if [[ " ${missing[*]} " == *" postgresql "* && ! -e $clusters ]]; then
        "${root[@]}" mkdir -p "${clusters%/*}"
        echo "create_main_cluster = false" | "${root[@]}" tee "$clusters" >/dev/null
    fi
    local log
    log=$(mktemp)
    if ! { "${root[@]}" apt-get update -qq &&
        "${root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get install -y -qq \
            --no-install-recommends "${missing[@]}"; } >"$log" 2>&1; then
        cat "$log" >&2
        rm -f "$log"
        return 1
    fi
    rm -f "$log"
}

build_packages=(g++ cmake ninja-build ccache pkg-config qt6-base-dev qt6-svg-dev libsqlite3-dev libpq-dev
    libshp-dev dbus libfmt-dev libcrypt-dev libarchive-dev libproj-dev libcairo2-dev
    libosmium2-dev libprotozero-dev zlib1g-dev
    libharfbuzz-dev libfribidi-dev
    libfontconfig-dev libxlsxwriter-dev libtiff-dev libcups2-dev mdbtools-dev fonts-roboto-unhinted
    fonts-dejavu-core)
test_packages=(libgtest-dev libgmock-dev dbus procps sqlite3 poppler-utils qpdf python3-openpyxl
    unrtf libtiff-tools libxml2-utils tidy zstd postgresql)

# Configures and builds a preset; prints what the build does only when it does something or fails.
build_preset() {
    local preset=$1 log
    shift
    log=$(mktemp)
    [ -f "build/$preset/build.ninja" ] || echo "Configuring $preset"
    if ! cmake --preset "$preset" "$@" >"$log" 2>&1; then
        cat "$log" >&2
        rm -f "$log"
        return 1
    fi
    ninja -C "build/$preset" -n | grep -q 'no work to do' || echo "Building $preset"
    if ! cmake --build --preset "$preset" >"$log" 2>&1; then
        grep -vE '^\[[0-9]+/[0-9]+\] (Building|Linking|Generating|Automatic)' "$log" >&2
        rm -f "$log"
        return 1
    fi
    rm -f "$log"
}
