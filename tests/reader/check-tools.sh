#!/usr/bin/env bash
# What other tools say to the reader's files: check-tools.sh lnav|man|readme|report|web SENTIQ-LOGS. Ends with 77 without the tool.
set -Eeuo pipefail
here=$(cd "$(dirname "$0")" && pwd)
what=$1 reader=$2
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT
export HOME=$folder XDG_CONFIG_HOME=$folder

need() { command -v "$1" >/dev/null || { echo "skipped: needs $1, which 'scripts/setup tests checks' installs"; exit 77; }; }
same() { # same EXPECTED ACTUAL
  [ "$1" = "$2" ] || { printf 'expected:\n%s\nbut got:\n%s\n' "$1" "$2"; exit 1; }
}

case $what in
  lnav) # The format is taken, and tells every kind of line.
    need lnav
    lnav -i "$here/../../reader/sentiq-lnav.json"
    same '' "$(lnav -C 2>&1)"
    for log in "$here"/data/encoded/*.log; do "$reader" decode "$log" >"$folder/$(basename "$log")"; done
    same 'log_level,lines,events
unknown,2,0
info,33,5
warning,2,2
error,5,5
critical,3,3' "$(lnav -n -c ';SELECT log_level, count(*) AS lines, count(event_id) AS events FROM sentiq_log
      GROUP BY log_level' -c ':write-csv-to -' "$folder"/*.log)"
    ;;
  man)
    need groff
    same '' "$(groff -man -ww -z "$here/../../reader/sentiq-logs.1" 2>&1)"
    same "$("$reader" manual)" "$(<"$here/../../reader/sentiq-logs.1")"
    # The guide has every option, outcome and exit code.
    guide=$(tr -s '\n ' ' ' <"$here/../../docs/reader.md")
    "$reader" manual | sed 's/\\-/-/g; s/\\f[BIR]//g' >"$folder/page.txt"
    {
      grep -oE -- '--[a-z][a-z-]+' "$folder/page.txt" | grep -vxE -- '--(help|output|made)'
      # shellcheck disable=SC2016 # Marks of Markdown, not commands.
      sed -n '/^\.SH OUTCOMES/{n;s/.*: //;s/[,.]/\n/g;p}' "$folder/page.txt" | sed -nE 's/ *([a-z-]+)/`\1`/p'
      sed -n '/^\.SH EXIT STATUS/,/^\.SH ENV/p' "$folder/page.txt" | grep -v '^\.' | paste -d ' ' - - | sed 's/./**&**/'
    } | sort -u | while read -r said; do
      grep -qF -e "$said" <<<"$guide" || { echo "$said is not in docs/reader.md"; exit 1; }
    done
    # What bash completes.
    completed() { cd "$folder" && bash -c 'eval "$1"; shift; COMP_WORDS=("$@"); COMP_CWORD=$(($# - 1)); _sentiq_logs; IFS=,; echo "${COMPREPLY[*]}"' _ \
      "$("$reader" completions bash)" sentiq-logs "$@"; }
    mkdir "$folder/t 1"
    same 'timeline,triage,t 1' "$(completed t)"
    same '--since,--source,--severity' "$(completed timeline --s)"
    same 'warning' "$(completed timeline --severity w)"
    ;;
  readme) # Shows what the program says today.
    { "$reader" summary "$here/data/laptop"; "$reader" timeline --records "$here/data/laptop"; } >"$folder/said.txt"
    same '' "$(sed -nE 's/^    ((2026-11-24 14:|Canvix crashed at |Before it: ).*)/\1/p' "$here/../../README.md" |
      grep -vxFf "$folder/said.txt")"
    ;;
  report) # Chromium shows the text, with and without script, and finds the answers that people look for.
    need chromium
    "$reader" report "$here/data/encoded" -o "$folder/page.html"
    "$reader" report "$here/data/laptop" -o "$folder/walk.html"
    sed '/^<script>/,/<\/script>/d' "$folder/page.html" | sed 's/noscript>/div>/g' >"$folder/plain.html"
    sed -i '/Content-Security-Policy/d' "$folder/walk.html"
    { echo '<script>'; cat "$here/views/Walk.js"; echo '</script>'; } >>"$folder/walk.html"
    seen() {
      chromium --headless --no-sandbox --disable-gpu --user-data-dir="$folder/chromium" --dump-dom \
        "file://$folder/$1" 2>"$folder/chromium.txt"
    }
    expect() { grep -qF "$2" <<<"$1" || { echo "the page does not hold: $2"; exit 1; }; }
    dom=$(seen page.html)
    expect "$dom" '<h1>Canvix crashed at 2026-11-24 21:12:24.500: module PaintCore.dll 29.5.0.137'
    expect "$dom" '29 of 29 entries'
    dom=$(seen plain.html)
    expect "$dom" '<div class="controls" hidden="">'
    expect "$dom" '5 older entries, from before the session'
    "$reader" triage "$here/data" --html "$folder/triage.html"
    expect "$(seen triage.html)" '<th scope="col" class="number" aria-sort="descending"><button type="button">Sessions'
    expect "$dom" 'Pen "A" — 完了 ✅ \ C:'
    same '<title>all found</title>' "$(seen walk.html | sed -n 's/^\(<title>.*\)/\1/p')"
    ;;
  web) # The page that takes logs, in Chromium.
    SENTIQ_PAGE=$(realpath -m "$here/../../build/web/sentiq-logs.html")
    [ -e "$SENTIQ_PAGE" ] || {
      echo "skipped: needs build/web/sentiq-logs.html, which 'scripts/setup web' and 'scripts/build web sentiq-logs' make"
      exit 77
    }
    need chromium
    export SENTIQ_PAGE SENTIQ_LOGS=$reader
    node --test "$here/web/PageTest.mjs"
    ;;
esac
