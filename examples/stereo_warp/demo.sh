#!/usr/bin/env bash
# Paints the left photograph of a stereo pair out of the right one.
set -euo pipefail
"$BIN/stereo_warp" \
    --config "$SOURCE/examples/data/aloe_rig.txt" \
    --left "$PHOTOS/aloeL.jpg" \
    --right "$PHOTOS/aloeR.jpg" \
    --disparity "$PHOTOS/aloeGT.png" \
    --disparity-offset 270 \
    --out "$OUT/stereo_warp"
