#pragma once

#include <cstdint>
#include <memory>
#include <new>
#include <string>
#include <vector>

#include <gtest/gtest.h>
#include <korvanet/platform/assets/iassetinstance.h>
#include <korvanet/platform/assets/reportsink.h>
#include <korvanet/platform/core/utf8string.h>

#include "assets/property/ipropertyowner.h"
#include "assets/property/itablefactory.h"
#include "assets/property/itextureroots.h"
#include "assets/property/modulecontext.h"
#include "assets/property/propertyfactory.h"
#include "assets/property/propertytableface.h"
#include "velmor/runtime.h"

namespace korvanet::platform::assets {

// Keeps the words of all reports while it lives.
class ReportLog final : public IReportSink {
public:
    ReportLog() : former_(SetReportSink(this)) {}
    ~ReportLog() override { SetReportSink(former_); }

    void Trace(const core::WideString& text, std::uint32_t, std::uint32_t) override {
        lines.push_back(std::string("trace: ") + text.AsUTF8());
    }
    void Information(const core::WideString& text, std::uint32_t, std::uint32_t) override {
        lines.push_back(std::string("information: ") + text.AsUTF8());
    }
    void Warning(const core::WideString& text, std::uint32_t, std::uint32_t) override {
        lines.push_back(std::string("warning: ") + text.AsUTF8());
    }
    void Error(const core::WideString& text, std::uint32_t, std::uint32_t) override {
        lines.push_back(std::string("error: ") + text.AsUTF8());
    }

    std::vector<std::string> lines;

private:
    IReportSink* former_;
};

// Notes who changed.
class ChangeLog final : public IPropertyOwner {
public:
    void ValueChanged(IProperty& property) override { Note("value ", property); }
    void ConnectionChanged(IProperty& property) override { Note("connection ", property); }

    std::vector<std::string> lines;

private:
    void Note(const char* what, const IProperty& property) {
        core::UTF8String name;
        property.GetName(name);
        lines.push_back(what + std::string(name.AsUTF8()));
    }
};

// A heap that counts what is out, and that can be full.
class CountingHeap final : public nuo::plain_heap {
public:
    void* malloc(std::uint64_t size, std::uint64_t alignment, void* hint) override {
        if (full || allocations >= fullAfter) {
            throw std::bad_alloc();
        }
        ++blocks;
        ++allocations;
        return nuo::plain_heap::malloc(size, alignment, hint);
    }
    void free(void* block, std::uint64_t size, std::uint64_t alignment) override {
        --blocks;
        nuo::plain_heap::free(block, size, alignment);
    }

    static constexpr int kNever = std::numeric_limits<int>::max();

    int blocks = 0;
    int allocations = 0;
    bool full = false;
    int fullAfter = kNever;
};

// Makes the tables of the tests: instances are `TestInstance`, the others bare tables.
class TestTables final : public ITableFactory {
public:
    PropertyTableImp* MakeTable(TableKind kind, HalvernAsset& holder,
                                const ModuleContext& context) override;
    int living = 0;
};

// The files of a texture library.
class TestTextures final : public ITextureRoots {
public:
    nuo::string TextureRoot() override { return root; }
    std::vector<nuo::string> ResolutionVariants(const nuo::string&) override {
        ++questions;
        return variants;
    }

    nuo::string root = "/textures";
    std::vector<nuo::string> variants;
    int questions = 0;
};

class PropertyTest : public testing::Test {
protected:
    PropertyTest();
    ~PropertyTest() override;

    // A property with a descriptor of its own. It dies with the test.
    PropertyBase& Make(ValueClass value, const char* name = "p",
                       std::uint32_t flags = PropertyFlags::kPublic);
    // The value of `property` as the interface or class `I`.
    template <class I>
    static I& As(IProperty& property) {
        return dynamic_cast<I&>(*property.GetValue());
    }
    template <class I>
    I& MakeValue(ValueClass value, std::uint32_t flags = PropertyFlags::kPublic) {
        return As<I>(Make(value, "p", flags));
    }

    // A table of the kind with no properties and one reference, given up with the test.
    PropertyTableImp& NewTable(TableKind kind = TableKind::kInstance);
    // The same, with "assettype" in its read-only group.
    PropertyTableImp& NewAsset(const char* assetType);
    PropertyBase& Add(PropertyTableImp& table, ValueClass value, const char* name,
                      std::uint32_t flags = PropertyFlags::kPublic);
    static IAssetInstance* InstanceOf(PropertyTableImp& table) {
        return dynamic_cast<IAssetInstance*>(&table);
    }
    void AddText(PropertyTableImp& table, const char* name, const wchar_t* text,
                 std::uint32_t flags);
    static std::string TextOf(const IProperty& property, std::uint64_t index = 0);

    ReportLog reports;
    CountingHeap heap;
    velmor::Runtime runtime;
    TestTables tables;
    TestTextures textures;
    ModuleContext context;

private:
    std::vector<OwnedProperty> properties_;
    std::vector<intrusive_ptr<PropertyTableImp>> held_;
};

// The bytes of a text of the tests.
inline std::string Str(const nuo::string& text) {
    return {text.begin(), text.end()};
}

}  // namespace korvanet::platform::assets
