#pragma once

#include <cstdint>

#include <korvanet/platform/assets/ipropertytable.h>
#include <korvanet/platform/assets/ivalue.h>
#include <korvanet/platform/core/idatawriter.h>

namespace korvanet::platform::assets {

/// The shape of a kind of assets: its properties with their defaults, flags, bounds and choices. A
/// schema that has a base holds all properties of the base too. Schemas belong to the library or to
/// the manager that they came from and are never released by a host.
class IAssetSchema : public IPropertyTable {
public:
    /// Null for a schema without a base.
    virtual IAssetSchema* GetBaseSchema() const = 0;

    virtual void GetId(IString& id) const = 0;

    /// Writes the schema as XML at the writer's position, in the form that `LoadSchemaFile` and
    /// `ISchemaBatchLoader` read. The writer stays open and stays the caller's.
    virtual bool WriteTo(core::IDataWriter* writer) const = 0;

    /// The `Add...` operations make one property more, with `value` as its default. They return its
    /// value, or null when:
    /// - `id` is empty or taken;
    /// - `flags` contradict each other or the kind, with the warning
    ///   "Property flags conflict in Node: <id>, ErrorCode: <sum of codes>": 1 unknown flags; 2
    ///   read-only together with iterator data; 4 a list of a kind that has none (lists are
    ///   strings, URIs, integers, floats, colours and choices); 8 a unit on other than a float; 16
    ///   a URI role on other than a URI; 32 both kinds of connections, or a reference with none;
    /// - the default does not satisfy the bounds or choices.
    /// A public property with an empty label takes its id as label. Bounds and choice lists are
    /// kept by the schema once the property is made. Where this is a schema of the manager, the
    /// instances that `CreateInstanceFromSchema` has made from it already, their clones and their
    /// definitions gain the property, and so do the schemas whose base it is, unless the property
    /// is read-only. What such a definition's own `CreateInstance` has made, what derives from
    /// those schemas, and what belongs to libraries, does not.
    virtual IStringValue* AddStringProperty(const wchar_t* id, std::uint32_t flags,
                                            const wchar_t* label, const wchar_t* value) = 0;
    virtual IDateTimeValue* AddDateTimeProperty(const wchar_t* id, std::uint32_t flags,
                                                const wchar_t* label, const wchar_t* value) = 0;
    virtual IBinaryValue* AddBinaryProperty(const wchar_t* id, std::uint32_t flags) = 0;
    virtual IUuidValue* AddUuidProperty(const wchar_t* id, std::uint32_t flags,
                                        const wchar_t* label, const wchar_t* value) = 0;
    virtual IUriValue* AddUriProperty(const wchar_t* id, std::uint32_t flags, const wchar_t* label,
                                      const wchar_t* value) = 0;
    virtual IBooleanValue* AddBooleanProperty(const wchar_t* id, std::uint32_t flags,
                                              const wchar_t* label, bool value) = 0;
    /// `bounds` may be null.
    virtual IIntegerValue* AddIntegerProperty(const wchar_t* id, std::uint32_t flags,
                                              const wchar_t* label, std::int32_t value,
                                              IBounds* bounds) = 0;
    /// `unit` is a unit word such as "mm", or empty or null for a plain number. `bounds` may be
    /// null.
    virtual IScalarValue* AddFloatProperty(const wchar_t* id, std::uint32_t flags,
                                           const wchar_t* label, double value, const wchar_t* unit,
                                           IBounds* bounds) = 0;
    /// `value` is the id of the entry that is the default. The list takes `id` as its name.
    virtual IChoiceListValue* AddChoiceProperty(const wchar_t* id, std::uint32_t flags,
                                                const wchar_t* label, const wchar_t* value,
                                                IChoiceList* choices) = 0;
    /// r, g and b in 0 to 255, a in 0 to 1.
    virtual IColorValue* AddColorProperty(const wchar_t* id, std::uint32_t flags,
                                          const wchar_t* label, double r, double g, double b,
                                          double a) = 0;
    virtual IScalarValue* AddVector3Property(const wchar_t* id, std::uint32_t flags,
                                             const wchar_t* label, double x, double y,
                                             double z) = 0;
    /// A place for connected assets; with `isTexture` an `ITextureValue`.
    virtual IReferenceValue* AddReferenceProperty(const wchar_t* id, std::uint32_t flags,
                                                  const wchar_t* label, bool isTexture) = 0;

    /// Aliases of this schema and of its bases.
    virtual std::uint64_t GetAliasCount() const = 0;

    /// The alias at `index`, own ones first, and the property that it means. False past the end.
    virtual bool GetAlias(std::uint64_t index, IString& alias, IString& target) const = 0;

    /// Gives the property `target` a second name, which `FindProperty` then takes. False when one
    /// of them is empty or null, when the alias is known already, or when this schema has an alias
    /// for `target`.
    virtual bool AddAlias(const wchar_t* alias, const wchar_t* target) = 0;

    /// The property that `alias` means, here or in a base. False when it is unknown.
    virtual bool GetAliasTarget(const wchar_t* alias, IString& target) const = 0;

    /// The values of the properties "assettype", "localtype" and "localname" of this schema, or
    /// else of its bases. False when none has it.
    virtual bool GetAssetType(IString& assetType) const = 0;
    virtual bool GetLocalType(IString& localType) const = 0;
    virtual bool GetLocalName(IString& localName) const = 0;

    /// The alias of the property `target`, here or in a base. False when it has none.
    virtual bool GetAliasFor(const wchar_t* target, IString& alias) const = 0;
};

}  // namespace korvanet::platform::assets
