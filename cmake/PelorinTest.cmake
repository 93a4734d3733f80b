include(GoogleTest)

# pelorin_add_test(NAME <exe> TIER core|offscreen|x11 SOURCES ... LIBS ... [LABELS ...]
#                  [RESOURCE_LOCK <name>])
# RESOURCE_LOCK takes one name: test discovery cannot carry a list. The shared things of a test
# run, the player processes that the process checker sees and the real X pointer, are all guarded
# by the one lock "player".
# Each GoogleTest case becomes one ctest test named after the behaviour it shows.
# core: QCoreApplication, no display. offscreen: QApplication on the offscreen platform.
# x11: QApplication on the X server the test run provides (Xvfb with openbox).
# scripts/test.sh gives the whole run its own HOME and XDG folders.
function(pelorin_add_test)
    cmake_parse_arguments(T "" "NAME;TIER;RESOURCE_LOCK" "SOURCES;LIBS;LABELS" ${ARGN})
    if(T_UNPARSED_ARGUMENTS)
        message(FATAL_ERROR "pelorin_add_test(${T_NAME}): unexpected ${T_UNPARSED_ARGUMENTS}")
    endif()
    add_executable(${T_NAME} ${T_SOURCES})
    target_link_libraries(${T_NAME} PRIVATE pelorin_gtest_${T_TIER})
    target_link_libraries(${T_NAME} PRIVATE ${T_LIBS} pelorin_hygiene)
    target_compile_definitions(${T_NAME} PRIVATE
        PELORIN_SOURCE_DIR="${PROJECT_SOURCE_DIR}"
        PELORIN_BINARY_DIR="${PROJECT_BINARY_DIR}")
    # The tier's main sets the platform and the unattended mode (tests/support/GTestMain.cpp).
    set(props LABELS "${T_TIER};${T_LABELS}" TIMEOUT 120)
    if(T_RESOURCE_LOCK)
        list(APPEND props RESOURCE_LOCK "${T_RESOURCE_LOCK}")
    endif()
    gtest_discover_tests(${T_NAME}
        TEST_PREFIX "${T_NAME}."
        DISCOVERY_MODE PRE_TEST
        PROPERTIES ${props})
endfunction()
