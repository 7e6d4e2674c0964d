#!/bin/sh
# install_sample.sh MAKE BUILD: installs from the sample distribution with the distribution's own
# Makefile, run by MAKE with several jobs, and configures the result again in its own directory.
set -eu
make=$1
build=$(cd "$2" && pwd)
project=$(cd "$(dirname "$0")/../.." && pwd)
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
unset KELSTONE_HOME MAKEFLAGS MFLAGS MAKELEVEL
PATH=/usr/local/bin:/usr/bin:/bin:/usr/sbin:/sbin

fail() {
	echo "$*" >&2
	cat "$work/output" >&2
	exit 1
}

# play SESSION: runs make in the current directory with that session's answers.
play() {
	"$project/scripts/answers" "$1" "$work/dist" >"$work/answers"
	"$make" -j4 <"$work/answers" >"$work/output" 2>&1 || fail "$1: make failed"
	! grep -q 'warning *:' "$work/output" || fail "$1: there was a warning"
}

"$project/scripts/distribution" "$build" "$work/dist"
cd "$work/dist"
play first
store=$work/dist/opt/kelstone
"$store/bin/kelstone" put "$work/store" key value
test "$("$store/bin/kelstone" get "$work/store" key)" = value || fail "kelstone does not work"
play second
echo "one two" | "$work/dist/opt/dovetally/bin/dovetally" || fail "dovetally does not work"

# In its own directory the launchers find the program on the PATH, and say so where there is none.
cd "$store"
for command in "$make" ./morvane.SunOS5; do
	if "$command" </dev/null >"$work/output" 2>&1; then fail "$command found a morvane"; fi
	grep -q "morvane[.][A-Z].* on the PATH" "$work/output" || fail "$command does not say what is missing"
done
PATH=$build:$PATH
rm bin/kelstone
play again
test -x bin/kelstone || fail "kelstone was not compiled again"

# The operator's no to the last question, or an early end, leaves everything alone.
cd "$work/dist"
rm -f install.mk
if "$make" </dev/null >"$work/output" 2>&1; then fail "make went on without an answer"; fi
test ! -e install.mk || fail "install.mk was written without an answer"
