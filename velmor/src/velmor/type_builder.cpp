#include "velmor/type_builder.h"

#include <utility>

#include "velmor/namespace.h"
#include "velmor/type_methods.h"

namespace velmor {

TypeBuilder::TypeBuilder() : imp_(std::make_unique<TypeImp>()) {}

TypeBuilder::~TypeBuilder() = default;

TypeBuilder& TypeBuilder::begin(const TypeMethods* methods) {
    imp_ = std::make_unique<TypeImp>();
    imp_->methods = methods != nullptr ? methods : &TypeMethods::defaults();
    imp_->methods->beginLayout(imp_->payload, offset_, imp_->alignment, imp_->pod);
    phase_ = Phase::kInitialized;
    return *this;
}

TypeBuilder& TypeBuilder::setName(nuo::string name) {
    imp_->name = std::move(name);
    return *this;
}

TypeBuilder& TypeBuilder::setParent(Namespace parent) {
    imp_->parent = parent.imp();
    return *this;
}

TypeBuilder& TypeBuilder::setModel(Type model) {
    const TypeImp& from = *model.imp();
    const bool isInstance = !from.modelName.empty();
    imp_->items = from.items;
    imp_->args = from.args;
    imp_->modelName = isInstance ? from.modelName : from.name;
    imp_->model = isInstance ? from.model : model;
    imp_->payload = from.payload;
    imp_->alignment = from.alignment;
    imp_->baseCount = from.baseCount;
    imp_->unresolvedArgs = from.unresolvedArgs;
    imp_->pod = from.pod;
    imp_->methods = from.methods;
    phase_ = Phase::kModel;
    return *this;
}

TypeBuilder& TypeBuilder::setArg(nuo::string name, nuo::string typeName, Type type) {
    phase_ = Phase::kArgs;
    TypeArg* found = nullptr;
    for (TypeArg& arg : imp_->args) {
        if (arg.name_ == name) found = &arg;
    }
    if (found == nullptr) {
        found = &imp_->args.emplace_back();
        found->name_ = std::move(name);
    } else if (!found->type_.valid()) {
        --imp_->unresolvedArgs;
    }
    found->typeName_ = std::move(typeName);
    found->type_ = type;
    if (!type.valid()) ++imp_->unresolvedArgs;
    return *this;
}

TypeBuilder& TypeBuilder::addBase(nuo::string typeName, Type type) {
    imp_->items.resize(++imp_->baseCount);
    TypeItem& item = imp_->items.back();
    item = TypeItem();
    item.kind_ = TypeItem::kBase;
    item.typeName_ = std::move(typeName);
    item.type_ = type;
    placeLast();
    phase_ = Phase::kBases;
    return *this;
}

TypeBuilder& TypeBuilder::addMember(nuo::string name, nuo::string typeName, Type type) {
    TypeItem& item = imp_->items.emplace_back();
    item.name_ = std::move(name);
    item.typeName_ = std::move(typeName);
    item.type_ = type;
    placeLast();
    phase_ = Phase::kMembers;
    return *this;
}

void TypeBuilder::placeLast() {
    TypeItem& item = imp_->items.back();
    item.index_ = imp_->items.size() - 1;
    methods().nextLayout(item, imp_->payload, offset_, imp_->alignment, imp_->pod);
    const bool known = item.valid() && imp_->payload != kUnknown;
    item.offset_ = known ? imp_->payload - item.type_.payload() : kUnknown;
}

TypeBuilder& TypeBuilder::endBuild() {
    if (imp_->payload == kUnknown) layOutAgain();
    phase_ = Phase::kFinished;
    return *this;
}

void TypeBuilder::layOutAgain() {
    methods().beginLayout(imp_->payload, offset_, imp_->alignment, imp_->pod);
    for (TypeItem& item : imp_->items) {
        if (!item.type_.valid()) item.type_ = get().locateType(item.typeName_);
        if (!item.valid()) {
            imp_->payload = kUnknown;
            return;
        }
        // Kept on purpose: here the offset is where the item before ended, without the padding
        // that nextLayout adds, while addMember takes it behind the padding.
        item.offset_ = offset_;
        methods().nextLayout(item, imp_->payload, offset_, imp_->alignment, imp_->pod);
    }
}

Type TypeBuilder::adoptBy(Namespace parent) {
    setParent(parent);
    return adoptBy();
}

Type TypeBuilder::adoptBy() {
    methods();
    auto fresh = std::make_unique<TypeImp>();
    if (imp_->parent != nullptr) imp_->parent->types.emplace(imp_->name, imp_.get());
    TypeImp* const built = imp_.release();
    imp_ = std::move(fresh);
    phase_ = Phase::kInitialized;
    return Type(built);
}

const TypeMethods& TypeBuilder::methods() {
    if (imp_->methods == nullptr) imp_->methods = &TypeMethods::defaults();
    return *imp_->methods;
}

TypeAliasBuilder::TypeAliasBuilder() : imp_(std::make_unique<TypeAliasImp>()) {}

TypeAliasBuilder::~TypeAliasBuilder() = default;

TypeAliasBuilder& TypeAliasBuilder::begin() {
    imp_ = std::make_unique<TypeAliasImp>();
    return *this;
}

TypeAliasBuilder& TypeAliasBuilder::setName(nuo::string name) {
    imp_->name = std::move(name);
    return *this;
}

TypeAliasBuilder& TypeAliasBuilder::setTypeName(nuo::string path) {
    imp_->typeName = std::move(path);
    return *this;
}

TypeAliasBuilder& TypeAliasBuilder::setType(Type type) {
    imp_->type = type;
    return *this;
}

TypeAlias TypeAliasBuilder::adoptBy(Namespace parent) {
    auto fresh = std::make_unique<TypeAliasImp>();
    parent.imp()->aliases.emplace(imp_->name, imp_.get());
    imp_->parent = parent.imp();
    TypeAliasImp* const built = imp_.release();
    imp_ = std::move(fresh);
    return TypeAlias(built);
}

}  // namespace velmor
