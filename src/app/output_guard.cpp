#include "app/output_guard.h"

#include <string>

#include "app/sequence_support.h"
#include "core/same_file.h"
#include "trelvane.h"

namespace {

// The name a command file has on this command line; empty when it is absent.
std::string NameOf(const CommandFile& file, const CommandLine& line) {
    if (file.argument < line.argc) return line.argv[file.argument];
    return file.nameWhenAbsent ? file.nameWhenAbsent(line.argv[1]) : std::string();
}

bool IsWritten(FileRole role) { return role == FILE_OUTPUT || role == FILE_REWRITTEN; }
bool IsRead(FileRole role) { return role == FILE_INPUT || role == FILE_REWRITTEN; }

}  // namespace

bool OutputsSpareInputs(const CommandEntry& command, const CommandLine& line) {
    const CommandFile* files = command.files;
    for (int out = 0; out < MAX_COMMAND_FILES && files[out].role != FILE_NONE; ++out) {
        if (!IsWritten(files[out].role)) continue;
        std::string output = NameOf(files[out], line);
        for (int in = 0; in < MAX_COMMAND_FILES && files[in].role != FILE_NONE; ++in) {
            if (in == out || !IsRead(files[in].role)) continue;
            std::string input = NameOf(files[in], line);
            if (output.empty() || input.empty() || !SameFile(output.c_str(), input.c_str())) continue;
            Trelvane_SetStringFile(output.c_str());
            Trelvane_SetStringData(0, input.c_str());
            PrintMessageLine(TLERR_FILE_SAME);
            return false;
        }
    }
    return true;
}
