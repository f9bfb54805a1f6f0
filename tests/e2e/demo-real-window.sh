#!/usr/bin/env bash
# The demo as a person uses it: in a real X server (Xvfb) with a window manager (openbox), with
# fresh settings and a fresh database, driven by real input events (xdotool, through XTest).
# It finds what to click as a screen reader does, in the demo's --accessibility-dump, and checks
# the SQLite file with sqlite3.
#   demo-real-window.sh DEMO WORK_DIR
set -euo pipefail

demo=$1
work=$2
rm -rf "$work"
mkdir -p "$work/runtime"
chmod 700 "$work/runtime"
export HOME="$work/home"
export XDG_CONFIG_HOME="$HOME/.config" XDG_DATA_HOME="$HOME/.local/share" XDG_RUNTIME_DIR="$work/runtime"
database="$XDG_DATA_HOME/kvKalivo/kvkalivo-demo/termine.sqlite"
settings="$XDG_CONFIG_HOME/kvKalivo/kvkalivo-demo.conf"
dump="$work/accessibility.txt"
pids=()

log() { echo "e2e $(date +%T.%N | cut -c1-12): $*"; }

cleanup() {
  local pid
  for pid in "${pids[@]}"; do kill "$pid" 2>/dev/null || true; done
  for pid in "${pids[@]}"; do wait "$pid" 2>/dev/null || true; done
}
trap cleanup EXIT

fail() {
  log "FAILED: $*"
  if [ -n "${DISPLAY:-}" ]; then import -window root "$work/failure.png" 2>/dev/null && log "screen: $work/failure.png"; fi
  [ -f "$dump" ] && { log "what the demo showed:"; cat "$dump"; }
  exit 1
}

# wait_for SECONDS DESCRIPTION COMMAND...: polls COMMAND every 0.1 s.
wait_for() {
  local seconds=$1 what=$2
  shift 2
  local tries=$((seconds * 10))
  until "$@"; do
    tries=$((tries - 1))
    [ "$tries" -gt 0 ] || fail "$what"
    sleep 0.1
  done
}

# Where ROLE with NAME is on the screen, "x y w h", from the dump (role, name, parent, window,
# objectName, x, y, w, h, states). NAME matches from its start; WITHIN, when given, is the
# start of the parent's or the window's name.
place() {
  local role=$1 name=$2 within=${3:-}
  [ -f "$dump" ] || return 1
  awk -F'\t' -v role="$role" -v name="$name" -v within="$within" '
    $1 == role && index($2, name) == 1 && (index($3, within) == 1 || index($4, within) == 1) {
      print $6, $7, $8, $9; found = 1; exit
    }
    END { exit !found }' "$dump"
}
shown() { place "$@" >/dev/null; }
hidden() { ! place "$@" >/dev/null; }
focused() { awk -F'\t' -v name="$1" 'index($2, name) == 1 && $10 ~ /focused/ { found = 1 } END { exit !found }' "$dump"; }
shot() { import -window root "$work/$1.png"; }

# click_named OBJECTNAME: a click in the middle of the widget with that objectName.
click_named() {
  local x y w h
  read -r x y w h < <(awk -F'\t' -v name="$1" '$5 == name { print $6, $7, $8, $9; exit }' "$dump")
  [ -n "${h:-}" ] || fail "no $1 to click"
  rest_on $((x + w / 2)) $((y + h / 2))
  xdotool click 1
}

# click ROLE NAME [PARENT] [BUTTON] [REPEAT]: a real click in the middle of the object.
click() {
  local role=$1 name=$2 parent=${3:-} button=${4:-1} repeat=${5:-1} x y w h
  read -r x y w h < <(place "$role" "$name" "$parent") || fail "no $role \"$name\" to click"
  rest_on $((x + w / 2)) $((y + h / 2))
  xdotool click --repeat "$repeat" --delay 80 "$button"
}

# The pointer comes to rest on X, Y as a hand moves it: two moves, then a short pause.
rest_on() {
  xdotool mousemove --sync $(($1 - 3)) $(($2 - 1))
  xdotool mousemove --sync "$1" "$2"
  sleep 0.3
}

sql() { sqlite3 "$database" "$1"; }

# --- a real X server with a window manager ----------------------------------------------------
exec {displayfd}>"$work/display"
Xvfb -displayfd "$displayfd" -screen 0 1600x1000x24 -nolisten tcp >"$work/xvfb.log" 2>&1 &
pids+=($!)
exec {displayfd}>&-
wait_for 20 "Xvfb did not start" test -s "$work/display"
export DISPLAY=":$(head -n1 "$work/display")"
openbox >"$work/openbox.log" 2>&1 &
pids+=($!)
window_manager_runs() { xprop -root _NET_SUPPORTING_WM_CHECK | grep -q "window id"; }
wait_for 20 "openbox did not start" window_manager_runs
log "X server $DISPLAY with openbox"

# --- a fresh database, and a day with more appointments than fit -----------------------------
QT_QPA_PLATFORM=offscreen "$demo" --date 2026-11-23 --screenshot "$work/first-run.png" >/dev/null
[ -f "$database" ] || fail "the demo made no database at $database"
[ ! -e "$settings" ] || fail "a screenshot run saved settings"
for n in $(seq -w 1 20); do
  sql "INSERT INTO Termine (DateBegin, DateEnd, Name) VALUES ('2026-11-26 07:$n:00', '2026-11-26 07:$n:00', 'Wartung $n')"
done

export QT_QPA_PLATFORM=xcb
"$demo" --date 2026-11-23 --accessibility-dump "$dump" >"$work/demo.log" 2>&1 &
demo_pid=$!
pids+=("$demo_pid")
monday="Montag, 23. November 2026"
wait_for 30 "the calendar did not show Monday's rows" shown ListItem "09:00 Teambesprechung" "$monday"
log "the demo shows the week of 23 November"

# --- a double-click on a row opens the editor; "Abbrechen" closes it with the mouse -----------
click ListItem "09:00 Teambesprechung" "$monday" 1 2
wait_for 10 "no editor after a double-click on the row" shown Dialog "23.11.2026, Montag"
shot editor-over-week
click_named CancelButton
wait_for 5 "the editor took no mouse click" hidden Dialog "23.11.2026, Montag"
log "editor opened by a double-click, closed with the mouse"

# --- "Löschen..." from the context menu, answered "Nein" with the mouse ------------------------
click ListItem "15:00 Steuerberater" "$monday" 3
wait_for 5 "no context menu on the row" shown MenuItem "Löschen..."
click MenuItem "Löschen..."
wait_for 5 "no delete question" shown StaticText "Termin <15:00 Steuerberater> löschen?"
shot delete-question
click Button "Nein"
wait_for 5 "the question took no mouse click" hidden StaticText "Termin <15:00 Steuerberater> löschen?"
[ "$(sql "SELECT COUNT(*) FROM Termine WHERE Name = 'Steuerberater' AND DateBegin LIKE '2026-11-23%'")" = 1 ] \
  || fail "the row answered \"Nein\" is gone from the database"
log "delete question answered Nein with the mouse; the row is kept"

# --- a new appointment with the mouse ---------------------------------------------------------
wednesday="Mittwoch, 25. November 2026"
read -r x y w h < <(place List "$wednesday") || fail "no cell for $wednesday"
rest_on $((x + w / 2)) $((y + h - 20))
xdotool click --repeat 2 --delay 80 1
wait_for 10 "no editor after a double-click on the day" shown Dialog "25.11.2026, Mittwoch"
click_named txtName
xdotool type --delay 20 "Ende-zu-Ende"
click_named cmdOK
wait_for 5 "the editor's OK took no mouse click" hidden Dialog "25.11.2026, Mittwoch"
wait_for 5 "the new appointment is not shown" shown ListItem "Ende-zu-Ende" "$wednesday"
[ "$(sql "SELECT COUNT(*) FROM Termine WHERE Name = 'Ende-zu-Ende' AND DateBegin LIKE '2026-11-25%'")" = 1 ] \
  || fail "the new appointment is not in the database"
log "appointment created with the mouse and stored"

# --- the wheel over a full day's rows, in the month view ----------------------------------------
thursday="Donnerstag, 26. November 2026"
click CheckBox "Monatsansicht"
wait_for 5 "no month view" shown List "Montag, 26. Oktober 2026"
wait_for 5 "Thursday's first row is not shown" shown ListItem "07:01 Wartung 01" "$thursday"
read -r x y w h < <(place ListItem "07:03 Wartung 03" "$thursday")
rest_on $((x + 30)) $((y + h / 2))
xdotool click --repeat 3 --delay 100 5
wait_for 5 "the wheel over the rows did not scroll" hidden ListItem "07:01 Wartung 01" "$thursday"
shot month-after-wheel
click CheckBox "Wochenansicht"
wait_for 5 "no week view" hidden List "Montag, 26. Oktober 2026"
log "the wheel scrolled Thursday's rows in the month view"

# --- the keyboard: select, move, open with Enter ------------------------------------------------
read -r x y w h < <(place List "$monday")
rest_on $((x + w / 2)) $((y + h - 20))
xdotool click 1
xdotool key Right Down
wait_for 5 "Right, Down did not select Tuesday's first row" focused "10:00 Kundentermin Müller GmbH"
shot keyboard-selection
shown StaticText "48. KW" || fail "the status bar does not show the week"
xdotool key Return
wait_for 5 "Enter did not open the selected row" shown Dialog "24.11.2026, Dienstag"
click_named cmdDocumentBrowser
wait_for 5 "no file dialog" shown Dialog "Öffnen"
shot file-dialog
shown Button "Abbrechen" "Öffnen" || fail "the file dialog does not speak German"
click Button "Abbrechen" "Öffnen"
wait_for 5 "the file dialog took no mouse click" hidden Dialog "Öffnen"
click_named CancelButton
wait_for 5 "the editor took no mouse click" hidden Dialog "24.11.2026, Dienstag"
xdotool key Next
wait_for 5 "PageDown did not go forward a week" focused "Dienstag, 1. Dezember 2026"
log "keyboard: Right, Down, Enter, PageDown; the file dialog in German"

# --- closing saves readable colours -----------------------------------------------------------
xdotool key ctrl+q
wait_for 10 "the demo did not quit on Ctrl+Q" bash -c "! kill -0 $demo_pid 2>/dev/null"
grep -q '^TodayHeaderColor=12632319$' "$settings" || fail "today's header colour was not saved as the default: $(cat "$settings")"
log "closed; the settings keep today's light red"
