# The two commands a fresh machine needs: `make run` and `make test`.
# Both install whatever Debian packages are missing first.

BUILD_DIR ?= build
JOBS ?= $(shell nproc 2>/dev/null || echo 2)

.PHONY: all deps configure build run test bench clean

all: build

deps:
	@scripts/install-deps

configure: deps
	@cmake -S . -B $(BUILD_DIR) -DCMAKE_BUILD_TYPE=Release > /dev/null

build: configure
	@cmake --build $(BUILD_DIR) --parallel $(JOBS)

run: build
	$(BUILD_DIR)/bin/quillpost

test: build
	cd $(BUILD_DIR) && QT_QPA_PLATFORM=offscreen ctest --output-on-failure --parallel $(JOBS)

bench: build
	@scripts/run-benchmarks $(BUILD_DIR)/bin

clean:
	rm -rf $(BUILD_DIR)
