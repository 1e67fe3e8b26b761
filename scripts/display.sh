# shellcheck shell=bash
# Sourced: gives Windows programs a display of their own, until the command ends or calls stop_display.
display_pid='' display_ready=$build/display-ready.$$
stop_display() {
  rm -f "$display_ready"
  [ -n "$display_pid" ] || return 0
  (export WINEPREFIX=$build/wine
    /usr/lib/wine/wineserver64 -k 2>/dev/null || wineserver -k 2>/dev/null) || true
  kill "$display_pid" 2>/dev/null || true
  wait "$display_pid" 2>/dev/null || true
  display_pid=''
}
trap stop_display EXIT
trap 'exit 130' INT TERM

mkfifo "$display_ready"
Xvfb -displayfd 3 -screen 0 640x480x24 -nolisten tcp 3>"$display_ready" >/dev/null 2>&1 &
display_pid=$!
read -r -t 20 display_number <"$display_ready" || die "Xvfb did not start"
export DISPLAY=:$display_number

# A process that stays, and that has started Wine's services and desktop before anything else runs: they inherit the
# pipes of whoever starts them, and whoever reads such a pipe to its end (ctest does) would wait for them.
"$root/scripts/wine" "$build/${windows_tree:-windows}/Canvix.exe" 86400 </dev/null >"$display_ready" 2>/dev/null &
read -r -t 60 <"$display_ready" || die "Wine did not start"
rm -f "$display_ready"
