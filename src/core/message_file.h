// The message file "trelvane.msg", whose entries replace catalogue texts.
#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

constexpr int MAX_MESSAGE_OVERRIDES = 64;

// One entry: a message name and its replacement text, both pointing into
// the text of the message file as read.
struct MessageOverride {
    std::string_view name;
    std::string_view text;
};

struct MessageOverrides {
    MessageOverride entries[MAX_MESSAGE_OVERRIDES];
    int count = 0;
};

// Collects the entries of a message file's text (which a zero byte ends).
// A malformed entry ends the parsing; entries beyond the table's capacity are
// ignored, since the first entry of a name is the one that counts anyway.
void ParseMessageOverrides(std::string_view text, MessageOverrides& table);

// The replacement text of the first entry called name, or null.
const std::string_view* FindOverride(const MessageOverrides& table, std::string_view name);

// Which message file is in force and its state: "trelvane.msg" in the
// current directory, else in the folder of the running executable; an empty
// path when there is none.
struct MessageFileStamp {
    std::string path;
    uintmax_t size = 0;
    std::filesystem::file_time_type written{};

    bool operator==(const MessageFileStamp&) const = default;
};

MessageFileStamp StampOfMessageFile();
