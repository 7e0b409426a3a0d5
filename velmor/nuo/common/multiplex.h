#pragma once

#include <cstdint>
#include <memory>
#include <utility>

#include "nuo/common/iarchive.h"

namespace nuo::archive {

/// A cursor of its own over a shared archive: several of them alternate over one file without
/// disturbing each other. The position of the underlying archive has no meaning in between.
class multiplex_base {
public:
    multiplex_base(random& underlying, reader* in, writer* out) noexcept
        : underlying_(&underlying), in_(in), out_(out) {}

protected:
    /// Runs `operation` with the underlying archive at this cursor, then moves the cursor along.
    /// When it raises, the underlying position is restored and the cursor stays.
    template <class Operation>
    decltype(auto) at_position(Operation&& operation);

    random* underlying_;
    reader* in_;
    writer* out_;
    std::uint64_t position_ = 0;
};

/// Adds `offset`, `size` and `seek`.
template <class Base>
class multiplex_random : public Base, public multiplex_base {
public:
    using multiplex_base::multiplex_base;

    std::uint64_t offset() override { return position_; }
    std::uint64_t size() override { return underlying_->size(); }
    /// What the underlying archive made of `position`.
    std::uint64_t seek(std::uint64_t position) override {
        return position_ = underlying_->seek(position);
    }
};

template <class Base>
class multiplex_reader : public Base {
public:
    using Base::Base;

    byte* read(byte_range range) override {
        return this->at_position([&] { return this->in_->read(range); });
    }
    bool readable() override {
        return this->at_position([&] { return this->in_->readable(); });
    }
    view_ptr view_rd(offset_range range) override {
        return this->at_position([&] { return this->in_->view_rd(range); });
    }
    bool viewable() override { return this->in_->viewable(); }
    sequence* place() override { return this; }
};

template <class Base>
class multiplex_writer : public Base {
public:
    using Base::Base;

    const byte* write(const_byte_range range) override {
        return this->at_position([&] { return this->out_->write(range); });
    }
    std::uint64_t truncate(std::uint64_t size) override {
        return this->at_position([&] { return this->out_->truncate(size); });
    }
    bool writable() override {
        return this->at_position([&] { return this->out_->writable(); });
    }
    void sync() override {
        this->at_position([&] { this->out_->sync(); });
    }
    view_ptr view_wr(offset_range range) override {
        return this->at_position([&] { return this->out_->view_wr(range); });
    }
    bool viewable() override { return this->out_->viewable(); }
};

namespace detail {
/// The capabilities of an archive that a cursor needs; `create_failed` when one is missing.
random& need_random(iarchive& archive);
reader* need_reader(iarchive& archive);
writer* need_writer(iarchive& archive);

/// A base that is made before the cursor which needs the archive, and released after it.
class shared_archive {
public:
    explicit shared_archive(std::shared_ptr<iarchive> archive);
    iarchive& get() const noexcept { return *archive_; }

private:
    std::shared_ptr<iarchive> archive_;
};
}  // namespace detail

/// The three forms. They do not own the archive. Making one raises `create_failed` when the archive
/// lacks a capability of the form.
class multiplex_read_archive : public multiplex_reader<multiplex_random<archiveT<reader, random>>> {
public:
    explicit multiplex_read_archive(iarchive& archive)
        : multiplex_reader(detail::need_random(archive), detail::need_reader(archive), nullptr) {}
};

class multiplex_write_archive
    : public multiplex_writer<multiplex_random<archiveT<writer, random>>> {
public:
    explicit multiplex_write_archive(iarchive& archive)
        : multiplex_writer(detail::need_random(archive), nullptr, detail::need_writer(archive)) {}
};

class multiplex_read_write_archive
    : public multiplex_writer<
          multiplex_reader<multiplex_random<archiveT<reader, writer, random>>>> {
public:
    explicit multiplex_read_write_archive(iarchive& archive)
        : multiplex_writer(detail::need_random(archive), detail::need_reader(archive),
                           detail::need_writer(archive)) {}
    bool viewable() override { return in_->viewable() && out_->viewable(); }
};

/// One of the forms that holds the archive and releases it with itself. Several of them can share
/// one archive; an `archive_ptr` converts to the shared owner.
template <class Form>
class multiplex_owner : private detail::shared_archive, public Form {
public:
    explicit multiplex_owner(std::shared_ptr<iarchive> archive)
        : shared_archive(std::move(archive)), Form(shared_archive::get()) {}
};

/// An owned cursor that can end itself, as file systems return them from `open`.
template <class Form>
archive_ptr make_multiplex(std::shared_ptr<iarchive> archive) {
    return make_archive<multiplex_owner<Form>>(std::move(archive));
}

template <class Operation>
decltype(auto) multiplex_base::at_position(Operation&& operation) {
    const std::uint64_t before = underlying_->offset();
    underlying_->seek(position_);
    try {
        if constexpr (std::is_void_v<decltype(operation())>) {
            operation();
            position_ = underlying_->offset();
        } else {
            auto result = operation();
            position_ = underlying_->offset();
            return result;
        }
    } catch (...) {
        underlying_->seek(before);
        throw;
    }
}

}  // namespace nuo::archive
