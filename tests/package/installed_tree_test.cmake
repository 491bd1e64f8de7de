# Installs the build to a prefix, then configures, builds and runs the consumer against it.
function(run)
  execute_process(COMMAND ${ARGN} RESULT_VARIABLE status)
  if(NOT status EQUAL 0)
    message(FATAL_ERROR "failed: ${ARGN}")
  endif()
endfunction()

file(REMOVE_RECURSE ${SCRATCH})
run(${CMAKE_COMMAND} --install ${BUILD} --prefix ${SCRATCH}/prefix)

file(GLOB_RECURSE internal_headers ${SCRATCH}/prefix/include/*/internal/*.h)
if(internal_headers)
  message(FATAL_ERROR "internal headers were installed: ${internal_headers}")
endif()

set(sanitizers "")
if(SANITIZE)
  set(sanitizers "-fsanitize=${SANITIZE}")
endif()
run(${CMAKE_COMMAND} -S ${CONSUMER} -B ${SCRATCH}/build -G ${GENERATOR}
  -D CMAKE_CXX_COMPILER=${COMPILER} -D CMAKE_CXX_FLAGS=${sanitizers} -D CMAKE_PREFIX_PATH=${SCRATCH}/prefix)
run(${CMAKE_COMMAND} --build ${SCRATCH}/build)
run(${SCRATCH}/build/consumer ${CONSUMER}/rig.txt)

# The same program by hand, with what pkg-config tells.
find_program(PKG_CONFIG pkg-config REQUIRED)
set(ENV{PKG_CONFIG_PATH} ${SCRATCH}/prefix/${LIBDIR}/pkgconfig)
execute_process(COMMAND ${PKG_CONFIG} --cflags --libs zorv_tools
  OUTPUT_VARIABLE flags OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
separate_arguments(flags UNIX_COMMAND "${flags}")
run(${COMPILER} -std=c++17 ${sanitizers} ${CONSUMER}/consumer.cpp -o ${SCRATCH}/consumer ${flags}
  -Wl,-rpath,${SCRATCH}/prefix/${LIBDIR})
run(${SCRATCH}/consumer ${CONSUMER}/rig.txt)
