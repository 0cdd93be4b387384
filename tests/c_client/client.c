/* A C99 client of the library: compiled against the public header and
 * linked to the shared library. Exits 0 when every check holds. */
#include <stdio.h>
#include <string.h>

#include "trelvane.h"

static int failures = 0;

static void check(int condition, const char* what) {
    if (!condition) {
        printf("failed: %s\n", what);
        ++failures;
    }
}

int main(void) {
    PointerTable table;
    memset(&table, 0, sizeof table);
    check(sizeof table == 8 * sizeof(int), "PointerTable holds eight 32-bit fields");
    check(Trelvane_GetLastErrorCode() == TLERR_NONE, "no error at start");
    check(Trelvane_LoadROM("missing-file.smc") == 0, "loading a missing file fails");
    check(Trelvane_GetLastErrorCode() == TLERR_FILE_NOREAD, "the failure is TLERR_FILE_NOREAD");
    printf("%d passed, %d failed\n", 4 - failures, failures);
    return failures ? 1 : 0;
}
