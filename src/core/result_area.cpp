#include "core/result_area.h"

#include <cstdio>
#include <cstring>
#include <string>

#include "core/last_error.h"
#include "core/message_catalogue.h"
#include "core/text_compare.h"

namespace {

char resultArea[RESULT_AREA_SIZE];
size_t writePosition = 0;

// Room a placeholder's expansion should find ahead of it; with less, the
// result is moved to the start of the area first.
constexpr size_t kPlaceholderRoom = 128;
constexpr size_t kLongestPlaceholderName = 10;
constexpr size_t kShownNameLength = 9;

// Writes one result behind the earlier ones. When it reaches the end of the
// area, the part written so far moves to the area's start and writing goes
// on behind it.
class ResultWriter {
public:
    void Put(char c) {
        if (position_ == RESULT_AREA_SIZE) MoveToStart();
        if (position_ - start_ == RESULT_AREA_SIZE - 1) return;  // keep room for the terminator
        resultArea[position_++] = c;
    }
    void Put(std::string_view text) {
        for (char c : text) Put(c);
    }
    void MakeRoomForPlaceholder() {
        if (RESULT_AREA_SIZE - position_ < kPlaceholderRoom) MoveToStart();
    }
    char* Finish() {
        if (position_ == RESULT_AREA_SIZE) MoveToStart();
        resultArea[position_] = '\0';
        writePosition = position_ + 1;
        return resultArea + start_;
    }

private:
    void MoveToStart() {
        std::memmove(resultArea, resultArea + start_, position_ - start_);
        position_ -= start_;
        start_ = 0;
    }
    size_t start_ = writePosition;
    size_t position_ = writePosition;
};

// A diagnostic replaces the whole result; it goes to the start of the area
// and leaves the write position where it was. It names the last error's
// code, whose text is being formatted in most cases.
char* UnmatchedBracketDiagnostic() {
    std::snprintf(resultArea, RESULT_AREA_SIZE, "Unmatched [ in error format %s.",
                  MessageName(LastError().code).c_str());
    return resultArea;
}

char* UnknownParameterDiagnostic(std::string_view name) {
    std::snprintf(resultArea, RESULT_AREA_SIZE, "Unknown parameter [%s] in error format %s.",
                  std::string(name).c_str(), MessageName(LastError().code).c_str());
    return resultArea;
}

// The text a placeholder name stands for; false for an unknown name.
bool PlaceholderValue(std::string_view name, std::string& value) {
    const LastErrorState& error = LastError();
    static constexpr const char* kDataNames[] = {"data0", "data1", "data2", "data3"};
    if (SameTextIgnoringCase(name, "file")) value = error.file;
    else if (SameTextIgnoringCase(name, "line")) value = std::to_string(error.line);
    else if (SameTextIgnoringCase(name, "column")) value = std::to_string(error.column);
    else {
        for (int i = 0; i < 4; ++i)
            if (SameTextIgnoringCase(name, kDataNames[i])) {
                value = error.data[i];
                return true;
            }
        return false;
    }
    return true;
}

}  // namespace

char* FormatIntoResultArea(std::string_view text) {
    ResultWriter writer;
    std::string value;
    for (size_t at = 0; at < text.size();) {
        if (text[at] != '[') {
            writer.Put(text[at++]);
            continue;
        }
        size_t close = text.find(']', at + 1);
        if (close == std::string_view::npos) return UnmatchedBracketDiagnostic();
        std::string_view name = text.substr(at + 1, close - at - 1);
        if (name.size() > kLongestPlaceholderName)
            return UnknownParameterDiagnostic(name.substr(0, kShownNameLength));
        if (!PlaceholderValue(name, value)) return UnknownParameterDiagnostic(name);
        writer.MakeRoomForPlaceholder();
        writer.Put(value);
        at = close + 1;
    }
    return writer.Finish();
}
