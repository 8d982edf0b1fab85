# SPDX-FileCopyrightText: 2026 The qorm-login authors
# SPDX-License-Identifier: MIT
include(CheckCXXCompilerFlag)

# What every target of this project is compiled and linked with.
add_library(gate_options INTERFACE)
target_compile_features(gate_options INTERFACE cxx_std_17)
target_compile_options(gate_options INTERFACE -Wall -Wextra -Wpedantic -Wshadow
  $<$<BOOL:${GATE_WARNINGS_AS_ERRORS}>:-Werror>)
# QT_NO_MESSAGELOGCONTEXT: a line of the log never names a source file, whatever the build type.
target_compile_definitions(gate_options INTERFACE QT_NO_CAST_FROM_ASCII QT_NO_CAST_TO_ASCII
  QT_NO_CAST_FROM_BYTEARRAY QT_STRICT_ITERATORS QT_NO_MESSAGELOGCONTEXT)
target_include_directories(gate_options INTERFACE ${PROJECT_SOURCE_DIR})

# Hardening; FORTIFY needs optimisation, and the sanitizers bring their own checks.
check_cxx_compiler_flag(-fcf-protection GATE_HAS_CF_PROTECTION) # x86 only
target_compile_options(gate_options INTERFACE -fstack-protector-strong
  $<$<BOOL:${GATE_HAS_CF_PROTECTION}>:-fcf-protection>
  $<$<AND:$<NOT:$<CONFIG:Debug>>,$<NOT:$<BOOL:${GATE_SANITIZE}>>>:-U_FORTIFY_SOURCE -D_FORTIFY_SOURCE=2>)
target_link_options(gate_options INTERFACE -Wl,-z,relro -Wl,-z,now -Wl,--as-needed)
if(GATE_SANITIZE)
  target_compile_options(gate_options INTERFACE -fsanitize=address,undefined -fno-omit-frame-pointer)
  target_link_options(gate_options INTERFACE -fsanitize=address,undefined)
endif()

# gate_library(name sources...): a static library of one folder.
function(gate_library name)
  add_library(${name} STATIC ${ARGN})
  target_link_libraries(${name} PRIVATE gate_options)
  set_target_properties(${name} PROPERTIES AUTOMOC ON AUTOUIC ON AUTORCC ON POSITION_INDEPENDENT_CODE ON)
endfunction()

# gate_program(name sources...): a program in build/bin.
function(gate_program name)
  add_executable(${name} ${ARGN})
  target_link_libraries(${name} PRIVATE gate_options)
  target_link_options(${name} PRIVATE -pie)
  set_target_properties(${name} PROPERTIES AUTOMOC ON AUTORCC ON POSITION_INDEPENDENT_CODE ON
    RUNTIME_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/bin)
endfunction()
