#include "asm/source_text.h"

std::string JoinText(std::initializer_list<std::string_view> parts) {
    std::string text;
    for (std::string_view part : parts) text.append(part);
    return text;
}
