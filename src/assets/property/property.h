#pragma once

#include <cstddef>
#include <cstdint>
#include <typeinfo>

#include <korvanet/platform/assets/ipropertytable.h>
#include <korvanet/platform/assets/ivalue.h>

#include "assets/manager/base/guarded.h"
#include "assets/property/intrusive.h"
#include "assets/property/ipropertyowner.h"
#include "assets/property/propertydescriptor.h"
#include "velmor/array.h"
#include "velmor/object.h"

namespace korvanet::platform::assets {

class PropertyTableImp;
struct AssetConnection;

// One property: the native part of a reflected object with the members "operation" (this class and
// the value class around it), "link" (an array of AssetConnection) and "data" (the value).
//
// The members lie behind this object in the same block, at the places that the descriptor tells;
// that is why value classes have no data members of their own.
//
// "link" may be an unbound array, which stands for no connections: most properties never have any,
// and a record for each would cost them an allocation.
class PropertyBase : public IProperty {
public:
    PropertyBase() = default;
    PropertyBase(const PropertyBase&) = delete;
    PropertyBase& operator=(const PropertyBase&) = delete;

    void GetName(IString& name) const override;
    std::uint32_t GetFlags() const override { return descriptor_->flags; }
    bool IsMarked() const override { return marked_; }
    bool SetMarked(bool marked) override;
    std::uint64_t GetConnectedAssetCount() const override;
    bool ConnectAsset(IAssetInstance* asset) override;
    IAssetInstance* GetConnectedAsset(const wchar_t* assetType) const override;
    IAssetInstance* GetConnectedAsset(std::uint64_t index) const override;
    bool RemoveConnectedAsset(const wchar_t* assetType) override;
    bool RemoveConnectedAsset(IAssetInstance* asset) override;
    bool IsEqual(const IProperty* other) const override;
    bool GetLocalizedLabel(IString& label, const wchar_t* locale) const override;
    bool IsEqualTo(const IProperty& other) const override;

    PropertyDescriptor& Descriptor() const { return *descriptor_; }
    const intrusive_ptr<PropertyDescriptor>& SharedDescriptor() const { return descriptor_; }
    const nuo::string& Name() const { return descriptor_->name; }
    // Null only between the construction of the object and this call.
    void SetDescriptor(intrusive_ptr<PropertyDescriptor> descriptor) {
        descriptor_ = std::move(descriptor);
    }

    // Who hears of changes; null while nobody does. Not owned.
    IPropertyOwner* Owner() const { return owner_; }
    void SetOwner(IPropertyOwner* owner) { owner_ = owner; }

    bool TakesConnections() const { return descriptor_->Has(PropertyFlags::kConnectionMask); }
    // The table connected at `index`, which is below GetConnectedAssetCount().
    PropertyTableImp* ConnectedTable(std::uint64_t index) const;
    AssetConnection& ConnectionAt(std::uint64_t index) const;
    // Appends a connection and tells nobody.
    void AppendConnection(PropertyTableImp& table);
    void RemoveConnection(std::uint64_t index);
    // Drops all connections and tells nobody.
    void ClearConnections();

    // The whole object and its two members, as the runtime sees them.
    velmor::Object AsObject() { return {descriptor_->type, this}; }
    velmor::ConstObject AsObject() const { return {descriptor_->type, this}; }
    velmor::Array& Link() const {
        return *static_cast<velmor::Array*>(At(descriptor_->linkOffset));
    }
    velmor::Object DataObject() { return {descriptor_->dataType, At(descriptor_->dataOffset)}; }
    velmor::ConstObject DataObject() const {
        return {descriptor_->dataType, At(descriptor_->dataOffset)};
    }

protected:
    template <class T>
    T& Data() const {
        return *static_cast<T*>(At(descriptor_->dataOffset));
    }

    // Tells the observers of the owner that a public property has a new value.
    void NotifyValueChanged() {
        if (owner_ != nullptr && descriptor_->Has(PropertyFlags::kPublic)) {
            owner_->ValueChanged(*this);
        }
    }
    // "Invalid dimension" as an error, and false.
    static bool RefuseIndex();
    // "Value out of range" as an error, and false.
    static bool RefuseValue();
    static bool CheckIndex(std::uint64_t index, std::uint64_t dimension) {
        return index < dimension || RefuseIndex();
    }

private:
    void* At(std::uint64_t offset) const {
        return const_cast<std::byte*>(reinterpret_cast<const std::byte*>(this)) + offset;
    }
    std::uint64_t FindConnection(nuo::string_ref assetType) const;
    void NotifyConnectionChanged();

    intrusive_ptr<PropertyDescriptor> descriptor_;
    bool marked_ = true;
    IPropertyOwner* owner_ = nullptr;
};

// Whether two values of one type compare equal; a type that does not compare has equal values only.
bool SameData(velmor::ConstObject a, velmor::ConstObject b);

// The answers of a value that holds one element and no unit.
template <class I>
class ValueBody : public PropertyBase, public I {
public:
    using PropertyBase::IsEqual;

    std::uint64_t GetDimension() const override { return 1; }
    bool SetDimension(std::uint64_t) override { return false; }
    std::uint32_t GetUnits() const override { return 0; }
    bool SetUnits(std::uint32_t) override { return false; }

    bool IsEqual(const IValue* other) const override {
        const ValueBody* same = SameClass(other);
        return same != nullptr && SameData(DataObject(), same->DataObject());
    }

protected:
    // `other` as this class, or null when its dynamic class is another one.
    const ValueBody* SameClass(const IValue* other) const {
        return other != nullptr && typeid(*other) == typeid(*this)
                   ? static_cast<const ValueBody*>(static_cast<const I*>(other))
                   : nullptr;
    }
};

template <class I>
concept HasElements = requires {
    &I::GetValue;
};

// A value of the interface `I`. The form with elements differs only in that the name GetValue means
// two things there, the value of the property and the element of the value.
template <class I>
class ValueTemplate : public ValueBody<I> {
public:
    IValue* GetValue() override { return this; }
    const IValue* GetValue() const override { return this; }
};

template <HasElements I>
class ValueTemplate<I> : public ValueBody<I> {
public:
    using I::GetValue;

    IValue* GetValue() override { return this; }
    const IValue* GetValue() const override { return this; }
};

// A list whose data is an array with elements of the native class `T`.
template <class T, class I>
class ArrayValueTemplate : public ValueTemplate<I> {
public:
    std::uint64_t GetDimension() const override { return Elements().size(); }
    bool SetDimension(std::uint64_t dimension) override {
        velmor::Array& elements = Elements();
        if (!velmor::Array::fits(elements.type(), dimension)) {
            return false;
        }
        return Guarded([&] { elements.resize(dimension); });
    }

protected:
    velmor::Array& Elements() const { return this->template Data<velmor::Array>(); }
    T& Element(std::uint64_t index) const { return *static_cast<T*>(Elements()[index].data()); }
};

// What every value object must be: the shared part and the virtual table of its value interface.
inline constexpr std::size_t kValueObjectSize = sizeof(PropertyBase) + sizeof(void*);

}  // namespace korvanet::platform::assets
