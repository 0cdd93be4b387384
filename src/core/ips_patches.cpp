// Creating and applying IPS patch files. Both work on files on disk: the
// inputs are mapped rather than copied, the patch is written in one go, and
// a patch is checked whole before its target file is opened.
#include <vector>

#include "core/file_bytes.h"
#include "core/file_view.h"
#include "core/ips_format.h"
#include "core/last_error.h"
#include "core/output_file.h"
#include "trelvane.h"

#ifndef _WIN32
#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>
#endif

namespace {

// Applies the records by reading the whole file, patching it in memory and
// writing it back: for files that cannot be mapped.
bool RewriteWithRecords(const char* path, const std::vector<IpsRecord>& records) {
    std::vector<unsigned char> bytes;
    if (!ReadFileBytes(path, bytes)) return false;
    bytes.resize(IpsPatchedLength(records, bytes.size()));
    CopyIpsRecords(records, bytes.data());
    return WriteOutputFile(path, bytes.data(), bytes.size());
}

#ifdef _WIN32
bool WriteRecordsToFile(const char* path, const std::vector<IpsRecord>& records) {
    return RewriteWithRecords(path, records);
}
#else
enum class MappedWrite { Written, Failed, NotMappable };

// Writes through a shared mapping of the file, grown first to the length the
// records need and cut afterwards to the length they leave it.
MappedWrite WriteRecordsIntoOpenFile(int fd, const std::vector<IpsRecord>& records) {
    struct stat info;
    if (fstat(fd, &info) != 0 || !S_ISREG(info.st_mode)) return MappedWrite::Failed;
    const auto current = static_cast<uint64_t>(info.st_size);
    const uint64_t length = IpsPatchedLength(records, current);
    if (length > current && ftruncate(fd, static_cast<off_t>(length)) != 0) return MappedWrite::Failed;
    if (length > 0) {
        void* mapping = mmap(nullptr, length, PROT_READ | PROT_WRITE, MAP_SHARED, fd, 0);
        if (mapping == MAP_FAILED) return MappedWrite::NotMappable;
        CopyIpsRecords(records, static_cast<unsigned char*>(mapping));
        if (munmap(mapping, length) != 0) return MappedWrite::Failed;
    }
    if (length < current && ftruncate(fd, static_cast<off_t>(length)) != 0) return MappedWrite::Failed;
    return MappedWrite::Written;
}

bool WriteRecordsToFile(const char* path, const std::vector<IpsRecord>& records) {
    int fd = open(path, O_RDWR | O_CLOEXEC);
    if (fd < 0) return false;
    MappedWrite written = WriteRecordsIntoOpenFile(fd, records);
    if (close(fd) != 0) return false;
    if (written == MappedWrite::NotMappable) return RewriteWithRecords(path, records);
    return written == MappedWrite::Written;
}
#endif

}  // namespace

extern "C" {

long Trelvane_CreateIPS(const char* ipsfile, const char* originalfile, const char* modifiedfile) {
    if (!ipsfile) ipsfile = "";
    if (!originalfile) originalfile = "";
    if (!modifiedfile) modifiedfile = "";
    // An input that is also the patch file is read whole, as creating the
    // patch truncates it.
    FileView original, modified;
    if (!original.Open(originalfile, SameFile(ipsfile, originalfile)))
        return SetError(TLERR_FILE_NOREAD, originalfile, 0, 0);
    if (!modified.Open(modifiedfile, SameFile(ipsfile, modifiedfile)))
        return SetError(TLERR_FILE_NOREAD, modifiedfile, 0, 0);
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
