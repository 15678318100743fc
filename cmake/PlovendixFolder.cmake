# Two functions, one for a room and one for its test, so that every target is built the same way.
#
# plovendix_folder(NAME [PUBLISH path] [UI dir] SOURCES … DEPENDS …)
#   A static library whose public include folder holds only itself: a link in the build tree from
#   include/NAME/PUBLISH to this source folder. A room that includes a header of a room it does not
#   depend on stops at the first line.
# plovendix_test(NAME SOURCES … DEPENDS … [LABELS …])
#   A Qt Test executable that links its room and nothing above, run on the offscreen platform.

add_library(plovendix_options INTERFACE)
target_compile_features(plovendix_options INTERFACE cxx_std_20)
target_compile_options(plovendix_options INTERFACE -Wall -Wextra -Wpedantic -Wshadow -Wconversion
    -Wold-style-cast -Woverloaded-virtual)
target_compile_definitions(plovendix_options INTERFACE QT_NO_CAST_FROM_ASCII QT_NO_CAST_TO_ASCII
    QT_NO_NARROWING_CONVERSIONS_IN_CONNECT QT_NO_KEYWORDS)
if(PLOVENDIX_WERROR)
    target_compile_options(plovendix_options INTERFACE -Werror)
endif()
# A third of the usual linker's time, for a test executable each.
include(CheckLinkerFlag)
check_linker_flag(CXX -fuse-ld=gold PLOVENDIX_HAS_GOLD)
if(PLOVENDIX_HAS_GOLD)
    target_link_options(plovendix_options INTERFACE -fuse-ld=gold)
endif()
if(PLOVENDIX_SANITIZE)
    target_compile_options(plovendix_options INTERFACE -fsanitize=${PLOVENDIX_SANITIZE} -fno-omit-frame-pointer
        -fno-sanitize-recover=all -O1
        -Wno-maybe-uninitialized) # GCC 12 gives false ones here
    target_link_options(plovendix_options INTERFACE -fsanitize=${PLOVENDIX_SANITIZE})
endif()

function(plovendix_folder name)
    cmake_parse_arguments(ARG "" "PUBLISH;UI" "SOURCES;DEPENDS;PRIVATE_DEPENDS" ${ARGN})
    if(NOT ARG_PUBLISH)
        set(ARG_PUBLISH ${name})
    endif()
    set(include_root ${CMAKE_BINARY_DIR}/include/${name})
    get_filename_component(link_parent ${include_root}/${ARG_PUBLISH} DIRECTORY)
    file(MAKE_DIRECTORY ${link_parent})
    file(CREATE_LINK ${CMAKE_CURRENT_SOURCE_DIR} ${include_root}/${ARG_PUBLISH} SYMBOLIC)

    add_library(${name} STATIC ${ARG_SOURCES})
    target_include_directories(${name} PUBLIC ${include_root})
    target_link_libraries(${name} PUBLIC plovendix_options ${ARG_DEPENDS} PRIVATE ${ARG_PRIVATE_DEPENDS})
    set_target_properties(${name} PROPERTIES AUTOMOC ON)
    if(ARG_UI)
        # The scenes' texts go through the same lookup as the code's.
        set_target_properties(${name} PROPERTIES AUTOUIC ON
            AUTOUIC_SEARCH_PATHS "${ARG_UI}"
            AUTOUIC_OPTIONS "-a;-tr;String::localize;-include;views/StringHelpers.h")
        # Ninja looks at a scene's header before it is written anew, and would build its controller a run too late.
        file(GLOB scenes CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/resources/*.storyboard/*.ui)
        foreach(scene IN LISTS scenes)
            get_filename_component(controller ${scene} NAME_WE)
            set(sources ${ARG_SOURCES})
            list(FILTER sources INCLUDE REGEX "^${controller}[A-Za-z]*\\.cpp$")
            set_source_files_properties(${sources} PROPERTIES OBJECT_DEPENDS ${scene})
        endforeach()
    endif()
endfunction()

# The toolkit's own threads are not instrumented, so what they do among themselves looks like a race; and some tests
# start programs from a process with threads, which is sound as long as nothing but exec follows.
# The leak checker's guess at where libraries that are loaded late keep what belongs to a thread can hit memory that is
# none of theirs, and it stops at that.
set(PLOVENDIX_SANITIZING "TSAN_OPTIONS=ignore_noninstrumented_modules=1 die_after_fork=0 suppressions=${PROJECT_SOURCE_DIR}/tests/support/toolkit-threads.supp;ASAN_OPTIONS=intercept_tls_get_addr=0")

function(plovendix_test name)
    cmake_parse_arguments(ARG "" "" "SOURCES;DEPENDS;LABELS" ${ARGN})
    add_executable(${name} ${ARG_SOURCES})
    target_link_libraries(${name} PRIVATE plovendix_options tests_support ${ARG_DEPENDS} Qt6::Test)
    set_target_properties(${name} PROPERTIES AUTOMOC ON RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/tests)
    add_test(NAME ${name} COMMAND ${name})
    set_tests_properties(${name} PROPERTIES
        ENVIRONMENT "QT_QPA_PLATFORM=offscreen;LC_ALL=C.UTF-8;QT_LOGGING_RULES=qt.*=false;QTEST_DISABLE_STACK_DUMP=1;${PLOVENDIX_SANITIZING}"
        LABELS "unit;${ARG_LABELS}" TIMEOUT 120)
endfunction()
