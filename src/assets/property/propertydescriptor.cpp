#include "assets/property/propertydescriptor.h"

#include <cassert>

#include "velmor/array.h"
#include "velmor/object.h"

namespace korvanet::platform::assets {

namespace {

const velmor::TypeItem& Member(velmor::Type type, const char* name) {
    const velmor::TypeItem* item = type.member(name);
    assert(item != nullptr && item->valid());
    return *item;
}

DataForm FormOf(velmor::Type data) {
    if (data.isPod()) {
        return DataForm::kPod;
    }
    if (velmor::isNative<nuo::string>(data)) {
        return DataForm::kString;
    }
    return velmor::isNative<velmor::Array>(data) ? DataForm::kArray : DataForm::kOther;
}

}  // namespace

PropertyDescriptor::PropertyDescriptor(const ModuleContext& moduleContext, velmor::Type valueType,
                                       nuo::string propertyName, nuo::string defaultLabel,
                                       std::uint32_t flagWord)
    : name(std::move(propertyName)),
      label(std::move(defaultLabel)),
      type(valueType),
      flags(flagWord),
      context(&moduleContext),
      operationType(Member(type, "operation").type()),
      dataType(Member(type, "data").type()),
      dataForm(FormOf(dataType)),
      linkOffset(Member(type, "link").offset()),
      dataOffset(Member(type, "data").offset()) {}

PropertyDescriptor* PropertyDescriptor::Copy() const {
    auto* copy = new PropertyDescriptor(*context, type, name, label, flags);
    copy->bounds = bounds;
    copy->choices = choices;
    return copy;
}

}  // namespace korvanet::platform::assets
