# How every target of this project is compiled; private to the project's own targets, so that a
# project that includes this one keeps its own rules.
add_library(updater_options INTERFACE)

target_compile_options(updater_options INTERFACE
    -Wall -Wextra -Wpedantic -Werror
    -Wshadow                # a name that hides another is read as the other
    -Wconversion            # the board is 32-bit: a silent narrowing there is a wrong value
    -Wnon-virtual-dtor -Woverloaded-virtual -Wnull-dereference
    # Qt's own macros and generated code are not written to these two.
    -Wno-sign-conversion
    # How arguments are passed on Arm changed before any of this was compiled.
    $<$<CXX_COMPILER_ID:GNU>:-Wno-psabi>
)
target_compile_definitions(updater_options INTERFACE
    QT_NO_CAST_TO_ASCII QT_NO_URL_CAST_FROM_STRING QT_NO_NARROWING_CONVERSIONS_IN_CONNECT
    QT_DEPRECATED_WARNINGS
    # Without it the 32-bit board can neither read folders whose inode numbers need 64 bits, as some
    # sticks' do, nor files of 2 GiB and more.
    _FILE_OFFSET_BITS=64
    # Nor the status of what a stick's maker, or a clock that was wrong, has dated beyond 2038.
    _TIME_BITS=64
)

if(UPDATER_SANITIZE)
    target_compile_options(updater_options INTERFACE
        -fsanitize=${UPDATER_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer -O1
        # GCC sees null dereferences in sanitizer-instrumented Qt headers that are not there.
        -Wno-null-dereference $<$<CXX_COMPILER_ID:GNU>:-Wno-maybe-uninitialized>)
    # The sanitizers do not see an index beyond the end of a container that has spare room.
    target_compile_definitions(updater_options INTERFACE _GLIBCXX_ASSERTIONS)
    target_link_options(updater_options INTERFACE -fsanitize=${UPDATER_SANITIZE})
endif()
