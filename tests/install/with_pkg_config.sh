#!/bin/sh
# Builds and runs the consumer with a bare compiler: with_pkg_config.sh COMPILER PKG_CONFIG PREFIX LIBDIR SOURCE OUTPUT
set -eu
compiler=$1 pkg_config=$2 prefix=$3 libdir=$4 source=$5 output=$6
PKG_CONFIG_PATH="$prefix/$libdir/pkgconfig"
export PKG_CONFIG_PATH
# The options are words for a shell, with a backslash in front of each blank of the prefix.
eval "set -- $("$pkg_config" --cflags --libs vrelio)"
"$compiler" -std=c++17 "$source" -o "$output" "$@" "-Wl,-rpath,$prefix/$libdir"
"$output"
