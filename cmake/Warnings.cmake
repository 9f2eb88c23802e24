# The warnings that every target of this project compiles without.
function(quorva_zrp_warnings target)
    target_compile_options(${target} PRIVATE -Wall -Wextra -Wpedantic -Wshadow -Wconversion)
    if(QUORVA_ZRP_WERROR)
        target_compile_options(${target} PRIVATE -Werror)
    endif()
endfunction()
