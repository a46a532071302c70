# make run   - install what is missing, build, start Kestrel against the simulated station
# make test  - the same set-up, then every test
# make bench - the same set-up, then the benchmarks
# make clean - removes the build folder; the station folder (settings and log) stays
BUILD ?= build
STATION ?= station
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
	@scripts/run-station $(BUILD) $(STATION)

test: build
	@cd $(BUILD) && ctest --output-on-failure -j $(JOBS) --timeout 300

bench: build
	@cmake --build $(BUILD) --target bench

# Refuses a build folder that holds the station folder, or is the source tree itself.
clean:
	@build=$$(realpath -m $(BUILD)); station=$$(realpath -m $(STATION)); \
	case "$$station/" in "$$build"/*) \
	  echo "make clean: $(BUILD) holds the station folder $(STATION); not removed" >&2; exit 1;; esac; \
	if [ -e "$$build/Makefile" ] || [ -e "$$build/.git" ]; then \
	  echo "make clean: $(BUILD) is a source tree; not removed" >&2; exit 1; fi
	rm -rf $(BUILD)
