// File names as the program receives them (command line, scripts, table
// files), handed to std::filesystem.
#pragma once

#include <filesystem>

// The path that name denotes for the C library's file functions. Windows
// programs get their narrow names in the ANSI code page, which std::filesystem
// would otherwise decode differently for letters beyond ASCII.
std::filesystem::path SystemPath(const char* name);
