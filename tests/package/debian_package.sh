#!/bin/sh
# debian_package.sh BUILD: makes the Debian package, installs it into a directory of its own, uses
# it there and removes it again.
set -eu
build=$1
here=$(cd "$(dirname "$0")" && pwd)
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
PATH=/usr/local/bin:/usr/bin:/bin:/usr/sbin:/sbin
umask 022

skip() {
	echo "skipped: $*"
	exit 77
}

fail() {
	echo "$*"
	cat "$work/output"
	exit 1
}

for tool in cpack dpkg dpkg-shlibdeps file; do
	command -v $tool >/dev/null || skip "there is no $tool"
done
test -w "$build" || skip "$build cannot be written"
as_root=
if [ "$(id -u)" -ne 0 ]; then
	command -v fakeroot >/dev/null || skip "there is neither a superuser nor a fakeroot"
	as_root=fakeroot
fi

# manage OPTION...: runs dpkg on the private root, in which no other package is installed.
manage() {
	$as_root dpkg --root="$work/root" --force-not-root --force-depends --log="$work/log" "$@" \
		>"$work/output" 2>&1 || fail "dpkg $* failed"
}

cpack --config "$build/CPackConfig.cmake" -B "$work" >"$work/output" 2>&1 || fail "cpack failed"
package=$(echo "$work"/*.deb)
version=$(dpkg-deb --field "$package" Version)

# field NAME PATTERN: the package must say that.
field() {
	said=$(dpkg-deb --field "$package" "$1")
	# shellcheck disable=SC2254 # a pattern
	case $said in $2) ;; *) fail "$1: $said" ;; esac
}
field Depends "libc6 (>= 2.34), libgcc-s1 (>= *)"
field Recommends "make | bmake, python3"
field Suggests "gcc | c-compiler"

mkdir -p "$work/root/var/lib/dpkg/info" "$work/root/var/lib/dpkg/updates"
touch "$work/root/var/lib/dpkg/status" "$work/root/var/lib/dpkg/available"
manage --install "$package"
zcat "$work/root/usr/share/doc/morvane/changelog.Debian.gz" | head -n 1 |
	grep -qF "morvane ($version) " || fail "the changelog does not begin with version $version"
"$here/try_installation.sh" "$work/root/usr"
if readelf --sections --wide "$work/root/usr/bin/morvane" |
	grep -q -e '[.]symtab' -e '[.]debug'; then
	fail "morvane is not stripped"
fi

manage --purge morvane
left=$(find "$work/root" -mindepth 1 ! -path "$work/root/var*")
test -z "$left" || fail "not removed: $left"

if command -v lintian >/dev/null; then
	lintian --allow-root --fail-on error "$package" >"$work/output" 2>&1 || fail "lintian:"
fi
