#!/bin/sh
# manual_examples.sh MAKE BUILD: does what the examples of morvane(1) and install.mk(5) show, with
# MAKE as make, and compares what comes of it with what these pages show.
set -eu
make=$1
build=$(cd "$2" && pwd)
project=$(cd "$(dirname "$0")/../.." && pwd)
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
unset MAKEFLAGS MFLAGS MAKELEVEL
PATH=/usr/local/bin:/usr/bin:/bin:/usr/sbin:/sbin
export LC_ALL=C

# Only the superuser can give files to somebody else.
if [ "$(id -u)" -eq 0 ]; then
	user=daemon
	group=daemon
else
	user=$(id -un)
	group=$(id -gn)
fi

fail() {
	echo "$*" >&2
	cat "$work/output" >&2
	exit 1
}

# example NAME: prints that example with the names and directories of this host.
example() {
	sed "s|/opt/|$work/opt/|g; s|/usr/dist|$work/dist|g; s/lena/$user/g; s/readers/$group/g
		s/Linux6/$(uname -sr | sed 's/\..*$//; s/ //')/" "$project/man/examples/$1"
}

# for_this_user: passes rules on; where an ordinary user runs this, without what changes owners.
for_this_user() {
	if [ "$(id -u)" -eq 0 ]; then
		cat
	else
		sed '/^tansy-owner:/,/^$/d; /chown/d; s/ tansy-owner//'
	fi
}

# configure SESSION: plays that example in the current directory. Its last answer must be needed,
# and none may be refused. A directory that is missing is asked about: so none is left in between.
configure() {
	example "$1" | sed '/^#/d' >"$work/answers"
	if sed '$d' "$work/answers" | "$build/tests/morvane_without_pauses" >"$work/output" 2>&1; then
		fail "$1: the last answer is not needed"
	fi
	rmdir "$work"/opt/* 2>/dev/null || true
	"$build/tests/morvane_without_pauses" <"$work/answers" >"$work/output" 2>&1 ||
		fail "$1: the configurator did not end well"
	! grep -q "^morvane :" "$work/output" || fail "$1: there was a diagnostic"
	# Message 034 is also the question that confirms the selection.
	sed -n 's/^03[134] //p; s/^130 \([^\\]*\).*/\1/p' morvane.rsc >"$work/refusals"
	test "$(grep -cFf "$work/refusals" "$work/output")" -eq 1 || fail "$1: an answer was refused"
}

# The example runs this instead of what is on the PATH.
make() {
	command "$make" "$@" >"$work/output" 2>&1 || fail "make $*: failed"
}

# same NAME FILE: compares that example with what came.
same() {
	example "$1" | for_this_user | diff - "$2" >&2 || fail "$1: this is not what the page shows"
}

mkdir -p "$work/dist" "$work/tansy/install" "$work/tansy/src"
cd "$work/tansy"
example tansy.Makefile >install/Makefile
example tansy.in >src/tansy.in
tar -cf ../dist/tansy.tar install src
echo "1121 a quiet day" >days
tar -cf ../dist/almanac.tar days
cd "$work/dist"
example tansy.descr >"$work/dist/tansy.descr"
example almanac.descr >"$work/dist/almanac.descr"
cp "$build/morvane.rsc" "$project/resources/Makefile" .
cp "$project/resources/launcher" morvane.SunOS4
cp "$project/resources/launcher" morvane.SunOS5

configure tansy.session
sed '1,/^$/d' tansy.dat >"$work/settings"
same tansy.dat "$work/settings"
example tansy.mk | for_this_user >"$work/rules"
awk 'BEGIN { RS = "" }
	FNR == NR { shown[++count] = $0; next }
	$0 == shown[found + 1] { ++found }
	END { exit !(count > 0 && found == count) }' "$work/rules" install.mk ||
	fail "tansy.mk: install.mk does not hold these rules in this order"

# shellcheck source=/dev/null
. "$project/man/examples/by-hand"
cd "$work/opt/tansy"
find . -type f | sed 's|^\./||' | sort >"$work/files"
same tansy.files "$work/files"
foreign=$(find . -type f ! \( -user "$user" -group "$group" \))
test -z "$foreign" || fail "these files have another owner or group: $foreign"
test "$(bin/tansy 1121)" = "1121 a quiet day" || fail "tansy does not work"

kept=$(ls -ln src)
rm bin/tansy
configure tansy.session-again
make -f install.mk
test "$(bin/tansy 1121)" = "1121 a quiet day" || fail "tansy does not work any more"
grep -q '^PRODUCT_ACCESS = 0$' install/tansy.dat || fail "the settings are not the new ones"
test -z "$(find bin/tansy -perm -004)" || fail "other users keep access"
test "$(ls -ln src)" = "$kept" || fail "what was installed has not stayed as it is"

example links.make >"$work/links.make"
make -f "$work/links.make" PRODUCT_PATH=. PRODUCT_OWNER="$user" PRODUCT_GROUP="$group"
test "$(find lib/current -type l -user "$user" -group "$group")" = lib/current ||
	fail "the link has another owner or group"
