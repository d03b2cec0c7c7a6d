# Warnings are errors everywhere; floating point follows the source exactly
# (piece geometry is compared bit for bit, so no contraction into fused multiply-adds).
add_compile_options(
  -Wall -Wextra -Wpedantic -Wshadow -Wnon-virtual-dtor -Wconversion -Wold-style-cast
  -Werror -ffp-contract=off)

# GCC 12 reports -Wrestrict inside libstdc++'s string concatenation at -O3, where nothing
# overlaps (GCC bug 105329), and at link-time optimisation an impossible allocation size
# inside Qt's QHash rehash. Both are false alarms in library headers, not in our code.
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 13)
  add_compile_options(-Wno-restrict)
  add_link_options(-Wno-alloc-size-larger-than)
endif()

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

# Release builds optimise across translation units: the hot paths of Core (cache lookups,
# pixel loops) are small functions called from other files.
include(CheckIPOSupported)
check_ipo_supported(RESULT QUILLET_IPO_SUPPORTED OUTPUT QUILLET_IPO_MESSAGE)
if(QUILLET_IPO_SUPPORTED)
  set(CMAKE_INTERPROCEDURAL_OPTIMIZATION_RELEASE ON)
endif()
