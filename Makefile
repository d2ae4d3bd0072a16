# The two commands a newcomer needs: `make run` and `make test`.
JOBS ?= $(shell nproc)
FUZZ_SECONDS ?= 60
FUZZ_JOBS ?= $(JOBS)
DEMO := build/demo-course

.PHONY: all deps build test test-default test-asan run fuzz bench package format clean

all: build

# Installs the Debian packages the build needs, once (quick when they are there already).
deps:
	@scripts/install-deps

build: deps
	cmake --preset default
	cmake --build build/default -j $(JOBS)

test-default: build
	cd build/default && ctest --output-on-failure -j $(JOBS)

# The tests that kill tallory-cli at each of its file events or race it against other processes
# check what lands on disk, which the sanitizers do not see; they run in the first pass only, where
# they take seconds rather than minutes. The code paths they drive are the other CLI tests' too.
ASAN_SKIP := ^SharedCourse\.

test-asan: deps
	cmake --preset asan
	cmake --build build/asan -j $(JOBS)
	cd build/asan && ASAN_OPTIONS=detect_leaks=1 UBSAN_OPTIONS=print_stacktrace=1 ctest --output-on-failure -j $(JOBS) -E '$(ASAN_SKIP)'

# Every test, then again under the address and undefined-behaviour sanitizers (but ASAN_SKIP).
test: test-default test-asan

# Opens Tallory on a fresh copy of the demo course.
run: build
	@scripts/run-demo $(DEMO)

fuzz: deps
	cmake --preset fuzz
	cmake --build build/fuzz -j $(JOBS) --target fuzz_targets
	FUZZ_JOBS=$(FUZZ_JOBS) scripts/run-fuzzers build/fuzz $(FUZZ_SECONDS)

bench: deps
	cmake --preset release
	cmake --build build/release -j $(JOBS)
	bench/run build/release

# The Debian package of both programs, from a Release tree without tests: build/package/tallory_*.deb.
package: deps
	cmake -S . -B build/package -G Ninja -DCMAKE_BUILD_TYPE=Release -DTALLORY_BUILD_TESTS=OFF
	cmake --build build/package -j $(JOBS)
	cd build/package && cpack
	@ls build/package/tallory_*.deb

format:
	find src tests bench fuzz -name '*.cpp' -o -name '*.h' | xargs clang-format -i

clean:
	rm -rf build
