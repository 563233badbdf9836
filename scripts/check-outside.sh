#!/usr/bin/env bash
# Checks what hosts get, from a build without tests: what leaves the libraries, the public headers, and a host that uses
# something of everything. Then builds whatever is shipped, and the examples, with the other compiler.
#   scripts/check-outside.sh
. "$(dirname "$0")/setup.sh"
help_if_asked "$0" "$@"

scripts/check-abi.sh
build_preset abi
python3 tests/packaging/check-exports.py build/abi/lib --without-tests
scripts/check-headers.sh abi

stage=$(mktemp -d -t qwoutside.XXXXXX)
trap 'rm -rf "$stage"' EXIT
log=build/abi/host.log
quietly "$log" cmake --install build/abi --prefix "$stage/prefix"
quietly "$log" cmake -S tests/packaging/host -B "$stage/host" -G Ninja -DCMAKE_PREFIX_PATH="$stage/prefix" \
    -DCMAKE_CXX_COMPILER=g++-12
quietly "$log" ninja -C "$stage/host"
"$stage/host/everything"

build_preset clang
say "Everything that is shipped builds without tests and with both compilers."
