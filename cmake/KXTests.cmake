# SPDX-License-Identifier: MIT
add_custom_target(thread_tests COMMENT "Tests in which threads meet")

# kx_add_test(Name SOURCES ... LINK ... [WEB] [THREADS]): one Qt Test executable, known to CTest under its name.
# WEB marks a test that starts the web engine: such tests run one at a time.
# THREADS marks a test in which threads meet: the thread sanitizer runs those, and the target thread_tests builds them.
function(kx_add_test name)
    cmake_parse_arguments(PARSE_ARGV 1 arg "WEB;THREADS" "TIMEOUT" "SOURCES;LINK;ARGS")
    if(NOT arg_SOURCES)
        set(arg_SOURCES ${name}.cpp)
    endif()
    if(NOT arg_TIMEOUT)
        set(arg_TIMEOUT 300)
    endif()
    add_executable(${name} ${arg_SOURCES})
    kx_compile_settings(${name})
    target_link_libraries(${name} PRIVATE ${arg_LINK} Qt6::Test)
    target_include_directories(${name} PRIVATE "${PROJECT_SOURCE_DIR}/tests") # for "Support/..."
    add_test(NAME ${name} COMMAND ${name} ${arg_ARGS})
    set_tests_properties(${name} PROPERTIES
        TIMEOUT ${arg_TIMEOUT}
        ENVIRONMENT "QT_QPA_PLATFORM=offscreen")
    if(arg_THREADS)
        set_property(TEST ${name} APPEND PROPERTY LABELS threads)
        add_dependencies(thread_tests ${name})
    endif()
    if(arg_WEB)
        kx_starts_web_engine(${name})
    endif()
endfunction()

# kx_add_ratio_tests(Names...): the same executables once more each, where pixels are not points.
function(kx_add_ratio_tests)
    foreach(name ${ARGN})
        foreach(ratio 1.5 2)
            add_test(NAME ${name}AtRatio${ratio} COMMAND ${name})
            set_tests_properties(${name}AtRatio${ratio} PROPERTIES
                TIMEOUT 300 ENVIRONMENT "QT_QPA_PLATFORM=offscreen;QT_SCALE_FACTOR=${ratio}")
        endforeach()
    endforeach()
endfunction()

# kx_starts_web_engine(test): what tests that start the web engine have in common.
function(kx_starts_web_engine test)
    set_property(TEST ${test} APPEND PROPERTY LABELS web)
    set_tests_properties(${test} PROPERTIES RESOURCE_LOCK webengine)
    # Read by sanitizer builds alone: inside the engine, objects are deleted by the size of a base class.
    set_property(TEST ${test} APPEND PROPERTY ENVIRONMENT
        "ASAN_OPTIONS=new_delete_type_mismatch=0:detect_stack_use_after_return=1")
endfunction()

# kx_ignore_leaks(tests...): of tests whose plugins keep memory of their own. Where these are built without frame pointers,
# or unloaded by the end, nothing tells such leaks from others. Read by sanitizer builds alone.
function(kx_ignore_leaks)
    set_property(TEST ${ARGN} APPEND PROPERTY ENVIRONMENT "LSAN_OPTIONS=detect_leaks=0")
endfunction()

# kx_add_x11_test(Name [COMMAND ...]): the same executable once more, or the command, on an X server of its own with a
# window manager.
function(kx_add_x11_test name)
    cmake_parse_arguments(PARSE_ARGV 1 arg "" "" "COMMAND")
    if(NOT arg_COMMAND)
        set(arg_COMMAND $<TARGET_FILE:${name}>)
    endif()
    find_program(KX_XVFB Xvfb REQUIRED)
    find_program(KX_OPENBOX openbox REQUIRED)
    add_test(NAME ${name}X11 COMMAND "${PROJECT_SOURCE_DIR}/tests/Support/under_x11.sh"
        "${KX_XVFB}" "${KX_OPENBOX}" ${arg_COMMAND})
    set_tests_properties(${name}X11 PROPERTIES TIMEOUT 300 LABELS x11)
endfunction()

# kx_add_wayland_test(Name): the same executable once more, on a Wayland compositor of its own.
function(kx_add_wayland_test name)
    find_program(KX_XVFB Xvfb REQUIRED)
    find_program(KX_OPENBOX openbox REQUIRED)
    find_program(KX_WESTON weston REQUIRED)
    add_test(NAME ${name}Wayland COMMAND "${PROJECT_SOURCE_DIR}/tests/Support/under_x11.sh"
        "${KX_XVFB}" "${KX_OPENBOX}" "${PROJECT_SOURCE_DIR}/tests/Support/under_wayland.sh"
        "${KX_WESTON}" $<TARGET_FILE:${name}>)
    set_tests_properties(${name}Wayland PROPERTIES TIMEOUT 300 LABELS wayland)
    kx_ignore_leaks(${name}Wayland) # Qt's Wayland plugins
endfunction()
