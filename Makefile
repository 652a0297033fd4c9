# Quick start: `make demo` runs the main job, `make test` runs every test. Both install what the
# machine lacks (Debian 12, as root) before building.
SHELL := /bin/bash
BUILD ?= build
JOBS ?= $(shell nproc)

# openssl with its GOST engine is the independent peer of the interop test; the JDK builds the Java
# binding (jni.h for the wrappers, javac and jar for tarvelon.jar), JUnit 5 runs its tests and
# BouncyCastle is their independent Java peer; doxygen builds the API reference.
DEB_PACKAGES := g++ cmake make libgtest-dev libbenchmark-dev libssl-dev openssl libengine-gost-openssl clang \
  libclang-rt-14-dev binutils gcovr default-jdk-headless junit5 libbcprov-java libbcpkix-java pkg-config \
  doxygen

.PHONY: all deps build demo test test-release test-asan test-tsan coverage bench fuzz docs package clean

all: build

# The demo needs only a compiler, CMake and openssl with its GOST engine (the signer's provider).
DEMO_PACKAGES := g++ cmake make openssl libengine-gost-openssl

# Installs the Debian packages that are missing (PACKAGES, by default all); quiet when everything is
# there.
PACKAGES ?= $(DEB_PACKAGES)
deps:
	@missing=""; for p in $(PACKAGES); do dpkg -s $$p >/dev/null 2>&1 || missing="$$missing $$p"; done; \
	if [ -n "$$missing" ]; then \
	  echo "installing:$$missing"; \
	  if [ "$$(id -u)" != 0 ]; then echo "run as root to install:$$missing"; exit 1; fi; \
	  apt-get update -qq && DEBIAN_FRONTEND=noninteractive apt-get install -y -qq $$missing >/dev/null; \
	fi

$(BUILD)/release/CMakeCache.txt:
	cmake -S . -B $(BUILD)/release -DCMAKE_BUILD_TYPE=Release >/dev/null

build: deps $(BUILD)/release/CMakeCache.txt
	cmake --build $(BUILD)/release -j$(JOBS)

# The library's main job (samples/sign_demo.sh): a document signed with GOST R 34.10-2012 the
# external way, openssl as the caller's crypto provider and as the verifier, the message summarised
# by `tarvelon`. The signer is the GOST user of samples/make_samples.sh.
# Only the library, the tool and the example are built, without tests or the Java binding, and
# nothing but one line is printed before the demo.
demo:
	@$(MAKE) -s deps PACKAGES="$(DEMO_PACKAGES)"
	@echo "building the library, the tool and examples/sign_document in $(BUILD)/demo ..."
	@cmake -S . -B $(BUILD)/demo -DCMAKE_BUILD_TYPE=Release -DTV_TESTS=OFF -DTV_JNI=OFF >/dev/null
	@cmake --build $(BUILD)/demo -j$(JOBS) --target tarvelon tarvelon_tool sign_document >/dev/null
	@bash samples/sign_demo.sh $(BUILD)/demo

test-release: build
	cd $(BUILD)/release && ctest --output-on-failure -j$(JOBS)

test-asan: deps
	cmake -S . -B $(BUILD)/asan -DCMAKE_BUILD_TYPE=RelWithDebInfo -DTV_SANITIZE=ON >/dev/null
	cmake --build $(BUILD)/asan -j$(JOBS)
	cd $(BUILD)/asan && ASAN_OPTIONS=detect_leaks=1:abort_on_error=1 UBSAN_OPTIONS=print_stacktrace=1:halt_on_error=1 \
	  ctest --output-on-failure -j$(JOBS)

# Sanitizers first, the optimised build last: the output ends with ctest's summary of the whole suite.
# ThreadSanitizer over the threads test: eight threads, each with trees of its own, at once.
test-tsan: deps
	cmake -S . -B $(BUILD)/tsan -DCMAKE_BUILD_TYPE=RelWithDebInfo -DTV_TSAN=ON >/dev/null
	cmake --build $(BUILD)/tsan -j$(JOBS) --target tarvelon_tests
	TSAN_OPTIONS=halt_on_error=1 $(BUILD)/tsan/tests/tarvelon_tests --gtest_filter='Threads.*'

# The reference is built first, so a declaration added without its documentation fails the suite.
test: docs test-asan test-tsan test-release

# Line and branch coverage of the library (tarvelon/) by the whole test suite, unoptimised so that
# lines map to code; counters from an earlier run are cleared first. Summary on stdout, per-file
# figures in coverage.txt, annotated sources in html/index.html.
COV_DIR := $(BUILD)/coverage
# Atomic counters: the threads test runs the library on eight threads at once, and plain counters
# lose updates there (gcov then reads negative branch counts).
COV_FLAGS := --coverage -fprofile-update=atomic -O0
coverage: deps
	cmake -S . -B $(COV_DIR) -DCMAKE_BUILD_TYPE=Debug -DTV_TESTS=ON "-DCMAKE_C_FLAGS=$(COV_FLAGS)" \
	  "-DCMAKE_CXX_FLAGS=$(COV_FLAGS)" -DCMAKE_EXE_LINKER_FLAGS=--coverage -DCMAKE_SHARED_LINKER_FLAGS=--coverage >/dev/null
	cmake --build $(COV_DIR) -j$(JOBS)
	find $(COV_DIR) -name '*.gcda' -delete
	cd $(COV_DIR) && ctest --output-on-failure -j$(JOBS)
	mkdir -p $(COV_DIR)/html
	gcovr -j$(JOBS) --root . --object-directory $(COV_DIR) --filter 'tarvelon/' --exclude-unreachable-branches \
	  --print-summary --txt $(COV_DIR)/coverage.txt --html-details $(COV_DIR)/html/index.html \
	  $(COV_DIR)/CMakeFiles/tarvelon_objs.dir | tail -n 3

bench: deps
	cmake -S . -B $(BUILD)/bench -DCMAKE_BUILD_TYPE=Release -DTV_BENCH=ON -DTV_TESTS=OFF >/dev/null
	cmake --build $(BUILD)/bench -j$(JOBS) --target tarvelon_bench tarvelon tarvelon_call_cost
	$(BUILD)/bench/bench/tarvelon_bench --benchmark_min_time=0.2
	java -Dtarvelon.library=$(CURDIR)/$(BUILD)/bench/libtarvelon.so \
	  -cp $(BUILD)/bench/jni/tarvelon.jar:$(BUILD)/bench/bench/tarvelon_call_cost.jar CallCost tests/fixtures/pki/ee_rsa.der

# The API reference from the headers' comments, in $(BUILD)/docs/html/index.html. Doxygen fails on
# any undocumented declaration or parameter of a header that has its @file block, so every header
# must have one; and a TV_API line needs a comment of its own right above it (doxygen would
# otherwise let a neighbour's block cover it without a word).
docs:
	@$(MAKE) --no-print-directory deps PACKAGES=doxygen
	mkdir -p $(BUILD)/docs
	TARVELON_VERSION=$$(sed -n 's/^#define TARVELON_VERSION_[A-Z]* //p' include/tarvelon/version.h | paste -sd.) \
	  TARVELON_DOCS_OUT=$(BUILD)/docs doxygen docs/Doxyfile
	@! grep -L '@file' include/tarvelon/*.h include/tarvelon/*.hpp | sed 's/$$/: no @file block/' | grep .
	awk 'FNR == 1 { prev = "" } /^TV_API/ && prev !~ /\*\/ *$$/ { print FILENAME ":" FNR ": no comment above"; bad = 1 } \
	  NF { prev = $$0 } END { exit bad }' include/tarvelon/*.h
	@echo "reference: $(BUILD)/docs/html/index.html"

# Debian packages of the release build: libtarvelon1, libtarvelon-dev, tarvelon-tool, libtarvelon-java.
package: build
	cd $(BUILD)/release && cpack -G DEB

# Every input goes through every decoder (fuzz/DecodeFuzz.cpp): each Decode... export by name, the
# top-level descriptors and the readers, so each execution is one for every decoder; -fork runs one
# job per core. The seeds are every fixture (each structure the tests read, and the regression
# inputs), every element inside them (so each extension and attribute value seeds its decoder) and
# fuzz/seeds (hand-made engine shapes). The table must name every Decode... export of the
# version script. At the end, every export with the number of corpus inputs it accepts. A finding
# goes to tests/fixtures/regress/.
FUZZ_SECONDS ?= 60
fuzz: deps
	@missing=$$(comm -23 <(grep -o '\bDecode[A-Za-z0-9_]*' tarvelon/tarvelon.map | sort -u) \
	  <(grep -o '\(TV_DECODER(\|Decoder{"\)Decode[A-Za-z0-9_]*' fuzz/DecodeFuzz.cpp | sed 's/.*[({"]//' | sort -u)); \
	  if [ -n "$$missing" ]; then echo "missing from the fuzzer's table:" $$missing; exit 1; fi
	CC=clang CXX=clang++ cmake -S . -B $(BUILD)/fuzz -DCMAKE_BUILD_TYPE=RelWithDebInfo -DTV_FUZZ=ON -DTV_TESTS=OFF >/dev/null
	cmake --build $(BUILD)/fuzz -j$(JOBS) --target tarvelon_fuzz_decode
	mkdir -p $(BUILD)/fuzz/corpus $(BUILD)/fuzz/elements
	TARVELON_FUZZ_SPLIT=$(BUILD)/fuzz/elements $(BUILD)/fuzz/fuzz/tarvelon_fuzz_decode -runs=0 -max_len=1048576 \
	  -report_slow_units=1000000 tests/fixtures fuzz/seeds >/dev/null 2>&1
	$(BUILD)/fuzz/fuzz/tarvelon_fuzz_decode -fork=$(JOBS) -max_total_time=$(FUZZ_SECONDS) -max_len=8192 \
	  -artifact_prefix=$(BUILD)/fuzz/ $(BUILD)/fuzz/corpus fuzz/seeds tests/fixtures $(BUILD)/fuzz/elements 2>&1 | tee $(BUILD)/fuzz/campaign.log | grep -v '^INFO: log from'
	TARVELON_FUZZ_REPORT=1 $(BUILD)/fuzz/fuzz/tarvelon_fuzz_decode -runs=0 -max_len=8192 \
	  $(BUILD)/fuzz/corpus fuzz/seeds tests/fixtures $(BUILD)/fuzz/elements 2>&1 | sed -n '/^decoder/,$$p'

clean:
	rm -rf $(BUILD)
