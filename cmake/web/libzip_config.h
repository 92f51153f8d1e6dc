/* What libzip is told of the machine: reading archives in memory and in files needs little. */
#define HAVE_FILENO
#define HAVE_FSEEKO
#define HAVE_FTELLO
#define HAVE_LOCALTIME_R
#define HAVE_MKSTEMP
#define HAVE_SNPRINTF
#define HAVE_STRCASECMP
#define HAVE_STRDUP
#define HAVE_STRTOLL
#define HAVE_STRTOULL
#define HAVE_STDBOOL_H
#define HAVE_STRINGS_H
#define HAVE_UNISTD_H
#define HAVE_DIRENT_H
#define SIZEOF_OFF_T 8
#define SIZEOF_SIZE_T 4
#define PACKAGE "libzip"
#define VERSION "1.7.3"
