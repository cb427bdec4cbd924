#!/usr/bin/env bash
# SPDX-FileCopyrightText: The RuvMod authors
# SPDX-License-Identifier: Apache-2.0
#
# Holds every #include of the tree against what its room may know, then shows that planted leaks are caught: by
# this check, and by the compiler with the module's own include folders.
set -euo pipefail
cd "$(dirname "$(readlink -f "$0")")/.."

standard='<[a-z_]+>'
module="\"(host|frame|masks|chart|res)/[^\"]+\"|$standard"
no_qt='<[^Q>][^>]*>'

# The floors of the house, lowest first: a room may know itself and what lies below.
module_rooms='frame|masks|chart|res'
host_rooms='base|drawing|framework|krn|vision|casefile|report|pathtime|scene'
floor() { echo "\"(host|$1)/[^\"]+\"|$no_qt"; }
front_end() { echo "\"(host|$1)/[^\"]+\"|<[^>]+>"; }

# allowed FILE prints the pattern of the includes that the file may have; nothing for files without a rule.
allowed() {
    case $1 in
    host/*) echo "\"host/[^\"]+\"|$standard" ;;
    masks/video/*) echo "$module|<opencv2/(core|imgproc)[a-z_/]*\.hpp>" ;;
    masks/import/XmlLeser.h) echo "$module|<emmintrin\.h>" ;;
    frame/* | masks/* | chart/*) echo "$module" ;;
    standalone/base/*) floor "base" ;;
    standalone/drawing/*) floor "base|drawing" ;;
    standalone/framework/*) floor "base|drawing|framework" ;;
    standalone/krn/*) floor "base|drawing|framework|krn" ;;
    standalone/vision/video/*) floor "base|drawing|framework|krn|vision" ;;
    standalone/vision/*) echo "\"(host|vision)/[^\"]+\"|$standard|<(dlfcn|windows)\.h>" ;;
    standalone/casefile/*) floor "base|drawing|framework|krn|casefile" ;;
    standalone/report/*) floor "base|drawing|framework|krn|report" ;;
    standalone/pathtime/*) floor "base|drawing|framework|krn|pathtime" ;;
    standalone/scene/*) floor "base|drawing|framework|krn|scene" ;;
    standalone/cli/*) floor "$module_rooms|$host_rooms|cli" ;;
    standalone/desktop/look/*) front_end "$host_rooms|desktop/look" ;;
    standalone/desktop/case/*) front_end "$host_rooms|desktop/(look|case)" ;;
    standalone/desktop/mask/*) front_end "$module_rooms|$host_rooms|desktop/(look|case|mask)" ;;
    standalone/desktop/scene/*) front_end "$module_rooms|$host_rooms|desktop/(look|case|scene)" ;;
    standalone/desktop/*) front_end "$module_rooms|$host_rooms|desktop" ;;
    esac
}

# leaks TREE prints file:line:include for each include that its room must not have.
leaks() {
    (
        cd "$1"
        find . -path ./build -prune -o -type f \( -name '*.cpp' -o -name '*.h' \) -printf '%P\n' | sort |
            while read -r file; do
                pattern=$(allowed "$file")
                [[ -n $pattern ]] || continue
                { grep -nE '^[[:space:]]*#[[:space:]]*(include|import)' "$file" || true; } |
                    { grep -vE "^[0-9]+:[[:space:]]*#[[:space:]]*include[[:space:]]*($pattern)[[:space:]]*(//.*|/\*.*)?$" ||
                        true; } | { grep . || true; } | sed "s|^|$file:|"
                { grep -nE '^[[:space:]]*#.*\.\./' "$file" || true; } | sed "s|^|$file:|"
            done
    )
}

failed=0
complain() {
    echo "layering: $*" >&2
    failed=1
}

found=$(leaks .)
[[ -z $found ]] || complain "a room includes what it must not know:"$'\n'"$found"

# Planted leaks: each line a file and an include that must be reported there.
plants=$(mktemp -d)
trap 'rm -rf "$plants"' EXIT
while read -r file include; do
    rm -rf "${plants:?}/tree"
    mkdir -p "$plants/tree/$(dirname "$file")"
    printf '#include <vector>\n#include "host/CDC.h"\n  #  include %s // planted\n' "$include" >"$plants/tree/$file"
    [[ $(leaks "$plants/tree") == "$file:3:"* ]] || complain "a planted $include in $file was not caught"
done <<'LIST'
frame/Planted.cpp "framework/Window.h"
frame/Planted.cpp "standalone/framework/Window.h"
frame/Planted.cpp <framework/Window.h>
frame/Planted.h <windows.h>
masks/dynamics/Planted.cpp "krn/Bindings.h"
masks/dynamics/Planted.cpp "../../standalone/krn/Bindings.h"
masks/dynamics/Planted.cpp "host/../standalone/krn/Bindings.h"
masks/dynamics/Planted.h <opencv2/core.hpp>
masks/video/Planted.cpp <opencv2/videoio.hpp>
chart/Planted.cpp <QPainter>
chart/Planted.cpp PLANTED_MACRO
host/Planted.h <unistd.h>
host/Planted.h "frame/Kinematics.h"
standalone/framework/Planted.cpp <QWidget>
standalone/framework/Planted.cpp <QtCore/QString>
standalone/framework/Planted.cpp "cli/Actions.h"
standalone/krn/Planted.cpp "desktop/MainWindow.h"
standalone/krn/Planted.cpp "casefile/CaseFile.h"
standalone/base/Planted.cpp "krn/Placing.h"
standalone/drawing/Planted.cpp "framework/Window.h"
standalone/framework/Planted.cpp "krn/MessageTable.h"
standalone/scene/Planted.cpp "casefile/CaseFile.h"
standalone/report/Planted.cpp "pathtime/PhaseTable.h"
standalone/desktop/look/Planted.cpp "desktop/case/CaseDocument.h"
standalone/desktop/scene/Planted.cpp "desktop/MainWindow.h"
standalone/krn/Planted.cpp "masks/dynamics/CBeschlDat.h"
standalone/vision/Planted.cpp <QImage>
standalone/vision/Planted.cpp <opencv2/core.hpp>
standalone/vision/video/Planted.cpp <QImage>
standalone/vision/video/Planted.cpp "casefile/CaseFile.h"
standalone/cli/Planted.cpp <QString>
LIST

# The compiler must not find the host library from the module.
flags=()
while read -r folder; do
    flags+=(-I "$folder")
done <build/release/include/module.txt
compiles() {
    printf '#include "%s"\n' "$1" >"$plants/Planted.cpp"
    g++ -std=c++20 -fsyntax-only "${flags[@]}" "$plants/Planted.cpp" 2>/dev/null
}
compiles host/CDC.h || complain "the module's include folders do not work"
while read -r header; do
    for name in "$header" "${header#standalone/}" "$(basename "$header")"; do
        ! compiles "$name" || complain "the module can include \"$name\""
    done
done < <(find standalone -name '*.h' | sort | awk 'NR % 5 == 1')

[[ $failed -eq 0 ]] || exit 1
echo "layering: every room includes only what it may know, and planted leaks are caught"
