// Checks the command line and runs one command; returns the exit status.
#pragma once

int RunCommandLine(int argc, char** argv);
