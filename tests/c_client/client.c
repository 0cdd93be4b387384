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

static int write_file(const char* path, const char* bytes, size_t size) {
    FILE* file = fopen(path, "wb");
    if (!file) return 0;
    fwrite(bytes, 1, size, file);
    return fclose(file) == 0;
}

static void check_messages(void) {
    char* first;
    check(strcmp(Trelvane_GetLastError(), "No errors occurred.") == 0, "the text of no error");
    Trelvane_SetStringFile("fix.ips");
    first = Trelvane_GetString(TLMSG_PATCH_SUCCESS);
    Trelvane_SetStringData(0, "Scripts");
    check(strcmp(Trelvane_GetString(TLERR_UNSUPPORTED), "Scripts not supported.") == 0, "a data field");
    check(strcmp(first, "fix.ips: Patch successful") == 0, "an earlier result stays valid");
    check(Trelvane_LoadROM("missing-file.smc") == 0, "loading a missing file fails");
    check(Trelvane_GetLastErrorCode() == TLERR_FILE_NOREAD, "the failure is TLERR_FILE_NOREAD");
    check(strcmp(Trelvane_GetLastError(), "Error opening missing-file.smc.") == 0, "its text");
}

/* A patch from one file to another, applied to the first, leaves the two
 * identical. */
static void check_ips(void) {
    check(write_file("client-old.gb", "\0\x11\x22\x33", 4), "writing the original");
    check(write_file("client-new.gb", "\0\xAA\x22\x33\x44", 5), "writing the modified file");
    check(Trelvane_CreateIPS("client.ips", "client-old.gb", "client-new.gb") == 1, "creating a patch");
    check(Trelvane_ApplyIPS("client.ips", "client-old.gb") == 1, "applying it");
    check(Trelvane_CreateIPS("client.ips", "client-old.gb", "client-new.gb") == 0, "identical files make no patch");
    check(Trelvane_GetLastErrorCode() == TLERR_IPS_IDENTICAL, "the failure is TLERR_IPS_IDENTICAL");
    remove("client-old.gb");
    remove("client-new.gb");
    remove("client.ips");
}

int main(void) {
    check(sizeof(PointerTable) == 8 * sizeof(int), "PointerTable holds eight 32-bit fields");
    check_messages();
    check_ips();
    return failures ? 1 : 0;
}
