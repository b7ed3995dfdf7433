# KESTROW_SANITIZE is a list for -fsanitize=, such as "address,undefined" or "thread".
set(KESTROW_SANITIZE "" CACHE STRING "Sanitizers to build with, as -fsanitize= takes them")
add_library(kestrow_sanitizers INTERFACE)
if(KESTROW_SANITIZE)
  target_compile_options(kestrow_sanitizers INTERFACE
    -fsanitize=${KESTROW_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer -g)
  target_link_options(kestrow_sanitizers INTERFACE -fsanitize=${KESTROW_SANITIZE})
endif()
