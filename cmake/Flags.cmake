# Compiler and linker flags, with the reason beside each.
option(KARDEL_SANITIZE "Build the logic with sanitizers (off where it is built many times over)" ON)
add_library(kardel_flags INTERFACE)
target_include_directories(kardel_flags INTERFACE ${PROJECT_SOURCE_DIR})
target_compile_definitions(kardel_flags INTERFACE
  $<$<PLATFORM_ID:Windows>:UNICODE;_UNICODE;STRICT;NOMINMAX;WIN32_LEAN_AND_MEAN>
  $<$<PLATFORM_ID:Windows>:_WIN32_WINNT=0x0601;WINVER=0x0601;NTDDI_VERSION=0x06010000>)

# The tests themselves are compiled plainly: on Linux unoptimised, in half the time, and for Windows once and not twice.
# What they test is optimised.
set(KARDEL_PLAINLY $<BOOL:$<TARGET_PROPERTY:KARDEL_PLAIN>>)
set(KARDEL_OPTIMISED $<IF:${KARDEL_PLAINLY},-O0,-O1>)
if(MSVC)
  target_compile_options(kardel_flags INTERFACE /W4 /permissive- /utf-8 /Zc:__cplusplus)
else()
  target_compile_options(kardel_flags INTERFACE -Wall -Wextra -Wpedantic -Werror -Wshadow -Wconversion
    -Wsign-conversion -Wold-style-cast -Wformat=2 -Wnull-dereference -Wmissing-declarations)
  if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
    target_compile_options(kardel_flags INTERFACE -Wduplicated-cond -Wduplicated-branches -Wlogical-op
      -Wzero-as-null-pointer-constant)  # clang's version of this misfires on a defaulted <=>
  endif()
  # An index beyond the end of a vector or text ends the program instead of writing somewhere else.
  target_compile_definitions(kardel_flags INTERFACE _GLIBCXX_ASSERTIONS)
endif()

if(WIN32 AND NOT MSVC)
  if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
    # The program is optimised as a whole when it is linked, which saves a fifth of its size. The tests share its
    # objects and are linked the quick way. (With several partitions GCC 12 fails because of a bug of its own.)
    target_compile_options(kardel_flags INTERFACE "$<$<NOT:${KARDEL_PLAINLY}>:-flto;-ffat-lto-objects>")
    set(KARDEL_WHOLE_PROGRAM -flto -flto-partition=one)
    target_link_options(kardel_flags INTERFACE $<$<NOT:$<BOOL:$<TARGET_PROPERTY:KARDEL_WHOLE_PROGRAM>>>:-fno-lto>)
    # A failed assertion or an uncaught exception ends the program without a message, and everything that the library
    # itself throws becomes its simplest exception. Nothing here distinguishes these exceptions or reads their texts,
    # for which the library would bring in a formatter, a demangler and two kinds of strings: a quarter of the program.
    # A library that uses other names here keeps its own functions, and tests/checks/exe.py notices the size.
    if(CMAKE_SIZEOF_VOID_P EQUAL 4)
      set(underscore _)
    endif()
    foreach(name _ZSt21__glibcxx_assert_failPKciS0_S0_ _ZN9__gnu_cxx27__verbose_terminate_handlerEv)
      list(APPEND KARDEL_WHOLE_PROGRAM -Wl,--defsym=${underscore}${name}=${underscore}abort)
    endforeach()
    foreach(name _ZSt17__throw_bad_allocv _ZSt28__throw_bad_array_new_lengthv _ZSt20__throw_length_errorPKc
        _ZSt19__throw_logic_errorPKc _ZSt24__throw_out_of_range_fmtPKcz)
      list(APPEND KARDEL_WHOLE_PROGRAM
        -Wl,--defsym=${underscore}${name}=${underscore}_ZSt25__throw_bad_function_callv)
    endforeach()
  endif()
  # For size: every function has its own section, so that the linker leaves out what nobody calls.
  target_compile_options(kardel_flags INTERFACE -Os -ffunction-sections -fdata-sections -fno-rtti
    -fstack-protector-strong -D_FORTIFY_SOURCE=2)
  # -static: only Windows' own DLLs are needed at run time. dynamicbase, nxcompat: ASLR and DEP.
  target_link_options(kardel_flags INTERFACE -static -s -Wl,--gc-sections -Wl,--dynamicbase -Wl,--nxcompat
    -Wl,--no-insert-timestamp)
  if(CMAKE_SIZEOF_VOID_P EQUAL 8)
    target_link_options(kardel_flags INTERFACE -Wl,--high-entropy-va)
  endif()
  target_link_libraries(kardel_flags INTERFACE ssp)
elseif(MSVC)
  target_compile_options(kardel_flags INTERFACE /O1 /GS /guard:cf)
  target_link_options(kardel_flags INTERFACE /DYNAMICBASE /NXCOMPAT /guard:cf)
elseif(KARDEL_COVERAGE)
  target_compile_options(kardel_flags INTERFACE -O0 -g --coverage)
  target_link_options(kardel_flags INTERFACE --coverage)
elseif(NOT KARDEL_SANITIZE)
  target_compile_options(kardel_flags INTERFACE ${KARDEL_OPTIMISED})
else()
  # Linux builds only the logic, for its tests, which always run under the sanitizers.
  target_compile_options(kardel_flags INTERFACE ${KARDEL_OPTIMISED} -g1 -fsanitize=address,undefined
    -fno-sanitize-recover=all)
  target_link_options(kardel_flags INTERFACE -fsanitize=address,undefined)
  if(KARDEL_FUZZ)
    target_compile_options(kardel_flags INTERFACE -fsanitize=fuzzer-no-link)
  endif()
endif()
