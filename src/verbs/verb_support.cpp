#include "verbs/verb_support.h"

#include <cstdio>

#include "core/number_text.h"
#include "trelvane.h"

const CLI::Validator& NumberArgument() {
    static const CLI::Validator validator(
        [](std::string& text) {
            int64_t value = 0;
            if (ReadNumberText(text.c_str(), value)) return std::string();
            return "'" + text + "' is not a number (write 10976, 0x2AE0, $2AE0 or 2AE0h)";
        },
        "NUMBER");
    return validator;
}

int64_t NumberValue(const std::string& text) {
    int64_t value = 0;
    ReadNumberText(text.c_str(), value);
    return value;
}

int VerbError(const CLI::App& verb, const std::string& message) {
    std::fprintf(stderr, "trelvane %s: %s\n", verb.get_name().c_str(), message.c_str());
    return 1;
}

int VerbEngineError(const CLI::App& verb) { return VerbError(verb, Trelvane_GetLastError()); }
