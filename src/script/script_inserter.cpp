#include <algorithm>
#include <cstring>
#include <string>
#include <vector>

#include "core/last_error.h"
#include "core/rom_slots.h"
#include "script/header_lexicon.h"
#include "script/pointer_writer.h"
#include "script/script_header.h"
#include "script/script_lines.h"
#include "script/written_text.h"
#include "table/font_set.h"
#include "table/text_encoder.h"
#include "text/source_reader.h"
#include "trelvane.h"

// Putting an edited script back: each string is encoded, the strings that
// share a pointer are joined into a group, a group that already stands in the
// text written so far shares that place, every other group is written behind
// the text, and each group's pointer goes into the pointer table.

namespace {

constexpr size_t kMaxStringText = 2047;
constexpr size_t kMaxGroupBytes = 65536;
constexpr int64_t kDefaultLimit = 0x0FFFFFFF;

std::string Decimal(int64_t value) { return std::to_string(value); }

class Insertion {
public:
    Insertion(long fontId, SourceReader& reader, const ScriptHeader& header, int32_t sectionLine);

    bool ReadStringSection();
    // Leaves the counts in the last-error state; false when the text overflowed.
    bool Report() const;

private:
    bool AddTextLine(const std::string& line, int32_t lineNumber);
    bool EndString();
    bool EncodeString(int32_t column);
    bool CompleteGroup();
    void PlaceGroup();
    bool FinishSection();

    long fontId_;
    SourceReader& reader_;
    int32_t sectionLine_;
    int64_t start_ = 0;   // pointer value of the first string
    int64_t origin_ = 0;  // image offset of pointer value 0
    int64_t end_ = 0;     // pointer value behind the text counted so far
    int64_t limit_ = 0;
    int64_t room_ = 0;  // bytes from the text address to the end of the image
    bool overflow_ = false;
    int64_t strings_ = 0;
    std::string text_;
    std::vector<unsigned char> group_;
    WrittenText written_;
};

Insertion::Insertion(long fontId, SourceReader& reader, const ScriptHeader& header, int32_t sectionLine)
    : fontId_(fontId), reader_(reader), sectionLine_(sectionLine) {
    int64_t textAddress = header.textAddress;
    if (header.firstPointer != 0) start_ = (textAddress - header.firstPointer) | header.firstPointer;
    origin_ = textAddress - start_;
    end_ = start_;
    limit_ = header.limit == HEADER_VALUE_UNSET ? kDefaultLimit : header.limit;
    room_ = RomRangeInside(textAddress, 0) ? CurrentRom().size - textAddress : 0;
    text_.reserve(kMaxStringText);
    group_.reserve(kMaxGroupBytes);
}

bool Insertion::ReadStringSection() {
    while (reader_.Match() != TOKEN_END) {
        int32_t lineNumber = reader_.Top()->line;
        reader_.LineText();
        std::string line = reader_.TokenString();
        reader_.SkipLine();
        switch (ClassifyScriptLine(line)) {
            case ScriptLine::Comment: break;
            case ScriptLine::EntryHeader:
                if (!EndString()) return false;
                break;
            case ScriptLine::Text:
                if (!AddTextLine(line, lineNumber)) return false;
                break;
        }
    }
    return FinishSection();
}

// Text lines join with a line feed; empty lines before the first text line of
// a string add nothing. A zero byte in the text is refused where it stands.
bool Insertion::AddTextLine(const std::string& line, int32_t lineNumber) {
    std::string piece = TextOfLine(line);
    const size_t zero = piece.find('\0');
    if (zero != std::string::npos)
        return SetError(TLERR_TEXT_NOENCODE, reader_.FileName(), lineNumber, static_cast<int32_t>(zero + 1),
                        ZERO_BYTE_SHOWN);
    if (text_.empty() && piece.empty()) return true;
    size_t joined = text_.size() + (text_.empty() ? 0 : 1) + piece.size();
    if (joined > kMaxStringText)
        return SetError(TLERR_TEXT_NOENCODE, reader_.FileName(), lineNumber, 1, "string longer than 2047 characters");
    AppendTextPiece(text_, piece);
    return true;
}

bool Insertion::EncodeString(int32_t column) {
    EndStringText(text_);
    const EncodedText encoded = EncodeText(fontId_, text_.c_str());
    if (!encoded.bytes) return SetError(TLERR_TEXT_NOENCODE, reader_.FileName(), sectionLine_, column, text_.c_str());
    size_t length = static_cast<size_t>(encoded.length);
    if (group_.size() + length > kMaxGroupBytes) {
        std::string what = "A pointer's group of more than " + Decimal(kMaxGroupBytes) + " bytes";
        return SetError(TLERR_UNSUPPORTED, reader_.FileName(), 0, 0, what.c_str());
    }
    group_.insert(group_.end(), encoded.bytes, encoded.bytes + length);
    text_.clear();
    return true;
}

// Without a pointer table the strings are written one behind the other as
// they come.
bool Insertion::EndString() {
    if (!EncodeString(1)) return false;
    if (CurrentPointerDestination().table == POINTER_UNSET) {
        PlaceGroup();
        return true;
    }
    ++strings_;
    if (strings_ % PointerFrequency() != 0) return true;
    return CompleteGroup();
}

bool Insertion::CompleteGroup() {
    int32_t found = written_.Find(group_.data(), static_cast<int32_t>(group_.size()));
    int64_t pointer = found >= 0 ? start_ + found : end_;
    if (!WritePointer(pointer)) return false;
    if (found >= 0) {
        group_.clear();
        return true;
    }
    PlaceGroup();
    return true;
}

// Writes the group behind the text unless it passes the limit (or the end of
// the image); once the text has overflowed nothing more is written, but the
// bytes the text would need go on being counted.
void Insertion::PlaceGroup() {
    int64_t length = static_cast<int64_t>(group_.size());
    if (end_ + length - start_ > std::min(limit_, room_)) {
        overflow_ = true;
    } else if (!overflow_) {
        std::memcpy(CurrentRom().data + origin_ + end_, group_.data(), group_.size());
        written_.Append(group_.data(), static_cast<int32_t>(length));
    }
    end_ += length;
    group_.clear();
}

// The last string ends with the file; the last group gets its pointer even
// when it holds fewer strings than a pointer addresses.
bool Insertion::FinishSection() {
    if (!text_.empty() && !EncodeString(reader_.TokenColumn())) return false;
    ++strings_;
    if (group_.empty()) return true;
    if (CurrentPointerDestination().table != POINTER_UNSET && !WritePointer(end_)) return false;
    PlaceGroup();
    return true;
}

// With a limit of 0 the percentage is taken as if the limit were one byte.
// After an overflow at the end of the image, the room left there is the limit
// the message shows.
bool Insertion::Report() const {
    int64_t used = end_ - start_;
    int64_t limit = overflow_ ? std::min(limit_, room_) : limit_;
    std::string percentage = Decimal(used * 100 / std::max<int64_t>(limit, 1)) + "%";
    int code = overflow_ ? TLERR_TEXT_TOOMUCH : TLMSG_TEXT_INSERTED;
    SetError(code, reader_.FileName(), 0, 0, Decimal(used).c_str(), Decimal(limit).c_str(), percentage.c_str(),
             Decimal(strings_).c_str());
    return !overflow_;
}

// A script whose header runs to the end of the file inserts nothing.
void ReportNothingInserted(const SourceReader& reader, const ScriptHeader& header) {
    int64_t limit = header.limit == HEADER_VALUE_UNSET ? kDefaultLimit : header.limit;
    SetError(TLMSG_TEXT_INSERTED, reader.FileName(), 0, 0, "0", Decimal(limit).c_str(), "0%", "0");
}

}  // namespace

extern "C" long Trelvane_InsertFromFile(int id, const char* file) {
    if (!file) file = "";
    if (!RequireCurrentRom()) return 0;
    SourceReader reader(READER_SKIP_SPACE);
    if (!reader.Open(file, "")) return SetError(TLERR_FILE_NOREAD, file, 0, 0);
    reader.SetAutomaton(&HeaderLexicon());
    ScriptHeader header;
    switch (ReadScriptHeader(reader, header)) {
        case HeaderEnd::Failed: return 0;
        case HeaderEnd::EndOfFile: ReportNothingInserted(reader, header); return 1;
        case HeaderEnd::StringSection: break;
    }
    int32_t sectionLine = reader.TokenLine();
    reader.SkipLine();
    if (header.textAddress == HEADER_VALUE_UNSET)
        return SetError(TLERR_UNSPECIFIED, reader.FileName(), 0, 0, "Text address");
    Insertion insertion(id, reader, header, sectionLine);
    return insertion.ReadStringSection() && insertion.Report();
}
