#!/usr/bin/env bash
# Looks into the files of the program and its reader: imports, hardening, version resource and manifest.
set -euo pipefail
facts=$(x86_64-w64-mingw32-objdump -p "$1"; strings "$1"; strings -el "$1")
system='(advapi32|dxgi|kernel32|msvcrt|ntdll|psapi|shell32|user32|wevtapi|ws2_32|api-ms-win-crt-.*)\.dll'
others=$(sed -n 's/^\s*DLL Name: //p' <<<"$facts" | grep -vixE "$system")
[ "$others" = Tarnwick.dll ] || { echo "FAILED: imports $others, not the crash client alone"; exit 1; }
for fact in HIGH_ENTROPY_VA DYNAMIC_BASE NX_COMPAT '^Subsystem\s+0*2\s' '^CanvixSentiq$' '^29\.5\.0\.137$' \
  asInvoker longPathAware; do
  grep -qE "$fact" <<<"$facts" || { echo "FAILED: lacks $fact"; exit 1; }
done
of_reader=$(strings "$2"; strings -el "$2")
for fact in '^sentiq-logs\.exe$' '^29\.5\.0\.137$' longPathAware '>UTF-8</activeCodePage>'; do
  grep -qE "$fact" <<<"$of_reader" || { echo "FAILED: the reader lacks $fact"; exit 1; }
done
