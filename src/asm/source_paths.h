// Files a source names (incsrc, incbin, table): found from the folder of the
// file that names them, read once per run.
#pragma once

#include <string>
#include <vector>

struct AsmSession;

// name as written, relative to the folder of the file being assembled unless absolute.
std::string ResolveSourcePath(const AsmSession& session, const std::string& name);

// The bytes of the named file, read on first use; null with an error recorded when unreadable.
const std::vector<unsigned char>* LoadSourceFileBytes(AsmSession& session, const std::string& name);
