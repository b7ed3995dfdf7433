# Where Homebrew keeps the packages that macOS has a part of itself and that are therefore not on any
# search path.
find_program(KESTROW_BREW brew)

# kestrow_homebrew(PACKAGE VARIABLE): sets the variable, a package's root as find_package wants it, to
# the package's folder, unless it is set or there is no such package.
function(kestrow_homebrew package variable)
  if(DEFINED ${variable} OR NOT KESTROW_BREW)
    return()
  endif()
  execute_process(COMMAND ${KESTROW_BREW} --prefix ${package}
    OUTPUT_VARIABLE folder OUTPUT_STRIP_TRAILING_WHITESPACE ERROR_QUIET)
  if(IS_DIRECTORY "${folder}")
    set(${variable} "${folder}" PARENT_SCOPE)
  endif()
endfunction()
