// The asm verb at scale: a generated 1 MB source in the common syntax (2,000
// routines over 7 LoROM banks: loops, every operand width, indirect modes,
// calls, data) assembled by the engine and by the whole verb, and the same
// instructions in ca65's syntax assembled and linked by ca65 and ld65.
#include <benchmark/benchmark.h>
#include <unistd.h>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "asm/asm_session.h"
#include "asm/source_assembler.h"
#include "run_trelvane.h"

namespace {

constexpr int kRoutines = 2000;
constexpr int kRoutinesPerBank = 300;
constexpr int kBanks = (kRoutines + kRoutinesPerBank - 1) / kRoutinesPerBank;
constexpr size_t kImageSize = 0x40000;

// One routine of about 490 characters: @N is its name, @Z, @A and @F the operand-size prefixes
// (direct page, absolute, long) that ca65 needs, @B and @W its data directives.
constexpr const char* kRoutine = R"(@N:
	rep #$30
	ldx #$00
	ldy #$02
@N_copy:
	lda @F$7E2000,x
	sta @A$0300,x
	lda @F$7F4000
	sta @A$0400,y
	lda @Z$10
	sta @Z$12
	lda ($14),y
	lda [$16],y
	lda ($18,s),y
	inx
	inx
	cpx #$40
	bne @N_copy
@N_wait:
	lda @A$4212
	and #$80
	beq @N_wait
	dex
	bpl @N_wait
	sep #$20
	lda @Z$10,x
	sta @F$7E1000,x
	stz @Z$20
	stz @A$0520,x
	pha
	phx
	jsl @N
	jsr @N_wait
	plx
	pla
	cmp #$80
	bcc @N_copy
	clc
	rts
	@B 1,2,3,4,5,6,7,8,9,10,11,12,13,14,15,16
	@W $1234,$5678,$9ABC,$DEF0
)";

void AppendRoutine(std::string& text, int n, bool ca65) {
    for (const char* at = kRoutine; *at; ++at) {
        if (*at != '@') {
            text += *at;
            continue;
        }
        switch (*++at) {
        case 'N': text.append("r").append(std::to_string(n)); break;
        case 'Z': text.append(ca65 ? "z:" : ""); break;
        case 'A': text.append(ca65 ? "a:" : ""); break;
        case 'F': text.append(ca65 ? "f:" : ""); break;
        case 'B': text.append(ca65 ? ".byte" : "db"); break;
        default: text.append(ca65 ? ".word" : "dw"); break;
        }
    }
}

// Bank b of the source starts with this line.
void AppendBankStart(std::string& text, int bank, bool ca65) {
    char line[32];
    std::snprintf(line, sizeof line, ca65 ? ".segment \"B%d\"\n" : "org $%02X8000\n", ca65 ? bank : 0x80 + bank);
    text.append(line);
}

std::string Source(bool ca65) {
    std::string text(ca65 ? ".p816\n.a8\n.i8\n" : "lorom\n");
    for (int n = 0; n < kRoutines; ++n) {
        if (n % kRoutinesPerBank == 0) AppendBankStart(text, n / kRoutinesPerBank, ca65);
        AppendRoutine(text, n, ca65);
    }
    return text;
}

std::string LinkerConfig() {
    std::string memory("MEMORY {\n"), segments("SEGMENTS {\n");
    char line[96];
    for (int bank = 0; bank < kBanks; ++bank) {
        std::snprintf(line, sizeof line, "M%d: start = $%02X8000, size = $8000, file = %%O, fill = yes;\n", bank,
                      0x80 + bank);
        memory.append(line);
        std::snprintf(line, sizeof line, "B%d: load = M%d, type = ro;\n", bank, bank);
        segments.append(line);
    }
    return memory.append("}\n").append(segments).append("}\n");
}
class BenchFiles {
public:
    BenchFiles() {
        folder_ = std::filesystem::temp_directory_path() / ("trelvane-asm-bench-" + std::to_string(getpid()));
        std::filesystem::create_directories(folder_);
        source_ = Source(false);
        Write("big.asm", source_);
        Write("big.s", Source(true));
        Write("big.cfg", LinkerConfig());
        Write("game.sfc", std::string(kImageSize, '\0'));
    }
    ~BenchFiles() {
        std::error_code ignored;
        std::filesystem::remove_all(folder_, ignored);
    }
    std::string Path(const std::string& name) const { return (folder_ / name).string(); }
    size_t SourceSize() const { return source_.size(); }

private:
    void Write(const char* name, const std::string& text) {
        std::ofstream(Path(name), std::ios::binary).write(text.data(), static_cast<std::streamsize>(text.size()));
    }
    std::filesystem::path folder_;
    std::string source_;
};

const BenchFiles& Files() {
    static BenchFiles files;
    return files;
}

void BM_AsmEngine(benchmark::State& state) {
    const BenchFiles& files = Files();
    for (auto _ : state) {
        AsmSession session;
        session.image.assign(kImageSize, 0);
        if (!AssembleSource(session, files.Path("big.asm"))) state.SkipWithError("the source did not assemble");
    }
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * files.SourceSize()));
}
BENCHMARK(BM_AsmEngine)->Unit(benchmark::kMillisecond)->UseRealTime();

void BM_AsmVerb(benchmark::State& state) {
    const BenchFiles& files = Files();
    for (auto _ : state)
        if (!RunTrelvane({"asm", files.Path("game.sfc"), files.Path("big.asm"), "-o", files.Path("out.sfc")}))
            state.SkipWithError("the asm verb failed");
}
BENCHMARK(BM_AsmVerb)->Unit(benchmark::kMillisecond)->UseRealTime();

void BM_Ca65AndLd65(benchmark::State& state) {
    const BenchFiles& files = Files();
    for (auto _ : state)
        if (!RunQuietly({"ca65", files.Path("big.s"), "-o", files.Path("big.o")}) ||
            !RunQuietly({"ld65", "-C", files.Path("big.cfg"), "-o", files.Path("big.bin"), files.Path("big.o")}))
            state.SkipWithError("ca65 or ld65 failed (package cc65)");
}
BENCHMARK(BM_Ca65AndLd65)->Unit(benchmark::kMillisecond)->UseRealTime();

}  // namespace
