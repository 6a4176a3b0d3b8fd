#!/usr/bin/env bash
# Every public header of the library must be included by the umbrella header
# (the private internal/ folder is not public).
set -euo pipefail
lib=$1
missing=0
while IFS= read -r header; do
    rel=${header#"$lib"/}
    if ! grep -q "#include \"$rel\"" "$lib/QvXml10.h"; then
        echo "QvXml10.h does not include $rel" >&2
        missing=1
    fi
done < <(find "$lib" -mindepth 2 -name '*.h' -not -path "$lib/internal/*" | sort)
exit $missing
