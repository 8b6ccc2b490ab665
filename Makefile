# VELDA: a plain front over CMake.
#   make          build everything into build/ (executables in build/bin/)
#   make demo     install dependencies, build, run the main job on the sample database
#   make test     install dependencies, build with sanitizers, run every test
#   make gui      build and start the desktop application
#   make screenshots  pictures of the main window and every dialog in build/screenshots/,
#                     read from a real X window (a private Xvfb when no display is set)
#   make bench    build and run the benchmarks
#   make install  build and install under PREFIX (default /usr/local; DESTDIR stages it)
#   make uninstall  remove what the last make install put in place
#   make format   format every C and C++ source as .clang-format says
#   make coverage line and branch coverage of src/ by the suite (build-coverage/)
#   make clean    remove every build folder

JOBS ?= $(shell nproc)
# ccache, when installed, makes the builds of a fresh clone cheap.
CCACHE := $(shell command -v ccache 2>/dev/null)
LAUNCHER := $(if $(CCACHE),-DCMAKE_CXX_COMPILER_LAUNCHER=$(CCACHE) -DCMAKE_C_COMPILER_LAUNCHER=$(CCACHE))
BUILD := build
TEST_BUILD := build-test
BENCH_BUILD := build-bench
SAMPLE_DB := $(BUILD)/sample.db
PREFIX ?= /usr/local
DESTDIR ?=

.PHONY: all deps configure demo test gui screenshots bench sample install uninstall format coverage clean

all: configure
	cmake --build $(BUILD) -j $(JOBS)

deps:
	@scripts/install-deps.sh

configure:
	@cmake -S . -B $(BUILD) -DCMAKE_BUILD_TYPE=RelWithDebInfo -DVELDA_BUILD_TESTS=OFF -DCMAKE_INSTALL_PREFIX=$(PREFIX) $(LAUNCHER) >/dev/null

sample: $(SAMPLE_DB)

$(SAMPLE_DB): data/sample.sql
	@mkdir -p $(BUILD)
	rm -f $@.tmp && sqlite3 $@.tmp < data/sample.sql && mv $@.tmp $@

demo: deps all sample
	scripts/demo.sh $(BUILD)/bin/velda-cli $(SAMPLE_DB)

test: deps
	cmake -S . -B $(TEST_BUILD) -DCMAKE_BUILD_TYPE=Debug -DVELDA_SANITIZE=ON -DVELDA_BUILD_TESTS=ON -DVELDA_WERROR=ON $(LAUNCHER) >/dev/null
	cmake --build $(TEST_BUILD) -j $(JOBS)
	cd $(TEST_BUILD) && ctest --output-on-failure -j $(JOBS)

gui: deps all sample
	VELDA_SAMPLE_DB=$(abspath $(SAMPLE_DB)) $(BUILD)/bin/velda

screenshots: deps all sample
	rm -rf $(BUILD)/screenshots
	QT_QPA_PLATFORM=xcb VELDA_SAMPLE_DB=$(abspath $(SAMPLE_DB)) scripts/with-xvfb.sh $(BUILD)/bin/velda-screenshots $(abspath $(BUILD))/screenshots > /dev/null
	@echo "pictures written to $(BUILD)/screenshots/"

bench: deps
	cmake -S . -B $(BENCH_BUILD) -DCMAKE_BUILD_TYPE=Release -DVELDA_BUILD_TESTS=OFF -DVELDA_BUILD_BENCH=ON $(LAUNCHER) >/dev/null
	cmake --build $(BENCH_BUILD) -j $(JOBS)
	bench/run.sh $(BENCH_BUILD)

install: all
	DESTDIR="$(DESTDIR)" cmake --install $(BUILD)

uninstall:
	DESTDIR="$(DESTDIR)" cmake -P $(BUILD)/velda_uninstall.cmake

format: deps
	scripts/format.sh

coverage: deps
	scripts/coverage.sh build-coverage

clean:
	rm -rf $(BUILD) $(TEST_BUILD) $(BENCH_BUILD) build-coverage
