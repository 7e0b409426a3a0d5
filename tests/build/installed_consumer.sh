#!/usr/bin/env bash
# Builds and runs examples/first_steps outside the tree, from an install tree that was moved.
# usage: installed_consumer.sh cmake|pkg-config SOURCE BUILD VERSION [COMPILER-FLAG...]
set -euo pipefail
way=$1 source=$2 build=$3 version=$4 flags=("${@:5}")

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
cmake --install "$build" --prefix "$work/first" >/dev/null
mv "$work/first" "$work/moved"
cp -r "$source/examples/first_steps" "$work/consumer"
lib=$(dirname "$(find "$work/moved" -name libhalvern.so)")

private=$(cd "$work/moved/include" && find . -type f | sort)
public=$(cd "$source/include" && find . -name '*.h' | sort)
[[ $private == "$public" ]] || { echo "the installed headers are not those of include/"; exit 1; }

case $way in
    cmake)
        CXXFLAGS="${flags[*]}" cmake -G Ninja -S "$work/consumer" -B "$work/build" -DCMAKE_PREFIX_PATH="$work/moved" >"$work/log" 2>&1 &&
            cmake --build "$work/build" >>"$work/log" 2>&1 || { cat "$work/log"; exit 1; }
        program=$work/build/first_steps
        ;;
    pkg-config)
        export PKG_CONFIG_PATH=$lib/pkgconfig
        [[ $(pkg-config --modversion halvern) == "$version" ]]
        # shellcheck disable=SC2046  # the flags are words of their own
        g++ "${flags[@]}" "$work"/consumer/*.cpp -o "$work/first_steps" -Wl,-rpath,"$lib" \
            $(pkg-config --cflags --libs halvern)
        program=$work/first_steps
        ;;
esac
"$program"
