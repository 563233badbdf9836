#!/usr/bin/env bash
# Checks the public headers as hosts get them: what is installed is what docs/architecture.md lists, and each header
# compiles as the only one, under both compilers, with nothing of ours on the way but the installation.
#   scripts/check-headers.sh [PRESET]        (nothing needs to be built)
. "$(dirname "$0")/setup.sh"
help_if_asked "$0" "$@"
preset=${1:-abi}

stage=$(mktemp -d -t qwheaders.XXXXXX)
trap 'rm -rf "$stage"' EXIT
mkdir -p "build/$preset"
quietly "build/$preset/configure.log" cmake --preset "$preset"
quietly "build/$preset/headers.log" cmake --install "build/$preset" --prefix "$stage" --component headers
public=$stage/include/QWCore

python3 tests/packaging/check-face.py "$public"
headers=$(cd "$public" && find . -name '*.h' -printf '%P\n' | sort)

export QW_ALONE="-std=c++20 -fsyntax-only -fPIC -x c++ -Wall -Wextra -Wpedantic -Werror -I$public
    $(pkg-config --cflags Qt6Widgets | sed 's/-I/-isystem /g')"
alone() { "$1" $QW_ALONE - <<<"#include <$2>" || { echo "$2 does not compile alone under $1"; return 1; }; }
export -f alone
for compiler in g++-12 clang++-14; do
    sed "s/^/$compiler /" <<<"$headers"
done | xargs -P "$(nproc)" -L 1 bash -c 'alone "$@"' alone
say "Public headers: $(wc -l <<<"$headers"), each of them compiles alone."
