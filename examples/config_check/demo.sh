#!/usr/bin/env bash
# Tells what the rig files describe. One of them imports another by a path from the repository's root.
set -euo pipefail
cd "$SOURCE"
"$BIN/config_check" examples/data/aloe_rig.txt | tee "$OUT/config_check/aloe_rig.txt"
"$BIN/config_check" examples/data/projection_rig.txt | tee "$OUT/config_check/projection_rig.txt"
