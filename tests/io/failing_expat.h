#pragma once

namespace halvern_tests {

// While one of these lives, expat cannot make a parser. The linker turns the library's calls to
// the one that fails (`--wrap`).
class NoParser {
public:
    NoParser();
    ~NoParser();
    NoParser(const NoParser&) = delete;
    NoParser& operator=(const NoParser&) = delete;
};

// While one of these lives, each text of a document is followed by an empty chunk, which expat's
// interface allows and expat of today does not do.
class EmptyChunks {
public:
    EmptyChunks();
    ~EmptyChunks();
    EmptyChunks(const EmptyChunks&) = delete;
    EmptyChunks& operator=(const EmptyChunks&) = delete;
};

}  // namespace halvern_tests
