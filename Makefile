# The two commands of a fresh Debian/Ubuntu machine: `make run` and `make test`.
BUILD_DIR ?= build
ASAN_DIR ?= build-asan
JOBS ?= $(shell nproc 2>/dev/null || echo 2)

.PHONY: all deps configure build run test bench asan-test screenshot clean

all: build

deps:
	@scripts/install-deps.sh

configure: deps
	@test -f $(BUILD_DIR)/CMakeCache.txt || cmake -S . -B $(BUILD_DIR) -DCMAKE_BUILD_TYPE=RelWithDebInfo

build: configure
	cmake --build $(BUILD_DIR) -j$(JOBS)

run: build
	$(BUILD_DIR)/kelvora/kelvora

test: build
	scripts/run-tests.sh $(BUILD_DIR)

bench: build
	$(BUILD_DIR)/bench/bench_render

# The same suite built with AddressSanitizer and UndefinedBehaviorSanitizer.
asan-test: deps
	@test -f $(ASAN_DIR)/CMakeCache.txt || cmake -S . -B $(ASAN_DIR) -DCMAKE_BUILD_TYPE=Debug -DKELVORA_SANITIZERS=ON -DKELVORA_BUILD_BENCH=OFF
	cmake --build $(ASAN_DIR) -j$(JOBS)
	scripts/run-tests.sh $(ASAN_DIR)

clean:
	rm -rf $(BUILD_DIR) $(ASAN_DIR)
