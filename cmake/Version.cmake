# The version is written once, in src/core/version.h, where the program reads it too: a number of
# hundredths. SKYHAUL_VERSION is what the program prints for it;
# "cmake -P" with this file prints it too.
set(header ${CMAKE_CURRENT_LIST_DIR}/../src/core/version.h)
set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${header})
file(STRINGS ${header} line REGEX "kVersionNumber = [0-9]")
string(REGEX REPLACE ".*kVersionNumber = ([0-9]+).*" "\\1" number "${line}")
if(NOT number MATCHES "^[0-9]+$")
  message(FATAL_ERROR "${header} has no line with kVersionNumber = <number>")
endif()
math(EXPR major "${number} / 100")
math(EXPR minor "${number} % 100")
if(minor LESS 10)
  string(PREPEND minor 0)
endif()
set(SKYHAUL_VERSION ${major}.${minor})
if(CMAKE_SCRIPT_MODE_FILE)
  execute_process(COMMAND ${CMAKE_COMMAND} -E echo ${SKYHAUL_VERSION})
endif()
