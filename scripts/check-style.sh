#!/usr/bin/env bash
# Static checks: formatting, layers, script syntax. Warnings are errors in every preset's build already.
set -euo pipefail
cd "$(dirname "$0")/.."

sources() { git ls-files '*.cpp' '*.h'; }

sources | xargs -r clang-format --dry-run --Werror
python3 scripts/check-layers.py
for script in run test bench scripts/*.sh scripts/{abidiff,keep-headers,shake} .ci/run $(git ls-files 'tests/*.sh'); do
    bash -n "$script"
done
echo "static checks passed"
