#include "assets/schema/schemamerge.h"

#include <utility>

#include "assets/manager/base/report.h"
#include "assets/manager/base/resourceprefix.h"
#include "assets/property/fixedproperties.h"
#include "assets/property/propertyaccess.h"
#include "assets/property/propertyfactory.h"
#include "assets/schema/ischemaset.h"
#include "assets/schema/propertydata.h"
#include "assets/schema/schemacompare.h"
#include "assets/schema/schemadefinition.h"
#include "assets/schema/schemagrammar.h"
#include "assets/schema/schemainheritance.h"

namespace korvanet::platform::assets {
namespace {

using namespace PropertyFlags;

/** Flags that tell how and where a property of a record is stored. */
constexpr std::uint32_t kLayoutFlags =
    kReadOnly | kAllowMultipleValues | kDefinitionIteratorData | kConnectionMask | kTextureURI;
/** Libraries of this version wrote metadata flags that they did not mean. */
constexpr LibraryFormat kFormatWithStrayMetadata{3, 1, 3, 0};
constexpr std::int32_t kPackagedMajor = 3;

bool IsStored(const PropertyBase& property) {
    return PropertyTableImp::GroupOf(property.GetFlags()) != PropertyTableImp::kReadOnlyGroup;
}

class SchemaMerger {
public:
    SchemaMerger(KRVTSchemaDefinition& source, KRVTSchemaDefinition& target)
        : source_(source),
          target_(target),
          source_version_(source.Version()),
          target_version_(target.Version()) {
        if (source.Library() != nullptr) format_ = source.Library()->Format();
    }

    MergeResult Run(VersionPolicy policy);

private:
    bool MergeProperty(PropertyBase& property);
    bool MergeExisting(PropertyBase& property, PropertyBase& twin);
    bool MatchesBaseSchema(const PropertyBase& property, const PropertyBase& twin) const;
    bool MergeUri(PropertyBase& property, PropertyBase& twin) const;
    bool MergeByVersion(const PropertyBase& property, PropertyBase& twin);
    bool HoldsInherited(const PropertyBase& twin) const;
    void Add(const PropertyBase& property);
    void Overwrite(const PropertyBase& property, PropertyBase& twin);
    void Replace(const PropertyBase& property, PropertyBase& twin);
    void TakeVersion();

    KRVTSchemaDefinition& source_;
    KRVTSchemaDefinition& target_;
    LibraryFormat format_;
    std::int32_t source_version_;
    std::int32_t target_version_;
    MergeResult result_;
};

MergeResult SchemaMerger::Run(VersionPolicy policy) {
    for (PropertyBase* property : source_.Properties()) {
        if (!MergeProperty(*property)) return result_;
    }
    result_.merged = true;
    if (source_version_ > target_version_ &&
        (policy == VersionPolicy::kAlways || result_.changed)) {
        TakeVersion();
    }
    for (const PropertyBase* property : target_.Properties()) {
        if (source_.FindProperty(property->Name().ref()) == nullptr) {
            source_.SetInconsistent(true);
            break;
        }
    }
    for (const auto& own : source_.OwnAliases())
        target_.AddAlias(own.alias, own.target);
    return result_;
}

bool SchemaMerger::MergeProperty(PropertyBase& property) {
    if (property.Name() == fixed_property::kSchemaVersion) return true;
    if (format_ == kFormatWithStrayMetadata) property.Descriptor().flags &= ~kMetadata;
    PropertyBase* twin = target_.FindProperty(property.Name().ref());
    if (twin != nullptr) return MergeExisting(property, *twin);
    Add(property);
    return true;
}

bool SchemaMerger::MergeExisting(PropertyBase& property, PropertyBase& twin) {
    if (HoldsInherited(twin)) {
        Overwrite(property, twin);
        return true;
    }
    if (property.Name() == fixed_property::kBaseSchema) return MatchesBaseSchema(property, twin);
    if (property.GetType() == PropertyType::kUri) return MergeUri(property, twin);
    return MergeByVersion(property, twin);
}

/** Whether the target's property still has the default of the base, which nobody overrode. */
bool SchemaMerger::HoldsInherited(const PropertyBase& twin) const {
    const KRVTSchemaDefinition* base = source_.BaseDefinition();
    const PropertyBase* inherited =
        base != nullptr ? base->FindProperty(twin.Name().ref()) : nullptr;
    return inherited != nullptr && IsSameDefault(twin, *inherited);
}

bool SchemaMerger::MatchesBaseSchema(const PropertyBase& property, const PropertyBase& twin) const {
    constexpr std::uint32_t kCompared = ~kDefinitionIteratorData;
    return property.GetType() == twin.GetType() && property.IsMarked() == twin.IsMarked() &&
           (property.GetFlags() & kCompared) == (twin.GetFlags() & kCompared) &&
           property.IsEqual(&twin);
}

bool SchemaMerger::MergeUri(PropertyBase& property, PropertyBase& twin) const {
    if (twin.GetType() != PropertyType::kUri) return false;
    const std::uint32_t flags = property.GetFlags();
    const std::uint32_t others = twin.GetFlags();
    // Packaged libraries wrote one texture as a plain URI or as a set of resolutions.
    const bool tolerant =
        format_.contentsMajor == kPackagedMajor && ((flags | others) & kTextureURI) != 0;
    const std::uint32_t compared = tolerant ? ~(kTextureURI | kAllowMultipleValues) : ~0u;
    if ((flags & compared) != (others & compared) || property.IsMarked() != twin.IsMarked() ||
        TextCount(property) != TextCount(twin)) {
        return false;
    }
    for (std::uint64_t i = 0; i < TextCount(property); ++i) {
        const nuo::string& other = *TextAt(twin, i);
        if (IsResourceUri(other) && !IsResourceUri(*TextAt(property, i))) {
            SetTextAt(property, i, other);
        }
    }
    return true;
}

bool SchemaMerger::MergeByVersion(const PropertyBase& property, PropertyBase& twin) {
    if (source_version_ == target_version_) {
        return IsSameDefault(twin, property, PropertyType::kUri);
    }
    if (property.GetType() != twin.GetType() || property.GetFlags() != twin.GetFlags()) {
        return false;
    }
    if (property.GetType() == PropertyType::kScalar &&
        property.GetValue()->GetUnits() != twin.GetValue()->GetUnits()) {
        return false;
    }
    if (source_version_ < target_version_) return true;
    if (property.IsMarked() != twin.IsMarked()) {
        twin.SetMarked(property.IsMarked());
        result_.changed = true;
    }
    if (!IsSameDefault(property, twin, PropertyType::kUri)) Overwrite(property, twin);
    return true;
}

void SchemaMerger::Add(const PropertyBase& property) {
    AddCopy(target_, property);
    result_.changed = true;
    result_.layoutChanged |= IsStored(property);
}

void SchemaMerger::Overwrite(const PropertyBase& property, PropertyBase& twin) {
    PropertyDescriptor& from = property.Descriptor();
    PropertyDescriptor& to = twin.Descriptor();
    const bool sameClass = from.type == to.type;
    const bool sameLayout = sameClass && (from.flags & kLayoutFlags) == (to.flags & kLayoutFlags);
    result_.changed |=
        from.label != to.label || from.flags != to.flags || !IsSameDefault(property, twin);
    result_.layoutChanged |= !sameLayout && (IsStored(property) || IsStored(twin));
    if (!sameClass ||
        PropertyTableImp::GroupOf(from.flags) != PropertyTableImp::GroupOf(to.flags)) {
        Replace(property, twin);
        return;
    }
    to.label = from.label;
    to.flags = from.flags;
    to.bounds = from.bounds;
    to.choices = from.choices;
    CopyValue(property, twin);
    twin.SetMarked(property.IsMarked());
}

// Tables that were made from the target keep the old descriptor with their own old property.
void SchemaMerger::Replace(const PropertyBase& property, PropertyBase& twin) {
    target_.Group(PropertyTableImp::GroupOf(twin.GetFlags())).Remove(property.Name());
    AddCopy(target_, property);
}

void SchemaMerger::TakeVersion() {
    const PropertyBase* own = source_.FindProperty(fixed_property::kSchemaVersion);
    PropertyBase* twin = target_.FindProperty(fixed_property::kSchemaVersion);
    if (twin != nullptr) {
        if (auto* number = ElementOf<std::int32_t>(*twin)) *number = source_version_;
        return;
    }
    PropertyDescriptor& from = own->Descriptor();
    const intrusive_ptr<PropertyDescriptor> descriptor(from.Copy());
    descriptor->flags = kReadOnly;
    descriptor->label = nuo::string();
    target_.AddProperty(CopyProperty(*own, *descriptor));
}

}  // namespace

MergeResult MergeInto(KRVTSchemaDefinition& source, KRVTSchemaDefinition* target,
                      VersionPolicy policy) {
    if (target == nullptr) return MergeResult();
    if (!(source.Id() == target->Id())) {
        HalvernWarn("Cannot merge two asset schemas which have different IDs.").Deliver();
        return MergeResult();
    }
    if (&source == target) return MergeResult{true, false, false};
    return SchemaMerger(source, *target).Run(policy);
}

bool MergesClean(const KRVTSchemaDefinition& source, const KRVTSchemaDefinition& target) {
    const auto trialSource = CopySchema(source);
    const auto trialTarget = CopySchema(target);
    return MergeInto(*trialSource, trialTarget.get()).merged && !trialSource->IsInconsistent();
}

}  // namespace korvanet::platform::assets
