# Both libraries are linked without a C++ runtime.
set(CMAKE_CXX_IMPLICIT_LINK_LIBRARIES "")

# The companion.
add_library(kepcore SHARED core/kepcore.cpp)
target_link_libraries(kepcore PRIVATE keps_flags OpenMP::OpenMP_C)
set_target_properties(kepcore PROPERTIES LINKER_LANGUAGE C)
target_include_directories(kepcore PUBLIC
  $<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}/include> $<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}>)

# The library's units, compiled once: for libkepse9.so and for tests of its insides.
file(GLOB KEPS_UNITS CONFIGURE_DEPENDS
  frame/*.cpp frame/*.S arith/*.cpp arith/vmath/*.cpp stats/*.cpp transforms/*.cpp filters/*.cpp
  rate/*.cpp generate/*.cpp)
# Units that make sense in the shared library alone.
set(KEPS_SHELL frame/arraddr.S frame/psmain.cpp frame/psmem.cpp)
list(TRANSFORM KEPS_SHELL PREPEND ${PROJECT_SOURCE_DIR}/)
list(REMOVE_ITEM KEPS_UNITS ${KEPS_SHELL})
add_library(keps_units OBJECT ${KEPS_UNITS})
target_link_libraries(keps_units PRIVATE keps_flags)
target_compile_definitions(keps_units PRIVATE
  KEPS_VERSION_MAJOR=${PROJECT_VERSION_MAJOR} KEPS_VERSION_MINOR=${PROJECT_VERSION_MINOR}
  KEPS_VERSION_UPDATE=${PROJECT_VERSION_PATCH})

# The table's head and the stubs stand first and in slot order, which the linker keeps.
add_library(kepse9 SHARED ${KEPS_SHELL} ${KEPS_STUBS} $<TARGET_OBJECTS:keps_units>)
target_include_directories(kepse9 PUBLIC
  $<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}/include> $<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}>)
target_link_libraries(kepse9 PUBLIC kepcore PRIVATE keps_flags ${OpenMP_CXX_FLAGS})
# Linked as C and without start files: no C++ runtime, no constructors, the hooks of psmain alone.
set_target_properties(kepse9 PROPERTIES LINKER_LANGUAGE C
                      LINK_DEPENDS ${PROJECT_SOURCE_DIR}/cmake/exports.map)
target_link_options(kepse9 PRIVATE -nostartfiles -Wl,-init=kepsLoad -Wl,-fini=kepsUnload
  -Wl,--version-script=${PROJECT_SOURCE_DIR}/cmake/exports.map
  -Wl,--build-id -Wl,-z,relro -Wl,-z,now -Wl,--no-as-needed,-lm,--as-needed)
if(NOT KEPS_SANITIZE)
  target_link_options(kepse9 PRIVATE -Wl,-z,defs)
endif()
add_library(keps::kepcore ALIAS kepcore)
add_library(keps::kepse9 ALIAS kepse9)

# keps_inside: the units as they are, for tests and benches of internal functions.
add_library(keps_inside STATIC EXCLUDE_FROM_ALL $<TARGET_OBJECTS:keps_units>)
target_include_directories(keps_inside PUBLIC ${PROJECT_SOURCE_DIR} ${PROJECT_SOURCE_DIR}/include)
target_link_libraries(keps_inside PUBLIC kepcore OpenMP::OpenMP_CXX)
