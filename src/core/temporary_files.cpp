#include "core/temporary_files.h"

#include <csignal>
#include <cstring>

#include "core/platform_files.h"

namespace {

constexpr const char* kPrefix = ".trelvane-";
constexpr const char* kSuffix = ".tmp";

// Room for the temporaries of a few files written at once; the signal
// handler reads these, so they are plain arrays.
constexpr int kRegistrations = 8;
constexpr size_t kLongestPath = 4096;
char registeredPaths[kRegistrations][kLongestPath];
volatile std::sig_atomic_t registered[kRegistrations];

void RemoveRegisteredTemporaries() {
    for (int k = 0; k < kRegistrations; ++k)
        if (registered[k]) RemoveFile(registeredPaths[k]);
}

// Reads the decimal digits at text into value; the first character behind them.
const char* ReadDigits(const char* text, long long& value) {
    value = 0;
    const char* start = text;
    for (; *text >= '0' && *text <= '9' && text - start < 10; ++text) value = value * 10 + (*text - '0');
    return text == start ? nullptr : text;
}

}  // namespace

std::string NextTemporaryName(const std::string& folder) {
    static unsigned serial = 0;
    return folder + kPrefix + std::to_string(ProcessId()) + "-" + std::to_string(serial++) + kSuffix;
}

int WriterOfTemporary(const char* name) {
    if (std::strncmp(name, kPrefix, std::strlen(kPrefix)) != 0) return 0;
    long long pid = 0, serial = 0;
    const char* at = ReadDigits(name + std::strlen(kPrefix), pid);
    if (!at || *at != '-' || !(at = ReadDigits(at + 1, serial)) || std::strcmp(at, kSuffix) != 0) return 0;
    return pid > 0 && pid <= 0x7FFFFFFF ? static_cast<int>(pid) : 0;
}

void RemoveLeftoverTemporaries(const std::string& folder) {
    const int self = ProcessId();
    ForEachName(folder, [&](const char* name) {
        const int writer = WriterOfTemporary(name);
        if (writer != 0 && writer != self && ProcessHasEnded(writer)) RemoveFile((folder + name).c_str());
    });
}

int RegisterTemporary(const std::string& path) {
    InstallInterruptCleanup(RemoveRegisteredTemporaries);
    if (path.size() >= kLongestPath) return -1;
    for (int k = 0; k < kRegistrations; ++k) {
        if (registered[k]) continue;
        std::memcpy(registeredPaths[k], path.c_str(), path.size() + 1);
        registered[k] = 1;
        return k;
    }
    return -1;
}

void UnregisterTemporary(int registration) {
    if (registration >= 0 && registration < kRegistrations) registered[registration] = 0;
}
