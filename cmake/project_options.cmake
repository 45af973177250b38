# What every target of the project is compiled with; link `project_options` privately.
add_library(project_options INTERFACE)
target_compile_features(project_options INTERFACE cxx_std_20)
target_compile_options(project_options INTERFACE
  -Wall -Wextra -Wpedantic -Wconversion -Wshadow -Werror)
target_include_directories(project_options INTERFACE ${PROJECT_SOURCE_DIR} ${PROJECT_SOURCE_DIR}/qlx99)

if(QLX_SANITIZE)
  target_compile_options(project_options INTERFACE
    -fsanitize=${QLX_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer)
  target_link_options(project_options INTERFACE -fsanitize=${QLX_SANITIZE})
endif()

# What a process loads under the loader's lock: nothing of it may have to be constructed then.
add_library(attached_code INTERFACE)
target_compile_options(attached_code INTERFACE $<$<CXX_COMPILER_ID:Clang>:-Wglobal-constructors>)

# Lets libFuzzer see which ways its inputs take through our code, in every target.
if(QLX_FUZZ)
  target_compile_options(project_options INTERFACE -fsanitize=fuzzer-no-link)
endif()

if(WIN32)
  target_compile_definitions(project_options INTERFACE WIN32_LEAN_AND_MEAN NOMINMAX _WIN32_WINNT=0x0601)
  # The word processor's folder must not have to hold a compiler's runtime, and equal sources make equal files.
  target_link_options(project_options INTERFACE -static -s -Wl,--no-insert-timestamp)
elseif(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
  # A library whose symbols are "unique" is never unloaded, but macros' hosts load and free it again.
  target_compile_options(project_options INTERFACE $<$<COMPILE_LANGUAGE:CXX>:-fno-gnu-unique>)
endif()
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 13)
  # GCC 12 sees overlapping copies in any `"text" + std::string`.
  target_compile_options(project_options INTERFACE $<$<COMPILE_LANGUAGE:CXX>:-Wno-restrict>)
endif()
