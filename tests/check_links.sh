#!/usr/bin/env bash
# Every relative link of README.md and docs/*.md names a file that exists and,
# after a #, a heading of it (GitHub slugs: lower case, punctuation dropped,
# spaces to hyphens; code blocks skipped). Prints each one that does not,
# and fails if any.
cd "${1:-.}" || exit 2
slugs() { grep -E '^#{1,6} ' "$1" | sed -E 's/^#+ //' | tr 'A-Z' 'a-z' | sed -E 's/[^a-z0-9 _-]//g; s/ /-/g'; }
for f in README.md docs/*.md; do
  awk '/^```/{c=!c; next} !c' "$f" | grep -oE '\]\([^)]+\)' | sed -E 's/^\]\(//; s/\)$//' |
  while read -r t; do
    case "$t" in http*) continue;; esac
    path="${t%%#*}"; anchor=""; [[ "$t" == *"#"* ]] && anchor="${t#*#}"
    target="$f"; [ -n "$path" ] && target="$(dirname "$f")/$path"
    if [ ! -e "$target" ]; then echo "$f: $t: no such file"
    elif [ -n "$anchor" ] && ! slugs "$target" | grep -qxF "$anchor"; then echo "$f: $t: no such heading"; fi
  done
done | tee /dev/stderr | grep -q . && exit 1
exit 0
