// The verb interface: "trelvane VERB ...", parsed with CLI11.
#pragma once

// True when the first argument is a verb, "--help", "-h" or "--version"; any
// other command line belongs to the letter commands.
bool IsVerbCommandLine(int argc, char** argv);

// Parses and runs one verb: 0 on success, 1 on any failure (the errors on
// standard error).
int RunVerbCommandLine(int argc, char** argv);
