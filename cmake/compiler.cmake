# Settings for the project's own code: warnings, sanitizers, and floating-point arithmetic whose order is laid down.
add_library(zorv_compiler_settings INTERFACE)

if(MSVC)
  target_compile_options(zorv_compiler_settings INTERFACE /W4 /utf-8 /fp:precise $<$<BOOL:${ZORV_TOOLS_WERROR}>:/WX>)
else()
  target_compile_options(zorv_compiler_settings INTERFACE
    -Wall -Wextra -Wpedantic -Wshadow -Wconversion
    $<$<BOOL:${ZORV_TOOLS_WERROR}>:-Werror>
    # A fused multiply-add rounds once where two operations round twice, so results would differ between machines.
    -ffp-contract=off
    # Reports name source files relative to the repository, whatever folder it was built in.
    -fmacro-prefix-map=${PROJECT_SOURCE_DIR}/=)
endif()

if(ZORV_TOOLS_SANITIZE)
  add_compile_options(-fsanitize=${ZORV_TOOLS_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer)
  add_link_options(-fsanitize=${ZORV_TOOLS_SANITIZE})
endif()

if(ZORV_TOOLS_COVERAGE)
  # Updates are atomic, since some tests run threads and others fork.
  add_compile_options(--coverage -fprofile-update=atomic)
  add_link_options(--coverage)
endif()

find_program(CCACHE ccache)
if(CCACHE AND NOT CMAKE_CXX_COMPILER_LAUNCHER)
  set(CMAKE_CXX_COMPILER_LAUNCHER ${CCACHE})
endif()
