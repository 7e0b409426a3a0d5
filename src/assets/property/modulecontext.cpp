#include "assets/property/modulecontext.h"

#include "assets/localization/localizationmanagerimp.h"

namespace korvanet::platform::assets {

nuo::string Localize(const ModuleContext* context, nuo::string_ref key, nuo::string_ref locale,
                     const nuo::string& fallback) {
    if (context == nullptr || context->localization == nullptr) {
        return fallback;
    }
    bool found = false;
    return context->localization->Lookup(key, locale, fallback, nuo::string_ref(), found);
}

}  // namespace korvanet::platform::assets
