# Helpers shared by the subsystem folders.

set(VELDA_WARNINGS -Wall -Wextra)

# velda_library(NAME DEPS...): a static library from every .cpp of the
# calling folder (not its subfolders), linking only the given subsystems.
function(velda_library name)
  file(GLOB sources CONFIGURE_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/*.cpp)
  if(NOT sources)
    add_library(${name} INTERFACE)
    target_include_directories(${name} INTERFACE ${PROJECT_SOURCE_DIR}/src)
    target_link_libraries(${name} INTERFACE ${ARGN})
    return()
  endif()
  add_library(${name} STATIC ${sources})
  target_compile_options(${name} PRIVATE ${VELDA_WARNINGS})
  target_include_directories(${name} PUBLIC ${PROJECT_SOURCE_DIR}/src)
  target_link_libraries(${name} PUBLIC ${ARGN})
endfunction()

# velda_test(NAME LABEL label LIBS libs... SOURCES files...)
# One GoogleTest executable, registered as one ctest test with the label.
# Tests labelled pg run under scripts/with-postgres.sh.
function(velda_test name)
  cmake_parse_arguments(T "" "LABEL" "LIBS;SOURCES" ${ARGN})
  add_executable(${name} ${T_SOURCES})
  target_compile_options(${name} PRIVATE ${VELDA_WARNINGS})
  target_include_directories(${name} PRIVATE ${PROJECT_SOURCE_DIR}/src ${PROJECT_SOURCE_DIR}/tests)
  target_link_libraries(${name} PRIVATE ${T_LIBS} GTest::gtest GTest::gtest_main)
  set_target_properties(${name} PROPERTIES RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/tests)
  if(T_LABEL STREQUAL "pg")
    add_test(NAME ${name} COMMAND ${PROJECT_SOURCE_DIR}/scripts/with-postgres.sh $<TARGET_FILE:${name}>)
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
