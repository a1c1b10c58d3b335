# shellcheck shell=bash
# Shared by qt-windows.sh and qt-tsan.sh: how a variant of Qt is built once from the distribution's own source package
# and kept in a cache folder outside the checkout.
#
# A script that sources this file sets
#   QT_VARIANT    a word that names the variant, part of the folder name
#   QT_COMPILER   the C++ compiler, a command; its version is part of the folder name's hash
#   QT_FLAGS      an array, the variant's own arguments of Qt's configure; they may take back what is left out here
# defines a function
#   qt_make       builds and installs; run in an empty build folder with the variables below set
# and calls qt_build_once, which prints the install prefix as the only line on standard output.
#
# For qt_make:
#   QT_SOURCE     the unpacked source tree
#   QT_PREFIX     where the result will lie at last; what configure is told
#   QT_STAGE      the folder that stands for / while installing ("make install INSTALL_ROOT=$QT_STAGE")
#   qt_configure  runs configure with the common and the variant's arguments

QT_SOURCE_PACKAGE=qtbase-opensource-src

# Core alone: what the library does not use would only cost build time and bring further libraries along.
QT_COMMON_FLAGS=(
    -opensource -confirm-license -shared -nomake examples -nomake tests -nomake tools
    -no-gui -no-widgets -no-dbus -no-opengl -no-openssl -no-icu -qt-pcre -qt-zlib
    -no-feature-sql -no-feature-network -no-feature-xml -no-feature-concurrent -no-feature-testlib -no-pch
)

qt_say() {
    echo "qt-$QT_VARIANT: $*" >&2
}

qt_fail() {
    qt_say "$@"
    exit 1
}

qt_require() {
    local tool
    for tool in "$@"; do
        command -v "$tool" >/dev/null || qt_fail "$tool is missing"
    done
}

# The source version behind the development package that apt offers, so that variant and native Qt are one version.
qt_source_version() {
    local version
    version=$(apt-cache show --no-all-versions qtbase5-dev | awk '
        $1 == "Source:" && $3 != "" { gsub(/[()]/, "", $3); source = $3 }
        $1 == "Version:"            { binary = $2; sub(/\+b[0-9]+$/, "", binary) }
        END                         { print (source != "" ? source : binary) }')
    [[ -n $version ]] || qt_fail "apt knows no qtbase5-dev: run apt-get update"
    echo "$version"
}

# Fills a private folder with the machine's own package sources, asking for source packages instead of binary ones.
# Those of the system stay as they are: a third-party source without source packages would break the next update.
qt_private_sources() {
    local parts=$1 file
    for file in /etc/apt/sources.list /etc/apt/sources.list.d/*.list; do
        [[ -r $file ]] || continue
        sed -nE 's/^[[:space:]]*deb(-src)?[[:space:]]/deb-src /p' "$file" | sort -u \
            >"$parts/$(basename "$file" .list).list"
    done
    for file in /etc/apt/sources.list.d/*.sources; do
        [[ -r $file ]] || continue
        sed -E 's/^Types:.*/Types: deb-src/I' "$file" >"$parts/$(basename "$file")"
    done
}

# Unpacks the source package in that version to the folder $1/source.
qt_fetch_source() {
    local folder=$1 version=$2 apt=$1/apt
    mkdir -p "$apt"/{parts,lists/partial,cache/archives/partial}
    qt_private_sources "$apt/parts"
    # The sandbox user cannot enter a home folder, and nothing here needs one.
    local options=(
        -q -o Dir::Etc::sourcelist=/dev/null -o Dir::Etc::sourceparts="$apt/parts"
        -o Dir::State::Lists="$apt/lists" -o Dir::Cache="$apt/cache" -o APT::Sandbox::User=root
    )
    apt-get "${options[@]}" update
    (cd "$folder" && apt-get "${options[@]}" --only-source source "$QT_SOURCE_PACKAGE=$version")
    mv "$folder/$QT_SOURCE_PACKAGE"-*/ "$folder/source"
    rm -rf "$apt" "$folder/$QT_SOURCE_PACKAGE"_*
}

qt_configure() {
    "$QT_SOURCE/configure" -prefix "$QT_PREFIX" "${QT_COMMON_FLAGS[@]}" "${QT_FLAGS[@]}"
}

# Leaves no half-made folder behind; after a failure the log stays and its end is shown.
qt_clean_up() {
    local status=$?
    rm -rf "$QT_WORK"
    if ((status != 0)) && [[ -f $QT_LOG ]]; then
        tail -n 40 "$QT_LOG" >&2
        qt_say "failed; the whole log is $QT_LOG"
    fi
}

# Builds below $QT_WORK and moves the finished folder to $QT_PREFIX in one step: a folder of that name is always whole.
qt_build() {
    local version=$1 start=$SECONDS
    rm -rf "$QT_WORK" "$QT_PREFIX"
    mkdir -p "$QT_WORK/build" "$QT_STAGE"
    trap qt_clean_up EXIT
    qt_say "building $QT_SOURCE_PACKAGE $version for $QT_PREFIX, log in $QT_LOG"
    {
        qt_fetch_source "$QT_WORK" "$version"
        cd "$QT_WORK/build" || exit
        qt_make
    } >"$QT_LOG" 2>&1 </dev/null
    cd /
    qt_description "$version" >"$QT_STAGE$QT_PREFIX/.finished"
    mv "$QT_STAGE$QT_PREFIX" "$QT_PREFIX"
    rm -f "$QT_LOG"
    qt_say "done in $(((SECONDS - start + 59) / 60)) min"
}

qt_description() {
    echo "source: $QT_SOURCE_PACKAGE $1"
    echo "compiler: $("$QT_COMPILER" --version | head -n 1)"
    echo "configure: ${QT_COMMON_FLAGS[*]} ${QT_FLAGS[*]}"
}

qt_build_once() {
    local cache=${QUIRE_CACHE:-${XDG_CACHE_HOME:-$HOME/.cache}/quire} version hash
    [[ $cache == /* && $cache != *[[:space:]]* ]] || qt_fail "not an absolute path without blanks: $cache"
    qt_require apt-cache sha256sum flock "$QT_COMPILER"
    version=$(qt_source_version)
    hash=$(qt_description "$version" | sha256sum | cut -c 1-12)
    QT_PREFIX=$cache/qt-${version%%[+-]*}-$QT_VARIANT-$hash
    QT_WORK=$QT_PREFIX.part
    QT_LOG=$QT_PREFIX.log
    QT_SOURCE=$QT_WORK/source
    QT_STAGE=$QT_WORK/stage

    if [[ ! -f $QT_PREFIX/.finished ]]; then
        qt_require apt-get dpkg-source make perl g++
        mkdir -p "$cache"
        exec {QT_LOCK}>"$QT_PREFIX.lock"
        flock -n "$QT_LOCK" || { qt_say "waiting for another build of the same"; flock "$QT_LOCK"; }
        # Whoever held the lock may have finished it meanwhile.
        [[ -f $QT_PREFIX/.finished ]] || qt_build "$version"
    fi
    echo "$QT_PREFIX"
}
