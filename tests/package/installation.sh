#!/bin/sh
# installation.sh BUILD: installs morvane below a staging directory and uses it from there.
set -eu
build=$1
here=$(cd "$(dirname "$0")" && pwd)
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

# The installation writes down there what it installed.
if [ ! -w "$build" ]; then
	echo "skipped: $build cannot be written"
	exit 77
fi
DESTDIR=$work cmake --install "$build" --prefix /usr/local --strip >/dev/null
"$here/try_installation.sh" "$work/usr/local"

cd "$work"
for file in usr/local/share/doc/morvane/README.md usr/local/share/doc/morvane/copyright; do
	test -f $file || { echo "$file is missing"; exit 1; }
done
outside=$(find . -type f ! -path './usr/local/*')
test -z "$outside" || { echo "outside the prefix: $outside"; exit 1; }
