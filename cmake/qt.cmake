# The toolkit of the graphical program. One target, so that every folder of gui/ sees the same definitions and shares
# one precompiled header.
find_package(Qt6 6.4 REQUIRED COMPONENTS Widgets Svg PrintSupport)

add_library(corvalence_qt INTERFACE)
target_link_libraries(corvalence_qt INTERFACE Qt6::Widgets Qt6::Svg Qt6::PrintSupport)
target_compile_definitions(corvalence_qt INTERFACE QT_NO_FOREACH QT_NO_KEYWORDS QT_NO_URL_CAST_FROM_STRING)

# corvalence_gui_library(<name> SOURCES ... LINKS ...): one folder of gui/ as a static library.
function(corvalence_gui_library name)
    corvalence_library(${name} ${ARGN})
    target_link_libraries(corvalence_${name} PUBLIC corvalence_qt)
    set_target_properties(corvalence_${name} PROPERTIES AUTOMOC ON AUTORCC ON)
    if(NOT name STREQUAL gui_support)
        target_precompile_headers(corvalence_${name} REUSE_FROM corvalence_gui_support)
    endif()
endfunction()
