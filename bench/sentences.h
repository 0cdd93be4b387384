// Game-script text for the script benchmarks.
#pragma once

#include <random>
#include <string>

// A sentence of four to nine words, about 30 characters.
inline std::string Sentence(std::mt19937& random) {
    static const char* kWords[] = {"the", "castle", "gate", "is", "closed", "hero", "sword", "you", "found", "a",
                                   "key", "north", "of", "town", "dragon", "sleeps", "inn", "rest", "gold", "talk"};
    std::string text;
    for (int words = 4 + random() % 6; words > 0; --words) {
        if (!text.empty()) text += ' ';
        text += kWords[random() % 20];
    }
    return text;
}
