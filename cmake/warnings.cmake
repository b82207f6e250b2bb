# Warnings for our own code: always shown, errors in the project's own presets, never imposed on whoever embeds the library.
function(vrelio_set_warnings target)
  target_compile_options(${target} PRIVATE -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wsign-conversion -Wold-style-cast
                                           -Wnon-virtual-dtor $<$<BOOL:${VRELIO_STRICT}>:-Werror>)
endfunction()
