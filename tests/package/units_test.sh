#!/usr/bin/env bash
# Has systemd read the units, and looks whether the program knows what they call it with.
#
#   units_test.sh PROGRAM SCRATCH-FOLDER
set -euo pipefail
program=$1
scratch=$2
units=$(cd "$(dirname "$0")/../../packaging/systemd/system" && pwd)
most_exposed=30 # tenths of what systemd-analyze tells, from 0 to 100
failed=0

fail() {
    echo "$1" >&2
    failed=1
}

for unit in "$units"/*.service; do
    read -r _ subcommand options <<<"$(sed -n 's|^ExecStart=||p' "$unit")"
    help=$("$program" "$subcommand" --help)
    for option in $options; do
        grep -q "^  $option " <<<"$help" || fail "$unit: $subcommand has no $option"
    done
    grep -q "^Documentation=man:mailserver-log-$subcommand(8)$" "$unit" || fail "$unit: names another page"
done
for timer in "$units"/*.timer; do
    [ -f "${timer%.timer}.service" ] || fail "$timer starts nothing"
done

if ! command -v systemd-analyze >/dev/null; then
    echo "no systemd-analyze here: not asked"
    exit $failed
fi

# A system of its own to look at, which has the program where the units name it.
rm -rf "$scratch"
mkdir -p "$scratch/usr/bin" "$scratch/usr/lib/systemd" "$scratch/etc/systemd/system"
ln -s usr/lib "$scratch/lib"
cp -r /lib/systemd/system "$scratch/usr/lib/systemd"
cp -r "$units"/* "$scratch/etc/systemd/system"
install "$program" "$scratch/usr/bin/mailserver-log"
cd "$units"
for unit in *.service *.timer; do
    said=$(systemd-analyze --root="$scratch" --man=no verify "$unit" 2>&1 | grep mailserver-log || true)
    [ -z "$said" ] || fail "$said"
done
for unit in *.service; do
    systemd-analyze --root="$scratch" --offline=true --threshold=$most_exposed --no-pager security "$unit" |
        tail -n 1 || fail "$unit is too exposed"
done
rm -rf "$scratch"
exit $failed
