include(GoogleTest)

# pelorin_add_test(NAME <exe> TIER core|offscreen|x11 SOURCES ... LIBS ... [LABELS ...]
#                  [RESOURCE_LOCK ...])
# Each GoogleTest case becomes one ctest test named after the behaviour it shows.
# core: QCoreApplication, no display. offscreen: QApplication on the offscreen platform.
# x11: QApplication on the X server the test run provides (Xvfb with openbox).
# Every test gets its own HOME, XDG folders and a 0700 XDG_RUNTIME_DIR under the build tree.
function(pelorin_add_test)
    cmake_parse_arguments(T "" "NAME;TIER" "SOURCES;LIBS;LABELS;RESOURCE_LOCK" ${ARGN})
    add_executable(${T_NAME} ${T_SOURCES})
    if(T_TIER STREQUAL "core")
        target_link_libraries(${T_NAME} PRIVATE pelorin_gtest_core)
    else()
        target_link_libraries(${T_NAME} PRIVATE pelorin_gtest_gui)
    endif()
    target_link_libraries(${T_NAME} PRIVATE ${T_LIBS} pelorin_hygiene)
    target_compile_definitions(${T_NAME} PRIVATE
        PELORIN_SOURCE_DIR="${PROJECT_SOURCE_DIR}"
        PELORIN_BINARY_DIR="${PROJECT_BINARY_DIR}")
    set(env "PELORIN_UNATTENDED=1")
    if(T_TIER STREQUAL "offscreen")
        list(APPEND env "QT_QPA_PLATFORM=offscreen")
    elseif(T_TIER STREQUAL "x11")
        list(APPEND env "QT_QPA_PLATFORM=xcb")
    endif()
    set(props ENVIRONMENT "${env}" LABELS "${T_TIER};${T_LABELS}" TIMEOUT 120)
    if(T_RESOURCE_LOCK)
        list(APPEND props RESOURCE_LOCK "${T_RESOURCE_LOCK}")
    endif()
    gtest_discover_tests(${T_NAME}
        TEST_PREFIX "${T_NAME}."
        DISCOVERY_MODE PRE_TEST
        PROPERTIES ${props})
endfunction()
