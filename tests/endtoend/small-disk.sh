#!/usr/bin/env bash
# Runs a test beside a file system of 256 KiB of its own, named in SENTIQ_SMALL_DISK:  small-disk.sh COMMAND...
set -euo pipefail
disk=$(mktemp -d -p "$PWD")
trap 'umount "$disk" 2>/dev/null || true; rmdir "$disk"' EXIT
if ! mount -t tmpfs -o size=256k small-disk "$disk" 2>/dev/null; then
  echo "skipped: mounting a file system is not allowed here"
  exit 77
fi
export SENTIQ_SMALL_DISK="Z:${disk//\//\\}"
"$@"
