#!/usr/bin/env bash
# Shows a track, takes out what was not heard well, and passes it to a second program over the local network.
set -euo pipefail
track=$SOURCE/examples/data/lecture_subtitles.txt
folder=$OUT/subtitle_track
mkdir -p "$folder"

# Written again, an unchanged track is the same file.
"$BIN/subtitle_track" "$track" --output "$folder/unchanged.txt"
cmp "$track" "$folder/unchanged.txt"

# The listener tells when it is ready. A port that somebody else has taken makes it end at once.
listener=
trap '[ -z "$listener" ] || kill "$listener" 2>/dev/null || true' EXIT
for attempt in 1 2 3 4 5 6 7 8 9 10; do
    port=$((20000 + RANDOM % 10000))
    "$BIN/subtitle_track" --listen "$port" --output "$folder/received.txt" 2>"$folder/listener.log" &
    listener=$!
    while kill -0 "$listener" 2>/dev/null && ! grep -q listening "$folder/listener.log"; do
        sleep 0.05
    done
    grep -q listening "$folder/listener.log" && break
done

echo "Half a second later, and without the blocks below 0.5, to port $port:"
"$BIN/subtitle_track" "$track" --shift 0.5 --min-confidence 0.5 \
    --output "$folder/sent.txt" --send "127.0.0.1:$port"
wait "$listener"
listener=
cmp "$folder/sent.txt" "$folder/received.txt"
echo "sent and received files are identical"
rm "$folder/listener.log"
