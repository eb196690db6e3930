# keps_warnings: for all code of the project.
add_library(keps_warnings INTERFACE)
target_compile_options(keps_warnings INTERFACE
  $<$<COMPILE_LANGUAGE:C,CXX>:-Werror -Wall -Wextra -Wpedantic -Wshadow -Wvla -Wno-psabi>
  # g++ 12 calls the intrinsics' own undefined vectors uninitialized.
  $<$<AND:$<COMPILE_LANGUAGE:CXX>,$<CXX_COMPILER_ID:GNU>>:-Wno-uninitialized -Wno-maybe-uninitialized>)

# keps_flags: for the library's units. AVX and nothing above it, no fused operations, no C++
# runtime, no loop turned into a call of the C library; kernels are vectorised by hand, the
# compiler's own vectors would only swell their tails.
add_library(keps_flags INTERFACE)
target_link_libraries(keps_flags INTERFACE keps_warnings)
target_include_directories(keps_flags INTERFACE ${PROJECT_SOURCE_DIR} ${PROJECT_SOURCE_DIR}/include)
target_compile_options(keps_flags INTERFACE
  $<$<COMPILE_LANGUAGE:CXX>:-fno-exceptions -fno-rtti -fno-threadsafe-statics -mavx -mno-fma
    -ffp-contract=off -fno-math-errno -fno-builtin -fvisibility=hidden -fstack-protector-strong
    ${OpenMP_CXX_FLAGS}>
  $<$<AND:$<COMPILE_LANGUAGE:CXX>,$<CXX_COMPILER_ID:GNU>>:-fno-tree-vectorize
    -fno-tree-slp-vectorize -fno-tree-loop-distribute-patterns
    # Upper-half clears come with this optimisation only; debug builds need it by name.
    -fexpensive-optimizations
    # Tests parted from their loop would cost a worker that another one calls a jump.
    -fno-partial-inlining
    # A loop or a function that starts anywhere lies in one more line than it needs, which costs a
    # loop a third at worst and a short call 0.3 ns.
    -falign-loops=64 -falign-functions=64
    # What a callee is known to leave alone makes g++ 12 forget the clear around its call.
    -fno-ipa-ra>
  $<$<AND:$<COMPILE_LANGUAGE:CXX>,$<CXX_COMPILER_ID:Clang>>:-fno-vectorize -fno-slp-vectorize>)
set(CMAKE_CXX_FLAGS_RELEASE "-O2")
set(CMAKE_C_FLAGS_RELEASE "-O2")
set(CMAKE_CXX_FLAGS_DEBUG "-Og -g")
set(CMAKE_C_FLAGS_DEBUG "-Og -g")

if(KEPS_SANITIZE)
  # More optimisation, and debug information on variables, take minutes a unit; line numbers do.
  set(CMAKE_CXX_FLAGS_RELEASE "-O1 -g1")
  set(CMAKE_C_FLAGS_RELEASE "-O1 -g1")
  add_compile_options($<$<COMPILE_LANGUAGE:C,CXX>:-fsanitize=${KEPS_SANITIZE}>
                      $<$<COMPILE_LANGUAGE:C,CXX>:-fno-sanitize-recover=all>
                      $<$<COMPILE_LANGUAGE:C,CXX>:-fno-omit-frame-pointer>)
  add_link_options(-fsanitize=${KEPS_SANITIZE})
endif()
