#!/usr/bin/env bash
# The Debian package holds what an installation needs and runs from where it unpacks:
# builds it with CPack from the build folder, unpacks it with dpkg -x into a temporary root,
# checks its files and Depends line, and runs quillet --version from it.
set -euo pipefail
build=$1
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

cpack --config "$build/CPackConfig.cmake" -G DEB -B "$work/out" >"$work/cpack.log" 2>&1 || { cat "$work/cpack.log"; exit 1; }
deb=$(ls "$work"/out/*.deb)
dpkg -x "$deb" "$work/root"

fail=0
for file in usr/bin/quillet usr/bin/QuilletPro usr/share/applications/quilletpro.desktop \
            usr/share/icons/hicolor/16x16/apps/quilletpro.png usr/share/icons/hicolor/256x256/apps/quilletpro.png \
            usr/share/man/man1/quillet.1.gz usr/share/man/man1/QuilletPro.1.gz \
            usr/share/doc/quilletpro/copyright usr/share/doc/quilletpro/THIRD-PARTY-NOTICES.txt; do
    if [ ! -s "$work/root/$file" ]; then
        echo "missing from the package: /$file"
        fail=1
    fi
done
depends=$(dpkg-deb -f "$deb" Depends)
for library in libqt6core6 libqt6widgets6 libqt6network6 libpcre2-16-0 libxlsxwriter qt6-qpa-plugins; do
    if [[ "$depends" != *"$library"* ]]; then
        echo "Depends lacks $library: $depends"
        fail=1
    fi
done
version=$("$work/root/usr/bin/quillet" --version)
if [ "$version" != "quillet $(dpkg-deb -f "$deb" Version)" ]; then
    echo "quillet --version from the package said: $version"
    fail=1
fi
gzip -dc "$work/root/usr/share/man/man1/quillet.1.gz" | grep -q '^\.TH QUILLET 1' || { echo "quillet.1.gz is no man page"; fail=1; }
exit $fail
