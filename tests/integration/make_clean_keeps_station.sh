#!/usr/bin/env bash
# `make run`'s layout, then `make clean`: the operator's settings and logbook are still there.
# A copy of the Makefile and scripts/run-station in a temporary source tree runs the real
# kestrel-sim and Kestrel (offscreen); a contact is logged into the database Kestrel opened.
#   make_clean_keeps_station.sh SOURCE_DIR BUILD_DIR
set -euo pipefail
source_dir=$1
build_dir=$2
for program in "$build_dir/sim/kestrel-sim" "$build_dir/app/kestrel"; do
  [ -x "$program" ] || { echo "missing $program: build it first" >&2; exit 1; }
done

tmp=$(mktemp -d)
trap 'rm -rf "$tmp"' EXIT
src="$tmp/src"
mkdir -p "$src/scripts" "$src/build/sim" "$src/build/app"
cp "$source_dir/Makefile" "$src/"
cp "$source_dir/scripts/run-station" "$src/scripts/"
ln -s "$build_dir/sim/kestrel-sim" "$src/build/sim/kestrel-sim"
# Nothing of the user's own folders is touched.
export XDG_DATA_HOME="$tmp/data" XDG_CONFIG_HOME="$tmp/config" QT_QPA_PLATFORM=offscreen

# Stands in for the operator: Kestrel starts, a contact is logged, Kestrel is closed.
cat >"$src/build/app/kestrel" <<SCRIPT
#!/usr/bin/env bash
"$build_dir/app/kestrel" &
pid=\$!
# (sqlite3 would make an empty file of a missing one: wait until Kestrel has made it)
for _ in \$(seq 200); do
  [ -s backup.db ] && sqlite3 backup.db "INSERT INTO logtab (Callsign, QSL) VALUES ('DL1ABC', 'Y')" && break
  sleep 0.1
done
kill -TERM \$pid
for _ in \$(seq 50); do kill -0 \$pid 2>/dev/null || break; sleep 0.1; done
kill -KILL \$pid 2>/dev/null || true
wait \$pid || true
SCRIPT
chmod +x "$src/build/app/kestrel"

(cd "$src" && scripts/run-station build) >"$tmp/run.log" 2>&1 || { cat "$tmp/run.log"; exit 1; }
station="$src/station"
for f in Kestrel.txt Kestrel.ini backup.db; do
  [ -s "$station/$f" ] || { echo "make run left no $f in $station" >&2; cat "$tmp/run.log"; ls -la "$station"; exit 1; }
done
contacts() { sqlite3 "$station/backup.db" "SELECT COUNT(*) FROM logtab WHERE Callsign = 'DL1ABC'"; }
[ "$(contacts)" = 1 ] || { echo "the contact did not reach $station/backup.db" >&2; exit 1; }
before=$(cd "$station" && sha256sum Kestrel.txt Kestrel.ini backup.db)

make -C "$src" clean >/dev/null
[ ! -e "$src/build" ] || { echo "make clean left the build folder" >&2; exit 1; }
after=$(cd "$station" && sha256sum Kestrel.txt Kestrel.ini backup.db)
[ "$before" = "$after" ] || { echo "make clean changed the station:" >&2; diff <(echo "$before") <(echo "$after") >&2; exit 1; }
[ "$(contacts)" = 1 ] || { echo "the contact is gone after make clean" >&2; exit 1; }
grep -q 'N0CALL' "$station/Kestrel.txt" || { echo "the settings lost the callsign" >&2; exit 1; }

# A build folder that holds the station folder is refused.
mkdir -p "$src/build"
if make -C "$src" clean BUILD=. >/dev/null 2>&1; then echo "make clean removed the source tree" >&2; exit 1; fi
[ -s "$station/backup.db" ] || { echo "the refused clean removed the log" >&2; exit 1; }
echo "station intact after make clean"
