# PCRE2's 16-bit library, the independent oracle of the regex tests and the engine the benchmark compares
# with (test and benchmark dependency only). Defines PkgConfig::PCRE2_16 when found.
find_package(PkgConfig)
if(PkgConfig_FOUND)
  pkg_check_modules(PCRE2_16 IMPORTED_TARGET libpcre2-16)
endif()
