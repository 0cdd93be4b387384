// Running the built trelvane executable from a benchmark, as a user would.
#pragma once

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <string>
#include <vector>

extern char** environ;

// Runs the program args[0] (found on the PATH) with stdout discarded; false unless it exits 0.
inline bool RunQuietly(std::vector<std::string> args) {
    std::vector<char*> argv;
    for (std::string& arg : args) argv.push_back(arg.data());
    argv.push_back(nullptr);
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO, "/dev/null", O_WRONLY, 0);
    pid_t child;
    int status = -1;
    if (posix_spawnp(&child, argv[0], &actions, nullptr, argv.data(), environ) == 0) waitpid(child, &status, 0);
    posix_spawn_file_actions_destroy(&actions);
    return WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

// Runs the built executable with stdout discarded; false unless it exits 0.
inline bool RunTrelvane(std::vector<std::string> args) {
    args.insert(args.begin(), TRELVANE_EXE);
    return RunQuietly(std::move(args));
}
