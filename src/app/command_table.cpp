#include "app/command_table.h"

#include <cstring>
#include <iterator>

#include "app/sequence_support.h"
#include "core/number_text.h"
#include "gfx/tile_codec.h"
#include "trelvane.h"

namespace {

constexpr CommandEntry kCommands[] = {
    {"f", TLMSG_USAGE_TILES_INSERT, {PARAM_ADDRESS, PARAM_BMPFILE, PARAM_FORMAT}, RunTilesInsert,
     {{1, FILE_REWRITTEN}, {4, FILE_INPUT}}},
    {"b", TLMSG_USAGE_TILES_DUMP, {PARAM_ADDRESS, PARAM_BMPFILE, PARAM_FORMAT}, RunTilesDump,
     {{1, FILE_INPUT}, {4, FILE_OUTPUT}}},
    {"c", TLMSG_USAGE_THINGY_CONVERT, {PARAM_FONTFILE}, RunThingyConvert, {{1, FILE_INPUT}, {3, FILE_OUTPUT}}},
    {"l#", TLMSG_USAGE_STRING_LOCATE, {PARAM_FONTFILE, PARAM_STRING}, RunStringLocate,
     {{1, FILE_INPUT}, {3, FILE_INPUT}}},
    {"d#", TLMSG_USAGE_SCRIPT_DUMP, {PARAM_FONTFILE, PARAM_DUMPFILE, PARAM_ADDRESS, PARAM_COUNT}, RunScriptDump,
     {{1, FILE_INPUT}, {3, FILE_INPUT}, {4, FILE_OUTPUT}}},
    {"x#",
     MSG_USAGE_POINTER_DUMP,
     {PARAM_FONTFILE, PARAM_DUMPFILE, PARAM_ADDRESS, PARAM_SIZE, PARAM_FREQUENCY, PARAM_COUNT},
     RunPointerDump,
     {{1, FILE_INPUT}, {3, FILE_INPUT}, {4, FILE_OUTPUT}}},
    {"t#", TLMSG_USAGE_SCRIPT_INSERT, {PARAM_TEXTFILE}, RunScriptInsert, {{1, FILE_REWRITTEN}, {3, FILE_INPUT}}},
    {"i", TLMSG_USAGE_IPS_CREATE, {PARAM_ORIGINALFILE, PARAM_IPSFILE}, RunIpsCreate,
     {{1, FILE_INPUT}, {3, FILE_INPUT}, {4, FILE_OUTPUT, IpsNameForRom}}},
    {"p", TLMSG_USAGE_PATCH_APPLY, {PARAM_PATCHFILE}, RunPatchApply, {{1, FILE_REWRITTEN}, {3, FILE_INPUT}}},
};

enum class Check { Number, TileFormat, FileName, None };

struct ParameterRule {
    bool required;
    Check check;
    int nameMessage;
    const char* frame;
};

// Indexed by ParamKind.
constexpr ParameterRule kParameterRules[] = {
    {false, Check::None, TLERR_NONE, ""},
    {true, Check::Number, TLMSG_PARAM_ADDRESS, "<%s> "},
    {false, Check::TileFormat, TLMSG_PARAM_FORMAT, "[%s] "},
    {true, Check::FileName, TLMSG_PARAM_BMPFILE, "<%s> "},
    {true, Check::FileName, TLMSG_PARAM_FONTFILE, "<%s> "},
    {true, Check::FileName, TLMSG_PARAM_DUMPFILE, "<%s> "},
    {true, Check::FileName, TLMSG_PARAM_TEXTFILE, "<%s> "},
    {false, Check::FileName, TLMSG_PARAM_IPSFILE, "[%s] "},
    {true, Check::FileName, TLMSG_PARAM_ORIGINALFILE, "<%s> "},
    {true, Check::FileName, TLMSG_PARAM_PATCHFILE, "<%s> "},
    {false, Check::Number, TLMSG_PARAM_COUNT, "[%s] "},
    {true, Check::None, TLMSG_PARAM_STRING, "\"<%s>\" "},
    {true, Check::Number, MSG_PARAM_SIZE, "<%s> "},
    {true, Check::Number, MSG_PARAM_FREQUENCY, "<%s> "},
};

bool IsFileNameCharacter(char c) {
    static constexpr const char* kAllowedMarks = "[\\]^_`-./&'()+!?#";
    return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9') ||
           (c != '\0' && std::strchr(kAllowedMarks, c));
}

bool PassesCheck(Check check, const char* text) {
    switch (check) {
        case Check::Number: return IsNumberArgument(text);
        case Check::TileFormat: return FindTileFormat(text) != nullptr;
        case Check::FileName: return IsFileNameArgument(text);
        case Check::None: return true;
    }
    return false;
}

}  // namespace

const CommandEntry* CommandsBegin() { return std::begin(kCommands); }
const CommandEntry* CommandsEnd() { return std::end(kCommands); }

const CommandEntry* FindCommand(char letter) {
    for (const CommandEntry& command : kCommands)
        if (command.name[0] == letter) return &command;
    return nullptr;
}

int ParameterNameMessage(ParamKind kind) { return kParameterRules[kind].nameMessage; }
const char* ParameterFrame(ParamKind kind) { return kParameterRules[kind].frame; }

bool ParametersPass(const CommandEntry& command, int argc, char** argv) {
    for (int k = 0; k < MAX_COMMAND_PARAMETERS && command.parameters[k] != PARAM_NONE; ++k) {
        const ParameterRule& rule = kParameterRules[command.parameters[k]];
        bool present = argc >= k + 4;
        if (!present && rule.required) return false;
        if (present && !PassesCheck(rule.check, argv[k + 3])) return false;
    }
    return true;
}

int FontIdOf(const char* commandArgument) {
    char digit = commandArgument[0] ? commandArgument[1] : '\0';
    if (digit >= '2' && digit <= '9') return digit - '0';
    if (digit == 'j' || digit == 'J') return 2;
    return 1;
}

bool IsNumberArgument(const char* text) {
    int64_t value = 0;
    return *text == '\0' || (*text != '-' && ReadNumberText(text, value));
}

const char* RefusedNumberArgument(const CommandEntry& command, int argc, char** argv) {
    for (int k = 0; k < MAX_COMMAND_PARAMETERS && command.parameters[k] != PARAM_NONE; ++k)
        if (kParameterRules[command.parameters[k]].check == Check::Number && argc >= k + 4 &&
            !IsNumberArgument(argv[k + 3]))
            return argv[k + 3];
    return nullptr;
}

bool IsFileNameArgument(const char* text) {
    for (; *text; ++text)
        if (!IsFileNameCharacter(*text)) return false;
    return true;
}
