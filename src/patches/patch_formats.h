// The three patch formats, and telling them apart by their first bytes.
#pragma once

#include <cstddef>

#include "patches/patch_application.h"

enum class PatchKind { None, Ips, Bps, Ups };

const PatchFormat& IpsPatchFormat();
const PatchFormat& BpsPatchFormat();
const PatchFormat& UpsPatchFormat();

// The format whose magic patch starts with ("PATCH", "BPS1", "UPS1").
PatchKind PatchKindOf(const unsigned char* patch, size_t size);

// The format of a kind other than None.
const PatchFormat& FormatOf(PatchKind kind);

// "IPS", "BPS", "UPS" ("" for None).
const char* PatchKindName(PatchKind kind);
