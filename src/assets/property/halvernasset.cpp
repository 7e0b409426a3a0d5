#include "assets/property/halvernasset.h"

#include <new>
#include <utility>

#include "assets/property/propertytable.h"
#include "velmor/object.h"
#include "velmor/primitive_methods.h"

namespace korvanet::platform::assets {

namespace {

// Nothing is stored and nothing is assigned: a record is written by its library, and a table is
// copied by cloning.
class Methods final : public velmor::TypeMethods {
public:
    void construct(velmor::Object object, nuo::heap*, nuo::ext_heap*) const override {
        ::new (object.data()) HalvernAsset();
    }
    void destruct(velmor::Object object) const override {
        static_cast<HalvernAsset*>(object.data())->~HalvernAsset();
    }
    void assign(velmor::ConstObject, velmor::Object) const override {}
    void deserialize(nuo::archive::reader&, velmor::Object, nuo::heap*,
                     nuo::ext_heap*) const override {}
    void serialize(nuo::archive::writer&, velmor::ConstObject) const override {}
    void beginLayout(std::uint64_t& payload, std::uint64_t& offset, std::uint64_t& alignment,
                     bool& pod) const override {
        payload = sizeof(HalvernAsset);
        offset = 0;
        alignment = alignof(HalvernAsset);
        pod = false;
    }
    void nextLayout(const velmor::TypeItem&, std::uint64_t&, std::uint64_t&, std::uint64_t&,
                    bool&) const override {}
    const velmor::TypeInfoHandle& typeinfo() const override {
        return velmor::TypeInfo<HalvernAsset>::instance();
    }
    const velmor::ExtendMethods* extendMethods() const override {
        static constexpr velmor::ExtendMethods record{
            [](velmor::ConstObject left, velmor::ConstObject right) {
                return compareNative(*static_cast<const HalvernAsset*>(left.data()),
                                     *static_cast<const HalvernAsset*>(right.data()));
            },
            nullptr};
        return &record;
    }
};

}  // namespace

HalvernAsset::~HalvernAsset() {
    delete std::exchange(table, nullptr);
}

int compareNative(const HalvernAsset& left, const HalvernAsset& right) {
    if (const int order = velmor::compareNative(left.identifier, right.identifier)) return order;
    if (const int order = velmor::compareNative(left.baseSchema, right.baseSchema)) return order;
    if (left.table == nullptr || right.table == nullptr)
        return velmor::compareNative(left.table != nullptr, right.table != nullptr);
    for (std::size_t group = 0; group < PropertyTableImp::kGroupCount; ++group)
        if (const int order = compareNative(left.table->Group(group), right.table->Group(group)))
            return order;
    return 0;
}

const velmor::TypeMethods& HalvernAssetMethods() {
    static const auto* const only = new Methods;
    return *only;
}

}  // namespace korvanet::platform::assets
