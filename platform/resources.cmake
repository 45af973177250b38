# platform_add_resources(<target> <script.rc> [<file>...])
# Gives `target` the resources of the script, for DialogBoxParamW. The files are what the script includes.
# Elsewhere than on Windows the script is compiled by the same resource compiler and embedded in the target's data.
function(platform_add_resources target script)
  cmake_path(ABSOLUTE_PATH script BASE_DIRECTORY ${CMAKE_CURRENT_SOURCE_DIR})
  if(WIN32)
    target_sources(${target} PRIVATE ${script})
    set_property(SOURCE ${script} APPEND PROPERTY OBJECT_DEPENDS ${ARGN})
    return()
  endif()

  find_program(PLATFORM_WINDRES i686-w64-mingw32-windres REQUIRED)
  find_path(PLATFORM_WINDOWS_HEADERS winuser.h HINTS /usr/share/mingw-w64/include
    DOC "Folder of Windows' own headers, for the names in resource scripts" REQUIRED)
  cmake_path(GET script PARENT_PATH scriptFolder)
  cmake_path(GET script STEM name)
  set(SYMBOL ${target}_${name}_resources)
  set(COMPILED_SCRIPT ${CMAKE_CURRENT_BINARY_DIR}/${SYMBOL}.res)
  set(source ${CMAKE_CURRENT_BINARY_DIR}/${SYMBOL}.cpp)
  # The host's preprocessor, so that no compiler for Windows has to be installed.
  add_custom_command(
    OUTPUT ${COMPILED_SCRIPT}
    COMMAND ${PLATFORM_WINDRES} --preprocessor=${CMAKE_C_COMPILER} --preprocessor-arg=-E
      --preprocessor-arg=-xc --preprocessor-arg=-DRC_INVOKED -D_WIN32 -I${PLATFORM_WINDOWS_HEADERS}
      -I${scriptFolder} -I${PROJECT_SOURCE_DIR} -O res ${script} ${COMPILED_SCRIPT}
    DEPENDS ${script} ${ARGN}
    COMMENT "Compiling resource script ${name}.rc"
    VERBATIM)
  configure_file(${CMAKE_CURRENT_FUNCTION_LIST_DIR}/embedded_resources.cpp.in ${source} @ONLY)
  set_source_files_properties(${source} PROPERTIES OBJECT_DEPENDS ${COMPILED_SCRIPT})
  target_sources(${target} PRIVATE ${source})
  target_link_libraries(${target} PRIVATE platform)
endfunction()
