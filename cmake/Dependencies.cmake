# What the system supplies. The package that each comes from stands in scripts/setup.

find_package(PkgConfig REQUIRED)
find_package(SQLite3 REQUIRED)
find_package(jsoncpp REQUIRED)
find_package(Boost 1.74 REQUIRED COMPONENTS filesystem)
find_package(ICU REQUIRED COMPONENTS uc i18n)
find_package(CLI11 REQUIRED)
pkg_check_modules(LIBIDN2 REQUIRED IMPORTED_TARGET libidn2)
pkg_check_modules(GEOIP REQUIRED IMPORTED_TARGET geoip)

# Debian's SOCI ships no configuration file for CMake in every release, so its two libraries are looked up.
find_path(SOCI_INCLUDE_DIRECTORY soci/soci.h REQUIRED)
find_library(SOCI_CORE_LIBRARY soci_core REQUIRED)
find_library(SOCI_SQLITE3_LIBRARY soci_sqlite3 REQUIRED)
add_library(mailserver-log-soci INTERFACE)
# SYSTEM: the warnings of SOCI's headers are not ours to mend.
target_include_directories(mailserver-log-soci SYSTEM INTERFACE "${SOCI_INCLUDE_DIRECTORY}"
                                                                "${SOCI_INCLUDE_DIRECTORY}/soci")
target_link_libraries(mailserver-log-soci INTERFACE "${SOCI_SQLITE3_LIBRARY}" "${SOCI_CORE_LIBRARY}"
                                                    SQLite::SQLite3)
