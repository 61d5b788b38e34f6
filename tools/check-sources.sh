#!/usr/bin/env bash
# Fails, naming the places, when a source includes what its folder may not (tools/layers.txt has
# the order of the folders and the reasons; a reason that nothing needs any more fails as well), or
# names what one file alone may name.
set -eu
cd "$(dirname "$0")/.."
failed=0

# Each include as: file "path" or file <path>
find src \( -name '*.h' -o -name '*.cpp' \) -print0 |
    xargs -0 grep -HoE '^[[:space:]]*#[[:space:]]*include[[:space:]]*["<][^">]+[">]' |
    sed -E 's/:[^"<]*(["<])/ \1/' |
    awk '
function fail(text) { print text; failed = 1 }
function readLayer() {
    if (!/^ /)
        known[folder = $1] = 1
    else if (!($1 in known) || $1 == folder)
        fail(FILENAME ": " $1 " does not stand above " folder)
    else if (NF < 2)
        fail(FILENAME ": no reason why " folder " includes " $1)
    else
        uses[folder " includes " $1] = 0
}
function checkInclude(   parts, from, path, to, edge) {
    split($1, parts, "/")
    from = parts[2]
    path = substr($2, 2, length($2) - 2)
    to = path
    sub("/.*", "", to)
    edge = from " includes " to
    if (edge in uses)
        uses[edge]++
    else if (to in known ? to != from : $2 ~ /^"/ && path !~ /^ui_[A-Za-z]+\.h$/)
        fail($1 ": " from " may not include " path)
}
FNR == NR { if (NF && !/^#/) readLayer(); next }
{ checkInclude() }
END {
    for (edge in uses)
        if (!uses[edge])
            fail("tools/layers.txt: nothing in " edge " any more")
    exit failed
}' tools/layers.txt - || failed=1

# only PATTERN FILES WHY: the pattern stands in the sources of these files and in no others.
only() {
    grep -qE "$1" $2 || { echo "$2: no longer names $1"; failed=1; }
    if grep -rnE "$1" src --include='*.h' --include='*.cpp' | grep -vE "^(${2// /|}):"; then
        echo "    $3"
        failed=1
    fi
}
only 'Local8Bit|qPrintable|QTextCodec' src/support/tMapText.cpp \
    'text of maps goes through fromMapText and toMapText'
only 'QGL' 'src/views/tGLWidget.h src/views/tGLWidget.cpp' \
    'what shows OpenGL derives from cGLWidget'

exit $failed
