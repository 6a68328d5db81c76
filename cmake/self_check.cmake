# What the programs need to check themselves by: digests that are made when they are built.
set(CORVALENCE_SELF_CHECK_DIR ${CMAKE_CURRENT_LIST_DIR})

# corvalence_self_check(<target> <name>): after each linking the file <name> beside the program holds the 16 bytes of
# its MD5. A step that changes the program afterwards (strip) runs write_program_digest.cmake again.
function(corvalence_self_check target name)
    add_custom_command(TARGET ${target} POST_BUILD
        COMMAND ${CMAKE_COMMAND} "-DPROGRAM=$<TARGET_FILE:${target}>"
                "-DDIGEST=$<TARGET_FILE_DIR:${target}>/${name}"
                -P ${CORVALENCE_SELF_CHECK_DIR}/write_program_digest.cmake
        VERBATIM)
endfunction()

# corvalence_help_digest(<target> <help_file> [<other>]): the sources of <target> can include "help_digest.h", where
# corvalence::kHelpDigest is the MD5 of <help_file>, which may be made by the build itself. So can those of <other>, a target
# of another folder, which CORVALENCE_HAS_HELP tells.
function(corvalence_help_digest target help_file)
    set(folder ${CMAKE_CURRENT_BINARY_DIR}/${target}_help)
    set(script ${CORVALENCE_SELF_CHECK_DIR}/write_help_digest.cmake)
    add_custom_command(OUTPUT ${folder}/help_digest.h
        COMMAND ${CMAKE_COMMAND} "-DHELP=${help_file}" "-DHEADER=${folder}/help_digest.h" -P ${script}
        DEPENDS ${help_file} ${script}
        VERBATIM)
    target_sources(${target} PRIVATE ${folder}/help_digest.h)
    target_include_directories(${target} PRIVATE ${folder})
    if(ARGC GREATER 2)
        add_custom_target(${target}_help_digest DEPENDS ${folder}/help_digest.h)
        add_dependencies(${target} ${target}_help_digest)
        add_dependencies(${ARGV2} ${target}_help_digest)
        target_include_directories(${ARGV2} PRIVATE ${folder})
        target_compile_definitions(${ARGV2} PRIVATE CORVALENCE_HAS_HELP)
    endif()
endfunction()
