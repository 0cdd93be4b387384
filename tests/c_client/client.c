/* A C99 client of the library: compiled against the public header and
 * linked to the shared library. Exits 0 when every check holds. */
#include <stdio.h>
#include <string.h>

#include "trelvane.h"

static int checks = 0;
static int failures = 0;

static void check(int condition, const char* what) {
    ++checks;
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

static size_t read_file(const char* path, char* bytes, size_t capacity) {
    FILE* file = fopen(path, "rb");
    size_t got;
    if (!file) return 0;
    got = fread(bytes, 1, capacity, file);
    fclose(file);
    return got;
}

static void check_messages(void) {
    char* first;
    check(Trelvane_GetLastErrorCode() == TLERR_NONE, "no error at start");
    check(strcmp(Trelvane_GetLastError(), "No errors occurred.") == 0, "the text of no error");
    check(strcmp(Trelvane_GetString(TLERR_IPS_IDENTICAL), "Files identical. IPS not created.") == 0,
          "a catalogue text");
    check(strcmp(Trelvane_GetString(-999), "Unknown error") == 0, "an identifier outside the catalogue");
    Trelvane_SetStringFile("fix.ips");
    first = Trelvane_GetString(TLMSG_PATCH_SUCCESS);
    Trelvane_SetStringData(0, "Scripts");
    check(strcmp(Trelvane_GetString(TLERR_UNSUPPORTED), "Scripts not supported.") == 0, "a data field");
    check(strcmp(first, "fix.ips: Patch successful") == 0, "an earlier result stays valid");
    check(Trelvane_GetLastErrorCode() == TLERR_NONE, "the setters leave the code alone");
    check(Trelvane_LoadROM("missing-file.smc") == 0, "loading a missing file fails");
    check(Trelvane_GetLastErrorCode() == TLERR_FILE_NOREAD, "the failure is TLERR_FILE_NOREAD");
    check(strcmp(Trelvane_GetLastError(), "Error opening missing-file.smc.") == 0, "its text");
}

static void check_ips(void) {
    static const char original[] = {0x00, 0x11, 0x22, 0x33};
    static const char modified[] = {0x00, (char)0xAA, 0x22, 0x33, 0x44};
    static const char patch[] = "PATCH\0\0\1\0\4\xAA\x22\x33\x44" "EOF";
    char bytes[64];
    check(write_file("client-old.gb", original, sizeof original), "writing the original");
    check(write_file("client-new.gb", modified, sizeof modified), "writing the modified file");
    check(Trelvane_CreateIPS("client.ips", "client-old.gb", "client-new.gb") == 1, "creating a patch");
    check(read_file("client.ips", bytes, sizeof bytes) == sizeof patch - 1 && memcmp(bytes, patch, sizeof patch - 1) == 0,
          "the patch's bytes");
    check(Trelvane_ApplyIPS("client.ips", "client-old.gb") == 1, "applying it");
    check(read_file("client-old.gb", bytes, sizeof bytes) == sizeof modified &&
              memcmp(bytes, modified, sizeof modified) == 0,
          "the patched file equals the modified one");
    check(Trelvane_CreateIPS("client.ips", "client-old.gb", "client-new.gb") == 0, "identical files make no patch");
    check(Trelvane_GetLastErrorCode() == TLERR_IPS_IDENTICAL, "the failure is TLERR_IPS_IDENTICAL");
    check(Trelvane_ApplyIPS("client-new.gb", "client-old.gb") == 0, "a file that is no patch");
    check(strcmp(Trelvane_GetLastError(), "client-new.gb does not seem to be a valid IPS file.") == 0, "its text");
    remove("client-old.gb");
    remove("client-new.gb");
    remove("client.ips");
}

int main(void) {
    PointerTable table;
    memset(&table, 0, sizeof table);
    check(sizeof table == 8 * sizeof(int), "PointerTable holds eight 32-bit fields");
    check_messages();
    check_ips();
    printf("%d passed, %d failed\n", checks - failures, failures);
    return failures ? 1 : 0;
}
