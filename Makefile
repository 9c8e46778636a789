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

.PHONY: all bootstrap native tsan win release reproducible clang bench-build fuzz-build prefix test demo bench fuzz pictures clean

all: win native

bootstrap:
	@scripts/bootstrap.sh

$(BUILD)/native/Makefile:
	@$(CMAKE_Q) -S . -B $(BUILD)/native -DIW_SANITIZE=ON
$(BUILD)/tsan/Makefile:
	@$(CMAKE_Q) -S . -B $(BUILD)/tsan -DIW_TSAN=ON
$(BUILD)/win/Makefile:
	@$(CMAKE_Q) -S . -B $(BUILD)/win -DCMAKE_TOOLCHAIN_FILE=cmake/mingw-w64-x86_64.cmake \
	    -DIW_WINEPREFIX=$(ABS)/wineprefix
$(BUILD)/clang/Makefile:
	@$(CMAKE_Q) -S . -B $(BUILD)/clang -DCMAKE_TOOLCHAIN_FILE=cmake/clang-mingw-w64-x86_64.cmake \
	    -DCMAKE_BUILD_TYPE=None -DIW_TESTS=OFF -DIW_WERROR=ON
$(BUILD)/bench/Makefile:
	@$(CMAKE_Q) -S . -B $(BUILD)/bench -DCMAKE_BUILD_TYPE=Release -DIW_BENCH=ON
$(BUILD)/fuzz/Makefile:
	@$(CMAKE_Q) -S . -B $(BUILD)/fuzz -DCMAKE_C_COMPILER=clang -DCMAKE_CXX_COMPILER=clang++ -DIW_FUZZ=ON

native: bootstrap $(BUILD)/native/Makefile
	@cmake --build $(BUILD)/native -j$(JOBS)
tsan: bootstrap $(BUILD)/tsan/Makefile
	@cmake --build $(BUILD)/tsan -j$(JOBS) --target core_tests
win: bootstrap $(BUILD)/win/Makefile
	@cmake --build $(BUILD)/win -j$(JOBS)
release: bootstrap
	@JOBS=$(JOBS) scripts/release.sh
reproducible: bootstrap
	@JOBS=$(JOBS) scripts/check-reproducible.sh
# The second compiler builds the product only, unoptimised: it is there for its diagnostics.
clang: bootstrap $(BUILD)/clang/Makefile
	@cmake --build $(BUILD)/clang -j$(JOBS) --target InstallWizard HVMediaUninstall
bench-build: bootstrap $(BUILD)/bench/Makefile
	@cmake --build $(BUILD)/bench -j$(JOBS)
fuzz-build: bootstrap $(BUILD)/fuzz/Makefile
	@cmake --build $(BUILD)/fuzz -j$(JOBS)

prefix: bootstrap
	@scripts/wine-prefix.sh

test: native tsan win clang release prefix
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
