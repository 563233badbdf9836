#!/usr/bin/env bash
# Compares the symbols that leave the three libraries with the lists in abi/, so that a review sees what appears, goes or
# changes. Strong symbols only, of a release build without tests by one compiler: weak ones differ by compiler and optimisation.
#   scripts/check-abi.sh [--update]
# --update writes the lists anew.
. "$(dirname "$0")/setup.sh"
help_if_asked "$0" "$@"
compiler=g++-12

if [ "$(uname -m)" != x86_64 ] || ! command -v "$compiler" >/dev/null; then
    say "The lists of symbols are those of $compiler on x86_64; here nothing was compared."
    exit 0
fi

symbols() {
    nm -D --defined-only "build/abi/lib/lib$1.so.A" | awk '$2 ~ /^[TDBR]$/ { print $3 }' | c++filt | LC_ALL=C sort -u
}

floors=(QWPlatform QWBase QWUtilities)
build_preset abi "${floors[@]}"
status=0
for floor in "${floors[@]}"; do
    list=abi/$floor.symbols
    if [ "${1:-}" = --update ]; then
        mkdir -p abi
        symbols "$floor" >"$list"
        say "$list: $(wc -l <"$list") symbols"
    else
        diff --label "$list" --label "$floor as built" -U 0 "$list" <(symbols "$floor") || status=1
    fi
done
if [ "$status" != 0 ]; then
    say "What leaves the libraries has changed (- went, + is new). New names: scripts/check-abi.sh --update, and commit the lists."
    say "What went or changed breaks programs, where they could call it; CONTRIBUTING.md tells what a break takes."
fi
exit "$status"
