# Warnings are errors on every compiler we build with.
add_library(vp_options INTERFACE)
if(MSVC)
  target_compile_options(vp_options INTERFACE /W4 /WX /utf-8 /permissive-)
  target_compile_definitions(vp_options INTERFACE _CRT_SECURE_NO_WARNINGS)
else()
  target_compile_options(vp_options INTERFACE -Wall -Wextra -Wpedantic -Werror -Wshadow
                                              -Wno-missing-field-initializers)
  if(CMAKE_UNITY_BUILD AND CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
    # A unity build includes each source file into one bigger file, so GCC takes a test's
    # fixture in an unnamed namespace for one declared in a header.
    target_compile_options(vp_options INTERFACE -Wno-subobject-linkage)
  endif()
endif()
if(WIN32)
  target_compile_definitions(vp_options INTERFACE UNICODE _UNICODE WIN32_LEAN_AND_MEAN NOMINMAX
                                                  _WIN32_WINNT=0x0601 WINVER=0x0601)
endif()
if(MINGW)
  # One self-contained exe: no compiler DLL has to travel with it.
  target_link_options(vp_options INTERFACE -static -static-libgcc -static-libstdc++)
endif()
if(VP_SANITIZE)
  target_compile_options(vp_options INTERFACE -fsanitize=address,undefined -fno-omit-frame-pointer
                                              -fno-sanitize-recover=all)
  target_link_options(vp_options INTERFACE -fsanitize=address,undefined)
endif()
