// Encoding and decoding 1 MB of script text through a realistic table: 200
// one-byte codes (letters, digits, punctuation, letter pairs), 200 two-byte
// word codes, control codes with parameters, a line break and a terminal.
#include <benchmark/benchmark.h>

#include <cstring>
#include <random>
#include <string>
#include <vector>

#include "table/font_set.h"
#include "table/text_decoder.h"
#include "table/text_encoder.h"

namespace {

constexpr size_t kScriptSize = 1 << 20;

std::vector<std::string> TableTexts() {
    std::vector<std::string> texts;
    for (char c = 'a'; c <= 'z'; ++c) texts.emplace_back(1, c);
    for (char c = 'A'; c <= 'Z'; ++c) texts.emplace_back(1, c);
    for (char c = '0'; c <= '9'; ++c) texts.emplace_back(1, c);
    for (char c : std::string(" .,!?'-:;")) texts.emplace_back(1, c);
    const std::string frequent = "etaoinshrdlu";
    for (char a : frequent)
        for (char b : frequent)
            if (texts.size() < 200) texts.push_back(std::string{a, b});
    return texts;
}

std::vector<std::string> WordTexts() {
    std::vector<std::string> words;
    for (char c : std::string("bcdfghklmnprstvw"))
        for (char v : std::string("aeiou"))
            for (char e : std::string("nrs"))
                if (words.size() < 200) words.push_back(std::string{c, v, e} + "ing");
    return words;
}

// Font 1: the one-byte texts from 0x00, the words as two-byte codes E0xx and
// E1xx, and the control codes.
void LoadBenchFont() {
    ResetFontSet();
    Font& font = *NextFreeSlot("bench");
    std::vector<std::string> texts = TableTexts();
    for (size_t i = 0; i < texts.size(); ++i) SetEntryText(font, static_cast<int>(i), texts[i].c_str());
    std::vector<std::string> words = WordTexts();
    for (size_t i = 0; i < words.size(); ++i)
        SetEntryText(font, DefineTwoByteCode(font, static_cast<uint16_t>(0xE000 + i)), words[i].c_str());
    SetEntryText(font, 0xF0, "<wait @>");
    font.flags[0xF0] = ENTRY_PARAM;
    SetEntryText(font, 0xF1, "<color @>");
    font.flags[0xF1] = ENTRY_PARAM | ENTRY_PARAM2;
    SetEntryText(font, 0xFE, "");
    font.flags[0xFE] = ENTRY_NEWLINE;
    SetEntryText(font, 0xFF, "");
    font.flags[0xFF] = ENTRY_TERMINAL;
    CompleteLoad("bench", 1);
}

// About 1 MB of strings made of table texts, words, control codes and line breaks.
std::vector<std::string> Script() {
    std::mt19937 random(99);
    std::vector<std::string> pieces = TableTexts();
    for (const std::string& word : WordTexts()) pieces.push_back(word + " ");
    pieces.insert(pieces.end(), {"<wait  3C>", "<color  01 1F>", "\n"});
    std::vector<std::string> strings;
    size_t total = 0;
    while (total < kScriptSize) {
        std::string text;
        for (int n = 20 + random() % 60; n > 0; --n) text += pieces[random() % pieces.size()];
        total += text.size();
        strings.push_back(std::move(text));
    }
    return strings;
}

void BM_EncodeScript(benchmark::State& state) {
    LoadBenchFont();
    std::vector<std::string> strings = Script();
    size_t bytes = 0;
    for (auto _ : state) {
        for (const std::string& text : strings) {
            if (!EncodeText(1, text.c_str()).bytes) state.SkipWithError("unencodable text");
            bytes += text.size();
        }
    }
    state.SetBytesProcessed(static_cast<int64_t>(bytes));
}
BENCHMARK(BM_EncodeScript)->Unit(benchmark::kMillisecond);

void BM_DecodeScript(benchmark::State& state) {
    LoadBenchFont();
    std::vector<unsigned char> image;
    for (const std::string& text : Script()) {
        const EncodedText encoded = EncodeText(1, text.c_str());
        image.insert(image.end(), encoded.bytes, encoded.bytes + encoded.length);
    }
    size_t bytes = 0;
    for (auto _ : state) {
        const unsigned char* end = image.data() + image.size();
        for (const unsigned char* at = image.data(); at < end;) {
            const DecodedText decoded = DecodeText(1, at, end);
            if (!decoded.text) return state.SkipWithError("undecodable bytes");
            bytes += std::strlen(decoded.text);
            at += decoded.consumed;
        }
    }
    state.SetBytesProcessed(static_cast<int64_t>(bytes));
}
BENCHMARK(BM_DecodeScript)->Unit(benchmark::kMillisecond);

}  // namespace
