#include "assets/manager/tablewalk.h"

#include "assets/property/halvernasset.h"
#include "assets/property/propertytable.h"
#include "velmor/runtime.h"

namespace korvanet::platform::assets {
namespace {

void Collect(velmor::Namespace from, velmor::Type asset, std::vector<PropertyTableImp*>& tables) {
    for (const velmor::NameValuePair& entry : from.objects()) {
        if (!(entry.value.type() == asset)) continue;
        PropertyTableImp* const table = static_cast<HalvernAsset*>(entry.value.data())->table;
        if (table != nullptr) tables.push_back(table);
    }
    for (const velmor::Namespace child : from.children())
        Collect(child, asset, tables);
}

}  // namespace

std::vector<PropertyTableImp*> TablesBelow(velmor::Namespace from, const ModuleContext& context) {
    std::vector<PropertyTableImp*> tables;
    if (from.valid()) Collect(from, context.types.Asset(), tables);
    return tables;
}

void EndTables(velmor::Namespace from, const ModuleContext& context) {
    const std::vector<PropertyTableImp*> tables = TablesBelow(from, context);
    for (PropertyTableImp* table : tables)
        table->Retain();
    for (PropertyTableImp* table : tables) {
        table->ClearConnections();
        table->SetSource(nullptr);
    }
    if (from.valid()) context.runtime->removeObjects(from);
}

}  // namespace korvanet::platform::assets
