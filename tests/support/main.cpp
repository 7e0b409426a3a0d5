// Runs the tests of one program, under the locale that HALVERN_TEST_LOCALE names when it is set.

#include <gmock/gmock.h>

#include <clocale>
#include <cstdlib>
#include <cstring>
#include <iostream>
#include <locale>

namespace {

// Sets the locale for C and for C++ streams alike. The run that asks for one wants to see a decimal
// comma; one without it would test nothing.
bool SetLocale(const char* name) {
    try {
        std::locale::global(std::locale(name));
    } catch (const std::runtime_error&) {
        std::cerr << "no locale " << name << "\n";
        return false;
    }
    if (std::strcmp(std::localeconv()->decimal_point, ",") != 0) {
        std::cerr << "locale " << name << " has no decimal comma\n";
        return false;
    }
    return true;
}

}  // namespace

int main(int argc, char** argv) {
    testing::InitGoogleMock(&argc, argv);
    const char* locale = std::getenv("HALVERN_TEST_LOCALE");
    if (locale != nullptr && !SetLocale(locale)) return 1;
    return RUN_ALL_TESTS();
}
