// What every verb shares: how it is added to the command line, how it reads
// numbers, and how it reports a failure.
#pragma once

#include <CLI/CLI.hpp>
#include <cstdint>
#include <functional>
#include <string>

// A verb's subcommand and what runs it once the command line is parsed: the
// exit status (0 success, 1 failure).
struct Verb {
    CLI::App* command = nullptr;
    std::function<int()> run;
};

// Checks an option or argument given as a number in any form the verbs
// accept (decimal, 0x2AE0, $2AE0, 2AE0h); CLI11 names the argument when it
// refuses one.
const CLI::Validator& NumberArgument();

// The value of text, already checked by NumberArgument().
int64_t NumberValue(const std::string& text);

// Prints "trelvane VERB: MESSAGE" on standard error; returns 1.
int VerbError(const CLI::App& verb, const std::string& message);

// Prints the engine's last error as VerbError does; returns 1.
int VerbEngineError(const CLI::App& verb);
