# The exported names, read from the headers by the preprocessor, and one assembler unit for each:
# jmp_<name>, a stub and its slot. KEPS_NAMES and KEPS_STUBS are in slot order, descending byte
# order of the names.
file(GLOB KEPS_HEADERS CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/include/*.h)
set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${KEPS_HEADERS})
execute_process(
  COMMAND ${CMAKE_C_COMPILER} -E -P "-DKEPS_FN(result,name,arguments)=keps_fn name"
          -x c ${PROJECT_SOURCE_DIR}/include/keps.h
  OUTPUT_VARIABLE declarations COMMAND_ERROR_IS_FATAL ANY)
string(REGEX MATCHALL "keps_fn [A-Za-z0-9_]+" KEPS_NAMES "${declarations}")
list(TRANSFORM KEPS_NAMES REPLACE "^keps_fn " "")
list(SORT KEPS_NAMES COMPARE STRING CASE SENSITIVE ORDER DESCENDING)
list(LENGTH KEPS_NAMES count)
message(STATUS "keps: ${count} exported functions")

set(KEPS_STUBS "")
foreach(NAME IN LISTS KEPS_NAMES)
  set(stub ${PROJECT_BINARY_DIR}/stubs/jmp_${NAME}.S)
  configure_file(${PROJECT_SOURCE_DIR}/cmake/jmp.S.in ${stub} @ONLY)
  list(APPEND KEPS_STUBS ${stub})
endforeach()
