# What every source file is compiled with for Windows: 16-bit texts in the system's functions, none of
# its macros that collide with the standard library, and Windows 10 as the oldest system.
if(WIN32)
  add_compile_definitions(UNICODE _UNICODE NOMINMAX WIN32_LEAN_AND_MEAN _WIN32_WINNT=0x0A00)
endif()
if(MINGW)
  # printf() as the C++ standard has it, also where the compiler checks its arguments.
  add_compile_definitions(__USE_MINGW_ANSI_STDIO=1)
endif()
