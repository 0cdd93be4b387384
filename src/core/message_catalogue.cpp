#include "trelvane.h"

// Placeholder until the catalogue lands: every text is the fallback.
extern "C" {
char* Trelvane_GetString(int) {
    static char text[] = "Unknown error";
    return text;
}
char* Trelvane_GetLastError(void) { return Trelvane_GetString(Trelvane_GetLastErrorCode()); }
}
