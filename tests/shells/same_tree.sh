#!/bin/sh
# same_tree.sh USER BUILD: installs from the sample distribution as USER, root or ordinary, with each
# make and with each shell as /bin/sh, and compares the results with what GNU make and dash install.
#
# Both makes run /bin/sh whatever SHELL says, and so does the configurator: each installation sees
# its shell there, in a mount namespace of its own. All is compared but times: what is made during
# an installation is as old as that is.
set -eu
user=$1
build=$(cd "$2" && pwd)
here=$(cd "$(dirname "$0")" && pwd)
project=$(cd "$here/../.." && pwd)
PATH=/usr/local/bin:/usr/bin:/bin:/usr/sbin:/sbin
umask 022

skip() {
	echo "skipped: $user: $*"
	exit 77
}

fail() {
	echo "$*" >&2
	cat "$work/output" >&2
	exit 1
}

# A command behind $enter may mount; behind $enter and $become it runs as USER again.
uid=$(id -u)
gid=$(id -g)
enter="unshare --mount --propagation private"
become=
if [ "$user" = root ]; then
	test "$uid" -eq 0 || skip "only the superuser installs as root"
	owner=bin
	group=daemon
else
	if [ "$uid" -eq 0 ]; then
		uid=65534
		gid=65534
		become="setpriv --reuid=$uid --regid=$gid --clear-groups"
	else
		enter="$enter --user --map-root-user"
		become="unshare --user --map-user=$uid --map-group=$gid"
	fi
	owner=$(id -un "$uid")
	group=$(id -gn "$uid")
fi
$enter true 2>/dev/null || skip "a mount namespace is not allowed here"

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

# under SHELL COMMAND...: runs COMMAND as USER in the current directory, where /bin/sh is SHELL.
# What /bin/sh is a link to is covered, so that SHELL is called sh and behaves accordingly.
under() {
	program=$(command -v "$1")
	shift
	# shellcheck disable=SC2016,SC2086 # for the inner shell; lists of words
	$enter sh -c 'mount --bind "$1" "$(readlink -f /bin/sh)" && shift && exec "$@"' \
		sh "$program" $become env -i LC_ALL=C PATH="$work/bin:$PATH" "$@"
}

# play SESSION MAKE SHELL: runs make in the current directory with that session's answers.
play() {
	sed "/^#/d; s|@DIRECTORY@|$work/dist|; s|@OWNER@|$owner|; s|@GROUP@|$group|" \
		"$here/$1" >"$work/answers"
	under "$3" "$2" <"$work/answers" >"$work/output" 2>&1 || fail "$2, $3: $1: make failed"
	! grep -q 'warning *:' "$work/output" || fail "$2, $3: $1: there was a warning"
}

# install_with MAKE SHELL: installs from a new distribution in $work/dist, configures a product
# again in its own directory, and lists what is there in $work/tree.
install_with() {
	"$project/scripts/distribution" "$build" "$work/dist"
	cp "$build/tests/morvane_without_pauses" "$work/dist/$configurator"
	chown -R "$uid:$gid" "$work"
	cd "$work/dist"
	# shellcheck disable=SC2016 # for make's shell
	printf 'which:\n\ttest /proc/$$$$/exe -ef %s && :\n' "$(command -v "$2")" >"$work/which.mk"
	under "$2" "$1" -f "$work/which.mk" >"$work/output" 2>&1 || fail "$1 does not run $2"
	play install "$1" "$2"
	cd opt/kelstone
	play reconfigure "$1" "$2"
	cd "$work"
	find dist -printf '%p %y %m %u %g %n %l\n' | LC_ALL=C sort >tree
}

# An installed product finds its configurator on the PATH.
configurator=morvane.$(uname -sr | sed 's/\..*$//;s/ //')
mkdir "$work/bin"
ln -s "../dist/$configurator" "$work/bin/morvane"

install_with make dash
mv dist reference
mv tree reference-tree
missing=
for make in make bmake; do
	for shell in dash bash ksh93 mksh busybox yash zsh; do
		if ! command -v "$make" >/dev/null || ! command -v "$shell" >/dev/null; then
			missing="$missing $make-$shell"
			continue
		fi
		echo "$make, $shell"
		install_with "$make" "$shell"
		diff -u reference-tree tree
		diff -r --no-dereference reference dist
		rm -rf "$work/dist"
	done
done
test -z "$missing" || skip "not installed:$missing"
