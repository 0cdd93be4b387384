// Creating and applying IPS patch files. Both work on files on disk: the
// inputs are mapped rather than copied, the patch is written in one go, and
// a patch is checked whole before its target file is opened.
#include <vector>

#include "core/file_bytes.h"
#include "core/file_view.h"
#include "core/ips_format.h"
#include "core/last_error.h"
#include "core/output_file.h"
#include "core/patch_inputs.h"
#include "trelvane.h"

#ifdef _WIN32
#include <cstdio>
#else
#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>
#endif

namespace {

#ifdef _WIN32
bool WriteRecordsToFile(const char* path, const std::vector<IpsRecord>& records) {
    std::FILE* file = std::fopen(path, "r+b");
    if (!file) return false;
    for (const IpsRecord& record : records)
        if (std::fseek(file, static_cast<long>(record.offset), SEEK_SET) == 0)
            std::fwrite(record.data, 1, record.size, file);
    return std::fclose(file) == 0;
}
#else
// Writes through a shared mapping of the file, grown first to the length the
// records need; a file that cannot be mapped gets one write per record.
bool WriteRecordsIntoOpenFile(int fd, const std::vector<IpsRecord>& records) {
    struct stat info;
    if (fstat(fd, &info) != 0 || !S_ISREG(info.st_mode)) return false;
    uint64_t length = IpsPatchedLength(records, static_cast<uint64_t>(info.st_size));
    if (length > static_cast<uint64_t>(info.st_size) && ftruncate(fd, static_cast<off_t>(length)) != 0) return false;
    void* mapping = length > 0 ? mmap(nullptr, length, PROT_READ | PROT_WRITE, MAP_SHARED, fd, 0) : MAP_FAILED;
    if (mapping != MAP_FAILED) {
        CopyIpsRecords(records, static_cast<unsigned char*>(mapping));
        return munmap(mapping, length) == 0;
    }
    for (const IpsRecord& record : records)
        if (pwrite(fd, record.data, record.size, record.offset) != static_cast<ssize_t>(record.size)) return false;
    return true;
}

bool WriteRecordsToFile(const char* path, const std::vector<IpsRecord>& records) {
    int fd = open(path, O_RDWR | O_CLOEXEC);
    if (fd < 0) return false;
    bool written = WriteRecordsIntoOpenFile(fd, records);
    return close(fd) == 0 && written;
}
#endif

}  // namespace

extern "C" {

long Trelvane_CreateIPS(const char* ipsfile, const char* originalfile, const char* modifiedfile) {
    if (!ipsfile) ipsfile = "";
    if (!originalfile) originalfile = "";
    if (!modifiedfile) modifiedfile = "";
    FileView original, modified;
    if (!OpenPatchInputs(ipsfile, originalfile, modifiedfile, original, modified)) return 0;
    std::vector<unsigned char> patch;
    switch (BuildIpsPatch(original.data(), original.size(), modified.data(), modified.size(), patch)) {
        case IpsBuild::Identical: return SetError(TLERR_IPS_IDENTICAL, "unknown", 0, 0);
        case IpsBuild::OffsetTooLarge:
            return SetError(TLERR_UNSUPPORTED, "", 0, 0, "Changes at or beyond 16 MiB in an IPS file");
        case IpsBuild::Built: break;
    }
    if (!WriteOutputFile(ipsfile, patch.data(), patch.size())) return SetError(TLERR_FILE_NOCREATE, ipsfile, 0, 0);
    return 1;
}

long Trelvane_ApplyIPS(const char* ipsfile, const char* romfile) {
    if (!ipsfile) ipsfile = "";
    if (!romfile) romfile = "";
    FileView patch;
    if (!patch.Open(ipsfile, SameFile(ipsfile, romfile))) return SetError(TLERR_FILE_NOREAD, ipsfile, 0, 0);
    std::vector<IpsRecord> records;
    switch (ReadIpsRecords(patch.data(), patch.size(), records)) {
        case IpsRead::NotIps: return SetError(TLERR_FILE_INVALID, ipsfile, 0, 0, "IPS file");
        case IpsRead::NoEof: return SetError(TLERR_IPS_NO_EOF, ipsfile, 0, 0);
        case IpsRead::Valid: break;
    }
    if (!WriteRecordsToFile(romfile, records)) return SetError(TLERR_FILE_NOWRITE, romfile, 0, 0);
    return 1;
}
}
