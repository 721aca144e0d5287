# SKYHAUL_SANITIZE is a list for -fsanitize=, for example "address,undefined" or "thread".
set(SKYHAUL_SANITIZE "" CACHE STRING "Sanitizers to build with")
if(SKYHAUL_SANITIZE)
  add_compile_options(-fsanitize=${SKYHAUL_SANITIZE} -fno-sanitize-recover=all
                      -fno-omit-frame-pointer)
  add_link_options(-fsanitize=${SKYHAUL_SANITIZE})
endif()
