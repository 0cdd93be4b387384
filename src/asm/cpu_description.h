// Processor descriptions: the instruction set the assembler works from, the
// symbol table, the borrowed image memory and the assumed data bank.
#pragma once

#include <cstdint>
#include <memory>

#include "asm/instruction_set.h"
#include "asm/symbol_table.h"

// A processor without instructions (name "asm"): every mnemonic is not implemented.
class CpuDescription {
public:
    CpuDescription() : CpuDescription("asm", NoInstructions()) {}
    virtual ~CpuDescription() = default;
    CpuDescription(const CpuDescription&) = delete;
    CpuDescription& operator=(const CpuDescription&) = delete;

    const char* Name() const { return name_; }
    const InstructionSet& Instructions() const { return instructions_; }
    SymbolTable& Symbols() { return symbols_; }
    const SymbolTable& Symbols() const { return symbols_; }

    // The image bytes the patch writes into; borrowed, never released or resized here.
    void SetMemory(unsigned char* data, int32_t size);
    unsigned char* Memory() const { return memory_; }
    int32_t MemorySize() const { return memorySize_; }
    // True when [position, position + length) lies inside the memory.
    bool Inside(int64_t position, int64_t length) const;

    int32_t AssumedDataBank() const { return assumedDataBank_; }
    void SetAssumedDataBank(int32_t value) { assumedDataBank_ = value; }

protected:
    CpuDescription(const char* name, const InstructionSet& instructions) : name_(name), instructions_(instructions) {}

private:
    const char* name_;
    const InstructionSet& instructions_;
    SymbolTable symbols_;
    unsigned char* memory_ = nullptr;
    int32_t memorySize_ = 0;
    int32_t assumedDataBank_ = 0;  // 0 until a script's .ASSUME
};

// The 65816 of the Super NES.
class Cpu65816 : public CpuDescription {
public:
    Cpu65816() : CpuDescription("65816", Instructions65816()) {}
};

// The image position of a 24-bit processor address: its low 22 bits.
inline int32_t ImagePosition(int64_t address) { return static_cast<int32_t>(address & 0x3FFFFF); }

// A Cpu65816 for Super NES images, the base description for every other type.
std::unique_ptr<CpuDescription> MakeCpuDescription(int32_t romType);
