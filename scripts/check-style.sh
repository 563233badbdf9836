#!/usr/bin/env bash
# Static checks: formatting, layers, script syntax. Warnings are errors in every preset's build already.
set -euo pipefail
cd "$(dirname "$0")/.."

sources() { git ls-files '*.cpp' '*.h'; }

sources | xargs -r clang-format --dry-run --Werror
python3 scripts/check-layers.py
bash -n run test bench scripts/*.sh .ci/run
echo "static checks passed"
