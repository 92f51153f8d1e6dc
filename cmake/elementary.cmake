# One object with the elementary functions of base/elementary.h: exp, log, pow and sin with what they need, out of the
# static C library of the package musl-dev. It is compiled for the plain instruction set of the architecture, so its bits
# do not depend on the processor. Only the four functions and their tables stay visible, under names of our own: the
# host's functions stand beside them untouched.
#
#   MERLANE_ELEMENTARY_OBJECT   the object, made by the build; a source of the library that holds base/

string(REGEX REPLACE "-gnu$" "-musl" musl_architecture "${CMAKE_LIBRARY_ARCHITECTURE}")
find_file(MUSL_C_LIBRARY libc.a PATHS /usr/lib/${musl_architecture} NO_DEFAULT_PATH)
if(NOT MUSL_C_LIBRARY)
  message(FATAL_ERROR
    "musl's static library, /usr/lib/${musl_architecture}/libc.a, is not there. Exponentials, logarithms, powers and "
    "sines are taken from it, so that results have the same digits on every machine. Please install the package "
    "musl-dev (tools/setup.sh does it) and configure again.")
endif()

set(functions exp log pow sin)
set(needed exp_data log_data pow_data __sin __cos __rem_pio2 __rem_pio2_large scalbn floor fabs
           __math_divzero __math_invalid __math_oflow __math_uflow __math_xflow)
list(TRANSFORM functions APPEND .lo OUTPUT_VARIABLE members)
list(TRANSFORM needed APPEND .lo OUTPUT_VARIABLE needed_members)
list(APPEND members ${needed_members})
list(TRANSFORM functions REPLACE "(.+)" "--redefine-sym=\\1=merlane_\\1" OUTPUT_VARIABLE renamed)
list(TRANSFORM functions REPLACE "(.+)" "--keep-global-symbol=\\1" OUTPUT_VARIABLE kept)
# The tables, for who computes many values at once (base/elementary_rows.cpp).
foreach(table exp_data log_data pow_log_data)
  list(APPEND renamed --redefine-sym=__${table}=merlane_${table})
  list(APPEND kept --keep-global-symbol=__${table})
endforeach()

set(elementary_folder ${PROJECT_BINARY_DIR}/elementary)
set(MERLANE_ELEMENTARY_OBJECT ${elementary_folder}/elementary.o)
file(MAKE_DIRECTORY ${elementary_folder})
add_custom_command(
  OUTPUT ${MERLANE_ELEMENTARY_OBJECT}
  COMMAND ${CMAKE_AR} x ${MUSL_C_LIBRARY} ${members}
  COMMAND ${CMAKE_LINKER} -r -o joined.o ${members}
  COMMAND ${CMAKE_OBJCOPY} ${kept} joined.o visible.o
  COMMAND ${CMAKE_OBJCOPY} ${renamed} visible.o ${MERLANE_ELEMENTARY_OBJECT}
  DEPENDS ${MUSL_C_LIBRARY} ${CMAKE_CURRENT_LIST_FILE}
  WORKING_DIRECTORY ${elementary_folder}
  COMMENT "Taking the elementary functions from ${MUSL_C_LIBRARY}"
  VERBATIM)
