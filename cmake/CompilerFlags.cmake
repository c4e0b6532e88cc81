# `project_flags` is linked by every target of this project. Warnings are errors in the presets of
# developers (CMAKE_COMPILE_WARNING_AS_ERROR), not in `release`: a newer compiler may warn of more.
add_library(project_flags INTERFACE)

if(MSVC)
  target_compile_options(project_flags INTERFACE /W4 /utf-8 /permissive-)
else()
  target_compile_options(
    project_flags INTERFACE -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wsign-conversion
                            -Wold-style-cast -Wnon-virtual-dtor -Woverloaded-virtual)
endif()

# A wrong index ends a debug build.
target_compile_definitions(project_flags INTERFACE $<$<CONFIG:Debug>:_GLIBCXX_ASSERTIONS>)

if(MINGW)
  # Address space layout randomisation and data execution prevention are the linker's defaults. GCC
  # has no control flow protection for Windows.
  target_compile_options(project_flags INTERFACE -fstack-protector-strong
                                                 $<$<CONFIG:Release>:-D_FORTIFY_SOURCE=2>)
  target_link_options(project_flags INTERFACE -fstack-protector-strong)
endif()

# Hardening: a memory fault ends the program before an attacker can use it. _FORTIFY_SOURCE needs
# optimization. The sanitizers have their own checks.
if(CMAKE_SYSTEM_NAME STREQUAL "Linux" AND NOT SANITIZE)
  set(CMAKE_POSITION_INDEPENDENT_CODE ON)
  include(CheckPIESupported)
  check_pie_supported()
  target_compile_options(
    project_flags INTERFACE $<$<CONFIG:Release>:-U_FORTIFY_SOURCE -D_FORTIFY_SOURCE=2>
                            -fstack-protector-strong -fstack-clash-protection)
  if(CMAKE_SYSTEM_PROCESSOR MATCHES "x86_64|AMD64|i.86")
    target_compile_options(project_flags INTERFACE -fcf-protection)
  endif()
  target_link_options(project_flags INTERFACE -Wl,-z,relro -Wl,-z,now)
endif()

if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 13)
  # False warnings in std::string (https://gcc.gnu.org/bugzilla/show_bug.cgi?id=105651).
  target_compile_options(project_flags INTERFACE -Wno-restrict)
endif()

if(FUZZ)
  target_compile_options(project_flags INTERFACE -fsanitize=fuzzer-no-link)
endif()

if(SANITIZE)
  target_compile_options(project_flags INTERFACE -fsanitize=address,undefined
                                                 -fno-sanitize-recover=all -fno-omit-frame-pointer)
  target_link_options(project_flags INTERFACE -fsanitize=address,undefined)
  if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
    # Together with the sanitizers, GCC gives false warnings in the standard library.
    # AddressSanitizer and the release build find the true ones.
    target_compile_options(project_flags INTERFACE -Wno-maybe-uninitialized)
  endif()
endif()
