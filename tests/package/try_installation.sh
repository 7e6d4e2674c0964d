#!/bin/sh
# try_installation.sh PREFIX: puts the installed samples together with the installed command, looks at
# them with those beside it, and installs one of them with the installed program. Nothing else of
# morvane's is used.
set -eu
prefix=$1
scripts=$(cd "$(dirname "$0")/../../scripts" && pwd)
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
unset KELSTONE_HOME MAKEFLAGS MFLAGS MAKELEVEL

"$prefix/bin/morvane-make-distribution" "$work/dist" "$prefix"/share/doc/morvane/examples/*/ \
	2>"$work/output" || {
	cat "$work/output"
	exit 1
}
cmp "$prefix/bin/morvane" "$work/dist/morvane.$(uname -sr | sed 's/\..*$//;s/ //')"
for command in "$prefix"/bin/*; do
	name=${command##*/}
	if readelf --sections --wide "$command" 2>/dev/null | grep -q -e '[.]symtab' -e '[.]debug'; then
		echo "$name is not stripped"
		exit 1
	fi
	set -- "$prefix/share/man/man1/$name.1"*
	test -f "$1" || { echo "$name has no page"; exit 1; }
done
"$prefix/bin/morvane-lint" "$work/dist" >/dev/null
"$prefix/bin/morvane-graph" "$work/dist" | grep -qF 'label="kelstone'
version=$("$prefix/bin/morvane-answers" --version | sed 's/.* //')
collection=$prefix/share/ansible/collections/ansible_collections/morvane/distribution
grep -qx "version: $version.0" "$collection/galaxy.yml"
test -f "$collection/plugins/modules/installation.py"
test ! -e "$collection/galaxy.yml.in"
sed -i "s|= */opt/|= $work/dist/opt/|" "$work"/dist/*.descr

cd "$work/dist"
"$scripts/answers" first "$work/dist" >answers
make <answers >"$work/output" 2>&1 || {
	cat "$work/output"
	exit 1
}
opt/kelstone/bin/kelstone put store key value
test "$(opt/kelstone/bin/kelstone get store key)" = value

# The registry of the host is left alone.
mkdir "$work/bin"
if [ -x "$prefix/bin/morvane-install" ]; then
	printf '#!/bin/sh\nexec "%s" --registry="%s" "$@"\n' "$prefix/bin/morvane-install" \
		"$work/registry" >"$work/bin/morvane-install"
	chmod +x "$work/bin/morvane-install"
fi

# Configured again in its own directory, where the program is the one on the PATH.
cd opt/kelstone
rm bin/kelstone
"$scripts/answers" again "$work/dist" >"$work/answers"
PATH=$work/bin:$prefix/bin:$PATH make <"$work/answers" >"$work/output" 2>&1 || {
	cat "$work/output"
	exit 1
}
test -x bin/kelstone
