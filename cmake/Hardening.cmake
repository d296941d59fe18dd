# What Debian hardens its own packages with: the updater reads sticks of strangers and may erase
# versions, so a fault in it should end it, not obey whoever made the stick. It holds for all that is
# optimised, tests and benchmarks included, so that what is tested is what is shipped.
include(CheckPIESupported)
check_pie_supported(LANGUAGES CXX) # without the check an executable is compiled, but not linked, for it
set(CMAKE_POSITION_INDEPENDENT_CODE ON)

add_compile_options(-fstack-protector-strong -Wformat -Werror=format-security)
add_link_options(-Wl,-z,relro -Wl,-z,now -Wl,-z,noexecstack)

# Its checks need the optimiser, and the sanitizers have finer ones in the same functions. Taken away
# first: some compilers define it by themselves, and a second, different value is a warning.
if(NOT UPDATER_SANITIZE)
    add_compile_options($<$<NOT:$<CONFIG:Debug>>:-U_FORTIFY_SOURCE> $<$<NOT:$<CONFIG:Debug>>:-D_FORTIFY_SOURCE=2>)
endif()
