# The locales that tests set, made here: no machine has all of them installed, and a test without its locale would prove
# nothing. kest_test_locales brings the compile definition KEST_TEST_LOCALES, the folder of the locales: a test names it
# to the C library by the environment variable LOCPATH before it calls setlocale().
include_guard(GLOBAL)
find_program(KEST_LOCALEDEF localedef REQUIRED)
set(KEST_TEST_LOCALES ${CMAKE_BINARY_DIR}/locales)

set(locale_files)
foreach(locale tr_TR.UTF-8 de_DE.UTF-8 de_DE.ISO-8859-1 zh_CN.GB18030 zh_HK.BIG5-HKSCS)
    string(REGEX MATCH "^([^.]*)\\.(.*)$" _ ${locale})
    set(stamp ${KEST_TEST_LOCALES}/${locale}.made)
    add_custom_command(OUTPUT ${stamp}
        COMMAND ${CMAKE_COMMAND} -E make_directory ${KEST_TEST_LOCALES}
        COMMAND ${KEST_LOCALEDEF} --quiet -f ${CMAKE_MATCH_2} -i ${CMAKE_MATCH_1} ${KEST_TEST_LOCALES}/${locale}
        COMMAND ${CMAKE_COMMAND} -E touch ${stamp}
        COMMENT "Making the locale ${locale}" VERBATIM)
    list(APPEND locale_files ${stamp})
endforeach()
add_custom_target(kest_test_locale_files DEPENDS ${locale_files})

add_library(kest_test_locales INTERFACE)
target_compile_definitions(kest_test_locales INTERFACE KEST_TEST_LOCALES="${KEST_TEST_LOCALES}")
add_dependencies(kest_test_locales kest_test_locale_files)
