#!/bin/sh
# debian_package.sh BUILD: makes the Debian packages, installs them into a directory of their own,
# uses them there and removes them again.
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

# field PACKAGE NAME PATTERN: the package must say that.
field() {
	said=$(dpkg-deb --field "$1" "$2")
	# shellcheck disable=SC2254 # a pattern
	case $said in $3) ;; *) fail "$2: $said" ;; esac
}

cpack --config "$build/CPackConfig.cmake" -B "$work" >"$work/output" 2>&1 || fail "cpack failed"
program=$(echo "$work"/morvane_*.deb)
version=$(dpkg-deb --field "$program" Version)
field "$program" Depends "libc6 (>= 2.34), libgcc-s1 (>= *)"
field "$program" Recommends "make | bmake"
field "$program" Suggests "morvane-tools, gcc | c-compiler"
field "$program" Description "terminal-based installation configurator
*"
tools=$(echo "$work"/morvane-tools_*.deb)
field "$tools" Depends "morvane (= $version), libarchive13 (>= *), libc6 (>= *), *"
field "$tools" Recommends "python3, graphviz, make | bmake, tar (>= 1.16)"
field "$tools" Suggests "ansible-core"
field "$tools" Replaces "morvane (<= 1.20-1)"
field "$tools" Description "commands beside the installation configurator morvane
*"

mkdir -p "$work/root/var/lib/dpkg/info" "$work/root/var/lib/dpkg/updates"
touch "$work/root/var/lib/dpkg/status" "$work/root/var/lib/dpkg/available"
manage --install "$program" "$tools"
for name in morvane morvane-tools; do
	documents=$work/root/usr/share/doc/$name
	zcat "$documents/changelog.Debian.gz" | head -n 1 | grep -qF "morvane ($version) " ||
		fail "the changelog of $name does not begin with version $version"
	test -f "$documents/copyright" || fail "$name has no copyright"
done
"$here/try_installation.sh" "$work/root/usr"

manage --purge morvane-tools morvane
left=$(find "$work/root" -mindepth 1 ! -path "$work/root/var*")
test -z "$left" || fail "not removed: $left"

if command -v lintian >/dev/null; then
	lintian --allow-root --fail-on error "$program" "$tools" >"$work/output" 2>&1 || fail "lintian:"
fi
