#include "asm/cpu_description.h"

#include "trelvane.h"

void CpuDescription::SetMemory(unsigned char* data, int32_t size) {
    memory_ = data;
    memorySize_ = data ? size : 0;
}

bool CpuDescription::Inside(int64_t position, int64_t length) const {
    return position >= 0 && length >= 0 && position <= memorySize_ && length <= memorySize_ - position;
}

std::unique_ptr<CpuDescription> MakeCpuDescription(int32_t romType) {
    if (romType == ROM_SNES) return std::make_unique<Cpu65816>();
    return std::make_unique<CpuDescription>();
}
