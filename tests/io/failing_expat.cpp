#include "io/failing_expat.h"

#include <expat.h>

namespace {

bool refuses_parsers = false;
bool adds_empty_chunks = false;
XML_CharacterDataHandler receiver = nullptr;

void TextAndNothing(void* data, const XML_Char* text, int length) {
    receiver(data, text, length);
    receiver(data, text + length, 0);
}

}  // namespace

extern "C" {

XML_Parser __real_XML_ParserCreate(const XML_Char* encoding);
void __real_XML_SetCharacterDataHandler(XML_Parser parser, XML_CharacterDataHandler handler);

XML_Parser __wrap_XML_ParserCreate(const XML_Char* encoding) {
    return refuses_parsers ? nullptr : __real_XML_ParserCreate(encoding);
}

void __wrap_XML_SetCharacterDataHandler(XML_Parser parser, XML_CharacterDataHandler handler) {
    receiver = handler;
    __real_XML_SetCharacterDataHandler(parser, adds_empty_chunks ? &TextAndNothing : handler);
}

}  // extern "C"

namespace halvern_tests {

NoParser::NoParser() {
    refuses_parsers = true;
}

NoParser::~NoParser() {
    refuses_parsers = false;
}

EmptyChunks::EmptyChunks() {
    adds_empty_chunks = true;
}

EmptyChunks::~EmptyChunks() {
    adds_empty_chunks = false;
}

}  // namespace halvern_tests
