#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <new>
#include <string>
#include <vector>

#include "nuo/common/buffer.h"
#include "nuo/common/buffer_archive.h"
#include "nuo/common/exception.h"
#include "nuo/common/heap.h"
#include "nuo/common/string.h"
#include "velmor/namespace.h"
#include "velmor/primitive_methods.h"
#include "velmor/runtime.h"
#include "velmor/scoped_object_creator.h"
#include "velmor/start_runtime.h"
#include "velmor/type_builder.h"

namespace velmor::testing {

inline std::string text(const nuo::string& value) {
    return std::string(value.data(), value.size());
}

/// The text behind the source position of the failure `Marker` that `call` raises.
template <class Marker, class Call>
std::string textOf(Call&& call) {
    try {
        call();
    } catch (const nuo::context_exception<Marker>& failure) {
        const std::string what = failure.what();
        const auto end = what.find(')');
        return end == std::string::npos ? "no position: " + what : what.substr(end + 1);
    } catch (const std::exception& other) {
        return std::string("another failure: ") + other.what();
    }
    return "nothing was raised";
}

template <class Marker, class Call>
bool raises(Call&& call) {
    try {
        call();
    } catch (const nuo::context_exception<Marker>&) {
        return true;
    }
    return false;
}

/// Counts what it gave and what came back.
class CountingHeap : public nuo::plain_heap {
public:
    void* malloc(std::uint64_t size, std::uint64_t alignment, void* hint) override {
        ++taken;
        bytes += size;
        return plain_heap::malloc(size, alignment, hint);
    }
    void free(void* block, std::uint64_t size, std::uint64_t alignment) override {
        ++given;
        bytes -= size;
        plain_heap::free(block, size, alignment);
    }

    std::uint64_t taken = 0;
    std::uint64_t given = 0;
    std::uint64_t bytes = 0;
};

/// A native class that tells what happens to its objects.
struct Probe {
    Probe() : id(++made) {
        if (made == failAt) throw std::bad_alloc();
        log.push_back("make " + std::to_string(id));
    }
    Probe(const Probe&) = delete;
    Probe& operator=(const Probe& other) {
        log.push_back("assign " + std::to_string(other.id) + " to " + std::to_string(id));
        value = other.value;
        return *this;
    }
    ~Probe() { log.push_back("end " + std::to_string(id)); }

    static void reset() {
        made = 0;
        failAt = 0;
        log.clear();
    }
    static std::vector<std::string> takeLog() {
        auto taken = std::move(log);
        log.clear();
        return taken;
    }

    int id;
    int value = 0;

    static inline int made = 0;
    static inline int failAt = 0;
    static inline std::vector<std::string> log;
};

/// A runtime with the vocabulary of the start, over a heap that counts.
class RuntimeTest : public ::testing::Test {
protected:
    RuntimeTest() : runtime("test", &heap, &nuo::get_extern_heap()) {
        Probe::reset();
        startRuntime(runtime);
        root = runtime.root();
    }

    Type type(const char* path) { return root.locateType(path); }
    Namespace makeNamespace(const char* path) { return root.createChild(path, '.'); }
    Type probeType() {
        const Type known = root.findType("Probe");
        if (known.valid()) return known;
        TypeBuilder builder;
        return builder.begin(&PrimitiveMethods<Probe>::instance())
            .setName("Probe")
            .endBuild()
            .adoptBy(root);
    }
    /// A value of `type` under `name` in `space`.
    Object addObject(Namespace space, const char* name, Type type) {
        ScopedObjectCreator creator(&heap, nullptr);
        creator.create(type);
        return creator.adoptBy(space, name);
    }

    CountingHeap heap;
    Runtime runtime;
    Namespace root;
};

using Bytes = std::vector<int>;

inline Bytes bytesOf(const nuo::buffer<nuo::byte>& buffer) {
    return Bytes(buffer.begin(), buffer.end());
}

inline nuo::buffer<nuo::byte> bufferOf(const Bytes& bytes) {
    nuo::buffer<nuo::byte> buffer;
    for (const int value : bytes)
        buffer.append(static_cast<nuo::byte>(value));
    return buffer;
}

/// The stored form of a value.
inline Bytes formOf(ConstObject object) {
    nuo::archive::mem_write_archive archive;
    object.type().methods().serialize(archive, object);
    return bytesOf(archive.get_buffer());
}

/// Fills a value from bytes; gives how many were read.
inline std::uint64_t readForm(Object object, const Bytes& bytes) {
    const nuo::buffer<nuo::byte> buffer = bufferOf(bytes);
    nuo::archive::buffer_in archive(buffer);
    object.type().methods().deserialize(archive, object, &nuo::get_heap(), nullptr);
    return archive.offset();
}

}  // namespace velmor::testing
