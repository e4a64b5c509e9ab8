# What makes an error in memory an end of the program and not a way in: for the builds that reach a user. The others keep
# what the tests look at: the sanitizers and the debug build's own checks.
include(CheckPIESupported)
check_pie_supported(LANGUAGES CXX)

if(CMAKE_BUILD_TYPE MATCHES "^(Release|RelWithDebInfo|MinSizeRel)$" AND NOT ZELK_SANITIZE)
    add_compile_options(-fstack-protector-strong -fstack-clash-protection -Wformat -Wformat-security -Werror=format-security)
    # Undefined first, for a distribution's flags may have said it already.
    add_compile_options(-U_FORTIFY_SOURCE -D_FORTIFY_SOURCE=2)
    if(CMAKE_SYSTEM_PROCESSOR MATCHES "^(x86_64|AMD64|i[3-6]86)$")
        add_compile_options(-fcf-protection)
    endif()
    add_link_options(LINKER:-z,relro LINKER:-z,now)
endif()
