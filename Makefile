# make run   - install what is missing, build, start Kestrel against the simulated station
# make test  - the same set-up, then every test
# make bench - the same set-up, then the benchmarks
BUILD ?= build
JOBS ?= $(shell nproc)

.PHONY: all deps configure build run test bench clean

all: build

deps:
	@scripts/install-deps

configure: deps
	@cmake -S . -B $(BUILD) -G Ninja -DCMAKE_BUILD_TYPE=Release >/dev/null

build: configure
	@cmake --build $(BUILD) -j $(JOBS)

run: build
	@scripts/run-station $(BUILD)

test: build
	@cd $(BUILD) && ctest --output-on-failure -j $(JOBS) --timeout 300

bench: build
	@cmake --build $(BUILD) --target bench

clean:
	rm -rf $(BUILD)
