# SQLite's amalgamation for the embedded record manager, as the target `sqlite3_amalgamation`.
#
# The source is fetched once a user, from the package that carries this very version or from the folder that SQLITE_SOURCE
# names, a variable of CMake or of the environment, and checked at each configure. It is not the distribution's library:
# 3.7.0 to 3.51.2 can damage a file in WAL mode when several processes write it.
include_guard(GLOBAL)

set(SQLITE_VERSION 3.54.1)
set(SQLITE_PACKAGE better-sqlite3@13.2.0)
string(CONCAT SQLITE_PACKAGE_SHA512
  67c43ff71fee3722b1035bf814da1dc88b51551c354de281ae68f7d89871851d
  1c78d70163ec0ca1bb7f06fecced3cf03c05e39d946d35a12c0139d465229665)
set(SQLITE_FILES sqlite3.c sqlite3.h)
set(SQLITE_SHA256_sqlite3.c 75a4760a7b9727a4c4c877aec92eacf39e52a8f2921ce00bd33be6d3a8e8e254)
set(SQLITE_SHA256_sqlite3.h d6c84557261893439b341d2e6c35187ae3ea24fbfd843ad94616f72d89242b8c)

# Sets `result` to the folder of the user's cache that holds, or shall hold, the source.
function(sqlite_cache_folder result)
  set(cache "$ENV{XDG_CACHE_HOME}")
  if(NOT cache)
    set(cache "$ENV{HOME}/.cache")
  endif()
  set(${result} "${cache}/qlx99/sqlite-${SQLITE_VERSION}" PARENT_SCOPE)
endfunction()

# Sets `result` to whether both files lie in `folder` and are the ones meant.
function(sqlite_is_intact folder result)
  set(${result} TRUE PARENT_SCOPE)
  foreach(name IN LISTS SQLITE_FILES)
    set(hash "missing")
    if(EXISTS "${folder}/${name}")
      file(SHA256 "${folder}/${name}" hash)
    endif()
    if(NOT hash STREQUAL SQLITE_SHA256_${name})
      set(${result} FALSE PARENT_SCOPE)
    endif()
  endforeach()
endfunction()

# Copies the source from SQLITE_SOURCE to where its package has it; sets `result` to an error's text, or to nothing.
function(sqlite_copy work result)
  file(REAL_PATH "${SQLITE_SOURCE}" source BASE_DIRECTORY "${PROJECT_SOURCE_DIR}")
  sqlite_is_intact("${source}" intact)
  if(NOT intact)
    set(${result} "${source} does not hold the expected ${SQLITE_FILES}" PARENT_SCOPE)
    return()
  endif()
  foreach(name IN LISTS SQLITE_FILES)
    file(COPY "${source}/${name}" DESTINATION "${work}/package/deps/sqlite3")
  endforeach()
  set(${result} "" PARENT_SCOPE)
endfunction()

# Fetches and unpacks the package into the empty folder `work`; sets `result` to an error's text, or to nothing.
function(sqlite_fetch work result)
  find_program(NPM_EXECUTABLE npm)
  if(NOT NPM_EXECUTABLE)
    set(${result} "the program npm is not installed" PARENT_SCOPE)
    return()
  endif()
  execute_process(
    COMMAND ${NPM_EXECUTABLE} pack --silent --ignore-scripts ${SQLITE_PACKAGE}
    WORKING_DIRECTORY "${work}" RESULT_VARIABLE status OUTPUT_QUIET ERROR_VARIABLE errors)
  file(GLOB package "${work}/*.tgz")
  if(NOT status EQUAL 0 OR NOT package)
    set(${result} "npm could not fetch ${SQLITE_PACKAGE} (${status}):\n${errors}" PARENT_SCOPE)
    return()
  endif()
  file(SHA512 "${package}" hash)
  if(NOT hash STREQUAL SQLITE_PACKAGE_SHA512)
    set(${result} "the package ${SQLITE_PACKAGE} is not the one expected; its SHA-512 is ${hash}" PARENT_SCOPE)
    return()
  endif()
  file(ARCHIVE_EXTRACT INPUT "${package}" DESTINATION "${work}" PATTERNS "package/deps/sqlite3/sqlite3.[ch]")
  sqlite_is_intact("${work}/package/deps/sqlite3" intact)
  if(NOT intact)
    set(${result} "the source files in ${SQLITE_PACKAGE} are not the ones expected" PARENT_SCOPE)
    return()
  endif()
  set(${result} "" PARENT_SCOPE)
endfunction()

# Makes sure that `folder` holds the source. Builds that do so at the same time do not disturb each other: each fetches
# into a folder of its own and moves whole files into place.
function(sqlite_provide folder)
  sqlite_is_intact("${folder}" intact)
  if(intact)
    return()
  endif()
  if(NOT SQLITE_SOURCE)
    set(SQLITE_SOURCE "$ENV{SQLITE_SOURCE}")
  endif()
  message(STATUS "Fetching SQLite ${SQLITE_VERSION} into ${folder}")
  string(RANDOM LENGTH 12 suffix)
  set(work "${folder}.${suffix}")
  file(MAKE_DIRECTORY "${work}" "${folder}")
  if(SQLITE_SOURCE)
    sqlite_copy("${work}" problem)
  else()
    sqlite_fetch("${work}" problem)
  endif()
  if(NOT problem)
    foreach(name IN LISTS SQLITE_FILES)
      file(RENAME "${work}/package/deps/sqlite3/${name}" "${folder}/${name}")
    endforeach()
  endif()
  file(REMOVE_RECURSE "${work}")
  if(problem)
    message(FATAL_ERROR "SQLite ${SQLITE_VERSION}, which the embedded record manager needs, cannot be had: ${problem}")
  endif()
endfunction()

sqlite_cache_folder(SQLITE_FOLDER)
sqlite_provide("${SQLITE_FOLDER}")

# Optimised and without our warnings and sanitizers in every preset: it is not our code, and slow to compile as it is.
if(WIN32)
  add_library(sqlite3_amalgamation STATIC "${SQLITE_FOLDER}/sqlite3.c")
else()
  add_library(sqlite3_amalgamation STATIC ${PROJECT_SOURCE_DIR}/recordmanager/inherited_locks.c)
endif()
target_include_directories(sqlite3_amalgamation SYSTEM PUBLIC "${SQLITE_FOLDER}")
target_compile_options(sqlite3_amalgamation PRIVATE -O2)
target_compile_definitions(sqlite3_amalgamation PRIVATE
  SQLITE_THREADSAFE=1
  SQLITE_DQS=0
  SQLITE_DEFAULT_MEMSTATUS=0
  SQLITE_TRUSTED_SCHEMA=0
  SQLITE_OMIT_DEPRECATED
  SQLITE_OMIT_JSON
  SQLITE_OMIT_LOAD_EXTENSION
  SQLITE_OMIT_SHARED_CACHE)
if(WIN32)
  # Whoever has locked a part of a file is waited for as long as for others, three seconds in growing steps.
  target_compile_definitions(sqlite3_amalgamation PRIVATE SQLITE_WIN32_IOERR_RETRY=15)
else()
  find_package(Threads REQUIRED)
  target_link_libraries(sqlite3_amalgamation PUBLIC Threads::Threads m)
endif()
