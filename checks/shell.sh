#!/usr/bin/env bash
# Every shell script parses.
set -uo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.." || exit
count=0
bad=0
while IFS= read -r file; do
    read -r first <"$file" || true
    [[ $file == *.sh || $first == '#!'*bash* || $first == '#!/bin/sh'* ]] || continue
    count=$((count + 1))
    bash -n "$file" || bad=1
done < <(python3 checks/tracked.py "")
echo "$count scripts"
exit $bad
