// The numbered message catalogue: symbolic names and default texts.
#pragma once

#include <string>

// The name a message file uses for id: its symbolic name, or its decimal
// form for an identifier that has none (such as "-608").
std::string MessageName(int id);

// The built-in text of id; "Unknown error" for an identifier outside the
// catalogue. TLERR_NESTED carries its whole text in the last error's file
// field, so its default text is "[file]", which inserts that field as it
// stands, brackets and all ("Unknown error" when the field is empty).
const char* DefaultMessageText(int id);
