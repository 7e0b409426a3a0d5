// A units service that knows one unit of its own, a word of its own for the metre, and a name of
// 255 and one of 256 characters. Built a second time without its last function, as one that is
// incomplete.

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
    if (code == 8999) {
        *length = 7;
    } else if (code == 9255 || code == 9256) {
        *length = code - 9000;
    } else {
        return 1;
    }
    return 0;
}

#ifndef INCOMPLETE
EXPORT int HalvernUnitsGetGlobalName(int code, wchar_t* buffer, std::size_t size) {
    std::size_t length = 0;
    if (HalvernUnitsGetGlobalNameLength(code, &length) != 0 || size <= length) return 1;
    std::wmemset(buffer, L'x', length);
    if (code == 8999) std::wmemcpy(buffer, L"furlong", length);
    buffer[length] = L'\0';
    return 0;
}
#endif
