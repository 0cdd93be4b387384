#include <cstdio>
#include <vector>

#include "app/command_sequences.h"
#include "app/sequence_support.h"
#include "trelvane.h"

namespace {

constexpr int kEnoughMatches = 10;

using Search = long (*)(const char* pattern, long length);

// Prints one line per match of search, numbering on from count.
void PrintMatches(Search search, int message, const std::vector<char>& pattern, int& count) {
    long length = static_cast<long>(pattern.size());
    for (long found = search(pattern.data(), length); found != 0; found = search(pattern.data(), length)) {
        ++count;
        char number[16], offset[16], plainNumber[16];
        std::snprintf(number, sizeof number, "%3d", count);
        std::snprintf(offset, sizeof offset, "%06lXh", static_cast<unsigned long>(found));
        std::snprintf(plainNumber, sizeof plainNumber, "%d", count);
        Trelvane_SetStringData(0, number);
        Trelvane_SetStringData(1, offset);
        Trelvane_SetStringData(2, plainNumber);
        PrintMessageLine(message);
    }
}

}  // namespace

int RunStringLocate(const CommandLine& line) {
    if (!Trelvane_LoadROM(line.argv[1]) || !Trelvane_LoadFont(line.argv[3])) return FailWithLastError();
    long encodedLength = 0;
    const char* encoded = Trelvane_Encode(line.fontId, line.argv[4], &encodedLength);
    if (!encoded) return FailWithLastError();
    // The pattern leaves out the terminal code the encoder appends.
    std::vector<char> pattern(encoded, encoded + (encodedLength > 0 ? encodedLength - 1 : 0));
    Trelvane_SetStringData(3, line.argv[4]);
    int count = 0;
    PrintMatches(Trelvane_Locate, TLMSG_SEARCH_FOUND, pattern, count);
    if (count < kEnoughMatches) PrintMatches(Trelvane_LocateWide, TLMSG_SEARCH_FOUND_WIDE, pattern, count);
    if (count < kEnoughMatches) PrintMatches(Trelvane_LocateRelative, TLMSG_SEARCH_FOUND_RELATIVE, pattern, count);
    Trelvane_FreeROM(-1);
    if (count > 0) return 0;
    PrintMessageLine(TLMSG_SEARCH_NOTFOUND);
    return -1;
}
