# A room is a folder whose headers are named by its path ("core/units.h"). Each room's target gives
# its users an include folder that holds nothing but that room, so that including a header of a room
# that the target does not link to fails to compile: the arrows between rooms are the link lines.
#
#   skyhaul_room(formats/igc SOURCES a.cpp b.cpp LINK skyhaul_core)
#
# makes the target skyhaul_formats_igc from the sources in the current folder.
function(skyhaul_room path)
  cmake_parse_arguments(ROOM "" "" "SOURCES;LINK" ${ARGN})
  string(REPLACE "/" "_" name ${path})
  set(target skyhaul_${name})
  set(include ${CMAKE_BINARY_DIR}/rooms/${name})
  get_filename_component(parent ${include}/${path} DIRECTORY)
  file(MAKE_DIRECTORY ${parent})
  file(CREATE_LINK ${CMAKE_CURRENT_SOURCE_DIR} ${include}/${path} RESULT failed SYMBOLIC)
  if(failed)
    # A file system without links: everything compiles, only the check above is lost.
    set(include ${CMAKE_SOURCE_DIR}/src ${CMAKE_SOURCE_DIR})
  endif()
  add_library(${target} STATIC ${ROOM_SOURCES})
  target_include_directories(${target} PUBLIC ${include})
  target_link_libraries(${target} PUBLIC ${ROOM_LINK} PRIVATE skyhaul_warnings)
  if(SKYHAUL_FUZZ)
    # The fuzzer finds its way by what an input reaches.
    target_compile_options(${target} PRIVATE -fsanitize=fuzzer-no-link)
  endif()
endfunction()
