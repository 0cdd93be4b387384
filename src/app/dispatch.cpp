#include "app/dispatch.h"

#include "app/command_table.h"
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
        return -1;
    }
    return command->run(CommandLine{argc, argv, FontIdOf(argv[2])});
}
