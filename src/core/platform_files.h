// The operating system's file calls that all-or-nothing output files are
// built from, one implementation per platform. Paths are narrow strings as
// the program received them: on Windows in the ANSI code page, handed to the
// system's ANSI calls unconverted, exactly as the readers hand them.
#pragma once

#include <cstddef>
#include <functional>
#include <string>

// The mode a file written to path should get: an existing regular file's own
// mode when this process may write it, the platform's usual mode for a new
// file when nothing is there; -1 when path may not be replaced.
int ModeForTarget(const char* path);

// True when path names an existing regular file that this process may write.
bool IsRewritableFile(const char* path);

int ProcessId();

// True when no process with this ID runs any more.
bool ProcessHasEnded(int pid);

// Creates path, which must not exist yet, for writing; -1 on failure.
int CreateExclusive(const char* path);

// Creates a file without a name in folder ("" for the current one), for
// writing: it vanishes with the process unless GiveName links it in. -1
// where the platform or the file system has no such files.
int CreateUnnamed(const std::string& folder);

// Links an unnamed file to path, which must not exist yet.
bool GiveName(int file, const char* path);

bool SetMode(int file, int mode);

// Writes up to size bytes; the count written, or -1 (errno says why).
long WriteSome(int file, const unsigned char* bytes, size_t size);

// Flushes the file's bytes to the disk.
bool FlushToDisk(int file);

bool CloseFile(int file);

// Renames temporary over target, replacing it whole.
bool ReplaceWith(const std::string& temporary, const std::string& target);

// Makes a rename in folder durable where the platform needs it.
void FlushFolder(const std::string& folder);

// Removes the file at path. Safe to call from a signal handler.
void RemoveFile(const char* path);

// Calls visit with the name of each entry of folder ("" for the current one).
void ForEachName(const std::string& folder, const std::function<void(const char*)>& visit);

// The file a write to path replaces: symbolic links are followed, a dangling
// one included, so that the link stays and the file it names is written.
std::string FollowLinks(const char* path);

// Has cleanup run when the user interrupts the program (SIGINT, SIGTERM,
// SIGHUP; console control events on Windows), before it ends as it would
// have. Installed once; cleanup must be safe in a signal handler.
void InstallInterruptCleanup(void (*cleanup)());
