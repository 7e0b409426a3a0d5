#include "assets/schema/schemabatchloader.h"

#include "assets/manager/base/guarded.h"
#include "assets/manager/base/librarynamespaces.h"
#include "assets/property/propertytable.h"
#include "velmor/runtime.h"

namespace korvanet::platform::assets {
namespace {

velmor::Namespace UserNamespace(velmor::Namespace root) {
    const velmor::Namespace user = root.findChild(kUserNamespace);
    return user.valid() ? user : CreateNamespace(root, kUserNamespace);
}

}  // namespace

SchemaBatchLoader::SchemaBatchLoader(const ModuleContext& context, SchemaManager& global,
                                     ISchemaSet* set)
    : context_(context),
      global_(global),
      parent_(UserNamespace(context.runtime->root())),
      namespace_(CreateNamespace(parent_, MakeIdentifier())),
      store_(context, namespace_, SchemaScope::kBatch, set) {}

SchemaBatchLoader::~SchemaBatchLoader() {
    RemoveStore();
}

IAssetSchema* SchemaBatchLoader::LoadSchema(core::IDataReader* stream) {
    if (spent_) return nullptr;
    return Guarded(nullptr, [&]() -> IAssetSchema* { return store_.LoadSchema(stream); });
}

bool SchemaBatchLoader::Commit() {
    if (spent_) return true;
    return Guarded(false, [this] {
        if (store_.HasPending()) return false;
        SchemaManager::Added met;
        for (std::uint64_t i = 0; i < store_.GetSchemaCount(); ++i) {
            if (!global_.AddSchema(store_.GetSchema(i), met)) return false;
        }
        RemoveStore();
        return true;
    });
}

void SchemaBatchLoader::Release() {
    delete this;
}

void SchemaBatchLoader::RemoveStore() {
    if (spent_) return;
    spent_ = true;
    store_.Clear();
    context_.runtime->removeChild(parent_, nuo::string(namespace_.name()));
}

}  // namespace korvanet::platform::assets
