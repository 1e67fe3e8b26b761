# shellcheck shell=bash
# What every command at the root shares: where things are, how it speaks, how it stops.
set -Eeuo pipefail

root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
build=$root/build
# Clang's version for the static checks: one that Debian 12 and 13 both have, so that they find the same.
clang=19
export root build clang

if [ -t 1 ] && [ -z "${NO_COLOR:-}" ]; then bold=$'\e[1m' plain=$'\e[0m'; else bold='' plain=''; fi

say() { printf '%s==> %s%s\n' "$bold" "$*" "$plain"; }
die() { trap - ERR; printf 'error: %s\n' "$*" >&2; exit 1; }
# A failure within $(...) or (...) is told once, where its result is used.
trap '[ "$BASH_SUBSHELL" != 0 ] || die "line $LINENO of $(basename "$0") failed: $BASH_COMMAND"' ERR

# However a command ends, no job of it is left behind. Ctrl-C ends it once what it had in the foreground has ended.
at_end() {
  local jobs
  mapfile -t jobs < <(jobs -p)
  [ ${#jobs[@]} = 0 ] || kill "${jobs[@]}" 2>/dev/null || true
  wait
}
trap 'trap "" INT TERM; at_end' EXIT
trap 'exit 130' INT TERM

# failed_with TEXT FILE: dies with TEXT and the last lines of FILE.
failed_with() {
  local seen
  seen=$(grep -v '^[[:space:]]*$' "$2" | tail -n 3 | tr -s '\r\n' ' ') || true
  die "$1: ${seen:-it printed nothing }(${2#"$root"/})"
}

windows_path() { printf 'Z:%s' "${1//\//\\}"; }

# The width of the terminal, less one column, so that a full line does not wrap.
columns() { echo $(($(tput cols 2>/dev/null || echo 80) - 1)); }

# show_life FILE: on a terminal, the seconds so far and the last line of FILE, over and over in one line.
show_life() {
  local width begin=$SECONDS
  width=$(columns)
  while sleep 1; do
    printf '\r%-*.*s' "$width" "$width" "    $((SECONDS - begin)) s  $(tail -n 1 "$1" | tr -d '\r' | tr '\t' ' ')"
  done
}

# quietly WHAT COMMAND...: runs COMMAND with its output in a file; shows the end of it only when it fails.
quietly() {
  local what=$1 log life='' code=0; shift
  mkdir -p "$build/logs"
  log=$build/logs/${what//[^a-zA-Z0-9.]/-}.txt
  : >"$log"
  if [ -t 1 ]; then show_life "$log" & life=$!; fi
  "$@" >"$log" 2>&1 || code=$?
  if [ -n "$life" ]; then
    kill "$life"
    wait "$life" 2>/dev/null || true
    printf '\r%*s\r' "$(columns)" ''
  fi
  [ "$code" != 0 ] || return 0
  tail -n 30 "$log" >&2
  die "$what failed; the whole output is in ${log#"$root"/}"
}
