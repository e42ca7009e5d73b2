#!/usr/bin/env bash
# Every tracked source is as clang-format would write it; ./dev format mends.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
mapfile -t files < <(python3 checks/tracked.py .h .cpp .c)
printf '%s\0' "${files[@]}" | xargs -0 -P "$(nproc)" -n 20 clang-format --dry-run -Werror
echo "${#files[@]} files"
