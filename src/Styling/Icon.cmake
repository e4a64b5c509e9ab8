# zelk_embed_icon(<target>): draws the application's icon in each size that desktops ask for, below zelk-icons in the
# build folder, and embeds those of a window. Three small sizes have drawings of their own, on whole pixels.
set(zelk_icon_dir "${CMAKE_CURRENT_LIST_DIR}/icon")
set(ZELK_ICON_SIZES 16 22 24 32 48 64 128 256 512)
set(ZELK_ICONS "${PROJECT_BINARY_DIR}/zelk-icons")

function(zelk_embed_icon target)
    add_executable(zelk_draw_icon "${zelk_icon_dir}/draw_icon.cpp")
    target_link_libraries(zelk_draw_icon PRIVATE zelk_options Qt6::Gui Qt6::Svg)
    file(MAKE_DIRECTORY "${ZELK_ICONS}")
    set(embedded "")
    foreach(size IN LISTS ZELK_ICON_SIZES)
        set(drawing "${zelk_icon_dir}/zelk-${size}.svg")
        if(NOT EXISTS "${drawing}")
            set(drawing "${zelk_icon_dir}/zelk.svg")
        endif()
        set(picture "${ZELK_ICONS}/${size}.png")
        add_custom_command(
            OUTPUT "${picture}"
            COMMAND zelk_draw_icon "${drawing}" ${size} "${picture}"
            DEPENDS zelk_draw_icon "${drawing}"
            COMMENT "Drawing the icon at ${size} px"
            VERBATIM)
        target_sources(${target} PRIVATE "${picture}")
        if(size LESS_EQUAL 256)
            list(APPEND embedded "${picture}")
        endif()
    endforeach()
    qt_add_resources(${target} icon PREFIX /zelk/icon BASE "${ZELK_ICONS}" FILES ${embedded})
endfunction()
