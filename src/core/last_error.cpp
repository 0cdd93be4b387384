#include "core/last_error.h"

#include "trelvane.h"

namespace {
LastErrorState lastError;

void StoreText(std::string& field, const char* text) {
    field = text ? text : "";
}
}  // namespace

int SetError(int code, const char* file, int line, int column, const char* data0, const char* data1,
             const char* data2, const char* data3) {
    lastError.code = code;
    StoreText(lastError.file, file);
    lastError.line = line;
    lastError.column = column;
    const char* data[4] = {data0, data1, data2, data3};
    for (int i = 0; i < 4; ++i) StoreText(lastError.data[i], data[i]);
    return 0;
}

const LastErrorState& LastError() { return lastError; }

int RefuseNullArgument(const char* function, const char* parameter) {
    return SetError(TLERR_NULL_ARGUMENT, "", 0, 0, function, parameter);
}

extern "C" {

int Trelvane_GetLastErrorCode(void) { return lastError.code; }

void Trelvane_SetStringData(int index, const char* text) {
    if (index >= 0 && index < 4) StoreText(lastError.data[index], text);
}

void Trelvane_SetStringFile(const char* text) { StoreText(lastError.file, text); }
}
