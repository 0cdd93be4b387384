// The exported text lookup: message file first, then the catalogue, then
// formatting into the result area.
#include <string>
#include <vector>

#include "core/file_bytes.h"
#include "core/last_error.h"
#include "core/message_catalogue.h"
#include "core/message_file.h"
#include "core/result_area.h"
#include "trelvane.h"

namespace {

// The entries of the message file in force. The file is read again only when
// another one comes into force or it changes, not for every printed line.
const MessageOverrides& CurrentOverrides() {
    static MessageFileStamp readStamp;
    static std::vector<unsigned char> text;
    static MessageOverrides overrides;
    MessageFileStamp stamp = StampOfMessageFile();
    if (stamp == readStamp) return overrides;
    text.clear();
    overrides = MessageOverrides();
    if (!stamp.path.empty() && ReadFileBytes(stamp.path.c_str(), text))
        ParseMessageOverrides(std::string_view(reinterpret_cast<const char*>(text.data()), text.size()), overrides);
    readStamp = std::move(stamp);
    return overrides;
}

}  // namespace

extern "C" {

char* Trelvane_GetString(int id) {
    const std::string_view* replacement = FindOverride(CurrentOverrides(), MessageName(id));
    return FormatIntoResultArea(replacement ? *replacement : std::string_view(DefaultMessageText(id)));
}

char* Trelvane_GetLastError(void) { return Trelvane_GetString(LastError().code); }
}
