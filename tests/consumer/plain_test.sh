#!/bin/sh
# plain_test.sh SOURCE FOLDER COMPILE_COMMANDS: configuring without a preset or a build type gives
# the release build: the library's units are compiled by the same options as in COMPILE_COMMANDS.
set -eu
rm -rf "$2"
cmake -S "$1" -B "$2" -DKEPS_TESTS=OFF -DKEPS_EXAMPLES=OFF >"$2.log" 2>&1 || { cat "$2.log"; exit 1; }
options() {
    grep '"command".*frame/pszero\.cpp"' "$1" | sed 's/ -o .*//' | tr ' ' '\n' | grep '^-' |
        grep -v '^-I' | sort -u
}
options "$2/compile_commands.json" >"$2/plain"
options "$3" >"$2/preset"
grep -qx -e -O2 "$2/plain"
diff "$2/plain" "$2/preset"
