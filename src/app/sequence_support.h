// What every command sequence shares: printing catalogue texts and errors,
// and reading number arguments.
#pragma once

#include <cstdint>

#include <string>

// Prints the formatted last error and a line feed, behind the note on a
// table file that could not be opened; returns the exit status -1.
int FailWithLastError();

// Frees the loaded image, then fails as FailWithLastError does.
int FreeImageAndFail();

// Prints catalogue message id followed by a line feed.
void PrintMessageLine(int id);

// A number argument that passed IsNumberArgument: its value, 0 for an empty one.
int64_t ParseNumberArgument(const char* text);

// The patch name the i command derives from the ROM's: its extension
// replaced by ".ips", or ".ips" appended when it has none.
std::string IpsNameForRom(const char* rom);

