#pragma once

#include <korvanet/platform/assets/ipropertytable.h>

namespace korvanet::platform::assets {

// Who wants to hear that a property changed: the asset instance that has observers.
//
// A property keeps a plain pointer to its owner, null while nobody observes it. Both calls come
// after the change, on the thread that made it.
class IPropertyOwner {
public:
    virtual void ValueChanged(IProperty& property) = 0;
    virtual void ConnectionChanged(IProperty& property) = 0;

protected:
    ~IPropertyOwner() = default;
};

}  // namespace korvanet::platform::assets
