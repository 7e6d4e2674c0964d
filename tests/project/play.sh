#!/bin/sh
# play.sh: plays answers with scripts/play to a command that asks slowly.
set -eu
project=$(cd "$(dirname "$0")/../.." && pwd)
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

# shellcheck disable=SC2016 # expanded where it runs
questions='sleep 0.2; printf "name? "; read -r name; sleep 0.2; printf "age? "; read -r age
	echo "$name is $age"; exit 3'

# expect ANSWERS STATUS OUTPUT
expect() {
	status=0
	printf '%s' "$1" | "$project/scripts/play" sh -c "$questions" >"$work/output" 2>&1 || status=$?
	test "$status" -eq "$2" || { echo "status $status" && exit 1; } >&2
	printf '%s' "$3" >"$work/wanted"
	diff "$work/wanted" "$work/output"
}

expect 'Ada
36
' 3 'name? Ada
age? 36
Ada is 36
'
expect '

more
and more
' 3 'name? 
age? 
 is 
play: answers left over: 2
'
expect 'Ada
' 3 'name? Ada
age? Ada is 
'
