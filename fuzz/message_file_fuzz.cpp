// Message files of any content: parsing their entries and formatting every
// replacement text through the result area must stay inside its bounds.
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "core/last_error.h"
#include "core/message_file.h"
#include "core/result_area.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    std::string_view text(reinterpret_cast<const char*>(data), size);
    // The first line, if any, fills the last error's fields.
    std::string fields(text.substr(0, text.find('\n')));
    SetError(static_cast<int>(size % 1000) - 999, fields.c_str(), static_cast<int>(size), -1, fields.c_str());
    MessageOverrides table;
    ParseMessageOverrides(text, table);
    for (int i = 0; i < table.count; ++i) {
        const char* result = FormatIntoResultArea(table.entries[i].text);
        if (std::string_view(result).size() >= RESULT_AREA_SIZE) __builtin_trap();
    }
    FormatIntoResultArea(text);
    return 0;
}
