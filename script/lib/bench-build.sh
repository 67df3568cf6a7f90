# Sourced by script/bench: what it needs, and its build in $build.

script/setup libbenchmark-dev libabsl-dev libboost-dev libsigc++-2.0-dev libpoco-dev \
    libglib2.0-dev valgrind gnuplot-nox
quiet cmake --preset release -B "$build" -DDRVREPO_BENCH=ON \
    -DDRVREPO_TOOLS=OFF -DDRVREPO_EXAMPLES=OFF -DDRVREPO_INSTALL=OFF
quiet cmake --build "$build"
results=$build/results
mkdir -p "$results"
