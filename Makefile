# The two commands a fresh machine needs: `make run` and `make test`.
# Both install whatever Debian packages are missing first.

BUILD_DIR ?= build
JOBS ?= $(shell nproc 2>/dev/null || echo 2)

.PHONY: all deps configure build run test bench screenshots package clean

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

# The README's pictures of the main window, at 96 and at 144 dpi.
screenshots: build
	QT_QPA_PLATFORM=offscreen $(BUILD_DIR)/bin/quillpost_screenshots docs
	QT_QPA_PLATFORM=offscreen QT_SCALE_FACTOR=1.5 $(BUILD_DIR)/bin/quillpost_screenshots docs -144dpi

# The Debian package, written into $(BUILD_DIR)/: quillpost-express_VERSION_ARCH.deb.
package: build
	@scripts/install-deps package
	cd $(BUILD_DIR) && cpack

clean:
	rm -rf $(BUILD_DIR)
