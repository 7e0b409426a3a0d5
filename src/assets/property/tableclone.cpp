#include <map>

#include "assets/property/connection.h"
#include "assets/property/propertytable.h"

namespace korvanet::platform::assets {

// One run of cloning a table with everything that is connected to it. A table that is met twice, be
// it in a circle or beside itself, is cloned once.
class TableCloner {
public:
    enum class Form { kInstance, kBeside };

    TableCloner(Form form, velmor::Namespace registry) : form_(form), registry_(registry) {}

    TableCloner(const TableCloner&) = delete;
    TableCloner& operator=(const TableCloner&) = delete;

    // After a run that came to no result: clones in a circle keep each other alive until they are
    // cut loose.
    ~TableCloner() {
        for (const auto& [original, made] : clones_) {
            made->ClearOwnConnections();
        }
    }

    // Null when connections reach too deep. The result carries a reference for the caller.
    PropertyTableImp* Run(const PropertyTableImp& source) {
        PropertyTableImp* clone = nullptr;
        if (!CloneOne(source, 0, clone)) {
            return nullptr;
        }
        clone->Retain();
        clones_.clear();
        return clone;
    }

private:
    bool CloneOne(const PropertyTableImp& source, int depth, PropertyTableImp*& clone) {
        if (depth > PropertyTableImp::kMaxConnectionDepth) {
            return false;
        }
        if (form_ == Form::kBeside) {
            source.ResolveSource();
        }
        const intrusive_ptr<PropertyTableImp> made(
            &MakeTable(source.Context(), TableKind::kInstance));
        made->TakeGroups(source);
        made->source_ = form_ == Form::kInstance ? const_cast<PropertyTableImp*>(&source)
                                                 : source.source_.get();
        made->base_ = source.base_;
        made->state_ = form_ == Form::kBeside && depth > 0 ? 1 : 0;
        made->Enter(registry_, MakeIdentifier());
        clones_.emplace(&source, made);
        clone = made.get();
        for (const PropertyGroup::Entry& entry : made->Group(PropertyTableImp::kReadWriteGroup)) {
            if (!ReplaceConnections(entry.Property(), depth)) {
                return false;
            }
        }
        return true;
    }

    bool ReplaceConnections(PropertyBase& property, int depth) {
        const std::uint64_t count = property.GetConnectedAssetCount();
        for (std::uint64_t i = 0; i < count; ++i) {
            AssetConnection& connection = property.ConnectionAt(i);
            if (connection.data && !Replace(connection, depth)) {
                return false;
            }
        }
        return true;
    }

    bool Replace(AssetConnection& connection, int depth) {
        const auto known = clones_.find(connection.data.get());
        PropertyTableImp* clone = nullptr;
        if (known != clones_.end()) {
            clone = known->second.get();
        } else if (!CloneOne(*connection.data, depth + 1, clone)) {
            return false;
        }
        connection.link = clone->GetQualifiedName();
        connection.data = clone;
        return true;
    }

    Form form_;
    velmor::Namespace registry_;
    std::map<const PropertyTableImp*, intrusive_ptr<PropertyTableImp>> clones_;
};

PropertyTableImp* PropertyTableImp::Clone(velmor::Namespace registry) const {
    return TableCloner(TableCloner::Form::kInstance, registry).Run(*this);
}

PropertyTableImp* PropertyTableImp::CloneBeside(velmor::Namespace registry) const {
    return TableCloner(TableCloner::Form::kBeside, registry).Run(*this);
}

}  // namespace korvanet::platform::assets
