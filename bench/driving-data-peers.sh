#!/usr/bin/env bash
# SPDX-FileCopyrightText: The RuvMod authors
# SPDX-License-Identifier: Apache-2.0
#
# The reader of driving data beside pandas.read_csv and data.table's fread, on the same file in the same run; times are
# CPU seconds, the best of five, fread with one thread. The ratio is to the reader's.
# Needs the packages of the section [driving-data-peers] in cmake/packages.txt.
set -euo pipefail
cd "$(dirname "$(readlink -f "$0")")/.."
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT
cmake --build --preset release --target ruvmod-bench >/dev/null
RUV_DRIVING_DATA_FILES=$folder build/release/bin/ruvmod-bench --benchmark_filter='DrivingDataReader' \
    --benchmark_repetitions=5 --benchmark_format=json 2>/dev/null >"$folder/reader.json"
reader=$(/usr/bin/python3 -c "
import json
runs = json.load(open('$folder/reader.json'))['benchmarks']
print(min(r['cpu_time'] for r in runs if r['run_type'] == 'iteration') / 1000)")
pandas=$(/usr/bin/python3 -c "
import time, pandas
def once():
    start = time.process_time()
    frame = pandas.read_csv('$folder/driving-data.csv')
    assert len(frame) == 1000000
    return time.process_time() - start
print(min(once() for _ in range(5)))")
fread=$(Rscript -e "
suppressMessages(library(data.table)); setDTthreads(1)
once <- function() { t <- system.time(d <- fread('$folder/driving-data.csv')); stopifnot(nrow(d) == 1000000); t[1] + t[2] }
cat(min(replicate(5, once())))")
size=$(stat -c %s "$folder/driving-data.csv")
awk -v size="$size" -v reader="$reader" -v pandas="$pandas" -v fread="$fread" 'BEGIN {
    printf "%-24s %8s %8s %8s\n", "", "s", "MB/s", "ratio"
    printf "%-24s %8.3f %8.0f %8.2f\n", "reader", reader, size / reader / 1e6, 1
    printf "%-24s %8.3f %8.0f %8.2f\n", "pandas.read_csv", pandas, size / pandas / 1e6, pandas / reader
    printf "%-24s %8.3f %8.0f %8.2f\n", "data.table fread", fread, size / fread / 1e6, fread / reader
}'
