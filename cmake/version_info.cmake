# add_version_info(<target> <VFT_DLL|VFT_APP> <description>)
# Gives a Windows library or program the version and the words that its properties show, in German. A program also says
# that it knows about rights: Windows would else lead what it may not write, record files and registry, to copies that
# only this user sees.
function(add_version_info target type description)
  if(NOT WIN32)
    return()
  endif()
  set(script ${CMAKE_CURRENT_BINARY_DIR}/${target}_version.rc)
  string(REPLACE . ", " numbers ${PROJECT_VERSION}.0)
  set(suffix .exe)
  if(type STREQUAL "VFT_DLL")
    set(suffix .dll)
  else()
    set(manifest "1 24 \"${PROJECT_SOURCE_DIR}/cmake/program.manifest\"")
  endif()
  configure_file(${PROJECT_SOURCE_DIR}/cmake/version_info.rc.in ${script} @ONLY)
  target_sources(${target} PRIVATE ${script})
endfunction()
