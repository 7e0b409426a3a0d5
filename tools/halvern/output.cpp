#include "output.h"

#include <unistd.h>

#include <cerrno>
#include <cstring>

#include "failure.h"

namespace halvern {
namespace {

constexpr std::size_t kPiece = 64 * 1024;
// A terminal is slower than the calls that are counted.
constexpr std::uint64_t kShownEach = 64;

}  // namespace

std::string SystemWords(int error) {
    return std::strerror(error);
}

std::string Printable(std::string text) {
    // U+0080 to U+009F, two bytes each, steer terminals as well.
    constexpr char kLead = '\xC2';
    std::size_t length = 0;
    for (std::size_t at = 0; at < text.size(); ++at) {
        const auto c = static_cast<unsigned char>(text[at]);
        const auto next = static_cast<unsigned char>(at + 1 < text.size() ? text[at + 1] : '\0');
        const bool two = text[at] == kLead && next >= 0x80 && next <= 0x9F;
        text[length++] = two || c < 0x20 || c == 0x7F ? ' ' : text[at];
        at += two ? 1 : 0;
    }
    text.resize(length);
    return text;
}

void Output::Write(std::string_view text) {
    pending_ += text;
    if (pending_.size() >= kPiece) Flush();
}

void Output::Line(std::string_view text) {
    Write(text);
    Write("\n");
}

void Output::Flush() {
    std::string_view left = pending_;
    while (!left.empty()) {
        const ssize_t written = ::write(STDOUT_FILENO, left.data(), left.size());
        if (written >= 0) {
            left.remove_prefix(static_cast<std::size_t>(written));
            continue;
        }
        if (errno == EINTR) continue;
        if (errno == EPIPE) throw OutputClosed();
        throw Failure(kFile, "standard output cannot be written: " + SystemWords(errno));
    }
    pending_.clear();
}

Progress::Progress(std::string what, bool quiet)
    : what_(std::move(what)), shown_(!quiet && ::isatty(STDERR_FILENO) == 1) {}

Progress::~Progress() {
    if (shown_ && done_ >= kShownEach) {
        const std::string_view erase = "\r\033[K";
        if (::write(STDERR_FILENO, erase.data(), erase.size()) < 0) return;
    }
}

void Progress::Step() {
    if (++done_ % kShownEach != 0 || !shown_) return;
    const std::string line = "\r" + std::to_string(done_) + " " + what_;
    // A terminal that went away is no reason to stop.
    if (::write(STDERR_FILENO, line.data(), line.size()) < 0) shown_ = false;
}

}  // namespace halvern
