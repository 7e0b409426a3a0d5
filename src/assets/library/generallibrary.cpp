#include "assets/library/generallibrary.h"

#include "assets/package/packageoptions.h"
#include "assets/schema/schemadefinition.h"
#include "assets/schema/schemamanager.h"
#include "velmor/vfs/vfs_functions.h"

namespace korvanet::platform::assets {
namespace {

constexpr nuo::string_ref kReadOnlyName{"read only"};

}  // namespace

GeneralLibrary::GeneralLibrary(ILibraryHost& host, JpkFs& package, velmor::Namespace parent,
                               Role role)
    : host_(host), package_(package), role_(role) {
    namespaces_.parent = parent;
}

GeneralLibrary::GeneralLibrary(ILibraryHost& host, JpkFs& package, velmor::Namespace parent,
                               Reading)
    : GeneralLibrary(host, package, parent, Role::kLibrary) {
    Open(false);
}

GeneralLibrary::GeneralLibrary(ILibraryHost& host, JpkFs& package, velmor::Namespace parent,
                               Writing)
    : GeneralLibrary(host, package, parent, Role::kLibrary) {
    Open(true);
}

GeneralLibrary::GeneralLibrary(ILibraryHost& host, JpkFs& package, velmor::Namespace parent,
                               const Creating& how)
    : GeneralLibrary(host, package, parent, Role::kLibrary) {
    Create(how.identifier, how.options);
}

GeneralLibrary::GeneralLibrary(ILibraryHost& host, JpkFs& package, velmor::Namespace parent,
                               const Serializing& how)
    : GeneralLibrary(host, package, parent, Role::kSerializer) {
    Create(MakeIdentifier(), how.options);
}

GeneralLibrary::GeneralLibrary(ILibraryHost& host, JpkFs& package, velmor::Namespace parent,
                               const Deserializing& how)
    : GeneralLibrary(host, package, parent, Role::kDeserializer) {
    embed_option_ = how.options;
    Open(false);
}

// The delegated constructor is complete before Open or Create runs, so that this runs also when
// they raise.
GeneralLibrary::~GeneralLibrary() {
    liveness_.reset();
    ReleaseContent();
    schemas_.reset();
    definition_store_.reset();
    instance_store_.reset();
    if (!scratch_folder_.empty()) velmor::fs::recursiveRemove(host_.TempFs(), scratch_folder_);
}

void GeneralLibrary::SetVersion(std::uint32_t version) {
    library_version_.version = version;
    version_table_dirty_ = true;
}

bool GeneralLibrary::IsReadOnlyOption() const {
    const nuo::any value = package_.getopt(
        kPackageOption, nuo::any(option_key{nuo::string(), nuo::string(kReadOnlyName)}));
    return !value.empty() && nuo::any_cast<option_value>(&value)->text == "1";
}

void GeneralLibrary::SetReadOnlyOption() {
    package_.setopt(kPackageOption, nuo::any(option_key{nuo::string(), nuo::string(kReadOnlyName)}),
                    nuo::any(option_value{"bool", "1"}));
}

// A new store has no header until it is flushed, and what was freed since the last save is known in
// memory alone.
void GeneralLibrary::CloseStores() {
    resources_->TakeUncommittedOut();
    if (definition_store_) definition_store_->Flush();
    if (instance_store_) instance_store_->Flush();
    definition_store_.reset();
    instance_store_.reset();
}

nuo::string GeneralLibrary::Path(nuo::string_ref below) const {
    return velmor::fs::joinPath(identifier_, below);
}

std::vector<KRVTSchemaDefinition*> GeneralLibrary::OwnSchemas() const {
    std::vector<KRVTSchemaDefinition*> schemas;
    for (std::uint64_t index = 0; index < schemas_->GetSchemaCount(); ++index)
        schemas.push_back(schemas_->GetSchema(index));
    return schemas;
}

LibraryFormat GeneralLibrary::Format() const {
    return {toc_version_.major, toc_version_.minor, definition_version_.major,
            definition_version_.minor};
}

}  // namespace korvanet::platform::assets
