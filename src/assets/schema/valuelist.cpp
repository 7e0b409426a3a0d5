#include "assets/schema/valuelist.h"

#include <algorithm>

#include "nuo/common/string_algo/number.h"

namespace korvanet::platform::assets {
namespace {

bool IsSeparator(char c) {
    return c == ',' || c == '|';
}

/** Calls `take` with each piece; `piece` is the scratch text that holds it. */
template <class Take>
void ForEachPiece(nuo::string_ref text, Take take) {
    nuo::string_builder piece;
    for (const char* at = text.begin(); at != text.end(); ++at) {
        if (*at == '\\') {
            if (++at == text.end()) break;
            piece.append(*at);
        } else if (IsSeparator(*at)) {
            take(nuo::string_ref(piece));
            piece.clear();
        } else {
            piece.append(*at);
        }
    }
    take(nuo::string_ref(piece));
}

std::size_t MostPieces(nuo::string_ref text) {
    return static_cast<std::size_t>(std::count_if(text.begin(), text.end(), IsSeparator)) + 1;
}

}  // namespace

std::vector<nuo::string> SplitValues(nuo::string_ref text) {
    std::vector<nuo::string> pieces;
    pieces.reserve(MostPieces(text));
    ForEachPiece(text, [&](nuo::string_ref piece) { pieces.emplace_back(piece); });
    return pieces;
}

std::vector<double> SplitNumbers(nuo::string_ref text) {
    std::vector<double> numbers;
    numbers.reserve(MostPieces(text));
    ForEachPiece(text, [&](nuo::string_ref piece) {
        numbers.push_back(nuo::parse_double(piece).value_or(0.0));
    });
    return numbers;
}

void AppendEscapedValue(nuo::string_builder& out, nuo::string_ref piece) {
    for (const char c : piece) {
        if (c == '\\' || IsSeparator(c)) out.append('\\');
        out.append(c);
    }
}

}  // namespace korvanet::platform::assets
