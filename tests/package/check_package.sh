#!/usr/bin/env bash
# Installs the build into a scratch prefix, checks which symbols the installed libraries
# export, and builds and runs a program against the installed CMake package.
# Usage: check_package.sh BUILD_DIR CONSUMER_SOURCE WORK_DIR GENERATOR [CXX_FLAGS]
set -euo pipefail
build=$1 consumer=$2 work=$3 generator=$4 flags=${5:-}

rm -rf "$work"
cmake --install "$build" --prefix "$work/prefix" >/dev/null

status=0
check_exports() {
    local name=$1 namespace=$2
    local lib
    lib=$(find "$work/prefix" -name "lib$name.so.*" -type f | head -n 1)
    [ -n "$lib" ] || { echo "$name: not installed"; status=1; return; }
    local symbols
    symbols=$(nm -DC --defined-only "$lib" | cut -d' ' -f3-)
    local foreign
    foreign=$(grep -v -E "^((typeinfo|typeinfo name|vtable|VTT) for |(non-)?virtual thunk to |construction vtable for )?$namespace::" <<<"$symbols" || true)
    if [ -n "$foreign" ]; then
        echo "$name exports symbols outside $namespace:"; echo "$foreign" | head -n 20; status=1
    fi
    if grep -q -E "::Internal::|anonymous namespace" <<<"$symbols"; then
        echo "$name exports internal symbols:"; grep -E "::Internal::|anonymous namespace" <<<"$symbols" | head; status=1
    fi
}
check_exports TesselODX220Model NODX220
check_exports TesselSharedUtil NTesselSharedUtil
check_exports TesselLogging NTesselSharedUtil::Logging
check_exports TesselODX220Xml NODX220Xml
[ -x "$work/prefix/bin/tessel-odx" ] || { echo "tessel-odx not installed"; status=1; }
"$work/prefix/bin/tessel-odx" --help >/dev/null || { echo "the installed tessel-odx does not run"; status=1; }

model=$(find "$work/prefix" -name 'libTesselODX220Model.so.*' -type f | head -n 1)
exported=$(nm -DC --defined-only "$model")
for wanted in 'NODX220::VOdxFactory::Instance()' 'typeinfo for NODX220::VFlash' \
              'NODX220::VOdxTagEnumMapper::EnumToChar(NODX220::VOdxTagEnum)'; do
    grep -q -F "$wanted" <<<"$exported" || { echo "missing export: $wanted"; status=1; }
done
[ -f "$work/prefix/include/TesselODX220Model.h" ] || { echo "umbrella header not installed"; status=1; }
if find "$work/prefix/include" -path '*internal*' | grep -q .; then
    echo "internal headers installed"; status=1
fi

# Every class of the surface that has an out-of-line virtual operation is exported; pure
# interfaces defined in their headers alone are checked by compiling the consumer below.
here=$(dirname "$0")
while read -r kind name; do
    case "$kind" in
        collection|visitor|choice|link) ;;
        *) continue ;;
    esac
    grep -q -F "typeinfo for NODX220::$name" <<<"$exported" ||
        grep -q -E "^(ILink)$" <<<"$name" || { echo "missing export: typeinfo for NODX220::$name"; status=1; }
done < <(grep -v '^#' "$here/surface.txt")

cp -r "$consumer" "$work/consumer-source"
python3 "$here/make_consumer.py" "$here/surface.txt" "$work/consumer-source/surface.cpp"
cmake -S "$work/consumer-source" -B "$work/consumer" -G "$generator" -DCMAKE_PREFIX_PATH="$work/prefix" \
      -DCMAKE_CXX_FLAGS="$flags" -DCMAKE_EXE_LINKER_FLAGS="$flags" >/dev/null
cmake --build "$work/consumer" >/dev/null
"$work/consumer/consumer"
exit $status
