#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <vector>

#include <korvanet/platform/assets/iassetschema.h>

#include "assets/property/propertytableface.h"
#include "nuo/common/string.h"

namespace korvanet::platform::assets {

class ISchemaLibrary;
class ISchemaSet;

/**
 * The shape of one kind of assets: a table whose properties carry the defaults, flags, limits and
 * choices, with a base and second names for properties. Its id is the name of the table.
 *
 * Once the base is known the schema holds all properties of the base too (InheritFrom); only
 * aliases are looked up along the bases.
 */
class KRVTSchemaDefinition final : public PropertyTable<IAssetSchema> {
public:
    struct Alias {
        nuo::string alias;
        nuo::string target;
    };

    KRVTSchemaDefinition(HalvernAsset& holder, const ModuleContext& context);
    ~KRVTSchemaDefinition() override;

    // IAssetSchema

    IAssetSchema* GetBaseSchema() const override;
    void GetId(IString& id) const override;
    bool WriteTo(core::IDataWriter* writer) const override;
    IStringValue* AddStringProperty(const wchar_t* id, std::uint32_t flags, const wchar_t* label,
                                    const wchar_t* value) override;
    IDateTimeValue* AddDateTimeProperty(const wchar_t* id, std::uint32_t flags,
                                        const wchar_t* label, const wchar_t* value) override;
    IBinaryValue* AddBinaryProperty(const wchar_t* id, std::uint32_t flags) override;
    IUuidValue* AddUuidProperty(const wchar_t* id, std::uint32_t flags, const wchar_t* label,
                                const wchar_t* value) override;
    IUriValue* AddUriProperty(const wchar_t* id, std::uint32_t flags, const wchar_t* label,
                              const wchar_t* value) override;
    IBooleanValue* AddBooleanProperty(const wchar_t* id, std::uint32_t flags, const wchar_t* label,
                                      bool value) override;
    IIntegerValue* AddIntegerProperty(const wchar_t* id, std::uint32_t flags, const wchar_t* label,
                                      std::int32_t value, IBounds* bounds) override;
    IScalarValue* AddFloatProperty(const wchar_t* id, std::uint32_t flags, const wchar_t* label,
                                   double value, const wchar_t* unit, IBounds* bounds) override;
    IChoiceListValue* AddChoiceProperty(const wchar_t* id, std::uint32_t flags,
                                        const wchar_t* label, const wchar_t* value,
                                        IChoiceList* choices) override;
    IColorValue* AddColorProperty(const wchar_t* id, std::uint32_t flags, const wchar_t* label,
                                  double r, double g, double b, double a) override;
    IScalarValue* AddVector3Property(const wchar_t* id, std::uint32_t flags, const wchar_t* label,
                                     double x, double y, double z) override;
    IReferenceValue* AddReferenceProperty(const wchar_t* id, std::uint32_t flags,
                                          const wchar_t* label, bool isTexture) override;
    std::uint64_t GetAliasCount() const override;
    bool GetAlias(std::uint64_t index, IString& alias, IString& target) const override;
    bool AddAlias(const wchar_t* alias, const wchar_t* target) override;
    bool GetAliasTarget(const wchar_t* alias, IString& target) const override;
    bool GetAssetType(IString& assetType) const override;
    bool GetLocalType(IString& localType) const override;
    bool GetLocalName(IString& localName) const override;
    bool GetAliasFor(const wchar_t* target, IString& alias) const override;

    // For the library's own use.

    const nuo::string& Id() const { return Name(); }
    KRVTSchemaDefinition* BaseDefinition() const;
    PropertyBase* FindByNameOrAlias(nuo::string_ref name) const override;
    /** The property of that name that stands in no other than the read-only group, or the base's.
     */
    const PropertyBase* FindReadOnly(nuo::string_ref name) const;
    /** All properties in one ascending order of names. */
    std::vector<PropertyBase*> Properties() const;

    /** Id of the base as the property "BaseSchema" tells it, whether or not the base is known. */
    nuo::string BaseId() const;
    /** The asset type, or that of the nearest base that has one; empty when none has. */
    nuo::string AssetType() const;
    /** Value of "SchemaVersion"; 1 when there is none. */
    std::int32_t Version() const;

    const std::vector<Alias>& OwnAliases() const { return aliases_; }
    bool AddAlias(const nuo::string& alias, const nuo::string& target);
    /** What an alias means, here or in a base; null when it is unknown. */
    const nuo::string* AliasTarget(nuo::string_ref alias) const;
    const nuo::string* AliasFor(nuo::string_ref target) const;
    /** Own aliases first, then those of the bases; null past the end. */
    const Alias* AliasAt(std::uint64_t index) const;

    /** Set while properties are added by calls; cleared when the schema enters its namespace. */
    bool IsRegistered() const { return registered_; }
    void SetRegistered(bool registered) { registered_ = registered; }
    /** Set by a merge that met a property in the target which this schema lacks. */
    bool IsInconsistent() const { return inconsistent_; }
    void SetInconsistent(bool inconsistent) { inconsistent_ = inconsistent; }
    /** The library that holds the schema; null for schemas of the global set and of batches. */
    const ISchemaLibrary* Library() const { return library_; }
    void SetLibrary(const ISchemaLibrary* library) { library_ = library; }
    /** Who hears of properties that are added by calls; may be null. */
    ISchemaSet* Set() const { return set_; }
    void SetSet(ISchemaSet* set) { set_ = set; }

private:
    using AliasMap = std::map<nuo::string, std::size_t, nuo::string_less>;

    const Alias* FindAlias(AliasMap KRVTSchemaDefinition::*map, nuo::string_ref key) const;
    bool GetReadOnlyText(nuo::string_ref name, IString& text) const;

    bool registered_ = false;
    bool inconsistent_ = false;
    std::vector<Alias> aliases_;
    AliasMap alias_by_name_;
    AliasMap alias_by_target_;
    const ISchemaLibrary* library_ = nullptr;
    ISchemaSet* set_ = nullptr;
};

/** The library's own object behind an interface, or null for one of a host's own classes. */
KRVTSchemaDefinition* AsSchemaDefinition(IAssetSchema* schema);

}  // namespace korvanet::platform::assets
