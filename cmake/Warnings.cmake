# Warnings are errors in everything of ours; libraries are included as system headers.
add_library(skyhaul_warnings INTERFACE)
if(MSVC)
  target_compile_options(skyhaul_warnings INTERFACE /W4 /WX /utf-8)
else()
  # A designated initialiser leaves out on purpose what keeps its default.
  target_compile_options(skyhaul_warnings INTERFACE -Wall -Wextra -Wconversion -Wshadow -Werror
                         -Wno-missing-field-initializers)
  if(CMAKE_CXX_COMPILER_ID STREQUAL GNU AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 14)
    # Sees overlaps inside std::string that are not there (GCC bug 105329).
    target_compile_options(skyhaul_warnings INTERFACE -Wno-restrict)
  endif()
endif()
