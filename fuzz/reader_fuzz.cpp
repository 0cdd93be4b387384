// Arbitrary bytes cut into tokens by each lexicon, read from memory or from a
// file (where zero bytes reach the reader), with the line helpers and number
// conversions applied to what comes back. Every token moves the reader on.
#include <cstddef>
#include <cstdint>
#include <string>

#include "asm/patch_lexicon.h"
#include "scratch_files.h"
#include "script/header_lexicon.h"
#include "table/table_lexicon.h"
#include "text/source_reader.h"

namespace {

const Fsa& ChosenLexicon(uint8_t choice) {
    switch (choice % 4) {
    case 0: return Lexicon65816();
    case 1: return GenericLexicon();
    case 2: return TableLexicon();
    default: return HeaderLexicon();
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    if (size == 0) return 0;
    const uint8_t control = data[0];
    const std::string text(reinterpret_cast<const char*>(data + 1), size - 1);
    SourceReader reader((control & 0x10) ? READER_SKIP_SPACE : 0);
    reader.SetAutomaton(&ChosenLexicon(control));
    static const std::string file = ScratchName("-source.txt");
    if (!(control & 0x80)) reader.OpenText("fuzz", text.c_str());
    else if (!WriteInput(file, data + 1, size - 1) || !reader.Open(file.c_str(), "")) return 0;
    for (int kind = reader.NextToken(), n = 0; kind != TOKEN_END; kind = reader.NextToken(), ++n) {
        if (reader.TokenColumn() > reader.TokenEndColumn() || static_cast<size_t>(n) >= size) __builtin_trap();
        uint32_t exact = 0;
        ExactNumber(reader.TokenText(), n % 2, exact);
        ParseHex(reader.TokenText());
        ParseDecimal(reader.TokenText());
        Substring(reader.TokenText(), static_cast<int32_t>(n % 5) - 2, static_cast<int32_t>(n % 7) - 3);
        if ((control & 0x20) && n % 3 == 0) {
            reader.LineText();
            reader.SkipLine();
        }
        if ((control & 0x40) && n % 4 == 0) reader.Match();
    }
    if (reader.NextToken() != TOKEN_END || reader.TokenText()[0] != '\0') __builtin_trap();
    return 0;
}
