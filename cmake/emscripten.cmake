# Cross-compiling to WebAssembly with Debian's emscripten.
execute_process(COMMAND em-config EMSCRIPTEN_ROOT OUTPUT_VARIABLE emscripten OUTPUT_STRIP_TRAILING_WHITESPACE
  COMMAND_ERROR_IS_FATAL ANY)
include("${emscripten}/cmake/Modules/Platform/Emscripten.cmake")

# Exceptions as the engine has them: those in script cost a call out of the module for nearly every call within it.
# Strings from their templates: those in the library that emscripten brings were compiled to be small, and are slow.
set(CMAKE_CXX_FLAGS_INIT "-fwasm-exceptions -D_LIBCPP_DISABLE_EXTERN_TEMPLATE")
set(CMAKE_CXX_FLAGS_RELEASE "-O2 -DNDEBUG" CACHE STRING "Flags of a Release build")

list(APPEND CMAKE_FIND_ROOT_PATH "${CMAKE_CURRENT_LIST_DIR}/../build/deps/web")
