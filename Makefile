# Every target first installs what is missing (scripts/bootstrap.sh), then configures and
# builds what it needs. Build trees:
#   build/native  the portable core and its tests, with AddressSanitizer + UBSan
#   build/tsan    the portable core under ThreadSanitizer (concurrency tests)
#   build/win     InstallWizard.exe, the Windows tests and the sample setup folder (MinGW-w64)
#   build/release InstallWizard.exe for shipping: optimised, stripped, reproducible, with the
#                 sample setup folder beside it (scripts/release.sh)
#   build/clang   InstallWizard.exe built by clang for the MinGW target, warnings as errors
#   build/bench   the portable core optimised, for benchmarks
#   build/fuzz    libFuzzer targets (clang)

BUILD   := build
JOBS    ?= $(shell nproc)
ABS     := $(abspath $(BUILD))
CMAKE_Q := cmake -Wno-dev --log-level=WARNING
MAKEFLAGS += --no-print-directory
# The scripts find the build trees and the Wine prefix through this.
export IW_BUILD := $(ABS)
# A tree's own make runs with JOBS compilers of its own, not as part of ours (make test builds
# trees side by side), so it gets none of our flags.
TREE    := env -u MFLAGS MAKEFLAGS=--no-print-directory cmake --build
# Trees that only need to compile (the clang tree, the release) do so in batches of sources:
# windows.h and the C++ library are then parsed once a batch instead of once a file.
UNITY   := -DCMAKE_UNITY_BUILD=ON -DCMAKE_UNITY_BUILD_BATCH_SIZE=24

# A tree is configured only once the packages are there: on a fresh machine CMake would
# otherwise look for the compilers while bootstrap is still installing them (make test runs
# trees side by side).
.PHONY: all bootstrap native tsan win release reproducible clang bench-build fuzz-build prefix test demo bench fuzz pictures clean

all: win native

bootstrap:
	@scripts/bootstrap.sh

$(BUILD)/native/Makefile: | bootstrap
	@$(CMAKE_Q) -S . -B $(BUILD)/native -DIW_SANITIZE=ON
$(BUILD)/tsan/Makefile: | bootstrap
	@$(CMAKE_Q) -S . -B $(BUILD)/tsan -DIW_TSAN=ON
$(BUILD)/win/Makefile: | bootstrap
	@$(CMAKE_Q) -S . -B $(BUILD)/win -DCMAKE_TOOLCHAIN_FILE=cmake/mingw-w64-x86_64.cmake \
	    -DIW_WINEPREFIX=$(ABS)/wineprefix
$(BUILD)/clang/Makefile: | bootstrap
	@$(CMAKE_Q) -S . -B $(BUILD)/clang -DCMAKE_TOOLCHAIN_FILE=cmake/clang-mingw-w64-x86_64.cmake \
	    -DCMAKE_BUILD_TYPE=None -DIW_TESTS=OFF -DIW_WERROR=ON $(UNITY)
$(BUILD)/bench/Makefile: | bootstrap
	@$(CMAKE_Q) -S . -B $(BUILD)/bench -DCMAKE_BUILD_TYPE=Release -DIW_BENCH=ON
$(BUILD)/fuzz/Makefile: | bootstrap
	@$(CMAKE_Q) -S . -B $(BUILD)/fuzz -DCMAKE_C_COMPILER=clang -DCMAKE_CXX_COMPILER=clang++ -DIW_FUZZ=ON

native: bootstrap $(BUILD)/native/Makefile
	@$(TREE) $(BUILD)/native -j$(JOBS)
tsan: bootstrap $(BUILD)/tsan/Makefile
	@$(TREE) $(BUILD)/tsan -j$(JOBS) --target core_tests
win: bootstrap $(BUILD)/win/Makefile
	@$(TREE) $(BUILD)/win -j$(JOBS)
release: bootstrap
	@env -u MFLAGS MAKEFLAGS=--no-print-directory JOBS=$(JOBS) scripts/release.sh
reproducible: bootstrap
	@env -u MFLAGS MAKEFLAGS=--no-print-directory JOBS=$(JOBS) scripts/check-reproducible.sh
# The second compiler builds the product only, unoptimised: it is there for its diagnostics.
clang: bootstrap $(BUILD)/clang/Makefile
	@$(TREE) $(BUILD)/clang -j$(JOBS) --target InstallWizard HVMediaUninstall
bench-build: bootstrap $(BUILD)/bench/Makefile
	@$(TREE) $(BUILD)/bench -j$(JOBS)
fuzz-build: bootstrap $(BUILD)/fuzz/Makefile
	@$(TREE) $(BUILD)/fuzz -j$(JOBS)

prefix: bootstrap
	@scripts/wine-prefix.sh

# The trees don't depend on each other: built two at a time (each with JOBS compilers), the
# cores stay busy through every tree's serial steps (archiving, linking) and while Wine makes
# its prefix. The Windows tree, the longest, starts first. Each tree's output comes in one
# piece when it is done.
TREES_AT_ONCE ?= 2
test:
	@$(MAKE) -j$(TREES_AT_ONCE) --output-sync=target win native tsan clang release prefix
	@scripts/run-tests.sh

demo: win prefix
	@scripts/demo.sh

bench: bench-build win prefix
	@scripts/bench.sh

FUZZ_SECONDS ?= 60
fuzz: fuzz-build
	@scripts/fuzz.sh $(FUZZ_SECONDS)

pictures: win prefix
	@scripts/pictures.sh

clean:
	@scripts/wine-env.sh >/dev/null 2>&1; rm -rf $(BUILD)
