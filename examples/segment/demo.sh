#!/usr/bin/env bash
# Cuts the plant out of the left photograph of a stereo pair, with its disparities as depth codes.
set -euo pipefail
"$BIN/segment" \
    --app "$PHOTOS/aloeL.jpg" \
    --disparity "$PHOTOS/aloeGT.png" \
    --config "$SOURCE/examples/data/segment.txt" \
    --region 640,560,440,500 \
    --tolerance 0.32 \
    --width-factor 2.5 \
    --height-factor 2 \
    --out "$OUT/segment"
