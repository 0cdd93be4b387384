// The process-wide last-error state: the one way the engine reports.
#pragma once

#include <string>

struct LastErrorState {
    int code = 0;
    std::string file;
    int line = 0;
    int column = 0;
    std::string data[4];
};

// Records a report (texts are copied; a null text leaves the field empty) and
// returns 0, which engine functions hand on as their failure result.
int SetError(int code, const char* file, int line, int column, const char* data0 = "", const char* data1 = "",
             const char* data2 = "", const char* data3 = "");

const LastErrorState& LastError();

// Reports TLERR_NULL_ARGUMENT: function was handed a null pointer as
// parameter. Returns 0.
int RefuseNullArgument(const char* function, const char* parameter);
