#include "app/dispatch.h"
#include "verbs/verb_command_line.h"

#ifndef _WIN32
#include <csignal>
#endif

int main(int argc, char** argv) {
#ifndef _WIN32
    // Past a file size limit a write then fails like on a full disk, so the
    // command reports it and removes its unfinished output, instead of the
    // process being ended by the signal.
    std::signal(SIGXFSZ, SIG_IGN);
#endif
    if (IsVerbCommandLine(argc, argv)) return RunVerbCommandLine(argc, argv);
    return RunCommandLine(argc, argv);
}
