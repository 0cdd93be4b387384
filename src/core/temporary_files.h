// The named temporary files beside the files the program writes,
// ".trelvane-PID-N.tmp" (PID the writing process). Each is registered while
// it exists, so that an interrupt removes it before the program ends; those
// a killed process left behind are removed the next time a command writes
// into their folder.
#pragma once

#include <string>

// A fresh temporary name in folder.
std::string NextTemporaryName(const std::string& folder);

// The process ID in a temporary's name, or 0 for any other name.
int WriterOfTemporary(const char* name);

// Removes from folder the temporaries of processes that have ended.
void RemoveLeftoverTemporaries(const std::string& folder);

// Registers the temporary at path for removal on an interrupt until it is
// unregistered; returns the registration, -1 when none is left.
int RegisterTemporary(const std::string& path);
void UnregisterTemporary(int registration);
