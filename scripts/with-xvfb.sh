#!/usr/bin/env bash
# Runs a command on an X display: the current one when DISPLAY is set,
# otherwise a private Xvfb server (1280x1024, 24-bit colour) managed by
# openbox, both stopped when the command ends. Exits with the command's
# status.
#   scripts/with-xvfb.sh COMMAND [ARGUMENTS...]
set -euo pipefail

if [[ -n "${DISPLAY:-}" ]]; then
  exec "$@"
fi

for program in Xvfb openbox xprop; do
  command -v "$program" >/dev/null || { echo "with-xvfb: $program is missing (scripts/install-deps.sh)" >&2; exit 1; }
done

work=$(mktemp -d)
xvfb_pid=""
wm_pid=""
stop() {
  [[ -n "$wm_pid" ]] && kill "$wm_pid" 2>/dev/null || true
  [[ -n "$xvfb_pid" ]] && kill "$xvfb_pid" 2>/dev/null || true
  rm -rf "$work"
}
trap stop EXIT

# Xvfb picks a free display number and writes it once it accepts clients.
Xvfb -displayfd 3 -screen 0 1280x1024x24 -nolisten tcp 3>"$work/display" 2>"$work/xvfb.log" &
xvfb_pid=$!
for _ in $(seq 200); do
  [[ -s "$work/display" ]] && break
  kill -0 "$xvfb_pid" 2>/dev/null || { cat "$work/xvfb.log" >&2; exit 1; }
  sleep 0.05
done
[[ -s "$work/display" ]] || { echo "with-xvfb: Xvfb did not start" >&2; exit 1; }
export DISPLAY=":$(head -n1 "$work/display")"

# The window manager is ready once it announces itself on the root window.
openbox --sm-disable >"$work/openbox.log" 2>&1 &
wm_pid=$!
for _ in $(seq 200); do
  xprop -root _NET_SUPPORTING_WM_CHECK 2>/dev/null | grep -q 'window id' && break
  sleep 0.05
done

status=0
"$@" || status=$?
exit "$status"
