#include "core/message_file.h"

#include <string>

#include "core/system_path.h"

#ifdef _WIN32
#include <windows.h>
#else
#include <unistd.h>
#endif

namespace {

constexpr std::string_view kKeyword = "TRELVANE_MESSAGE";
constexpr const char* kFileName = "trelvane.msg";

// The running executable's folder with its trailing separator; empty when
// the path cannot be obtained or holds no separator.
std::string ExecutableFolder() {
#ifdef _WIN32
    char path[MAX_PATH];
    DWORD length = GetModuleFileNameA(nullptr, path, MAX_PATH);
    if (length == 0 || length >= MAX_PATH) return "";
    constexpr char kSeparator = '\\';
#else
    char path[4096];
    ssize_t length = readlink("/proc/self/exe", path, sizeof path);
    if (length <= 0 || static_cast<size_t>(length) >= sizeof path) return "";
    constexpr char kSeparator = '/';
#endif
    std::string_view full(path, static_cast<size_t>(length));
    size_t cut = full.rfind(kSeparator);
    return cut == std::string_view::npos ? "" : std::string(full.substr(0, cut + 1));
}

// Parses one entry starting at position at (just behind a keyword). Returns
// false when the entry is malformed; otherwise fills entry and moves at
// behind the entry's closing quote.
bool ParseEntry(std::string_view text, size_t& at, MessageOverride& entry) {
    size_t open = text.find('(', at);
    if (open == std::string_view::npos) return false;
    size_t nameStart = text.find_first_not_of(" \t", open + 1);
    if (nameStart == std::string_view::npos) return false;
    size_t nameEnd = text.find_first_of(" \t,", nameStart);
    if (nameEnd == std::string_view::npos) return false;
    size_t quote = text.find('"', nameEnd + 1);
    if (quote == std::string_view::npos) return false;
    size_t closing = text.find('"', quote + 1);
    if (closing == std::string_view::npos) return false;
    entry.name = text.substr(nameStart, nameEnd - nameStart);
    entry.text = text.substr(quote + 1, closing - quote - 1);
    at = closing + 1;
    return true;
}

}  // namespace

void ParseMessageOverrides(std::string_view text, MessageOverrides& table) {
    table.count = 0;
    text = text.substr(0, text.find('\0'));
    size_t at = 0;
    while (table.count < MAX_MESSAGE_OVERRIDES) {
        size_t keyword = text.find(kKeyword, at);
        if (keyword == std::string_view::npos) return;
        at = keyword + kKeyword.size();
        if (!ParseEntry(text, at, table.entries[table.count])) return;
        ++table.count;
    }
}

const std::string_view* FindOverride(const MessageOverrides& table, std::string_view name) {
    for (int i = 0; i < table.count; ++i)
        if (table.entries[i].name == name) return &table.entries[i].text;
    return nullptr;
}

MessageFileStamp StampOfMessageFile() {
    std::string path = kFileName;
    std::error_code error;
    if (!std::filesystem::is_regular_file(SystemPath(path.c_str()), error)) {
        const std::string folder = ExecutableFolder();
        if (folder.empty()) return {};
        path = folder + kFileName;
    }
    const std::filesystem::path system = SystemPath(path.c_str());
    MessageFileStamp stamp{path, std::filesystem::file_size(system, error), std::filesystem::last_write_time(system, error)};
    return error ? MessageFileStamp{} : stamp;
}
