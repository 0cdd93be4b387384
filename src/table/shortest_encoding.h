// The shortest encoding of a text: of all the ways the table's entries (DTE
// and dictionary entries included) can spell it, the one with the fewest
// bytes, found by a dynamic program over the text's positions.
#pragma once

#include "table/text_encoder.h"

// Like EncodeText, with the same rules for what may stand where; among texts
// that match at a place, any may be taken, not only the longest. Ties go to
// the way the longest-match encoder prefers at the first place they part.
EncodedText EncodeShortest(long fontId, const char* text, EncodeRules rules = CLASSIC_ENCODING);
