# The two commands a fresh machine needs: `make run` and `make test`.
# Both install whatever Debian packages are missing first.

BUILD_DIR ?= build
JOBS ?= $(shell nproc 2>/dev/null || echo 2)

.PHONY: all deps configure build run test torture fuzz check-sanitize bench screenshots package clean

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

# The kill tests of `make test` at ten times their trials: the data folder's,
# and three machines sharing a class folder; allowed half an hour each
# instead of Qt Test's five minutes, since on a busy machine a turn takes longer.
torture: configure
	@cmake --build $(BUILD_DIR) --parallel $(JOBS) --target tst_storefaults tst_classfaults
	cd $(BUILD_DIR) && QT_QPA_PLATFORM=offscreen QUILLPOST_KILL_TRIALS=2000 QTEST_FUNCTION_TIMEOUT=1800000 \
	  bin/tst_storefaults everyMessageOnceAfterAKill
	cd $(BUILD_DIR) && QT_QPA_PLATFORM=offscreen QUILLPOST_KILL_TRIALS=2000 QTEST_FUNCTION_TIMEOUT=1800000 \
	  bin/tst_classfaults everyMessageOnceAfterKills

# Fuzzes the reader and the loaders for FUZZ_SECONDS each, in a clang build
# of their own. New inputs go to the build's corpus; crashes to its
# artifacts/, to be added to tests/fuzz/corpus once fixed.
FUZZ_DIR ?= build-fuzz
FUZZ_SECONDS ?= 60
fuzz:
	@scripts/install-deps fuzz
	@CC=clang CXX=clang++ cmake -S . -B $(FUZZ_DIR) -DCMAKE_BUILD_TYPE=RelWithDebInfo -DQUILLPOST_FUZZ=ON > /dev/null
	@cmake --build $(FUZZ_DIR) --parallel $(JOBS) --target fuzz_reader fuzz_load
	@mkdir -p $(FUZZ_DIR)/artifacts
	@for t in reader load; do \
	  mkdir -p $(FUZZ_DIR)/corpus-$$t; \
	  echo "fuzz_$$t: $(FUZZ_SECONDS) s"; \
	  $(FUZZ_DIR)/bin/fuzz_$$t -max_total_time=$(FUZZ_SECONDS) -max_len=16384 \
	    -artifact_prefix=$(FUZZ_DIR)/artifacts/ -print_final_stats=1 \
	    $(FUZZ_DIR)/corpus-$$t tests/fuzz/corpus 2>&1 | grep -E '^(stat::|==|SUMMARY|Done|INFO: -max)' || true; \
	done
	@ls $(FUZZ_DIR)/artifacts | grep . && exit 1 || echo "fuzz: no crash"

# The whole suite built with the address and undefined-behaviour
# sanitizers, any finding fatal, in a build folder of its own.
SANITIZE_DIR ?= build-sanitize
SANITIZE_FLAGS = -O1 -fno-omit-frame-pointer -fsanitize=address,undefined -fno-sanitize-recover=all
check-sanitize: deps
	@cmake -S . -B $(SANITIZE_DIR) -DCMAKE_BUILD_TYPE=Debug -DCMAKE_CXX_FLAGS="$(SANITIZE_FLAGS)" -DQUILLPOST_TEST_TIMEOUT=600 > /dev/null
	@cmake --build $(SANITIZE_DIR) --parallel $(JOBS)
	cd $(SANITIZE_DIR) && QT_QPA_PLATFORM=offscreen \
	  ASAN_OPTIONS=detect_leaks=1:abort_on_error=1 UBSAN_OPTIONS=print_stacktrace=1 \
	  ctest --output-on-failure --parallel $(JOBS)

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
