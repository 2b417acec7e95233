# What every target of the project shares: language, warnings, sanitizers, and the two ways to make a target.
set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)
set_property(GLOBAL PROPERTY USE_FOLDERS ON)

add_library(corvina_settings INTERFACE)
target_include_directories(corvina_settings INTERFACE "${CMAKE_SOURCE_DIR}/src")
if(MSVC)
  target_compile_options(corvina_settings INTERFACE /W4 /WX /utf-8 /permissive- /Zc:__cplusplus)
else()
  target_compile_options(corvina_settings INTERFACE -Wall -Wextra -Wconversion -Wshadow -Werror)
endif()
if(WIN32)
  target_compile_definitions(corvina_settings INTERFACE UNICODE _UNICODE NOMINMAX WIN32_LEAN_AND_MEAN STRICT
    WINVER=0x0A00 _WIN32_WINNT=0x0A00 NTDDI_VERSION=0x0A000000)
  if(NOT MSVC)
    # One file that runs anywhere: no run-time library of the compiler beside the program.
    add_link_options(-static -static-libgcc -static-libstdc++)
  endif()
endif()
if(CORVINA_SANITIZE)
  add_compile_options(-fsanitize=address,undefined -fno-sanitize-recover=all -fno-omit-frame-pointer -O1)
  add_link_options(-fsanitize=address,undefined)
endif()
if(CORVINA_FUZZ)
  add_compile_options(-fsanitize=fuzzer-no-link,address,undefined -fno-sanitize-recover=all -fno-omit-frame-pointer)
  add_link_options(-fsanitize=address,undefined)
endif()

# corvina_room(name SOURCES file... USES room-or-library...): a static library corvina_<name>.
function(corvina_room name)
  cmake_parse_arguments(ROOM "" "" "SOURCES;USES" ${ARGN})
  add_library(corvina_${name} STATIC ${ROOM_SOURCES})
  target_link_libraries(corvina_${name} PUBLIC ${ROOM_USES} PRIVATE corvina_settings)
  target_include_directories(corvina_${name} PUBLIC "${CMAKE_SOURCE_DIR}/src")
endfunction()

# corvina_test_program(name SOURCES file... USES room-or-library...): a GoogleTest program that ctest does not know yet.
function(corvina_test_program name)
  cmake_parse_arguments(TEST "" "" "SOURCES;USES" ${ARGN})
  add_executable(${name} ${TEST_SOURCES})
  target_link_libraries(${name} PRIVATE ${TEST_USES} corvina_test_settings)
  target_precompile_headers(${name} REUSE_FROM corvina_test_headers)
  set_target_properties(${name} PROPERTIES RUNTIME_OUTPUT_DIRECTORY "${CMAKE_BINARY_DIR}/tests/bin")
endfunction()

# corvina_test(name SOURCES file... USES room-or-library...): the same, run as one test.
function(corvina_test name)
  corvina_test_program(${name} ${ARGN})
  add_test(NAME ${name} COMMAND ${name} WORKING_DIRECTORY "${CMAKE_SOURCE_DIR}")
endfunction()
