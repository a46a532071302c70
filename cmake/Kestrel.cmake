# Helpers shared by the subsystem folders, the tests and the benchmarks.
include(GoogleTest)

# kestrel_library(<name> [DEPS ...]): a static library kestrel_<name> from every source
# below the calling folder. Includes are written from the project root ("core/Station.h").
function(kestrel_library name)
  cmake_parse_arguments(KL "" "" "DEPS" ${ARGN})
  file(GLOB_RECURSE srcs CONFIGURE_DEPENDS
       ${CMAKE_CURRENT_SOURCE_DIR}/*.cpp ${CMAKE_CURRENT_SOURCE_DIR}/*.h ${CMAKE_CURRENT_SOURCE_DIR}/*.ui)
  list(FILTER srcs INCLUDE REGEX "\\.cpp$")
  if(srcs)
    file(GLOB_RECURSE all CONFIGURE_DEPENDS
         ${CMAKE_CURRENT_SOURCE_DIR}/*.cpp ${CMAKE_CURRENT_SOURCE_DIR}/*.h ${CMAKE_CURRENT_SOURCE_DIR}/*.ui)
    add_library(kestrel_${name} STATIC ${all})
    target_include_directories(kestrel_${name} PUBLIC ${PROJECT_SOURCE_DIR})
    target_link_libraries(kestrel_${name} PUBLIC ${KL_DEPS})
  else()
    add_library(kestrel_${name} INTERFACE)
    target_include_directories(kestrel_${name} INTERFACE ${PROJECT_SOURCE_DIR})
    target_link_libraries(kestrel_${name} INTERFACE ${KL_DEPS})
  endif()
endfunction()

# kestrel_test(<name> LABEL unit|gui|integration [SOURCES ...] [DEPS ...] [SERIAL])
# One GoogleTest program; every case becomes its own ctest entry with the label.
# Without SOURCES, every .cpp of the calling folder is taken.
function(kestrel_test name)
  # SERVER_ONLY: a gtest filter of the cases that need a PostgreSQL server; they are registered
  # only as .pg cases (kestrel_pg_tests), not a second time to be skipped.
  cmake_parse_arguments(KT "SERIAL" "LABEL;TIMEOUT;SERVER_ONLY" "SOURCES;DEPS" ${ARGN})
  if(NOT KT_SOURCES)
    file(GLOB KT_SOURCES CONFIGURE_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/*.cpp)
  endif()
  if(NOT KT_TIMEOUT)
    set(KT_TIMEOUT 120)
  endif()
  add_executable(${name} ${KT_SOURCES})
  target_link_libraries(${name} PRIVATE kestrel_testsupport ${KT_DEPS})
  # The environment goes in through a launcher: an ENVIRONMENT list of two variables loses the
  # second on its way through gtest_discover_tests.
  set_property(TARGET ${name} PROPERTY CROSSCOMPILING_EMULATOR
               ${CMAKE_COMMAND} -E env QT_QPA_PLATFORM=offscreen KESTREL_BUILD_DIR=${PROJECT_BINARY_DIR})
  set(props LABELS ${KT_LABEL} TIMEOUT ${KT_TIMEOUT})
  if(KT_SERIAL)
    list(APPEND props RUN_SERIAL TRUE)
  endif()
  set(filter)
  if(KT_SERVER_ONLY)
    set(filter TEST_FILTER "-${KT_SERVER_ONLY}")
  endif()
  gtest_discover_tests(${name} DISCOVERY_MODE PRE_TEST DISCOVERY_TIMEOUT 60 ${filter}
                       WORKING_DIRECTORY ${CMAKE_CURRENT_BINARY_DIR} PROPERTIES ${props})
endfunction()

# Where the pgserver fixture (tests/support/pg_fixture) keeps its uri and pgpass for one ctest run.
set(KESTREL_PG_FIXTURE_DIR ${PROJECT_BINARY_DIR}/tests/pgserver)

# kestrel_pg_tests(<test target> <gtest filter>)
# Registers the target's cases matching the filter a second time, suffixed ".pg", against the
# run's PostgreSQL server: TestDatabase::connectionFor then hands out a fresh database there.
function(kestrel_pg_tests target filter)
  # Two variables in one ENVIRONMENT list lose the second through gtest_discover_tests; the
  # password file goes in as an environment modification instead.
  gtest_discover_tests(${target} DISCOVERY_MODE PRE_TEST DISCOVERY_TIMEOUT 60 TEST_SUFFIX .pg
                       TEST_FILTER ${filter} WORKING_DIRECTORY ${CMAKE_CURRENT_BINARY_DIR}
                       PROPERTIES LABELS postgres TIMEOUT 120 FIXTURES_REQUIRED pgserver
                                  ENVIRONMENT KESTREL_TEST_PG=${KESTREL_PG_FIXTURE_DIR}
                                  ENVIRONMENT_MODIFICATION PGPASSFILE=set:${KESTREL_PG_FIXTURE_DIR}/pgpass)
endfunction()
