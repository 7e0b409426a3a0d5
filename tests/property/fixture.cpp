#include "property/fixture.h"

#include "assets/property/halvernasset.h"
#include "property/testinstance.h"
#include "velmor/start_runtime.h"

namespace korvanet::platform::assets {

namespace {

class BareTable final : public PropertyTableImp {
public:
    BareTable(TableKind kind, HalvernAsset& holder, const ModuleContext& context, int& living)
        : PropertyTableImp(kind, holder, context), living_(living) {
        ++living_;
    }
    ~BareTable() override { --living_; }

private:
    int& living_;
};

}  // namespace

PropertyTableImp* TestTables::MakeTable(TableKind kind, HalvernAsset& holder,
                                        const ModuleContext& context) {
    if (kind == TableKind::kInstance) {
        return new TestInstance(holder, context, living);
    }
    return new BareTable(kind, holder, context, living);
}

PropertyTest::PropertyTest() : runtime("test", &heap, &nuo::get_extern_heap()) {
    velmor::startRuntime(runtime);
    context.runtime = &runtime;
    context.heap = &heap;
    context.tables = &tables;
    context.textures = &textures;
    InitializeHalvernTypes(runtime.root(), context);
}

PropertyTest::~PropertyTest() = default;

PropertyBase& PropertyTest::Make(ValueClass value, const char* name, std::uint32_t flags) {
    properties_.push_back(MakeProperty(context, value, name, "", flags));
    return *properties_.back();
}

PropertyTableImp& PropertyTest::NewTable(TableKind kind) {
    PropertyTableImp& table = assets::MakeTable(context, kind);
    held_.emplace_back(&table);
    return table;
}

PropertyTableImp& PropertyTest::NewAsset(const char* assetType) {
    PropertyTableImp& table = NewTable();
    AddText(table, "assettype", core::UTF8String(assetType).AsWide(), PropertyFlags::kReadOnly);
    return table;
}

PropertyBase& PropertyTest::Add(PropertyTableImp& table, ValueClass value, const char* name,
                                std::uint32_t flags) {
    table.AddProperty(MakeProperty(context, value, name, "", flags));
    return *table.FindProperty(nuo::string_ref(name));
}

void PropertyTest::AddText(PropertyTableImp& table, const char* name, const wchar_t* text,
                           std::uint32_t flags) {
    As<IStringValue>(Add(table, ValueClass::kStringValue, name, flags)).SetValue(text);
}

std::string PropertyTest::TextOf(const IProperty& property, std::uint64_t index) {
    core::UTF8String text;
    dynamic_cast<const IStringValue&>(*property.GetValue()).GetValue(text, index);
    return text.AsUTF8();
}

}  // namespace korvanet::platform::assets
