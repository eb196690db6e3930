#!/bin/sh
# version_test.sh PREFIX CONSUMER_FOLDER: pkg-config's version is the one that the library records.
set -eu
PKG_CONFIG_PATH=$(dirname "$(find "$1" -name keps.pc)")
export PKG_CONFIG_PATH
for package in keps kepcore; do
    version=$(pkg-config --modversion $package)
    "$2/consumer_c" "$version" || { echo "$package.pc says $version"; exit 1; }
done
