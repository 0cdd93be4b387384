/* A C99 client of the library: compiled against the public header and
 * linked to the shared library. Exits 0 when every check holds. */
#include <stdio.h>
#include <string.h>

#include "trelvane.h"

/* Every function the header declares, by address, so that one the library
 * lacks fails the link. */
typedef void (*Exported)(void);
const Exported trelvane_exported[] = {
    (Exported)Trelvane_GetLastError,     (Exported)Trelvane_GetLastErrorCode, (Exported)Trelvane_GetString,
    (Exported)Trelvane_SetStringData,    (Exported)Trelvane_SetStringFile,    (Exported)Trelvane_LoadROM,
    (Exported)Trelvane_SaveROM,          (Exported)Trelvane_FreeROM,          (Exported)Trelvane_UseROM,
    (Exported)Trelvane_CreateIPS,        (Exported)Trelvane_ApplyIPS,         (Exported)Trelvane_CreateBPS,
    (Exported)Trelvane_ApplyBPS,         (Exported)Trelvane_ApplyUPS,
    (Exported)Trelvane_PatchFile_Open,   (Exported)Trelvane_PatchFile_Process, (Exported)Trelvane_PatchFile_Close,
    (Exported)Trelvane_LoadFont,         (Exported)Trelvane_SaveFont,         (Exported)Trelvane_Encode,
    (Exported)Trelvane_Decode,           (Exported)Trelvane_GetPointer,       (Exported)Trelvane_FindPointerTable,
    (Exported)Trelvane_AdjustPointerTable, (Exported)Trelvane_Locate,         (Exported)Trelvane_LocateWide,
    (Exported)Trelvane_LocateRelative,   (Exported)Trelvane_InsertFromFile,   (Exported)Trelvane_DecodeTiles,
    (Exported)Trelvane_EncodeTiles,      (Exported)Trelvane_WriteBMP,         (Exported)Trelvane_LoadBMP,
    (Exported)Trelvane_GetImageInfo,     (Exported)Trelvane_ParseNumber,      (Exported)Trelvane_WritePNG,
    (Exported)Trelvane_LoadPNG,
};

static int failures = 0;

static void check(int condition, const char* what) {
    if (!condition) {
        printf("failed: %s\n", what);
        ++failures;
    }
}

static void write_text(const char* path, const char* text) {
    FILE* file = fopen(path, "wb");
    check(file && fputs(text, file) >= 0 && fclose(file) == 0, path);
}

int main(void) {
    char* first;
    check(sizeof(PointerTable) == 8 * sizeof(int), "PointerTable holds eight 32-bit fields");
    check(strcmp(Trelvane_GetLastError(), "No errors occurred.") == 0, "the text of no error");
    Trelvane_SetStringFile("fix.ips");
    first = Trelvane_GetString(TLMSG_PATCH_SUCCESS);
    Trelvane_SetStringData(0, "Scripts");
    check(strcmp(Trelvane_GetString(TLERR_UNSUPPORTED), "Scripts not supported.") == 0, "a data field");
    check(strcmp(first, "fix.ips: Patch successful") == 0, "an earlier result stays valid");
    /* A patch from one file to another, applied to the first, leaves the two identical. */
    write_text("client-old.gb", "abcd");
    write_text("client-new.gb", "aXcdE");
    check(Trelvane_CreateIPS("client.ips", "client-old.gb", "client-new.gb") == 1, "creating a patch");
    check(Trelvane_ApplyIPS("client.ips", "client-old.gb") == 1, "applying it");
    check(Trelvane_CreateIPS("client.ips", "client-old.gb", "client-new.gb") == 0, "identical files make no patch");
    check(Trelvane_GetLastErrorCode() == TLERR_IPS_IDENTICAL, "the failure is TLERR_IPS_IDENTICAL");
    /* A patch script run on a loaded image. */
    check(Trelvane_PatchFile_Process() == 0, "no patch file is open yet");
    check(strcmp(Trelvane_GetLastError(), "No patch file is open.") == 0, "the reason");
    write_text("client.asm", ".PATCH 1: 58 59\n");
    check(Trelvane_LoadROM("client-old.gb") != 0, "loading an image");
    check(Trelvane_PatchFile_Open("client.asm") == 1, "opening a script");
    check(Trelvane_PatchFile_Process() == 1, "running it");
    Trelvane_PatchFile_Close();
    check(Trelvane_SaveROM("client-old.gb") == 1, "saving the image");
    Trelvane_FreeROM(-1);
    {
        FILE* file = fopen("client-old.gb", "rb");
        char bytes[6] = {0};
        check(file && fread(bytes, 1, 5, file) == 5 && fclose(file) == 0, "reading the image back");
        check(memcmp(bytes, "aXYdE", 5) == 0, "the script's bytes");
    }
    remove("client.asm");
    /* The same with BPS; applied a second time, the patch finds the wrong file. */
    write_text("client-old.gb", "abcd");
    check(Trelvane_CreateBPS("client.bps", "client-old.gb", "client-new.gb") == 1, "creating a BPS patch");
    check(Trelvane_ApplyBPS("client.bps", "client-old.gb") == 1, "applying it");
    check(Trelvane_ApplyBPS("client.bps", "client-old.gb") == 0, "applying it again");
    check(Trelvane_GetLastErrorCode() == TLERR_DELTA_WRONG_ROM, "the failure is TLERR_DELTA_WRONG_ROM");
    check(Trelvane_ApplyUPS("client.bps", "client-old.gb") == 0, "a BPS patch is no UPS patch");
    check(Trelvane_GetLastErrorCode() == TLERR_FILE_INVALID, "the failure is TLERR_FILE_INVALID");
    remove("client.bps");
    /* Image information: "abcd" has no Game Boy header, but its digests. */
    {
        TrelvaneImageInfo info;
        long long number = 0;
        write_text("client-info.gb", "abcd");
        check(Trelvane_GetImageInfo("client-info.gb", &info) == 1, "describing an image");
        remove("client-info.gb");
        check(info.type == ROM_GB && info.fileSize == 4 && info.headerLength == 0, "its system and header");
        check(info.crc32 == 0xED82CD11UL && strcmp(info.md5, "e2fc714c4727ee9395f324cd2e7f331f") == 0 &&
                  strcmp(info.sha1, "81fe8bfe87576c3ecb22426f8e57847382917acf") == 0,
              "its digests");
        check(Trelvane_ParseNumber("$2AE0", &number) == 1 && number == 0x2AE0, "reading $2AE0");
        check(Trelvane_ParseNumber("2AE0", &number) == 0 && Trelvane_GetLastErrorCode() == TLERR_NUMBER_BAD,
              "refusing 2AE0");
    }
    remove("client-old.gb");
    remove("client-new.gb");
    remove("client.ips");
    return failures ? 1 : 0;
}
