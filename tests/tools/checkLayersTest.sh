#!/bin/bash
# tools/check-layers on a small tree with one fault of each kind among good includes.
set -u
root=$(cd "$(dirname "$0")/../.." && pwd)
expected='examples/own/Foreign.h:4: an example may not include base/Good.h
src/attic/Nowhere.h:1: the folder attic is not a layer
src/base/Upward.h:6: base may not include factors/Upward.h
src/factors/WithQt.h:3: factors may not include Qt
src/sampling/Loose.h:3: include "Sampler.h" does not begin with a layer
src/sampling/Loose.h:4: sampling may not include support/Helper.h
src/toolkit/Mixed.h:5: toolkit may not include app/Sideways.h
tests/base/GoodTest.cpp:3: base may not include model/Upward.h'
found=$("$root/tools/check-layers" "$root/tests/data/layers") && { echo "the faults passed"; exit 1; }
diff <(printf '%s\n' "$expected") <(printf '%s\n' "$found")
