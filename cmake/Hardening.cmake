# What Debian hardens its own packages with: the updater reads sticks of strangers and may erase
# versions, so a fault in it should end it, not obey whoever made the stick. Tests and benchmarks
# have it too, so that what is tested is what is shipped.
include(CheckPIESupported)
check_pie_supported(LANGUAGES CXX) # without the check an executable is compiled, but not linked, for it
set(CMAKE_POSITION_INDEPENDENT_CODE ON)

add_compile_options(-fstack-protector-strong -Wformat -Werror=format-security)
add_link_options(-Wl,-z,relro -Wl,-z,now -Wl,-z,noexecstack)

# Fortified calls need the optimiser, and the sanitizers check the same calls more finely. Undefined
# first: some compilers define it by themselves, and a second, different value is a warning.
if(NOT UPDATER_SANITIZE)
    set(OPTIMISED $<CONFIG:Release,RelWithDebInfo,MinSizeRel>)
    add_compile_options($<${OPTIMISED}:-U_FORTIFY_SOURCE> $<${OPTIMISED}:-D_FORTIFY_SOURCE=2>)
endif()
