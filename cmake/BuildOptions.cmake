# One interface target carries what every target of the project is compiled with.

add_library(mailserver-log-options INTERFACE)
target_compile_features(mailserver-log-options INTERFACE cxx_std_17)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_CXX_VISIBILITY_PRESET hidden)
set(CMAKE_VISIBILITY_INLINES_HIDDEN ON)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
# The two libraries and the program find each other wherever they are installed together.
file(RELATIVE_PATH libraries_from_program "${CMAKE_INSTALL_FULL_BINDIR}" "${CMAKE_INSTALL_FULL_LIBDIR}")
set(CMAKE_INSTALL_RPATH "$ORIGIN" "$ORIGIN/${libraries_from_program}")

file(RELATIVE_PATH source_from_build "${PROJECT_BINARY_DIR}" "${PROJECT_SOURCE_DIR}/")
target_compile_options(
    mailserver-log-options
    INTERFACE -Wall
              -Wextra
              -Wpedantic
              -Wconversion
              -Wshadow
              $<$<BOOL:${MAILSERVER_LOG_WARNINGS_AS_ERRORS}>:-Werror>
              # Error lines carry the source's path: relative to the project, so that it is the same on
              # every machine that builds. Public headers are compiled through the link that is made below.
              -ffile-prefix-map=${PROJECT_SOURCE_DIR}/=
              -ffile-prefix-map=${PROJECT_BINARY_DIR}/include/mailserver-log/=src/include/
              # A compiler cache may hand these paths on relative to the build folder.
              -ffile-prefix-map=${source_from_build}=
              -ffile-prefix-map=include/mailserver-log/=src/include/)

if(MAILSERVER_LOG_SANITIZE)
    target_compile_options(
        mailserver-log-options INTERFACE -fsanitize=${MAILSERVER_LOG_SANITIZE} -fno-omit-frame-pointer
                                         -fno-sanitize-recover=all)
    # False alarms of g++ in std::regex, with sanitizers only (GCC bug 105562).
    target_compile_options(mailserver-log-options INTERFACE $<$<CXX_COMPILER_ID:GNU>:-Wno-maybe-uninitialized>)
    # Checking casts to SOCI's backend classes takes their type information, which its library hides.
    target_compile_options(mailserver-log-options INTERFACE -fno-sanitize=vptr)
    target_link_options(mailserver-log-options INTERFACE -fsanitize=${MAILSERVER_LOG_SANITIZE})
endif()

if(MAILSERVER_LOG_COVERAGE)
    target_compile_options(mailserver-log-options INTERFACE --coverage)
    target_link_options(mailserver-log-options INTERFACE --coverage)
endif()

# The public headers are included as <mailserver-log/...> in the tree as they are once installed.
file(MAKE_DIRECTORY "${PROJECT_BINARY_DIR}/include")
file(CREATE_LINK "${PROJECT_SOURCE_DIR}/src/include" "${PROJECT_BINARY_DIR}/include/mailserver-log" SYMBOLIC)

# mailserver_log_precompile(TARGET GROUP HEADER...): where precompiling is asked for, compiles headers of
# others once for all targets of a group, which are compiled alike; it halves the time of a build. Sources
# include what they use all the same, and a release build, which goes without, shows where one does not.
function(mailserver_log_precompile target group)
    if(NOT MAILSERVER_LOG_PRECOMPILE)
        return()
    endif()
    get_property(first GLOBAL PROPERTY mailserver_log_precompiled_${group})
    if(first)
        target_precompile_headers(${target} REUSE_FROM ${first})
    else()
        target_precompile_headers(
            ${target} PRIVATE <algorithm> <functional> <map> <memory> <regex> <sstream> <string> <vector> ${ARGN})
        set_property(GLOBAL PROPERTY mailserver_log_precompiled_${group} ${target})
    endif()
endfunction()
