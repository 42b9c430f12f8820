# Installs the build in TARNWICK_BUILD into PREFIX, then builds the examples against it.
file(REMOVE_RECURSE ${PREFIX} ${BUILD})
set(flags "-Wall -Wextra -Werror")
if(SANITIZE)
  string(APPEND flags " -fsanitize=${SANITIZE}")
endif()

execute_process(COMMAND_ERROR_IS_FATAL ANY
  COMMAND ${CMAKE_COMMAND} --install ${TARNWICK_BUILD} --prefix ${PREFIX} --component devel)
execute_process(COMMAND_ERROR_IS_FATAL ANY
  COMMAND ${CMAKE_COMMAND} -S ${SOURCE} -B ${BUILD} -G ${GENERATOR} -D CMAKE_PREFIX_PATH=${PREFIX}
          -D CMAKE_CXX_COMPILER=${COMPILER} -D CMAKE_CXX_FLAGS=${flags})
execute_process(COMMAND_ERROR_IS_FATAL ANY COMMAND ${CMAKE_COMMAND} --build ${BUILD})
