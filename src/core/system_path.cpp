#include "core/system_path.h"

#ifdef _WIN32
#include <windows.h>

#include <string>

std::filesystem::path SystemPath(const char* name) {
    int length = MultiByteToWideChar(CP_ACP, 0, name, -1, nullptr, 0);
    if (length <= 0) return std::filesystem::path();
    std::wstring wide(static_cast<size_t>(length), L'\0');
    MultiByteToWideChar(CP_ACP, 0, name, -1, wide.data(), length);
    wide.resize(static_cast<size_t>(length) - 1);  // the terminating zero
    return std::filesystem::path(wide);
}
#else
std::filesystem::path SystemPath(const char* name) { return std::filesystem::path(name); }
#endif
