// Texts in JSON output: the verbs' --json prints one object built from these.
#pragma once

#include <string>
#include <utility>
#include <vector>

// text as a JSON string, quotes included. Well-formed UTF-8 passes as it is;
// control characters and other bytes beyond ASCII (a title in a game's own
// encoding) are written as \u00XX escapes, so any text gives valid JSON.
std::string JsonString(const std::string& text);

// One member of a JSON object: its name and its value, already in JSON.
using JsonMember = std::pair<std::string, std::string>;

// {"name": value, ...} on one line.
std::string JsonObject(const std::vector<JsonMember>& members);
