#!/usr/bin/env bash
# Runs a command on the display that there is, under a window manager: with_window_manager.sh MANAGER COMMAND...
set -euo pipefail
"$1" >/dev/null 2>&1 &
manager=$!
trap 'kill "$manager" 2>/dev/null || true' EXIT
sleep 1 # it takes the display over
shift
"$@"
