# Warning flags for every target the project builds itself.
function(phonepim_warnings target)
  target_compile_options(${target} PRIVATE -Wall -Wextra -Wpedantic
    $<$<COMPILE_LANGUAGE:CXX>:-Wnon-virtual-dtor -Wold-style-cast>)
  if(PHONEPIM_WERROR)
    target_compile_options(${target} PRIVATE -Werror)
  endif()
endfunction()
