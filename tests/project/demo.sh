#!/bin/sh
# demo.sh BUILD: runs scripts/demo with what is built already, without a terminal and on one, and types
# what it says to type next.
set -eu
build=$(cd "$1" && pwd)
project=$(cd "$(dirname "$0")/../.." && pwd)
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
unset KELSTONE_HOME MAKEFLAGS MFLAGS MAKELEVEL

fail() {
	echo "$*" >&2
	cat "$work/output" >&2
	exit 1
}

# shows LINE: fails unless a line of the output ends so.
shows() {
	tr -d '\r' <"$work/output" | awk -v end="$1" \
		'substr($0, length($0) - length(end) + 1) == end { found = 1 } END { exit !found }' ||
		fail "not shown: $1"
}

# on_terminal ANSWER...: runs the demo on a terminal. Returns its status.
on_terminal() {
	printf '%s\n' "$@" | script -qec "$work/scripts/demo" /dev/null >"$work/output" 2>&1
}

mkdir "$work/build"
cp -R "$project/scripts" "$project/examples" "$project/resources" "$work"
cp "$build/tests/morvane_without_pauses" "$work/build/morvane"
cp "$build/morvane.rsc" "$work/build"
test ! -e "$build/morvane-lint" || cp "$build/morvane-lint" "$work/build"
for step in setup build; do
	printf '#!/bin/sh\n' >"$work/scripts/$step"
done
demo=$work/build/demo

"$work/scripts/demo" </dev/null >"$work/output" 2>&1 || fail "the demo failed"
shows "Which user will own the files of 'Kelstone' (bin) : $(id -un)"
shows "$demo/opt/marlpost/bin/marldigest"
! grep -q "left over" "$work/output" || fail "answers were left over"
test ! -e "$build/morvane-lint" || ! grep -q "there is no morvane-lint" "$work/output" ||
	fail "nobody looked at the sample distribution"

commands=$(sed -n 's/^    \(cd .*\)/\1/p' "$work/output")
test "$(echo "$commands" | wc -l)" -eq 2 || fail "not two commands to type next"
echo "$commands" | while read -r command; do
	if echo q | sh -c "$command" >"$work/output" 2>&1; then fail "$command: a q was no error"; fi
	shows "The configurator ends here. Goodbye."
done

if on_terminal n; then fail "the demo went on after an n"; fi
shows "Nothing was changed. To go on there: cd $demo && make"
test -x "$demo/opt/kelstone/bin/kelstone" || fail "the installation is gone after an n"
on_terminal y q || fail "the demo failed after a q"
shows "make ended early. After a q that is no fault: nothing was installed."
test ! -e "$demo/opt" || fail "the installation is still there after a y"
