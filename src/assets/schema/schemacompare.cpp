#include "assets/schema/schemacompare.h"

#include "assets/property/bounds.h"
#include "assets/property/choice.h"

namespace korvanet::platform::assets {
namespace {

bool SameChoices(const KRVTChoiceList* a, const KRVTChoiceList* b) {
    return a == b || (a != nullptr && a->IsEqual(b));
}

}  // namespace

bool IsSameDefault(const PropertyBase& a, const PropertyBase& b, PropertyType ignoreKind) {
    const PropertyType kind = a.GetType();
    if (kind != b.GetType()) return false;
    if (kind == ignoreKind) return true;
    const PropertyDescriptor& left = a.Descriptor();
    const PropertyDescriptor& right = b.Descriptor();
    if ((kind == PropertyType::kInteger || kind == PropertyType::kScalar) &&
        !SameBounds(left.bounds.get(), right.bounds.get())) {
        return false;
    }
    if (kind == PropertyType::kChoice && !SameChoices(left.choices.get(), right.choices.get())) {
        return false;
    }
    return a.IsEqual(&b);
}

}  // namespace korvanet::platform::assets
