# shellcheck shell=bash
# What every command at the root shares: where things are, how it speaks, how it stops.
set -Eeuo pipefail

root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
build=$root/build
export root build

if [ -t 1 ] && [ -z "${NO_COLOR:-}" ]; then bold=$'\e[1m' plain=$'\e[0m'; else bold='' plain=''; fi

say() { printf '%s==> %s%s\n' "$bold" "$*" "$plain"; }
die() { trap - ERR; printf 'error: %s\n' "$*" >&2; exit 1; }
# A failure within $(...) or (...) is told once, where its result is used.
trap '[ "$BASH_SUBSHELL" != 0 ] || die "line $LINENO of $(basename "$0") failed: $BASH_COMMAND"' ERR

# Ctrl-C ends a command by way of its trap on EXIT, once what it had in the foreground has ended.
trap 'exit 130' INT TERM

# failed_with TEXT FILE: dies with TEXT and the last lines of FILE.
failed_with() {
  local seen
  seen=$(grep -v '^[[:space:]]*$' "$2" | tail -n 3 | tr -s '\r\n' ' ') || true
  die "$1: ${seen:-it printed nothing }(${2#"$root"/})"
}

windows_path() { printf 'Z:%s' "${1//\//\\}"; }

# quietly WHAT COMMAND...: runs COMMAND with its output in a file; shows the end of it only when it fails.
quietly() {
  local what=$1 log; shift
  mkdir -p "$build/logs"
  log=$build/logs/$(tr -cs 'a-zA-Z0-9' '-' <<<"$what" | sed 's/-*$//').txt
  if ! "$@" >"$log" 2>&1; then
    tail -n 30 "$log" >&2
    die "$what failed; the whole output is in ${log#"$root"/}"
  fi
}
