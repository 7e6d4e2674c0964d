#!/bin/sh
# setup.sh: runs scripts/setup with commands that stand in for those of Debian.
set -eu
project=$(cd "$(dirname "$0")/../.." && pwd)
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

# stands_in NAME COMMAND: makes a command of that name.
stands_in() {
	printf '#!/bin/sh\n%s\n' "$2" >"$work/$1"
	chmod +x "$work/$1"
}

# expect STATUS OUTPUT: compares what scripts/setup returns and prints, for three packages.
expect() {
	status=0
	PATH=$work /bin/sh "$project/scripts/setup" present one two >"$work/output" 2>&1 || status=$?
	printf '%s' "$2" >"$work/wanted"
	test "$status" -eq "$1" || { echo "status $status" && exit 1; } >&2
	/usr/bin/diff "$work/wanted" "$work/output"
}

for tool in cat mktemp rm; do
	stands_in $tool "exec /bin/$tool \"\$@\""
done
# shellcheck disable=SC2016 # expanded where they run
stands_in dpkg-query 'for package; do :; done; test "$package" != present || echo installed'
# shellcheck disable=SC2016
stands_in apt-get 'echo "chatter: $*"'
stands_in id 'echo 1000'

expect 1 'Packages are missing. The superuser installs them with:
    apt-get install one two
'
stands_in sudo :
expect 1 'Packages are missing. This installs them:
    sudo apt-get install one two
'
stands_in id 'echo 0'
expect 0 'Installing packages: one two
'
# shellcheck disable=SC2016
stands_in apt-get 'echo "chatter: $*"; test "$1" = update'
expect 1 'Installing packages: one two
chatter: update
chatter: install -y --no-install-recommends one two
'
stands_in dpkg-query 'echo installed'
expect 0 ''
