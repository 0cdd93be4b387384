#include "app/usage_screens.h"

#include <cstdio>
#include <cstring>
#include <ctime>

#include "trelvane.h"

namespace {

constexpr const char* kVersion = TRELVANE_VERSION;  // set by the build from the project version
constexpr std::time_t kReleaseTime = 969417321;
constexpr const char* kAuthorCredit = "the Trelvane developers";

void PrintBanner() {
    std::time_t release = kReleaseTime;
    const std::tm* date = std::localtime(&release);
    int month = date ? date->tm_mon + 1 : 0, day = date ? date->tm_mday : 0, year = date ? date->tm_year + 1900 : 0;
    std::printf("Trelvane v%s - %d/%02d/%04d %s\n", kVersion, month, day, year, kAuthorCredit);
}

void PrintFramedParameters(const CommandEntry& command) {
    for (int k = 0; k < MAX_COMMAND_PARAMETERS && command.parameters[k] != PARAM_NONE; ++k)
        std::printf(ParameterFrame(command.parameters[k]), Trelvane_GetString(ParameterNameMessage(command.parameters[k])));
}

}  // namespace

void PrintFullUsage() {
    PrintBanner();
    const char* usage = Trelvane_GetString(TLMSG_USAGE_USAGE);
    const char* rom = Trelvane_GetString(TLMSG_PARAM_ROM);
    const char* command = Trelvane_GetString(TLMSG_PARAM_COMMAND);
    const char* parameters = Trelvane_GetString(TLMSG_PARAM_PARAMETERS);
    const char* validCommands = Trelvane_GetString(TLMSG_USAGE_VALID_CMDS);
    std::printf("%s: trelvane <%s> <%s> <%s>\n\n%s", usage, rom, command, parameters, validCommands);
    for (const CommandEntry* entry = CommandsBegin(); entry != CommandsEnd(); ++entry) {
        std::printf("\n %-2s ", entry->name);
        PrintFramedParameters(*entry);
        std::printf(" -  %s", Trelvane_GetString(entry->usageMessage));
    }
    std::printf("\n\n%s\n", Trelvane_GetString(TLMSG_USAGE_FONT_ID));
}

void PrintShortUsage(const CommandEntry& command) {
    const char* usage = Trelvane_GetString(TLMSG_USAGE_USAGE);
    const char* rom = Trelvane_GetString(TLMSG_PARAM_ROM);
    std::printf("%s: trelvane <%s> %s ", usage, rom, command.name);
    PrintFramedParameters(command);
    std::printf("\n");
    if (std::strchr(command.name, '#')) std::printf("%s\n", Trelvane_GetString(TLMSG_USAGE_FONT_ID));
}

void PrintRefusedNumber(const char* argument) {
    if (!argument) return;
    Trelvane_SetStringData(0, argument);
    std::printf("%s\n", Trelvane_GetString(TLERR_NUMBER_BAD));
}
