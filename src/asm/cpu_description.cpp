#include "asm/cpu_description.h"

#include "trelvane.h"

void CpuDescription::SetMemory(unsigned char* data, int32_t size) {
    memory_ = data;
    memorySize_ = data ? size : 0;
}

bool CpuDescription::Inside(int64_t position, int64_t length) const {
    return position >= 0 && length >= 0 && position <= memorySize_ && length <= memorySize_ - position;
}

int32_t Cpu65816::ReadByte(int32_t address) {
    const int32_t position = ImagePosition(address);
    return Inside(position, 1) ? Memory()[position] : 0;
}

int32_t Cpu65816::ReadWord(int32_t address) { return ReadByte(address) | ReadByte(address + 1) << 8; }

int32_t Cpu65816::ReadLong(int32_t address) { return ReadByte(address) | ReadWord(address + 1) << 8; }

std::unique_ptr<CpuDescription> MakeCpuDescription(int32_t romType) {
    if (romType == ROM_SNES) return std::make_unique<Cpu65816>();
    return std::make_unique<CpuDescription>();
}
