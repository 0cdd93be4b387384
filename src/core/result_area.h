// The result area: a fixed process-wide area that formatted texts are written
// into one behind the other, so that several results stay valid together.
#pragma once

#include <cstddef>
#include <string_view>

constexpr size_t RESULT_AREA_SIZE = 1024;

// Copies text into the result area, replacing each placeholder ("[file]",
// "[line]", "[column]", "[data0]" to "[data3]", names without regard to case)
// by that field of the last-error state, and returns the result. A result
// longer than the whole area is cut to fit it. A malformed placeholder gives
// a diagnostic in place of the text, written at the start of the area.
char* FormatIntoResultArea(std::string_view text);
