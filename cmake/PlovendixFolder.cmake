# Two functions, one for a room and one for its tests, so that every target is built the same way. Both take their names
# from the folder that calls them: ui/window makes the target ui_window, tests/ui/window the program ui_window_tests.
#
# plovendix_folder([UI] [MOC] [WIDGETS] SOURCES … DEPENDS … [PRIVATE_DEPENDS …])
#   A static library whose public include folder holds links to the folder's own headers and to nothing else, so that
#   they are included as <ui/window/Window.h>. A room that includes a header of a room it does not depend on stops at
#   the first line. UI: it uses scenes of the storyboards. MOC: some class has Q_OBJECT. WIDGETS: it uses Qt Widgets.
# plovendix_tests([WIDGETS] CLASSES … [SOURCES …] DEPENDS … [LABELS …])
#   One program of the room's test classes, each in a source of its name, and for each class a test of that name in a
#   process of its own. It links its room and nothing above.

add_library(plovendix_options INTERFACE)
target_compile_features(plovendix_options INTERFACE cxx_std_20)
target_compile_options(plovendix_options INTERFACE -Wall -Wextra -Wpedantic -Wshadow -Wconversion
    -Wold-style-cast -Woverloaded-virtual -pthread) # the thread flag for all, since it decides what a precompiled header fits
target_compile_definitions(plovendix_options INTERFACE QT_NO_CAST_FROM_ASCII QT_NO_CAST_TO_ASCII
    QT_NO_NARROWING_CONVERSIONS_IN_CONNECT QT_NO_KEYWORDS)
if(PLOVENDIX_WERROR)
    target_compile_options(plovendix_options INTERFACE -Werror)
endif()
include(CheckLinkerFlag)
foreach(linker IN ITEMS mold lld gold)
    check_linker_flag(CXX -fuse-ld=${linker} PLOVENDIX_HAS_${linker})
    if(PLOVENDIX_HAS_${linker})
        target_link_options(plovendix_options INTERFACE -fuse-ld=${linker})
        break()
    endif()
endforeach()
if(PLOVENDIX_SANITIZE)
    target_compile_options(plovendix_options INTERFACE -fsanitize=${PLOVENDIX_SANITIZE} -fno-omit-frame-pointer
        -fno-sanitize-recover=all -O1
        $<$<CXX_COMPILER_ID:GNU>:-Wno-maybe-uninitialized>) # GCC 12 gives false ones here
    target_link_options(plovendix_options INTERFACE -fsanitize=${PLOVENDIX_SANITIZE})
endif()

# One header each for rooms with and without widgets and for their tests. Compiling the toolkit's headers took most of the
# time of a source.
function(plovendix_precompiled name)
    add_library(plovendix_precompiled_${name} STATIC ${PROJECT_SOURCE_DIR}/cmake/precompiled/empty.cpp)
    target_link_libraries(plovendix_precompiled_${name} PRIVATE plovendix_options ${ARGN})
    target_precompile_headers(plovendix_precompiled_${name} PRIVATE ${PROJECT_SOURCE_DIR}/cmake/precompiled/${name}.h)
    if(CMAKE_CXX_COMPILER_ID STREQUAL GNU)
        # What the compiler cache needs to see the header's contents.
        target_compile_options(plovendix_precompiled_${name} PRIVATE -fpch-preprocess)
    endif()
endfunction()
plovendix_precompiled(core Qt6::Core)
plovendix_precompiled(widgets Qt6::Widgets)
if(PLOVENDIX_TESTS)
    # The folder of each test, which the library defines as a macro, would be different for each user of the header.
    set_property(TARGET Qt6::Test PROPERTY INTERFACE_COMPILE_DEFINITIONS QT_TESTLIB_LIB)
    plovendix_precompiled(core_tests Qt6::Gui Qt6::Network Qt6::Test)
    plovendix_precompiled(widget_tests Qt6::Widgets Qt6::Network Qt6::Test)
endif()

function(plovendix_use_precompiled target name)
    target_precompile_headers(${target} REUSE_FROM plovendix_precompiled_${name})
    if(CMAKE_CXX_COMPILER_ID STREQUAL GNU)
        target_compile_options(${target} PRIVATE -fpch-preprocess)
    endif()
endfunction()

set(PLOVENDIX_STORYBOARDS ${PROJECT_SOURCE_DIR}/resources/Main.storyboard
    ${PROJECT_SOURCE_DIR}/resources/Preferences.storyboard)

function(plovendix_folder)
    cmake_parse_arguments(ARG "UI;MOC;WIDGETS" "" "SOURCES;DEPENDS;PRIVATE_DEPENDS" ${ARGN})
    file(RELATIVE_PATH folder ${PROJECT_SOURCE_DIR} ${CMAKE_CURRENT_SOURCE_DIR})
    string(REPLACE / _ name ${folder})
    set(include_root ${CMAKE_BINARY_DIR}/include/${name})
    file(MAKE_DIRECTORY ${include_root}/${folder})
    file(GLOB headers CONFIGURE_DEPENDS *.h)
    foreach(header IN LISTS headers)
        get_filename_component(leaf ${header} NAME)
        file(CREATE_LINK ${header} ${include_root}/${folder}/${leaf} SYMBOLIC)
    endforeach()

    add_library(${name} STATIC ${ARG_SOURCES})
    target_include_directories(${name} PUBLIC ${include_root})
    target_link_libraries(${name} PUBLIC plovendix_options ${ARG_DEPENDS} PRIVATE ${ARG_PRIVATE_DEPENDS})
    set_target_properties(${name} PROPERTIES AUTOMOC ${ARG_MOC})
    if(ARG_WIDGETS)
        plovendix_use_precompiled(${name} widgets)
    else()
        plovendix_use_precompiled(${name} core)
    endif()
    if(ARG_UI)
        # The scenes' texts go through the same lookup as the code's.
        set_target_properties(${name} PROPERTIES AUTOUIC ON
            AUTOUIC_SEARCH_PATHS "${PLOVENDIX_STORYBOARDS}"
            AUTOUIC_OPTIONS "-a;-tr;String::localize;-include;base/LocalizedString.h")
        # Ninja looks at a scene's header before it is written anew, and would build its controller a run too late.
        foreach(storyboard IN LISTS PLOVENDIX_STORYBOARDS)
            file(GLOB scenes CONFIGURE_DEPENDS ${storyboard}/*.ui)
            foreach(scene IN LISTS scenes)
                get_filename_component(controller ${scene} NAME_WE)
                set(sources ${ARG_SOURCES})
                list(FILTER sources INCLUDE REGEX "^${controller}[A-Za-z]*\\.cpp$")
                set_source_files_properties(${sources} PROPERTIES OBJECT_DEPENDS ${scene})
            endforeach()
        endforeach()
    endif()
endfunction()

# The toolkit's own threads are not instrumented, so what they do among themselves looks like a race; and some tests
# start programs from a process with threads, which is sound as long as nothing but exec follows.
# The leak checker's guess at where libraries that are loaded late keep what belongs to a thread can hit memory that is
# none of theirs, and it stops at that.
set(PLOVENDIX_SANITIZING "TSAN_OPTIONS=ignore_noninstrumented_modules=1 die_after_fork=0 suppressions=${PROJECT_SOURCE_DIR}/tests/support/toolkit-threads.supp;ASAN_OPTIONS=intercept_tls_get_addr=0;LSAN_OPTIONS=suppressions=${PROJECT_SOURCE_DIR}/tests/support/toolkit-leaks.supp:print_suppressions=0")

function(plovendix_tests)
    file(RELATIVE_PATH room ${PROJECT_SOURCE_DIR}/tests ${CMAKE_CURRENT_SOURCE_DIR})
    string(REPLACE / _ room ${room})
    cmake_parse_arguments(ARG "WIDGETS" "" "CLASSES;SOURCES;DEPENDS;LABELS" ${ARGN})
    set(program ${room}_tests)
    list(TRANSFORM ARG_CLASSES APPEND .cpp OUTPUT_VARIABLE class_sources)
    add_executable(${program} ${class_sources} ${ARG_SOURCES})
    target_link_libraries(${program} PRIVATE plovendix_options tests_headers tests_support tests_main ${ARG_DEPENDS} Qt6::Gui Qt6::Network Qt6::Test)
    set_target_properties(${program} PROPERTIES AUTOMOC ON RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/tests)
    if(ARG_WIDGETS)
        target_link_libraries(${program} PRIVATE Qt6::Widgets)
        plovendix_use_precompiled(${program} widget_tests)
    else()
        plovendix_use_precompiled(${program} core_tests)
    endif()
    foreach(class IN LISTS ARG_CLASSES)
        add_test(NAME ${class} COMMAND ${program} ${class})
        set_tests_properties(${class} PROPERTIES
            ENVIRONMENT "QT_QPA_PLATFORM=offscreen;LC_ALL=C.UTF-8;QT_LOGGING_RULES=qt.*=false;QTEST_DISABLE_STACK_DUMP=1;${PLOVENDIX_SANITIZING}"
            LABELS "unit;${ARG_LABELS}" TIMEOUT 120)
    endforeach()
endfunction()

# plovendix_support(NAME SOURCES … DEPENDS …): the library tests_NAME of what tests share. Its headers are included by
# their path below tests/.
function(plovendix_support name)
    cmake_parse_arguments(ARG "" "" "SOURCES;DEPENDS" ${ARGN})
    add_library(tests_${name} STATIC ${ARG_SOURCES})
    target_link_libraries(tests_${name} PUBLIC plovendix_options tests_headers ${ARG_DEPENDS})
endfunction()

# All headers of the tests. The rooms cannot see them.
add_library(tests_headers INTERFACE)
file(MAKE_DIRECTORY ${CMAKE_BINARY_DIR}/include/tests)
file(CREATE_LINK ${PROJECT_SOURCE_DIR}/tests ${CMAKE_BINARY_DIR}/include/tests/tests SYMBOLIC)
target_include_directories(tests_headers INTERFACE ${CMAKE_BINARY_DIR}/include/tests)
