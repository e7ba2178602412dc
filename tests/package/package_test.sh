#!/usr/bin/env bash
# Installs a build below a scratch folder, looks at what the library exports, and builds and runs
# programs against it, found by CMake and by pkg-config.
#
#   package_test.sh BUILD-FOLDER COMPILER [FLAG...]
set -euo pipefail
build=$1
compiler=$2
flags=("${@:3}")
here=$(cd "$(dirname "$0")" && pwd)
scratch=$build/package-test
prefix=$scratch/prefix

fail() {
    echo "$1" >&2
    exit 1
}

rm -rf "$scratch"
cmake --install "$build" --prefix "$prefix" >/dev/null
library=$(find "$prefix" -name libmailserver-log.so)

for file in share/mailserver-log/texts/platform/ger/strings share/mailserver-log/rsyslog/10-mailserver-log.conf \
    share/man/man8/mailserver-log-rotate.8 share/man/man5/mailserver-log.conf.5 share/man/man1/mailserver-log.1 \
    share/bash-completion/completions/mailserver-log lib/systemd/system/mailserver-log-rotate.timer \
    lib/systemd/system/mailserver-log-.service.d/10-hardening.conf lib/sysusers.d/mailserver-log.conf \
    lib/tmpfiles.d/mailserver-log.conf; do
    [ -s "$prefix/$file" ] || fail "$file is not installed"
done

soname=$(readelf --dynamic "$library" | sed -n 's/.*(SONAME).*\[\(.*\)\]/\1/p')
[ "$soname" = libmailserver-log.so.4 ] || fail "SONAME is $soname"

# Weak symbols (W, V, u) are bodies of templates and inline functions, of other libraries' headers too.
foreign=$(nm --dynamic --demangle --defined-only "$library" |
    awk '$2 !~ /[WVu]/' | grep -Ev 'serverlog::|MailLogger|runas_error' || true)
[ -z "$foreign" ] || fail "exported, but no part of the interface: $foreign"

sandbox() {
    "$here/../../scripts/sandbox" --bind "$build" "$@"
}

# run PROGRAM: it must catch what the library throws
run() {
    local said
    said=$(sandbox sh -c \
        'mkdir /var/spool/@PostCube-Server/aggr_log/admin_log.db && exec "$1"' sh "$1")
    [ "$said" = "DB bad session, path from:/var/spool/@PostCube-Server/aggr_log/admin_log.db" ] ||
        fail "$1 said: $said"
}

cmake -G Ninja -S "$here/consumer" -B "$scratch/by-cmake" -DCMAKE_PREFIX_PATH="$prefix" \
    -DCMAKE_CXX_COMPILER="$compiler" -DCMAKE_CXX_FLAGS="${flags[*]}" >/dev/null
said=$(cmake --build "$scratch/by-cmake") || fail "$said"
run "$scratch/by-cmake/consumer"

said=$(sandbox "$scratch/by-cmake/example" alice@example.com bob@example.com)
[ "$said" = $'events to bob@example.com: 1\nfrom alice@example.com' ] || fail "the example said: $said"

folder=$(dirname "$library")
export PKG_CONFIG_PATH=$folder/pkgconfig
# pkg-config puts a backslash before each blank of a path.
eval "found=($(pkg-config --cflags --libs mailserver-log))"
"$compiler" -std=c++17 "${flags[@]}" "$here/consumer/main.cpp" -o "$scratch/by-pkg-config" \
    "${found[@]}" "-Wl,-rpath,$folder"
run "$scratch/by-pkg-config"
