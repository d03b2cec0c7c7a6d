# Warnings are errors everywhere; floating point follows the source exactly
# (piece geometry is compared bit for bit, so no contraction into fused multiply-adds).
add_compile_options(
  -Wall -Wextra -Wpedantic -Wshadow -Wnon-virtual-dtor -Wconversion -Wold-style-cast
  -Werror -ffp-contract=off)

if(QUILLET_SANITIZE)
  add_compile_options(-fsanitize=address,undefined -fno-sanitize-recover=all -fno-omit-frame-pointer)
  add_link_options(-fsanitize=address,undefined)
endif()

find_program(CCACHE_PROGRAM ccache)
if(CCACHE_PROGRAM)
  set(CMAKE_CXX_COMPILER_LAUNCHER "${CCACHE_PROGRAM}")
endif()

# Boost's assertions go through the suite's own assertion path.
add_compile_definitions(BOOST_ENABLE_ASSERT_HANDLER)
