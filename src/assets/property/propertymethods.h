#pragma once

#include <cassert>
#include <cstdint>
#include <new>

#include "assets/property/property.h"
#include "velmor/object.h"
#include "velmor/type_methods.h"
#include "velmor/typeinfo.h"

namespace korvanet::platform::assets {

// The methods of the native part of a value class `T`. Nothing of it is stored: only the members
// beside it carry state. It does not compare either; values compare through IValue::IsEqual.
template <class T>
class HalvernPropertyMethods final : public velmor::TypeMethods {
public:
    void construct(velmor::Object object, nuo::heap*, nuo::ext_heap*) const override {
        [[maybe_unused]] T* made = ::new (object.data()) T();
        // The members are found from the address of the base, so both must be one.
        assert(static_cast<void*>(static_cast<PropertyBase*>(made)) == object.data());
    }
    void destruct(velmor::Object object) const override { static_cast<T*>(object.data())->~T(); }
    void assign(velmor::ConstObject source, velmor::Object destination) const override {
        if (source.data() == destination.data()) {
            return;
        }
        const auto& from = *static_cast<const T*>(source.data());
        auto& to = *static_cast<T*>(destination.data());
        to.SetMarked(from.IsMarked());
        to.SetDescriptor(from.SharedDescriptor());
    }
    void deserialize(nuo::archive::reader&, velmor::Object, nuo::heap*,
                     nuo::ext_heap*) const override {}
    void serialize(nuo::archive::writer&, velmor::ConstObject) const override {}
    void beginLayout(std::uint64_t& payload, std::uint64_t& offset, std::uint64_t& alignment,
                     bool& pod) const override {
        payload = sizeof(T);
        offset = 0;
        alignment = alignof(T);
        pod = false;
    }
    void nextLayout(const velmor::TypeItem&, std::uint64_t&, std::uint64_t&, std::uint64_t&,
                    bool&) const override {}
    const velmor::TypeInfoHandle& typeinfo() const override {
        return velmor::TypeInfo<T>::instance();
    }
    const velmor::ExtendMethods* extendMethods() const override { return nullptr; }

    // The one object of this class; never freed.
    static const velmor::TypeMethods& Instance() {
        static const auto* const only = new HalvernPropertyMethods<T>;
        return *only;
    }
};

}  // namespace korvanet::platform::assets
