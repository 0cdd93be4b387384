// The options that describe a pointer form on the command line (dump, find):
// --size, --base or --map, --stride, --big-endian.
#pragma once

#include <optional>
#include <string>

#include "trelvane.h"
#include "verbs/verb_support.h"

struct PointerOptions {
    std::string size;  // empty: 2 bytes, or every size the finder tries
    std::string base;
    std::string map;
    std::string stride;
    bool bigEndian = false;
};

// Adds --size and --base/--map to verb; with tableOptions also --stride and
// --big-endian.
void AddPointerOptions(CLI::App& verb, PointerOptions& options, bool tableOptions);

// The form the options give, with table offset table (-1 for none); the
// offsets of a split table are set by the caller.
PointerForm PointerFormOf(const PointerOptions& options, int64_t table);

// "lorom", "hirom", "exhirom" and the form's text as the verbs print it.
std::string DescribePointerForm(const PointerForm& form);
