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

# says LINE: what was run last must have said that, on a line of its own.
says() {
	grep -qFx "$1" "$work/output" || fail "it does not say: $1"
}

system=$(uname -s)
own=morvane.$(uname -sr | sed 's/\..*$//;s/ //')

# In its own directory the launchers find the program on the PATH, and say so where there is none.
cd "$store"
if ./morvane.SunOS5 </dev/null >"$work/output" 2>&1; then fail "the launcher found a morvane"; fi
says "./morvane.SunOS5: there is no morvane on the PATH, and none was built for this system"
if "$make" </dev/null >"$work/output" 2>&1; then fail "$make found a morvane"; fi
says "morvane: no program for this host: neither ./$own nor a morvane on the PATH."
says "morvane: Install the package morvane, or copy $own here from the distribution;\
 then type make again."
rm bin/kelstone
mkdir "$work/bin"
ln -s "$build/morvane" "$work/bin"
without_morvane=$PATH
PATH=$work/bin:$PATH
play again
test -x bin/kelstone || fail "kelstone was not compiled again"

# Where morvane-install is on the PATH, it does what was configured. The host's registry is left alone.
if [ -x "$build/morvane-install" ]; then
	printf '#!/bin/sh\nexec "%s" --registry="%s" "$@"\n' "$build/morvane-install" "$work/registry" \
		>"$work/bin/morvane-install"
	chmod +x "$work/bin/morvane-install"
	rm bin/kelstone
	play again
	says "kelstone: installed, 1 of 1"
	test -x bin/kelstone || fail "kelstone was not compiled by morvane-install"
	mv src/kelstone.c "$work"
	rm bin/kelstone
	"$project/scripts/answers" again "$work/dist" >"$work/answers"
	if "$make" <"$work/answers" >"$work/output" 2>&1; then fail "it compiled what is not there"; fi
	says "morvane-install: the installation is not complete; to continue it, type:\
 morvane-install -C $store"
	mv "$work/kelstone.c" src
	morvane-install >"$work/output" 2>&1 || fail "morvane-install could not continue"
	test -x bin/kelstone || fail "kelstone was not compiled when it was continued"
fi
PATH=$without_morvane

# A copied program does, too, for another release as well; one that does not run here is left alone.
cp "$build/morvane" "$own"
printf '\376\312' | dd of="$own" bs=1 seek=18 conv=notrunc 2>/dev/null # another machine's number
cp "$own" "morvane.${system}0"
cp "$build/morvane" "morvane.${system}1"
rm bin/kelstone
play again
test "$(grep -cF "morvane: ./$own does not run on this host: " "$work/output")" -eq 1 ||
	fail "there is not one line about $own"
test -x bin/kelstone || fail "kelstone was not compiled again with the other program"
rm "morvane.${system}1"
if "$make" </dev/null >"$work/output" 2>&1; then fail "a program that does not run here was run"; fi
says "morvane: no program for this host: neither ./$own nor a morvane on the PATH."
cp "$build/morvane" "$own"

# An installation that fails tells how to go on.
mv src/kelstone.c "$work"
rm bin/kelstone
"$project/scripts/answers" again "$work/dist" >"$work/answers"
if "$make" <"$work/answers" >"$work/output" 2>&1; then fail "make compiled what is not there"; fi
says "morvane: The installation is not complete. When the error above is mended,\
 type: $make -f install.mk"
mv "$work/kelstone.c" src
"$make" -f install.mk >"$work/output" 2>&1 || fail "it could not be continued"
test -x bin/kelstone || fail "kelstone was not compiled when it was continued"

# The operator's no to the last question, or an early end, leaves everything alone.
cd "$work/dist"
rm -f install.mk
for typed in "" q; do
	if echo $typed | "$make" >"$work/output" 2>&1; then fail "make went on without an answer"; fi
	says "morvane: Nothing was installed."
	test ! -e install.mk || fail "install.mk was written without an answer"
done
