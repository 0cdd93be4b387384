#include "asm/snes_image_writer.h"

#include <cstdio>
#include <cstring>

#include "asm/asm_session.h"

std::string AddressText(uint32_t address) {
    char text[16];
    std::snprintf(text, sizeof text, "$%06X", address & 0xFFFFFF);
    return text;
}

namespace {

bool WriteAt(AsmSession& session, uint32_t address, const unsigned char* bytes, size_t count) {
    if (address > 0xFFFFFF) return session.Error(AddressText(address) + " is beyond the 24-bit address space");
    if ((address & 0xFFFF) + count > 0x10000)
        return session.Error(std::to_string(count) + " bytes at " + AddressText(address) + " cross into bank $" +
                             AddressText(address + 0x10000).substr(1, 2));
    const std::optional<uint32_t> offset = SnesAddressToOffset(session.Mapping(), address);
    if (!offset)
        return session.Error(AddressText(address) + " holds no image byte in the " +
                             SnesMappingTitle(session.Mapping()) + " mapping");
    if (*offset + count > session.image.size()) {
        char text[120];
        std::snprintf(text, sizeof text, "%s (image offset $%X) lies beyond the end of the image ($%zX bytes)",
                      AddressText(address).c_str(), *offset + static_cast<unsigned>(count) - 1, session.image.size());
        return session.Error(text);
    }
    std::memcpy(session.image.data() + *offset, bytes, count);
    return true;
}

}  // namespace

// The program counter moves on even when the write is refused, so that the labels behind it
// keep their places.
bool WriteAtProgramCounter(AsmSession& session, const unsigned char* bytes, size_t count) {
    if (count == 0) return true;
    if (!session.pcSet) {
        session.Warning("no org before the first write: assembling at $008000");
        session.pcSet = true;
    }
    if (!session.mapping) {
        session.Warning("no mapping from --map, the image's header or the source: assembling as LoROM");
        session.mapping = SnesMapping::LoRom;
    }
    const uint32_t address = session.pc;
    session.pc += static_cast<uint32_t>(count);
    return WriteAt(session, address, bytes, count);
}
