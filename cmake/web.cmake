# What a build for browsers has in the place of the machine's own libraries: emscripten, the distribution's compiler for
# WebAssembly, brings the C and C++ libraries, and the others are compiled from the distribution's sources, which
# `tools/setup.sh --web` leaves in build-web/sources. Headers without a library are taken as they stand installed.

set(web_sources ${PROJECT_SOURCE_DIR}/build-web/sources)
foreach(library zlib libzip expat freexl)
  file(GLOB ${library}_source ${web_sources}/${library}-*)
  list(FILTER ${library}_source EXCLUDE REGEX "_[^/]*$")
  if(NOT ${library}_source)
    message(FATAL_ERROR "The sources of ${library} are not in ${web_sources}. tools/setup.sh --web gets them.")
  endif()
endforeach()

# What every source sees. Exceptions are those of WebAssembly, but where the stack is unwound to wait: the compiler can do
# that with exceptions of the page only.
set(web_exceptions $<IF:$<BOOL:${MERLANE_UNWINDS}>,-fexceptions,-fwasm-exceptions>)
add_compile_options(${web_exceptions})
# Compiled for size (CMakePresets.json), but not linked so: the compiler would take other elementary functions then, which
# are smaller and have other digits, and rename what passes the border of the page, as it would when linked by -O3.
set(CMAKE_CXX_LINK_EXECUTABLE "<CMAKE_CXX_COMPILER> -O2 <LINK_FLAGS> <OBJECTS> -o <TARGET> <LINK_LIBRARIES>")
# Told to compile for size, emscripten puts no function where it is called, not even where that is smaller, and stays with
# that for the rooms which are told otherwise behind it.
add_compile_options(-finline-functions)
add_link_options(${web_exceptions} -sALLOW_MEMORY_GROWTH=1 -sMAXIMUM_MEMORY=4GB -sTOTAL_STACK=4MB)
add_compile_options("$<$<COMPILE_LANGUAGE:CXX>:SHELL:-include ${PROJECT_SOURCE_DIR}/cmake/web/newer_library.h>")

# Headers alone, in a folder of their own, where nothing of the machine's C library stands beside them.
set(web_include ${PROJECT_BINARY_DIR}/include)
file(MAKE_DIRECTORY ${web_include})
foreach(header fmt nlohmann CLI)
  file(CREATE_LINK /usr/include/${header} ${web_include}/${header} SYMBOLIC)
endforeach()
foreach(name fmt::fmt nlohmann_json::nlohmann_json CLI11::CLI11)
  add_library(${name} INTERFACE IMPORTED)
  target_include_directories(${name} SYSTEM INTERFACE ${web_include})
endforeach()
target_compile_definitions(fmt::fmt INTERFACE FMT_HEADER_ONLY)
add_library(Threads::Threads INTERFACE IMPORTED) # there is one thread

# Those of others are compiled without our warnings.
function(add_web_library name folder)
  list(TRANSFORM ARGN PREPEND ${folder}/)
  add_library(web_${name} STATIC ${ARGN})
  target_include_directories(web_${name} SYSTEM PUBLIC ${folder})
  target_compile_options(web_${name} PRIVATE -w)
endfunction()

add_web_library(zlib ${zlib_source} adler32.c crc32.c deflate.c inflate.c inffast.c inftrees.c trees.c zutil.c)

add_web_library(expat ${expat_source}/expat/lib xmlparse.c xmlrole.c xmltok.c)
file(WRITE ${web_sources}/expat_config/expat_config.h
  "#define BYTEORDER 1234\n#define XML_CONTEXT_BYTES 1024\n#define XML_DTD 1\n#define XML_NS\n#define XML_DEV_URANDOM\n")
target_include_directories(web_expat PRIVATE ${web_sources}/expat_config)

# Of libzip, what reads and writes plain archives: no encryption, no other compression than deflate. The words for its
# errors are made of its header, as it makes them itself.
set(libzip_config ${web_sources}/libzip_config)
file(STRINGS ${libzip_source}/lib/zip.h errors REGEX "^#define ZIP_ER_[A-Z]+ [0-9]")
list(TRANSFORM errors REPLACE ".*/\\* ([NSZ]) (.*) \\*/" "\\1" OUTPUT_VARIABLE error_types)
list(TRANSFORM errors REPLACE ".*/\\* ([NSZ]) (.*) \\*/" "\"\\2\"" OUTPUT_VARIABLE error_texts)
list(JOIN error_types "," error_types)
list(JOIN error_texts "," error_texts)
file(WRITE ${libzip_config}/zip_err_str.c
  "#include \"zipint.h\"\n"
  "const char* const _zip_err_str[] = {${error_texts}};\n"
  "const int _zip_nerr_str = sizeof _zip_err_str / sizeof _zip_err_str[0];\n"
  "enum { N = ZIP_ET_NONE, S = ZIP_ET_SYS, Z = ZIP_ET_ZLIB };\n"
  "const int _zip_err_type[] = {${error_types}};\n")
file(COPY_FILE ${PROJECT_SOURCE_DIR}/cmake/web/libzip_config.h ${libzip_config}/config.h ONLY_IF_DIFFERENT)
file(COPY_FILE /usr/include/zipconf.h ${libzip_config}/zipconf.h ONLY_IF_DIFFERENT) # of the same version
file(GLOB libzip_files RELATIVE ${libzip_source}/lib ${libzip_source}/lib/zip_*.c)
list(FILTER libzip_files EXCLUDE REGEX "win32|uwp|crypto_|aes|bzip2|_xz")
add_web_library(libzip ${libzip_source}/lib ${libzip_files})
target_sources(web_libzip PRIVATE ${libzip_config}/zip_err_str.c)
target_include_directories(web_libzip SYSTEM PUBLIC ${libzip_config})
target_compile_definitions(web_libzip PRIVATE HAVE_CONFIG_H)
target_link_libraries(web_libzip PUBLIC web_zlib)

file(WRITE ${web_sources}/freexl_config/config.h "#define VERSION \"1.0.6\"\n")
add_web_library(freexl ${freexl_source} src/freexl.c)
target_include_directories(web_freexl SYSTEM PUBLIC ${freexl_source}/headers ${web_sources}/freexl_config)

set(FREEXL_LIBRARY web_freexl)
set(ZIP_LIBRARY web_libzip)
add_library(EXPAT::EXPAT ALIAS web_expat)

# What the rooms lack in the compiler's libraries, and its own elementary functions, which are musl's as everywhere.
set(MERLANE_ELEMENTARY_OBJECT
  ${PROJECT_SOURCE_DIR}/cmake/web/elementary.c
  ${PROJECT_SOURCE_DIR}/cmake/web/permissions.c
  ${PROJECT_SOURCE_DIR}/cmake/web/newer_library.cpp)
set_source_files_properties(${PROJECT_SOURCE_DIR}/cmake/web/elementary.c PROPERTIES COMPILE_OPTIONS -fno-builtin)
