# Run by cpack over what it has installed: takes the debugging information out of static libraries,
# which CPACK_STRIP_FILES leaves alone.
file(GLOB_RECURSE archives ${CPACK_TEMPORARY_DIRECTORY}/*.a)
foreach(archive ${archives})
  execute_process(COMMAND strip --strip-debug --enable-deterministic-archives ${archive}
    COMMAND_ERROR_IS_FATAL ANY)
endforeach()
