#!/usr/bin/env bash
# Looks into the program's file: what it imports, how it is hardened, what its version resource says.
set -euo pipefail
program=$1
objdump=x86_64-w64-mingw32-objdump
failed=0
fail() { echo "FAILED: $*"; failed=1; }

headers=$("$objdump" -p "$program")
mapfile -t imports < <(sed -n 's/^\s*DLL Name: //p' <<<"$headers" | tr '[:upper:]' '[:lower:]' | sort)
echo "imports: ${imports[*]}"
for dll in "${imports[@]}"; do
  case $dll in
    tarnwick.dll | advapi32.dll | dxgi.dll | kernel32.dll | msvcrt.dll | ntdll.dll | psapi.dll | shell32.dll | user32.dll | wevtapi.dll | ws2_32.dll | api-ms-win-crt-*.dll) ;;
    *) fail "imports $dll, which is neither the system's nor the crash client's" ;;
  esac
done
grep -qx tarnwick.dll <(printf '%s\n' "${imports[@]}") || fail "does not import the crash client"

for flag in HIGH_ENTROPY_VA DYNAMIC_BASE NX_COMPAT; do
  grep -q "$flag" <<<"$headers" || fail "lacks $flag"
done
grep -qE '^Subsystem\s+0*2\s' <<<"$headers" || fail "is not a program of the GUI subsystem"

strings=$(strings -el "$program")
for text in CanvixSentiq 29.5.0.137; do
  grep -qxF "$text" <<<"$strings" || fail "version resource lacks $text"
done
for text in asInvoker longPathAware; do
  grep -q "$text" "$program" || fail "manifest lacks $text"
done
[ "$failed" = 0 ] && echo "all as it should be"
exit "$failed"
