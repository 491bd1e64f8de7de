#!/usr/bin/env bash
# Finds the camera's pose in each of thirteen photographs of a chessboard, and stands a cube on the board.
set -euo pipefail
"$BIN/board_pose" \
    --intrinsics "$PHOTOS/left_intrinsics.yml" \
    --out "$OUT/board_pose" \
    "$PHOTOS"/left[0-9][0-9].jpg
