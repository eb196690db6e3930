#!/bin/sh
# readme_test.sh README PREFIX FOLDER: takes the C program, its compile line and its output from the
# README and holds them against each other, built against the installed prefix alone.
set -eu
readme=$1
PKG_CONFIG_PATH=$(dirname "$(find "$2" -name keps.pc)")
export PKG_CONFIG_PATH
mkdir -p "$3"
cd "$3"
awk '/^```c$/ { inside = 1; next } /^```/ { inside = 0 } inside' "$readme" >smooth.c
awk '/^cc .*smooth\.c/' "$readme" >compile.sh
awk '/^```text$/ { inside = 1; next } /^```/ { inside = 0 } inside' "$readme" >expected
[ "$(wc -l <compile.sh)" -eq 1 ] || { echo "the README has no single compile line"; exit 1; }
rm -f smooth
sh -eu compile.sh
./smooth >printed
diff expected printed
