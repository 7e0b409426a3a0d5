#include "assets/property/property.h"

#include "assets/manager/base/report.h"
#include "assets/manager/base/text.h"
#include "assets/property/modulecontext.h"
#include "assets/property/widekey.h"

namespace korvanet::platform::assets {

void PropertyBase::GetName(IString& name) const {
    Assign(name, descriptor_->name);
}

bool PropertyBase::SetMarked(bool marked) {
    marked_ = marked;
    return true;
}

bool PropertyBase::IsEqual(const IProperty* other) const {
    return other != nullptr && IsEqualTo(*other);
}

bool PropertyBase::IsEqualTo(const IProperty& other) const {
    return marked_ == other.IsMarked() && GetValue()->IsEqual(other.GetValue());
}

bool PropertyBase::GetLocalizedLabel(IString& label, const wchar_t* locale) const {
    if (locale == nullptr) {
        return false;
    }
    const nuo::string key(descriptor_->name, ":uilabel");
    Assign(label, Localize(descriptor_->context, key, WideKey(locale), descriptor_->label));
    return true;
}

bool PropertyBase::RefuseIndex() {
    HalvernError("Invalid dimension").Deliver();
    return false;
}

bool PropertyBase::RefuseValue() {
    HalvernError("Value out of range").Deliver();
    return false;
}

bool SameData(velmor::ConstObject a, velmor::ConstObject b) {
    return velmor::compare(a, b) == 0;
}

}  // namespace korvanet::platform::assets
