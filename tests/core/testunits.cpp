// A units service that knows one unit of its own, and a word of its own for the metre. Built a
// second time without its last function, as one that is incomplete.

#include <cstddef>
#include <cwchar>

#define EXPORT extern "C" __attribute__((visibility("default")))

EXPORT int HalvernUnitsGetUnitType(const wchar_t* name, int* code) {
    if (std::wcscmp(name, L"pace") == 0) {
        *code = 8193;
    } else if (std::wcscmp(name, L"furlong") == 0) {
        *code = 8999;
    } else {
        return 1;
    }
    return 0;
}

EXPORT int HalvernUnitsGetGlobalNameLength(int code, std::size_t* length) {
    if (code != 8999) return 1;
    *length = 7;
    return 0;
}

#ifndef INCOMPLETE
EXPORT int HalvernUnitsGetGlobalName(int code, wchar_t* buffer, std::size_t size) {
    if (code != 8999 || size < 8) return 1;
    std::wmemcpy(buffer, L"furlong", 8);
    return 0;
}
#endif
