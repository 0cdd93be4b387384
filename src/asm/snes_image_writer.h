// Writing assembled bytes into the image at the program counter, through the
// run's Super NES mapping.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

struct AsmSession;

// Writes count bytes at the program counter and advances it. Refused (an error naming the
// address) when the address is no image byte in the mapping, when the bytes would run past
// the end of the image or across the end of a 64 KiB bank.
bool WriteAtProgramCounter(AsmSession& session, const unsigned char* bytes, size_t count);

// "$BBAAAA".
std::string AddressText(uint32_t address);
