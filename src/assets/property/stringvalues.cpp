#include "assets/property/stringvalues.h"

#include "assets/manager/base/guarded.h"
#include "assets/manager/base/text.h"
#include "assets/property/modulecontext.h"
#include "assets/property/widekey.h"

namespace korvanet::platform::assets {

bool StringAccess::Store(nuo::string& place, const wchar_t* text) {
    if (text == nullptr) {
        return false;
    }
    return Guarded([&] { FromWide(text).swap(place); });
}

bool StringAccess::Load(const nuo::string& place, IString& text) {
    Assign(text, place);
    return true;
}

bool StringAccess::LoadLocalized(const PropertyDescriptor& descriptor, const nuo::string& place,
                                 IString& text, const wchar_t* locale) {
    if (locale == nullptr) {
        return false;
    }
    Assign(text, descriptor.Has(PropertyFlags::kLocal)
                     ? Localize(descriptor.context, place, WideKey(locale), place)
                     : place);
    return true;
}

}  // namespace korvanet::platform::assets
