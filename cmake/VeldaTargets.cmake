# Helpers shared by the subsystem folders.

set(VELDA_WARNINGS -Wall -Wextra)
# The test build stops at any warning (an ignored result among them).
option(VELDA_WERROR "Treat compiler warnings as errors" ${VELDA_BUILD_TESTS})
set(VELDA_WERROR_FLAG)
if(VELDA_WERROR)
  set(VELDA_WERROR_FLAG -Werror)
  list(APPEND VELDA_WARNINGS ${VELDA_WERROR_FLAG})
endif()

# velda_expose_headers(TARGET): the target and its users see the headers of
# the calling folder (and its subfolders) under their path from src/, and
# nothing else of src/ but what the target's own dependencies expose: an
# include against the layer order does not compile. The target gets an
# include folder in the build that holds one link to its source folder.
function(velda_expose_headers target)
  file(RELATIVE_PATH layer ${PROJECT_SOURCE_DIR}/src ${CMAKE_CURRENT_SOURCE_DIR})
  set(root ${CMAKE_BINARY_DIR}/include/${target})
  cmake_path(GET layer PARENT_PATH parent)
  file(MAKE_DIRECTORY ${root}/${parent})
  file(CREATE_LINK ${CMAKE_CURRENT_SOURCE_DIR} ${root}/${layer} SYMBOLIC)
  get_target_property(type ${target} TYPE)
  if(type STREQUAL "INTERFACE_LIBRARY")
    target_include_directories(${target} INTERFACE ${root})
  elseif(type STREQUAL "EXECUTABLE")
    target_include_directories(${target} PRIVATE ${root})
  else()
    target_include_directories(${target} PUBLIC ${root})
  endif()
endfunction()

# velda_library(NAME DEPS...): a static library from every .cpp of the
# calling folder and its subfolders (except those with a CMakeLists.txt of
# their own: libraries of their own), linking only the given subsystems.
function(velda_library name)
  file(GLOB_RECURSE sources CONFIGURE_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/*.cpp)
  file(GLOB_RECURSE own_lists CONFIGURE_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/*/CMakeLists.txt)
  foreach(own_list ${own_lists})
    cmake_path(GET own_list PARENT_PATH folder)
    list(FILTER sources EXCLUDE REGEX "^${folder}/")
  endforeach()
  if(NOT sources)
    add_library(${name} INTERFACE)
    target_link_libraries(${name} INTERFACE ${ARGN})
    velda_expose_headers(${name})
    return()
  endif()
  add_library(${name} STATIC ${sources})
  target_compile_options(${name} PRIVATE ${VELDA_WARNINGS})
  target_link_libraries(${name} PUBLIC ${ARGN})
  velda_expose_headers(${name})
endfunction()

# velda_test(NAME LABEL label [XSERVER] LIBS libs... SOURCES files...)
# One GoogleTest executable, registered as one ctest test with the label.
# Tests labelled pg run under scripts/with-postgres.sh, tests marked XSERVER
# under scripts/with-xvfb.sh (a private X server when no display is set).
function(velda_test name)
  cmake_parse_arguments(T "XSERVER" "LABEL" "LIBS;SOURCES" ${ARGN})
  add_executable(${name} ${T_SOURCES})
  target_compile_options(${name} PRIVATE ${VELDA_WARNINGS})
  target_include_directories(${name} PRIVATE ${PROJECT_SOURCE_DIR}/src ${PROJECT_SOURCE_DIR}/tests)
  target_link_libraries(${name} PRIVATE ${T_LIBS} GTest::gtest GTest::gtest_main)
  set_target_properties(${name} PROPERTIES RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/tests)
  if(T_LABEL STREQUAL "pg")
    add_test(NAME ${name} COMMAND ${PROJECT_SOURCE_DIR}/scripts/with-postgres.sh $<TARGET_FILE:${name}>)
  elseif(T_XSERVER)
    add_test(NAME ${name} COMMAND ${PROJECT_SOURCE_DIR}/scripts/with-xvfb.sh $<TARGET_FILE:${name}>)
  else()
    add_test(NAME ${name} COMMAND ${name})
  endif()
  set_tests_properties(${name} PROPERTIES LABELS ${T_LABEL}
    ENVIRONMENT "VELDA_SOURCE_DIR=${PROJECT_SOURCE_DIR};VELDA_BINARY_DIR=${CMAKE_BINARY_DIR};QT_QPA_PLATFORM=offscreen;LSAN_OPTIONS=suppressions=${PROJECT_SOURCE_DIR}/cmake/lsan.supp:print_suppressions=0"
    WORKING_DIRECTORY ${CMAKE_BINARY_DIR}/tests)
endfunction()

# velda_test_folder(NAME LIBS...): the tests of one folder, by file suffix:
# *_test.cpp (label unit), *_dbtest.cpp (db, SQLite ODBC), *_pgtest.cpp (pg),
# *_guitest.cpp (gui). Each suffix gives one executable named NAME_<label>.
function(velda_test_folder name)
  foreach(label unit db pg gui)
    if(label STREQUAL "unit")
      set(suffix "_test.cpp")
    else()
      set(suffix "_${label}test.cpp")
    endif()
    file(GLOB files CONFIGURE_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/*${suffix})
    if(files)
      velda_test(${name}_${label} LABEL ${label} LIBS ${ARGN} velda_test_support SOURCES ${files})
    endif()
  endforeach()
endfunction()

# velda_fuzz_test(NAME SOURCES files... LIBRARIES targets... CORPORA folders...
#                 OPTIONS flags...)
# A libFuzzer target and its bounded run. libFuzzer comes with clang, so the
# given sources (the harness first) and every source of the given libraries
# are compiled by one separate clang invocation, whatever compiler builds the
# rest, with the address and undefined-behaviour sanitizers. The run (ctest
# NAME, label fuzz) starts from the given corpora and keeps the inputs it
# finds in NAME_work/corpus of the build, never in the given folders. Without
# clang there is neither target nor test (callers check `if(TARGET NAME)`).
function(velda_fuzz_test name)
  cmake_parse_arguments(F "" "" "SOURCES;LIBRARIES;CORPORA;OPTIONS" ${ARGN})
  find_program(VELDA_CLANGXX NAMES clang++ clang++-14)
  if(NOT VELDA_CLANGXX)
    message(STATUS "clang++ not found: no fuzz target ${name}")
    return()
  endif()

  set(sources)
  set(includes ${PROJECT_SOURCE_DIR}/src ${PROJECT_SOURCE_DIR}/tests)
  # Headers are dependencies too, so that a changed declaration rebuilds.
  file(GLOB_RECURSE headers ${CMAKE_CURRENT_SOURCE_DIR}/*.h)
  foreach(source ${F_SOURCES})
    cmake_path(ABSOLUTE_PATH source BASE_DIRECTORY ${CMAKE_CURRENT_SOURCE_DIR})
    list(APPEND sources ${source})
    cmake_path(GET source PARENT_PATH folder)
    file(GLOB folder_headers ${folder}/*.h)
    list(APPEND headers ${folder_headers})
  endforeach()
  foreach(library ${F_LIBRARIES})
    get_target_property(library_folder ${library} SOURCE_DIR)
    get_target_property(library_sources ${library} SOURCES)
    get_target_property(library_includes ${library} INCLUDE_DIRECTORIES)
    foreach(source ${library_sources})
      cmake_path(ABSOLUTE_PATH source BASE_DIRECTORY ${library_folder})
      list(APPEND sources ${source})
    endforeach()
    list(APPEND includes ${library_includes})
    file(GLOB_RECURSE library_headers ${library_folder}/*.h)
    list(APPEND headers ${library_headers})
  endforeach()
  list(FILTER sources INCLUDE REGEX "\\.cpp$")
  list(REMOVE_DUPLICATES headers)
  list(REMOVE_DUPLICATES includes)
  list(TRANSFORM includes PREPEND -I)

  set(binary ${CMAKE_BINARY_DIR}/tests/${name})
  add_custom_command(OUTPUT ${binary}
    COMMAND ${VELDA_CLANGXX} -std=c++20 -g -O1 -fsanitize=fuzzer,address,undefined
            -fno-sanitize-recover=undefined ${VELDA_WERROR_FLAG} ${includes} ${sources} -o ${binary}
    DEPENDS ${sources} ${headers}
    COMMENT "Building the fuzz target ${name} with clang"
    VERBATIM)
  add_custom_target(${name} ALL DEPENDS ${binary})
  # The libraries' generated sources are made by their own targets.
  if(F_LIBRARIES)
    add_dependencies(${name} ${F_LIBRARIES})
  endif()

  set(work ${CMAKE_BINARY_DIR}/tests/${name}_work)
  file(MAKE_DIRECTORY ${work}/corpus)
  add_test(NAME ${name} COMMAND ${binary} ${F_OPTIONS} ${work}/corpus ${F_CORPORA})
  set_tests_properties(${name} PROPERTIES LABELS fuzz WORKING_DIRECTORY ${work})
endfunction()
