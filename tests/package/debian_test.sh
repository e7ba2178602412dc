#!/usr/bin/env bash
# Installs, uses, upgrades, removes and purges the Debian packages, in a Debian of its own that
# debootstrap makes below the scratch folder. Takes root, the network and some minutes.
#
#   debian_test.sh FOLDER-WITH-PACKAGES SCRATCH-FOLDER
set -euo pipefail

if [ "$(id -u)" -ne 0 ]; then
    echo "debian_test.sh: only root can install packages, even into a folder" >&2
    exit 2
fi
# Mounts and processes of our own, which go when we end.
if [ -z "${MAILSERVER_LOG_UNSHARED:-}" ]; then
    MAILSERVER_LOG_UNSHARED=yes exec unshare --mount --pid --fork --kill-child "$0" "$@"
fi

packages=$(realpath "$1")
mkdir -p "$2"
root=$(realpath "$2")/root
logs=/var/spool/@PostCube-Server/aggr_log
settings=/var/packages/PostCube-Server/etc/mailserver.conf
said=$root.said

fail() {
    echo "FAILED: $1" >&2
    exit 1
}

inside() {
    chroot "$root" env -i PATH=/usr/sbin:/usr/bin:/sbin:/bin LC_ALL=C.UTF-8 DEBIAN_FRONTEND=noninteractive "$@"
}

apt() {
    inside apt-get --quiet --yes --no-install-recommends "$@" >"$said" 2>&1 || { cat "$said" >&2 && fail "apt-get $1"; }
}

# is WHAT TEST-ARGUMENT...: asked inside
is() {
    inside test "${@:2}" || fail "$1"
}

is_said() {
    grep -q -F -- "$1" "$said" || { cat "$said" >&2 && fail "not said: $1"; }
}

make_root() {
    rm -rf --one-file-system "$root"
    debootstrap --variant=minbase "$(. /etc/os-release && echo "$VERSION_CODENAME")" "$root" >"$said" ||
        { cat "$said" >&2 && fail "debootstrap"; }
    mount -t proc proc "$root/proc"
    cp /etc/resolv.conf "$root/etc/resolv.conf"
    printf '#!/bin/sh\nexit 101\n' >"$root/usr/sbin/policy-rc.d" # starts no service
    chmod 755 "$root/usr/sbin/policy-rc.d"
    mkdir "$root/packages"
    cp "$packages"/*.deb "$root/packages"
    rm -f "$root"/packages/*-dbgsym_*
}

# The same packages, with a version that is newer.
make_newer_packages() {
    local package unpacked=$root/unpacked
    for package in "$root"/packages/*.deb; do
        dpkg-deb --raw-extract "$package" "$unpacked"
        sed -i -E 's/^(Version: .*)/\1+newer/; s/(libmailserver-log4|mailserver-log) \(= ([^)]*)\)/\1 (= \2+newer)/g' \
            "$unpacked/DEBIAN/control"
        dpkg-deb --root-owner-group -Znone --build "$unpacked" "$package" >/dev/null
        rm -r "$unpacked"
    done
}

rows() { # of the admin log
    inside mailserver-log list admin --format ndjson | wc -l
}

test_installation() {
    inside apt-get --quiet update >"$said" 2>&1 || fail "apt-get update"
    apt install rsyslog
    inside sh -c 'apt-get --quiet --yes --no-install-recommends install /packages/*.deb' >"$said" 2>&1 ||
        { cat "$said" >&2 && fail "installation"; }
    is "no lock folder" -d /run/lock/postcube_server
    is "the logs lie on no volume" "$(inside readlink -f "$logs")" = "/volume1/@PostCube-Server/aggr_log"
    is "the logs belong to somebody else" "$(inside stat -c %U:%G "$logs")" = PostCube-Server:PostCube-Server
    inside getent group administrators >/dev/null || fail "no group administrators"
    is "somebody can log in as PostCube-Server" \
        "$(inside getent passwd PostCube-Server | cut -d : -f 7)" = /usr/sbin/nologin
    is "no texts" -s /var/packages/PostCube-Server/target/app/texts/enu/strings
    is "no texts of the system" -s /usr/mero/meroman/webman/texts/ger/strings
    for unit in multi-user.target.wants/mailserver-log-{upgrade,statistics}.service \
        timers.target.wants/mailserver-log-rotate.timer timers.target.wants/mailserver-log-archive.timer; do
        is "$unit is off" -L "/etc/systemd/system/$unit"
    done
    is "the collector from the journal is on" ! -e \
        /etc/systemd/system/multi-user.target.wants/mailserver-log-collect.service
    inside rsyslogd -N1 >"$said" 2>&1 || { cat "$said" >&2 && fail "configuration of rsyslog"; }
}

test_use() {
    echo '{"date":1,"user":"alice","statement":"old"}' | inside mailserver-log load admin
    inside mailserver-log rotate admin >/dev/null || fail "rotation"
    echo '{"user":"alice","statement":"new"}' | inside mailserver-log load admin
    is "rows" "$(rows)" -eq 2
    printf '[list]\nlimit=1\n' >"$root/etc/mailserver-log/mailserver-log.conf.d/ours.conf"
    is "the configuration is not read" "$(rows)" -eq 1
    rm "$root/etc/mailserver-log/mailserver-log.conf.d/ours.conf"
    inside REQUEST_METHOD=GET QUERY_STRING= /usr/libexec/mailserver-log/mailserver-log.cgi >"$said"
    is_said "Status: 401"
}

test_upgrade() {
    make_newer_packages
    echo "# ours" >>"$root/etc/mailserver-log/mailserver-log.conf"
    rm "$root/etc/rsyslog.d/10-mailserver-log.conf"
    inside sh -c 'apt-get --quiet --yes --no-install-recommends install /packages/*.deb' >"$said" 2>&1 ||
        { cat "$said" >&2 && fail "upgrade"; }
    is_said "admin: upgraded"
    is "rows after the upgrade" "$(rows)" -eq 2
    grep -q "# ours" "$root/etc/mailserver-log/mailserver-log.conf" || fail "the configuration was replaced"
    is "a link that was removed is back" ! -e /etc/rsyslog.d/10-mailserver-log.conf
}

test_removal() {
    inside ln -s /usr/share/mailserver-log/rsyslog/10-mailserver-log.conf /etc/rsyslog.d/
    apt remove mailserver-log
    is "the program is left" ! -e /usr/bin/mailserver-log
    is "rsyslog still calls the program" ! -L /etc/rsyslog.d/10-mailserver-log.conf
    is "links to texts are left" ! -L /usr/mero/meroman/webman/texts/enu
    is "the store is gone" -s "$logs/admin_log.db"
    inside sh -c 'apt-get --quiet --yes --no-install-recommends install /packages/*.deb' >"$said" 2>&1 ||
        { cat "$said" >&2 && fail "installation over the stores"; }
    is "rows after the removal" "$(rows)" -eq 2
    is "rsyslog does not call the program again" -s /etc/rsyslog.d/10-mailserver-log.conf
}

test_purge() {
    echo 'archive_destination="/volume1/kept here"' >"$root$settings"
    inside sh -c "mkdir '/volume1/kept here' && touch '/volume1/kept here/20240101_20240102_archive_admin_log.db'"
    inside touch "$logs/archive_admin_log.db"
    apt purge mailserver-log mailserver-log-cgi libmailserver-log4
    is_said "archived logs are kept in /volume1/kept here"
    is_said "are kept in $logs/archive_admin_log.db"
    is "the archive is gone" -e "/volume1/kept here/20240101_20240102_archive_admin_log.db"
    is "what is left of the logs is $(inside ls "$logs" | xargs)" "$(inside ls "$logs")" = archive_admin_log.db
    is "the configuration is left" ! -e /etc/mailserver-log
    rm "$root$settings"
}

for step in make_root test_installation test_use test_upgrade test_removal test_purge; do
    echo "$step"
    $step
done
umount "$root/proc"
rm -rf --one-file-system "$root" "$said"
echo "all passed"
