#include "app/dispatch.h"

#include "app/command_table.h"
#include "app/output_guard.h"
#include "app/usage_screens.h"
#include "core/text_compare.h"

int RunCommandLine(int argc, char** argv) {
    if (argc < 3) {
        PrintFullUsage();
        return -1;
    }
    const CommandEntry* command = FindCommand(LowerAsciiLetter(argv[2][0]));
    if (!command) {
        PrintFullUsage();
        return -1;
    }
    if (!ParametersPass(*command, argc, argv)) {
        PrintShortUsage(*command);
        PrintRefusedNumber(RefusedNumberArgument(*command, argc, argv));
        return -1;
    }
    const CommandLine line{argc, argv, FontIdOf(argv[2])};
    if (!OutputsSpareInputs(*command, line)) return -1;
    return command->run(line);
}
