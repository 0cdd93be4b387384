// The exported text lookup: message file first, then the catalogue, then
// formatting into the result area.
#include <string>
#include <vector>

#include "core/last_error.h"
#include "core/message_catalogue.h"
#include "core/message_file.h"
#include "core/result_area.h"
#include "trelvane.h"

extern "C" {

char* Trelvane_GetString(int id) {
    std::vector<unsigned char> file;
    MessageOverrides overrides;
    if (ReadMessageFile(file))
        ParseMessageOverrides(std::string_view(reinterpret_cast<const char*>(file.data()), file.size()), overrides);
    const std::string_view* replacement = FindOverride(overrides, MessageName(id));
    return FormatIntoResultArea(replacement ? *replacement : std::string_view(DefaultMessageText(id)));
}

char* Trelvane_GetLastError(void) { return Trelvane_GetString(LastError().code); }
}
