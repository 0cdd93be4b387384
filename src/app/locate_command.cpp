#include <cstdio>
#include <vector>

#include "app/command_sequences.h"
#include "app/sequence_support.h"
#include "trelvane.h"

namespace {

constexpr int kEnoughMatches = 10;

using Search = long (*)(const char* pattern, long length);

// Prints one line per match of search, numbering on from count; returns how
// many lines it printed.
int PrintMatches(Search search, int message, const std::vector<char>& pattern, int& count) {
    long length = static_cast<long>(pattern.size());
    int first = count;
    for (long found = search(pattern.data(), length); found != 0; found = search(pattern.data(), length)) {
        ++count;
        char number[24], offset[24], plainNumber[24];
        std::snprintf(number, sizeof number, "%3d", count);
        std::snprintf(offset, sizeof offset, "%06lXh", static_cast<unsigned long>(found));
        std::snprintf(plainNumber, sizeof plainNumber, "%d", count);
        Trelvane_SetStringData(0, number);
        Trelvane_SetStringData(1, offset);
        Trelvane_SetStringData(2, plainNumber);
        PrintMessageLine(message);
    }
    return count - first;
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
    // Each search is judged by its own lines: a search that printed ten or
    // more ends the run, but the numbers count every line.
    int count = 0;
    bool enough = PrintMatches(Trelvane_Locate, TLMSG_SEARCH_FOUND, pattern, count) >= kEnoughMatches;
    if (!enough) enough = PrintMatches(Trelvane_LocateWide, TLMSG_SEARCH_FOUND_WIDE, pattern, count) >= kEnoughMatches;
    if (!enough) PrintMatches(Trelvane_LocateRelative, TLMSG_SEARCH_FOUND_RELATIVE, pattern, count);
    Trelvane_FreeROM(-1);
    if (count > 0) return 0;
    PrintMessageLine(TLMSG_SEARCH_NOTFOUND);
    return -1;
}
