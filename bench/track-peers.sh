#!/usr/bin/env bash
# SPDX-FileCopyrightText: The RuvMod authors
# SPDX-License-Identifier: Apache-2.0
#
# The readers of tracks beside pugixml and gpsbabel, on the same files in the same run.
set -euo pipefail
cd "$(dirname "$(readlink -f "$0")")/.."
source cmake/environment.sh
need_packages base vision test bench track-peers
build release ruvmod-bench
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT
RUV_TRACK_FILES=$folder build/release/bin/ruvmod-bench --benchmark_filter='GpxTrack|FitTrack' --benchmark_min_time=1
g++ -std=c++20 -O2 bench/peers/PugixmlTrack.cpp -lpugixml -o "$folder/pugixml"
"$folder/pugixml" "$folder/track.gpx"
echo "gpsbabel (nothing written):"
for run in 1 2 3; do
    echo "run $run"
    TIMEFORMAT='  %U s'
    time gpsbabel -i garmin_fit -f "$folder/track.fit"
done
