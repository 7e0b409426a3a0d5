#pragma once

#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>
#include <korvanet/platform/assets/iassetobserver.h>
#include <korvanet/platform/core/utf8string.h>

#include "assets/asset/assetdefinition.h"
#include "assets/asset/assetinstance.h"
#include "assets/asset/assettables.h"
#include "assets/localization/localizationmanagerimp.h"
#include "assets/manager/base/librarynamespaces.h"
#include "schema/support.h"

namespace korvanet::platform::assets {

// Notes what an instance tells.
class ObserverLog final : public IAssetObserver {
public:
    explicit ObserverLog(std::string name = "") : name_(std::move(name)) {}

    void OnValueChanged(IProperty* property) override { Note("value", property); }
    void OnConnectionChanged(IProperty* property) override { Note("connection", property); }
    void OnAssetChanged() override { lines.push_back(name_ + "asset"); }

    Lines Take() { return std::exchange(lines, {}); }

    Lines lines;

private:
    void Note(const char* what, IProperty* property) {
        core::UTF8String name;
        property->GetName(name);
        lines.push_back(name_ + what + " " + name.AsUTF8());
    }

    std::string name_;
};

// A world with a root schema, a material and a texture schema, and the namespaces of a library.
class AssetTest : public testing::Test {
protected:
    AssetTest();
    ~AssetTest() override;

    // A definition that the library stores, pinned as a library does.
    AssetDefinition& NewDefinition(KRVTSchemaDefinition& schema, const char* id);
    // An instance with one reference, given back with the test.
    AssetInstance& NewInstance(AssetDefinition& definition);
    // Keeps an instance that came with a reference, and gives it back with the test.
    AssetInstance& Keep(IAssetInstance* instance);

    ReportLines reports;
    AssetTables tables;
    SchemaWorld world;
    ILocalizationManagerImp localization;
    LibraryNamespaces library;
    KRVTSchemaDefinition* common;
    KRVTSchemaDefinition* material;
    KRVTSchemaDefinition* texture;
    core::UTF8String text;
    core::UTF8String noLocale;

private:
    std::vector<IAssetInstance*> held_;
};

// Sets the text at an index, which a list grows to, and tells nobody.
void PutText(PropertyTableImp& table, const char* name, const char* text, std::uint64_t index = 0);
void PutNumber(PropertyTableImp& table, const char* name, std::int32_t number);

}  // namespace korvanet::platform::assets
