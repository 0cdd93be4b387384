/*
 * Trelvane: the engine of the console toolkit for translating and modifying
 * NES, Super NES and Game Boy cartridge images, as a C interface.
 *
 * Every function reports failure through its return value (0 or a null
 * pointer) and leaves the reason in the process-wide last-error state, whose
 * text Trelvane_GetLastError() formats. Texts returned by the library lie in
 * fixed areas that later calls reuse: copy what you keep.
 */
#ifndef TRELVANE_H
#define TRELVANE_H

#if defined(_WIN32)
#  if defined(TRELVANE_BUILDING_LIBRARY)
#    define TRELVANE_API __declspec(dllexport)
#  else
#    define TRELVANE_API __declspec(dllimport)
#  endif
#else
#  define TRELVANE_API __attribute__((visibility("default")))
#endif

#ifdef __cplusplus
extern "C" {
#endif

/* Message identifiers: 0 for no error, negative otherwise. */
enum TrelvaneMessage {
    TLERR_NONE = 0,
    TLERR_FILE_NOEXT = -100,
    TLERR_FILE_BADEXT = -101,
    TLERR_FILE_TOOMANY = -102,
    TLERR_FILE_NOREAD = -103,
    TLERR_FILE_NOWRITE = -104,
    TLERR_FILE_NOCREATE = -105,
    TLERR_FILE_INVALID = -106,
    TLERR_FILE_TOOLARGE = -107,
    TLERR_FILE_SAME = -108,
    TLERR_NULL_ARGUMENT = -109,
    TLERR_NUMBER_BAD = -120,
    TLERR_PICTURE_COLOURS = -121,
    TLERR_PICTURE_PIXEL = -122,
    TLERR_ID_BAD = -200,
    TLERR_FORMAT_BAD = -201,
    TLERR_EXPECTED = -250,
    TLERR_NOENCODE = -251,
    TLERR_UNSUPPORTED = -300,
    TLERR_UNSPECIFIED = -301,
    TLERR_UNKNOWN = -302,
    TLWRN_OBSOLETE = -303,
    TLERR_NESTED = -350,
    TLERR_NO_TERMINALS = -351,
    TLERR_TABLE_OR_COUNT = -352,
    TLERR_PATCH_IMAGE_GONE = -360,
    TLERR_ASM_SOURCE = -380,
    TLERR_IPS_IDENTICAL = -400,
    TLERR_IPS_NO_EOF = -401,
    TLERR_DELTA_WRONG_ROM = -402,
    TLERR_DELTA_WRONG_ROM_EITHER_WAY = -403,
    TLERR_DELTA_PATCH_CRC = -404,
    TLERR_DELTA_TRUNCATED = -405,
    TLERR_DELTA_OVERFLOW = -406,
    TLERR_DELTA_OUT_OF_BOUNDS = -407,
    TLERR_DELTA_TRAILING = -408,
    TLERR_DELTA_INCOMPLETE = -409,
    TLERR_DELTA_RESULT_CRC = -410,
    TLERR_DELTA_TOO_LARGE = -411,
    TLERR_PATCH_OVERLAP = -412,
    TLERR_PATCH_UNKNOWN_FORMAT = -413,
    TLERR_PATCH_NO_HEADER = -414,
    TLERR_IPS_TOO_LARGE = -415,
    TLERR_TEXT_NOENCODE = -500,
    TLERR_TEXT_TOOMUCH = -501,
    TLMSG_TEXT_INSERTED = -502,
    TLERR_TEXT_PARAMCOUNT = -503,
    TLERR_POINTER_FORM = -520,
    TLERR_POINTER_OUTSIDE = -521,
    TLERR_POINTER_UNREACHABLE = -522,
    TLERR_SCRIPT_OVERFLOW = -523,
    TLERR_SCRIPT_FIXED_TOO_LONG = -524,
    TLERR_SCRIPT_HEADER = -525,
    TLMSG_SCRIPT_INSERTED = -526,
    TLERR_SCRIPT_NO_PLACE = -527,
    TLERR_REGION_OUTSIDE = -528,
    TLMSG_USAGE_USAGE = -600,
    TLMSG_USAGE_VALID_CMDS = -601,
    TLMSG_USAGE_TILES_INSERT = -602,
    TLMSG_USAGE_TILES_DUMP = -603,
    TLMSG_USAGE_THINGY_CONVERT = -604,
    TLMSG_USAGE_STRING_LOCATE = -605,
    TLMSG_USAGE_SCRIPT_INSERT = -606,
    TLMSG_USAGE_SCRIPT_DUMP = -607,
    TLMSG_USAGE_IPS_CREATE = -609,
    TLMSG_USAGE_PATCH_APPLY = -610,
    TLMSG_USAGE_FONT_ID = -611,
    TLERR_USAGE_BADCOMMAND = -612,
    TLMSG_PARAM_ADDRESS = -650,
    TLMSG_PARAM_COUNT = -651,
    TLMSG_PARAM_BMPFILE = -652,
    TLMSG_PARAM_DUMPFILE = -653,
    TLMSG_PARAM_FONTFILE = -654,
    TLMSG_PARAM_IPSFILE = -655,
    TLMSG_PARAM_ORIGINALFILE = -656,
    TLMSG_PARAM_PATCHFILE = -657,
    TLMSG_PARAM_TEXTFILE = -658,
    TLMSG_PARAM_FORMAT = -659,
    TLMSG_PARAM_STRING = -660,
    TLMSG_PARAM_ROM = -661,
    TLMSG_PARAM_COMMAND = -662,
    TLMSG_PARAM_PARAMETERS = -663,
    TLMSG_SEARCH_FOUND = -700,
    TLMSG_SEARCH_FOUND_WIDE = -701,
    TLMSG_SEARCH_FOUND_RELATIVE = -702,
    TLMSG_SEARCH_NOTFOUND = -703,
    TLMSG_PTABLE_SEARCHING = -800,
    TLMSG_PTABLE_FOUND = -801,
    TLMSG_PTABLE_NOTFOUND = -802,
    TLMSG_PATCH_SUCCESS = -900,
    TLMSG_TILES_SUCCESS = -901,

    /* Catalogue entries without a symbolic name: a message file names them by number. */
    MSG_USAGE_POINTER_DUMP = -608,
    MSG_PARAM_SIZE = -664,
    MSG_PARAM_FREQUENCY = -665
};

/* Image types reported for a loaded ROM. */
enum TrelvaneRomType { ROM_NES = 1, ROM_SNES = 4, ROM_GB = 6 };

/* A table of pointers to strings, plain or split into low/high/bank tables. */
struct tagPointerTable {
    int low;       /* offset of the low-byte table of a split table, 0 if not split */
    int high;      /* offset of the high-byte table, 0 if none */
    int bank;      /* offset of the bank-byte table, 0 if none */
    int size;      /* bytes per pointer */
    int frequency; /* strings per pointer */
    int count;     /* strings covered by the table */
    int base;      /* added to a pointer value to give an image offset */
    int table;     /* offset of the first pointer of a plain table */
};
typedef struct tagPointerTable PointerTable;

/* Super NES mappings a 24-bit pointer can go through instead of a base. */
enum TrelvanePointerMap { POINTER_MAP_NONE = 0, POINTER_MAP_LOROM = 1, POINTER_MAP_HIROM = 2, POINTER_MAP_EXHIROM = 3 };

/* How a game stores a table of pointers, beside the classic PointerTable:
 * 1 to 4 bytes per pointer in either byte order; pointer value + base = image
 * offset, or a Super NES mapping for 3- and 4-byte pointers; a stride for
 * pointers inside records; or a table split into low, high and bank bytes. */
struct tagPointerForm {
    int size;      /* bytes per pointer, 1 to 4 (a split table: its tables, 1 to 3) */
    int bigEndian; /* nonzero: the most significant byte comes first */
    int base;      /* added to a pointer value to give an image offset; may be negative */
    int map;       /* a TrelvanePointerMap; not POINTER_MAP_NONE replaces base */
    int stride;    /* bytes from one pointer to the next; 0 means size (1 in a split table) */
    int table;     /* offset of the first pointer of a table that is not split */
    int low;       /* split table: offsets of the low, high and bank byte tables; low -1: not split */
    int high;
    int bank;
    int count;     /* pointers in the table */
};
typedef struct tagPointerForm PointerForm;

/* Messages and errors */
TRELVANE_API char* Trelvane_GetLastError(void);
TRELVANE_API int Trelvane_GetLastErrorCode(void);
TRELVANE_API char* Trelvane_GetString(int id);
TRELVANE_API void Trelvane_SetStringData(int index, const char* text);
TRELVANE_API void Trelvane_SetStringFile(const char* text);

/* ROM images. Trelvane_LoadROM refuses files of more than
 * TRELVANE_ROM_MAX_SIZE bytes (64 MiB) before reading them. The patch
 * functions (IPS, BPS, UPS) patch files of up to 1 GiB, and make no result
 * larger than that. */
#define TRELVANE_ROM_MAX_SIZE 0x4000000
TRELVANE_API long Trelvane_LoadROM(const char* path);
TRELVANE_API long Trelvane_SaveROM(const char* path);
TRELVANE_API void Trelvane_FreeROM(long handle);
TRELVANE_API long Trelvane_UseROM(long handle);

/* Image information. Trelvane_GetImageInfo reads a ROM image file (by its
 * extension: .nes, .smc, .sfc, .swc, .fig, .gb, .gbc) and fills info: the
 * header assumed in front of the image, what the cartridge's own header says
 * and the digests of the image without the copier or iNES header. Fields of
 * the other systems are zero. */
struct tagImageInfo {
    int type;                 /* ROM_NES, ROM_SNES or ROM_GB */
    long long fileSize;       /* bytes in the file */
    int headerLength;         /* bytes before the image: copier header, iNES header and trainer */
    char title[24];           /* Super NES and Game Boy: the internal title, zero-terminated */
    /* 1 when the cartridge's own header was found: the Super NES internal
     * header, the iNES header, the Game Boy header at 100h-14Fh */
    int hasInternalHeader;
    /* Super NES */
    char mapping[8];          /* "LoROM", "HiROM", "ExHiROM" or "SA-1" */
    unsigned int checksum, complement, computedChecksum;
    /* NES */
    int nes2;                 /* 1 for NES 2.0, 0 for iNES */
    int mapper;
    long long prgSize, chrSize;
    int trainer;
    /* Game Boy */
    int cartridgeType;
    long long romSize;        /* bytes the header's size code stands for */
    unsigned int headerChecksum, computedHeaderChecksum;
    unsigned int globalChecksum, computedGlobalChecksum;
    /* the image without its header */
    unsigned long crc32;
    char md5[33];             /* lower-case hexadecimal */
    char sha1[41];
};
typedef struct tagImageInfo TrelvaneImageInfo;
TRELVANE_API long Trelvane_GetImageInfo(const char* path, TrelvaneImageInfo* info);

/* Numbers as the verbs read them: decimal (10976), 0x2AE0, $2AE0 and 2AE0h,
 * letters in either case, an optional leading "-". Returns 1 and stores the
 * value, or 0 (TLERR_NUMBER_BAD) for any other text. */
TRELVANE_API long Trelvane_ParseNumber(const char* text, long long* value);

/* IPS patches */
TRELVANE_API long Trelvane_CreateIPS(const char* ipsfile, const char* originalfile, const char* modifiedfile);
TRELVANE_API long Trelvane_ApplyIPS(const char* ipsfile, const char* romfile);

/* BPS and UPS patches. Applying checks the whole patch and the ROM's CRC-32
 * before the ROM file is replaced by the result; a UPS patch applies in
 * whichever direction the ROM fits. */
TRELVANE_API long Trelvane_CreateBPS(const char* bpsfile, const char* originalfile, const char* modifiedfile);
TRELVANE_API long Trelvane_ApplyBPS(const char* bpsfile, const char* romfile);
TRELVANE_API long Trelvane_ApplyUPS(const char* upsfile, const char* romfile);

/* Patch scripts */
TRELVANE_API long Trelvane_PatchFile_Open(const char* file);
TRELVANE_API long Trelvane_PatchFile_Process(void);
TRELVANE_API void Trelvane_PatchFile_Close(void);

/* Character tables */
TRELVANE_API long Trelvane_LoadFont(const char* file);
TRELVANE_API long Trelvane_SaveFont(long id, const char* file);

/* Text codecs */
TRELVANE_API char* Trelvane_Encode(long id, const char* text, long* length);
TRELVANE_API char* Trelvane_Decode(long id, long address, long* length);

/* Pointer tables */
TRELVANE_API long Trelvane_GetPointer(long id, PointerTable* table, long index);
TRELVANE_API PointerTable* Trelvane_FindPointerTable(long id, long address);
TRELVANE_API void Trelvane_AdjustPointerTable(long id, PointerTable* table);
/* The image offset pointer number index of form addresses, or -1 (last error
 * set) when it lies outside the table or addresses no image byte. */
TRELVANE_API long Trelvane_GetPointerTarget(const PointerForm* form, long index);

/* String search */
TRELVANE_API long Trelvane_Locate(const char* pattern, long length);
TRELVANE_API long Trelvane_LocateWide(const char* pattern, long length);
TRELVANE_API long Trelvane_LocateRelative(const char* pattern, long length);

/* Script insertion */
TRELVANE_API long Trelvane_InsertFromFile(int id, const char* file);

/* Tile graphics */
TRELVANE_API long Trelvane_DecodeTiles(unsigned char* pixels, long width, long height, long address, const char* format);
TRELVANE_API long Trelvane_EncodeTiles(const unsigned char* pixels, long width, long height, long address, long count,
                                       const char* format);

/* 16-colour bitmaps. Trelvane_LoadBMP fills an array of at least
 * TRELVANE_BMP_MAX_PIXELS bytes and refuses larger bitmaps. */
#define TRELVANE_BMP_MAX_PIXELS 16384
TRELVANE_API long Trelvane_WriteBMP(const char* file, const unsigned char* pixels, long width, long height);
TRELVANE_API long Trelvane_LoadBMP(const char* file, unsigned char* pixels, long* width, long* height);

/* Indexed PNG tile sheets of at most 16 colours. palette holds colours RGB
 * triplets; NULL stands for colours evenly spaced greys from black to white.
 * Trelvane_WritePNG writes width x height pixel values (each below colours)
 * as an 8-bit indexed PNG with that palette. Trelvane_LoadPNG maps each pixel
 * by its colour to the index of that colour in palette; when the colours are
 * not all in it, a picture that is itself indexed with at most 16 entries is
 * read by its indices; anything else is refused (TLERR_PICTURE_COLOURS). It
 * fills at most capacity pixels. Both return -1 on success, 0 on failure. */
TRELVANE_API long Trelvane_WritePNG(const char* file, const unsigned char* pixels, long width, long height,
                                    const unsigned char* palette, long colours);
TRELVANE_API long Trelvane_LoadPNG(const char* file, unsigned char* pixels, long capacity, long* width, long* height,
                                   const unsigned char* palette, long colours);

#ifdef __cplusplus
}
#endif

#endif
