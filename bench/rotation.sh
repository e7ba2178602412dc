#!/usr/bin/env bash
# rotation.sh: how long a rotation takes, beside the sqlite3 program with the same statements on the
# same files.
#
# usage: bench/rotation.sh [--rows N] [--new N] [--rounds N] [--store admin|mail|security] [BUILD]
#
# BUILD is a build folder with the program [build/release]. The files, some GiB with the default of
# 4,000,000 rows in the long-term file and 200,000 to move, lie in a folder beside it and are removed
# at the end. Both take turns; the median of the rounds [5] counts.
set -euo pipefail

project=$(realpath "$(dirname "$0")/..")
long_term_rows=4000000 new_rows=200000 rounds=5 store=mail build=$project/build/release
while [ $# -gt 0 ]; do
    case $1 in
        --rows) long_term_rows=$2; shift ;;
        --new) new_rows=$2; shift ;;
        --rounds) rounds=$2; shift ;;
        --store) store=$2; shift ;;
        -*) sed -n '2,9s/^# \{0,1\}//p' "$0"; exit 2 ;;
        *) build=$(realpath "$1") ;;
    esac
    shift
done
program=$build/apps/mailserver-log/mailserver-log
[ -x "$program" ] || { echo "rotation.sh: there is no $program: build it first" >&2; exit 1; }

if [ "${MAILSERVER_LOG_SANDBOX:-}" != namespaces ]; then
    work=$(mktemp -d "$build/bench-rotation.XXXXXX")
    trap 'rm -rf "$work"' EXIT
    BENCH_FOLDER=$work "$project/scripts/sandbox" --bind "$work" \
        "$project/bench/rotation.sh" --rows "$long_term_rows" --new "$new_rows" \
        --rounds "$rounds" --store "$store" "$build"
    exit
fi

# The files of the sandbox lie in memory, those of the product on a disk.
mount --bind "$BENCH_FOLDER" /volume1/@PostCube-Server
spool=/volume1/@PostCube-Server/aggr_log
saved=/volume1/@PostCube-Server/saved
mkdir "$spool" "$saved"
case $store in
    admin) name=admin_log table=admin_log date_index=date_idx ;;
    mail) name=aggr_mail_log table=mail_log_table date_index=mail_log_table_date_idx ;;
    security) name=aggr_security_log table=security_log_table date_index=security_log_table_date_idx ;;
    *) echo "rotation.sh: no store is called $store" >&2; exit 2 ;;
esac
cut=$(date -d 'today 0:00' +%s)

# What each kind of column holds: about 150 bytes a row, half of the texts come again and again.
value() {
    case $1 in
        date) echo "$cut - 1 - (i * 7919) % 31536000" ;;
        webapi_param) echo "'{\"id\":' || i || '}'" ;;
        *_id | subject | statement) echo "'text of ' || i || ' ' || hex(randomblob(12))" ;;
        tab_type | uid | size | status) echo "i % 1000" ;;
        *) echo "'name' || (i * 31 % 5000) || '@example.org'" ;;
    esac
}

query() { sqlite3 "$@"; }
columns() { query "$1" "SELECT group_concat(name, ', ') FROM pragma_table_info('$table')"; }
create_script() { query "$1" "SELECT replace(sql, 'INDEX ', 'INDEX IF NOT EXISTS main.') || ';'
    FROM sqlite_schema WHERE type = 'index'"; }
drop_script() { query "$1" "SELECT 'DROP INDEX IF EXISTS main.' || name || ';'
    FROM sqlite_schema WHERE type = 'index' AND name <> '$date_index'"; }

fill() {
    local file=$1 rows=$2 first=$3 values='' column create drop
    for column in $(columns "$file" | tr -d ,); do
        values+="${values:+, }$(value "$column")"
    done
    create=$(create_script "$file")
    drop="$(drop_script "$file") DROP INDEX $date_index;"
    query "$file" "PRAGMA journal_mode = OFF; PRAGMA synchronous = OFF; $drop
        WITH RECURSIVE n(i) AS (SELECT $first UNION ALL SELECT i + 1 FROM n
            WHERE i + 1 < $first + $rows)
        INSERT INTO $table ($(columns "$file")) SELECT $values FROM n; $create" >/dev/null
}

restore() {
    rm -f "$spool"/*
    cp "$saved"/* "$spool"
    sync
}

with_sqlite3() (
    cd "$spool"
    export SQLITE_TMPDIR=$spool
    local fields create drop
    fields=$(columns $name.db)
    create=$(create_script $name.db)
    drop=$(drop_script $name.db)
    cp "${name}_main.db" "tmp_$name.db"
    query "tmp_$name.db" "$drop
        ATTACH DATABASE '$name.db' AS currDB;
        DELETE FROM main.$table WHERE date <
            (SELECT date FROM $table ORDER BY date DESC LIMIT 1 OFFSET 4000000);
        INSERT INTO main.$table ($fields) SELECT $fields FROM currDB.$table WHERE date < $cut;
        DETACH DATABASE currDB;
        PRAGMA journal_mode = OFF;
        VACUUM;
        $create" >/dev/null
    sync "tmp_$name.db"
    mv "tmp_$name.db" "${name}_main.db"
    query "$name.db" "$drop DELETE FROM main.$table WHERE date < $cut; $create"
)

seconds() {
    local start=$EPOCHREALTIME
    "$@" >/dev/null
    awk -v a="$start" -v b="$EPOCHREALTIME" 'BEGIN { printf "%.2f\n", b - a }'
}

median() { sort -n | awk '{ a[NR] = $1 } END { print a[int((NR + 1) / 2)] }'; }

echo "making $long_term_rows and $new_rows rows" >&2
"$program" load "$store" </dev/null 2>/dev/null # makes the store
"$program" rotate "$store" >/dev/null           # makes the long-term file
fill "$spool/${name}_main.db" "$long_term_rows" 0
fill "$spool/$name.db" "$new_rows" "$long_term_rows"
mv "$spool"/* "$saved"

for ((round = 0; round < rounds; ++round)); do
    restore
    seconds with_sqlite3 >>/tmp/sqlite3
    expected=$(query "$spool/${name}_main.db" "SELECT COUNT(*), SUM(date) FROM $table")
    restore
    seconds "$program" rotate "$store" >>/tmp/rotate
    [ "$(query "$spool/${name}_main.db" "SELECT COUNT(*), SUM(date) FROM $table")" = "$expected" ] ||
        { echo "rotation.sh: the two gave different rows" >&2; exit 1; }
    echo "round $((round + 1)): sqlite3 $(tail -n 1 /tmp/sqlite3) s," \
        "rotate $(tail -n 1 /tmp/rotate) s" >&2
done
awk -v sqlite3="$(median </tmp/sqlite3)" -v rotate="$(median </tmp/rotate)" \
    -v size="$(du -m "$spool/${name}_main.db" | cut -f 1)" -v store="$store" 'BEGIN {
        printf "%s: %d MiB, sqlite3 %.2f s, rotate %.2f s, ratio %.2f\n", store, size, sqlite3,
            rotate, rotate / sqlite3 }'
