# The two commands a fresh machine needs: `make run` and `make test`.
# Both install whatever Debian packages are missing first.

BUILD_DIR ?= build
JOBS ?= $(shell nproc 2>/dev/null || echo 2)

.PHONY: all deps configure build run test torture bench screenshots clean

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

# The kill test of `make test` at ten times its trials.
torture: configure
	@cmake --build $(BUILD_DIR) --parallel $(JOBS) --target tst_killrecovery
	cd $(BUILD_DIR) && QT_QPA_PLATFORM=offscreen QUILLPOST_KILL_TRIALS=2000 bin/tst_killrecovery

bench: build
	@scripts/run-benchmarks $(BUILD_DIR)/bin

# The README's pictures of the main window, at 96 and at 144 dpi.
screenshots: build
	QT_QPA_PLATFORM=offscreen $(BUILD_DIR)/bin/quillpost_screenshots docs
	QT_QPA_PLATFORM=offscreen QT_SCALE_FACTOR=1.5 $(BUILD_DIR)/bin/quillpost_screenshots docs -144dpi

clean:
	rm -rf $(BUILD_DIR)
