# shellcheck shell=bash
# Sourced: gives Windows programs a display of their own, with Wine already started in it, until the command ends or
# calls stop_display. Both end every background job of the command.
stop_display() {
  end_jobs  # Before the server: a program that is just starting would start another.
  "$root/scripts/wine" --stop
}
at_end() { stop_display; }

# line_of PID FILE SECONDS: the first line of FILE, which process PID writes; fails when it ends or takes longer.
line_of() {
  local line tries
  for ((tries = $3 * 10; tries > 0; tries--)); do
    if { read -r line <"$2"; } 2>/dev/null; then printf '%s\n' "${line%$'\r'}"; return; fi
    kill -0 "$1" 2>/dev/null || return 1
    sleep 0.1
  done
  return 1
}

mkdir -p "$build/logs"
# -noreset: it would otherwise begin anew when its only client so far goes, and break the connections just being made.
# Files, not pipes: nobody then waits for the other end of one, or takes its end for another's.
display_files=$build/logs/display
: >"$display_files-number.txt"
Xvfb -displayfd 3 -noreset -screen 0 640x480x24 -nolisten tcp 3>"$display_files-number.txt" \
  >"$display_files-xvfb.txt" 2>&1 </dev/null &
DISPLAY=:$(line_of $! "$display_files-number.txt" 30) || failed_with "Xvfb did not start" "$display_files-xvfb.txt"
export DISPLAY

# A process that stays, and that has started Wine's services and desktop before anything else runs: they inherit the
# pipes of whoever starts them, and whoever reads such a pipe to its end (ctest does) would wait for them.
: >"$display_files-keeper.txt"
WINEDEBUG=fixme-all "$root/scripts/wine" "$build/${windows_tree:-windows}/Canvix.exe" 86400 \
  >"$display_files-keeper.txt" 2>"$display_files-wine.txt" </dev/null &
line_of $! "$display_files-keeper.txt" 120 >/dev/null || failed_with "Wine did not start" "$display_files-wine.txt"
