# Installs the build in TARNWICK_BUILD into PREFIX, then builds against it the examples and, in
# HEADERS, one file that includes all headers there.
file(REMOVE_RECURSE ${PREFIX} ${BUILD} ${HEADERS})
set(flags "-Wall -Wextra -Werror")
if(SANITIZE)
  string(APPEND flags " -fsanitize=${SANITIZE}")
endif()

execute_process(COMMAND_ERROR_IS_FATAL ANY
  COMMAND ${CMAKE_COMMAND} --install ${TARNWICK_BUILD} --prefix ${PREFIX} --component devel)

file(GLOB headers RELATIVE ${PREFIX}/include ${PREFIX}/include/tarnwick/*.h)
list(TRANSFORM headers REPLACE "(.+)" "#include <\\1>\n" OUTPUT_VARIABLE includes)
string(REPLACE ";" "" includes "${includes}")
file(WRITE ${HEADERS}/source/headers.cpp ${includes})
file(WRITE ${HEADERS}/source/CMakeLists.txt [[
cmake_minimum_required(VERSION 3.25)
project(Headers LANGUAGES CXX)
find_package(Tarnwick REQUIRED COMPONENTS serialport checksum links framers tools)
add_library(headers OBJECT headers.cpp)
target_link_libraries(headers PRIVATE Tarnwick::tools)
]])

function(build source binary)
  execute_process(COMMAND_ERROR_IS_FATAL ANY
    COMMAND ${CMAKE_COMMAND} -S ${source} -B ${binary} -G ${GENERATOR} -D CMAKE_PREFIX_PATH=${PREFIX}
            -D CMAKE_CXX_COMPILER=${COMPILER} -D CMAKE_CXX_FLAGS=${flags})
  execute_process(COMMAND_ERROR_IS_FATAL ANY COMMAND ${CMAKE_COMMAND} --build ${binary})
endfunction()
build(${SOURCE} ${BUILD})
build(${HEADERS}/source ${HEADERS}/build)
