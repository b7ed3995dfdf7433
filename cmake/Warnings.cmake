# Warnings that every target of ours is built with. They are errors: a warning that may stay is a
# warning that hides the next one.
set(KESTROW_WARNINGS
  -Wall -Wextra -Wpedantic -Wconversion -Wsign-conversion -Wshadow -Wnon-virtual-dtor
  -Wold-style-cast -Woverloaded-virtual -Wnull-dereference -Wextra-semi -Werror)
# What only Objective-C can get wrong.
set(KESTROW_OBJC_WARNINGS
  -Wno-missing-field-initializers
  -Wundeclared-selector -Wobjc-method-access -Wobjc-messaging-id -Wstrict-selector-match
  -Woverriding-method-mismatch -Wsuper-class-method-mismatch -Wimplicit-retain-self
  -Warc-retain-cycles -Warc-repeated-use-of-weak -Wnullable-to-nonnull-conversion
  -Wnullability-completeness -Wunguarded-availability)

add_library(kestrow_warnings INTERFACE)
target_compile_options(kestrow_warnings INTERFACE ${KESTROW_WARNINGS})
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
  # GCC 12 reports false positives of these inside the standard library at -O2.
  target_compile_options(kestrow_warnings INTERFACE
    -Wno-null-dereference -Wno-maybe-uninitialized -Wno-restrict -Wno-missing-field-initializers)
endif()
if(CMAKE_CXX_COMPILER_ID MATCHES "Clang")
  # A record is made by naming the members that matter; the others have their defaults.
  target_compile_options(kestrow_warnings INTERFACE -Wno-missing-field-initializers)
endif()
if(CMAKE_CXX_COMPILER_ID STREQUAL "Clang")
  # GCC 12's standard library uses its own deprecated buffer in stable_sort and inplace_merge. What
  # we use that is deprecated, GCC reports.
  target_compile_options(kestrow_warnings INTERFACE -Wno-deprecated-declarations)
endif()
