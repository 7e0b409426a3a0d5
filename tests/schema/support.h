#pragma once

#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>
#include <korvanet/platform/assets/reportsink.h>
#include <korvanet/platform/core/utf8string.h>

#include "assets/property/itablefactory.h"
#include "assets/property/modulecontext.h"
#include "assets/property/property.h"
#include "assets/schema/ischemaset.h"
#include "assets/schema/schemadefinition.h"
#include "assets/schema/schemamanager.h"
#include "nuo/common/string.h"
#include "velmor/runtime.h"

namespace korvanet::platform::assets {

// Keeps the words of all reports while it lives, each after "warning: " or "error: ".
class ReportLines final : public IReportSink {
public:
    ReportLines() : former_(SetReportSink(this)) {}
    ~ReportLines() override { SetReportSink(former_); }

    void Trace(const core::WideString&, std::uint32_t, std::uint32_t) override {}
    void Information(const core::WideString&, std::uint32_t, std::uint32_t) override {}
    void Warning(const core::WideString& text, std::uint32_t, std::uint32_t) override {
        lines_.push_back(std::string("warning: ") + text.AsUTF8());
    }
    void Error(const core::WideString& text, std::uint32_t, std::uint32_t) override {
        lines_.push_back(std::string("error: ") + text.AsUTF8());
    }

    // What was reported since the last call.
    std::vector<std::string> Take() { return std::exchange(lines_, {}); }

private:
    std::vector<std::string> lines_;
    IReportSink* former_;
};

using Lines = std::vector<std::string>;

// Makes schemas and nothing else.
class SchemaTables final : public ITableFactory {
public:
    PropertyTableImp* MakeTable(TableKind kind, HalvernAsset& holder,
                                const ModuleContext& context) override;
};

// A runtime with a global set of schemas in ".slib.global.schema", as the manager makes it.
class SchemaWorld final : public ISchemaSet {
public:
    explicit SchemaWorld(ITableFactory& tables);
    ~SchemaWorld();

    KRVTSchemaDefinition* FindGlobalSchema(nuo::string_ref id) override;
    void PropertyAdded(KRVTSchemaDefinition& schema, const PropertyBase& property) override;

    velmor::Namespace MakeNamespace(const char* name);

    velmor::Runtime runtime;
    ModuleContext context;
    velmor::Namespace slib;
    std::unique_ptr<SchemaManager> global;
    // "<schema> <property>" for each property that tables were told of.
    Lines added;
};

// Loads XML through a stream of the host's kind.
KRVTSchemaDefinition* LoadXml(SchemaManager& manager, const std::string& xml);

class SchemaTest : public testing::Test {
protected:
    SchemaTest() : world(tables) {}

    // A schema outside of all sets, filled from XML; lives as long as the test.
    KRVTSchemaDefinition& Read(const std::string& xml);
    // The same from the elements alone.
    KRVTSchemaDefinition& ReadElements(const std::string& elements) {
        return Read("<AssetSchema>" + elements + "</AssetSchema>");
    }
    // An empty one.
    KRVTSchemaDefinition& NewSchema(const char* id);
    static KRVTSchemaDefinition* Load(SchemaManager& manager, const std::string& xml) {
        return LoadXml(manager, xml);
    }
    KRVTSchemaDefinition* LoadGlobal(const std::string& xml) { return Load(*world.global, xml); }

    ReportLines reports;
    SchemaTables tables;
    SchemaWorld world;

private:
    std::vector<intrusive_ptr<KRVTSchemaDefinition>> held_;
};

// A root schema with all that it must have.
std::string CommonXml(const std::string& more = "");
// A schema on another, with a version of its own when that is not empty.
std::string DerivedXml(const std::string& id, const std::string& base, const std::string& elements);

std::string Str(const nuo::string& text);
PropertyBase& Find(const PropertyTableImp& table, const char* name);
bool Has(const PropertyTableImp& table, const char* name);
// All texts of a property.
Lines TextsOf(const PropertyBase& property);
std::string TextOf(const PropertyBase& property);
std::int32_t IntegerOf(const PropertyBase& property, std::uint64_t index = 0);
double NumberOf(const PropertyBase& property, std::uint64_t index = 0);
std::vector<double> ColorOf(const PropertyBase& property, std::uint64_t index = 0);
// Names of all properties in the order of enumeration.
Lines NamesOf(const KRVTSchemaDefinition& schema);

// The value of a property as the interface or class `I`.
template <class I>
I& As(PropertyBase& property) {
    return dynamic_cast<I&>(*property.GetValue());
}
template <class I>
bool Is(const PropertyBase& property) {
    return dynamic_cast<const I*>(&property) != nullptr;
}

}  // namespace korvanet::platform::assets
