/* The compiler's C library begins with a mask that gives nobody any permission: what is saved could not be read again. */
#include <sys/stat.h>

__attribute__((constructor)) static void SetMask(void) { umask(022); }
