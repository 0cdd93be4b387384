// The parts of a file path that commands look at: the base name and the dot
// its extension starts behind.
#pragma once

#include <cstring>
#include <string>

#include "core/text_compare.h"

// "\" and "/" separate folders in either style, so a name written for one
// system reads the same on the other. Windows paths may also start with a
// drive letter ("C:"), which is not part of the base name.
enum class PathStyle { Posix, Windows };

#ifdef _WIN32
inline constexpr PathStyle HOST_PATH_STYLE = PathStyle::Windows;
#else
inline constexpr PathStyle HOST_PATH_STYLE = PathStyle::Posix;
#endif

inline bool IsFolderSeparator(char c) { return c == '/' || c == '\\'; }

inline bool IsDriveLetter(char c) { return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z'); }

// The part of path behind its last folder separator (and drive letter).
inline const char* BaseName(const char* path, PathStyle style = HOST_PATH_STYLE) {
    const bool hasDrive = style == PathStyle::Windows && IsDriveLetter(path[0]) && path[1] == ':';
    const char* base = hasDrive ? path + 2 : path;
    for (const char* p = base; *p; ++p)
        if (IsFolderSeparator(*p)) base = p + 1;
    return base;
}

// The folder part of path, with its trailing separator (or drive letter);
// "" for a bare name.
inline std::string FolderOf(const std::string& path, PathStyle style = HOST_PATH_STYLE) {
    return path.substr(0, static_cast<size_t>(BaseName(path.c_str(), style) - path.c_str()));
}

// The first "." of path's base name, or null: "game.fr.smc" has the extension
// "fr.smc".
inline const char* FirstDotOfBaseName(const char* path) { return std::strchr(BaseName(path), '.'); }

// The last "." of path's base name, or null: "game.fr.smc" has the extension
// "smc".
inline const char* LastDotOfBaseName(const char* path) { return std::strrchr(BaseName(path), '.'); }

// True when path's extension (behind the last "." of its base name) is
// extension, letters compared without regard to case.
inline bool HasExtension(const char* path, const char* extension) {
    const char* dot = LastDotOfBaseName(path);
    return dot && SameTextIgnoringCase(dot + 1, extension);
}
