#!/bin/sh
# deb_test.sh BUILD_FOLDER VERSION: makes the Debian package and looks into it.
set -eu
folder=$1/tests/consumer/deb
rm -rf "$folder"
(cd "$1" && cpack -G DEB -B "$folder" >"$1/tests/consumer/cpack.log" 2>&1) ||
    { cat "$1/tests/consumer/cpack.log"; exit 1; }
deb=$(ls "$folder"/*.deb)
dpkg-deb --fsys-tarfile "$deb" | tar -t >"$folder/contents"
for file in lib/libkepse9.so lib/libkepcore.so include/keps.h include/kepcore.h \
    lib/pkgconfig/keps.pc lib/pkgconfig/kepcore.pc lib/cmake/keps/keps-config.cmake \
    lib/cmake/keps/keps-config-version.cmake share/doc/keps/copyright; do
    grep -qx "./usr/$file" "$folder/contents" || { echo "no /usr/$file"; exit 1; }
done
field() { dpkg-deb --field "$deb" "$1"; }
[ "$(field Package)" = keps ] && [ "$(field Architecture)" = amd64 ]
[ "$(field Version)" = "$2" ] || { echo "version $(field Version)"; exit 1; }
field Depends | grep -q 'libc6 .*libgomp1\|libgomp1.*libc6 ' ||
    { echo "depends on: $(field Depends)"; exit 1; }
# Nothing of the library was stripped on the way into the package.
dpkg-deb --fsys-tarfile "$deb" | tar -xO ./usr/lib/libkepse9.so >"$folder/library"
nm "$folder/library" | grep -q ' e9_kepsZero_8u$' || { echo "the library is stripped"; exit 1; }
