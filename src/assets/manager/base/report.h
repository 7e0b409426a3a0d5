#pragma once

#include <concepts>
#include <cstdint>

#include "nuo/common/string_builder.h"
#include "nuo/common/string_ref.h"

namespace korvanet::platform::assets {

/// Does a host listen to reports? Without one they are not even put together.
bool HasReportSink() noexcept;

/// The words that go with a failed result. A report is made on the stack from its pieces (texts and
/// whole numbers, with nothing between them) and delivered once:
///
///     HalvernError("Index is out of scope.").Deliver();
///     return nullptr;
class HalvernReportBase {
public:
    HalvernReportBase(const HalvernReportBase&) = delete;
    HalvernReportBase& operator=(const HalvernReportBase&) = delete;

    /// Hands the text to the sink, if there is one. The base class delivers nothing.
    virtual void Deliver() noexcept;

protected:
    HalvernReportBase() noexcept : heap_(&nuo::get_heap()), text_(*heap_) {}
    ~HalvernReportBase() = default;

    template <class... Pieces>
    void Write(const Pieces&... pieces) {
        if (HasReportSink()) (Append(pieces), ...);
    }

    nuo::string_ref text() const noexcept { return text_; }

private:
    void Append(nuo::string_ref text) { text_.append(text); }
    template <std::integral Number>
    void Append(Number number) {
        if constexpr (std::signed_integral<Number>)
            text_.append_number(static_cast<std::int64_t>(number));
        else
            text_.append_number(static_cast<std::uint64_t>(number));
    }

    nuo::heap* heap_;
    nuo::string_builder text_;
};

/// Something of little weight was refused, or the operation went on.
class HalvernWarn final : public HalvernReportBase {
public:
    template <class... Pieces>
    [[nodiscard]] explicit HalvernWarn(const Pieces&... pieces) {
        Write(pieces...);
    }
    void Deliver() noexcept override;
};

/// The operation failed.
class HalvernError final : public HalvernReportBase {
public:
    template <class... Pieces>
    [[nodiscard]] explicit HalvernError(const Pieces&... pieces) {
        Write(pieces...);
    }
    void Deliver() noexcept override;
};

}  // namespace korvanet::platform::assets
