#include "asm/source_paths.h"

#include "asm/asm_session.h"
#include "core/file_bytes.h"
#include "core/path_names.h"

namespace {

bool IsAbsolutePath(const std::string& name) {
    if (!name.empty() && IsFolderSeparator(name[0])) return true;
    return HOST_PATH_STYLE == PathStyle::Windows && name.size() > 1 && IsDriveLetter(name[0]) && name[1] == ':';
}

}  // namespace

std::string ResolveSourcePath(const AsmSession& session, const std::string& name) {
    if (IsAbsolutePath(name)) return name;
    const std::string& file = session.place.file;
    const size_t folderLength = static_cast<size_t>(BaseName(file.c_str()) - file.c_str());
    return file.substr(0, folderLength) + name;
}

const std::vector<unsigned char>* LoadSourceFileBytes(AsmSession& session, const std::string& name) {
    const std::string path = ResolveSourcePath(session, name);
    const auto cached = session.files.find(path);
    if (cached != session.files.end()) return &cached->second;
    std::vector<unsigned char> bytes;
    if (!ReadFileBytes(path.c_str(), bytes)) {
        session.Error("cannot read " + path);
        return nullptr;
    }
    return &session.files.emplace(path, std::move(bytes)).first->second;
}
