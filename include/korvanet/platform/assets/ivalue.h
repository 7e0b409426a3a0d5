#pragma once

#include <cstdint>

#include <korvanet/platform/assets/ipropertytable.h>

// The value of a property, as one interface for each kind. A value is of one element or of several;
// elements count from 0, and single values have the index 0 alone. For every getter and setter:
//
// - A wrong index gives the report "Invalid dimension" and false (0 for the getters that return the
//   element itself, and for a colour of a list zeros). Strings of the caller stay as they were.
// - A setter tests, stores, and then tells the observers of the instance that the property belongs
//   to, if the property is public. A value that is refused changes nothing.

namespace korvanet::platform::assets {

class IValue {
public:
    /// The number of elements.
    virtual std::uint64_t GetDimension() const = 0;

    /// Sets the number of elements of a list; new ones have the default of their kind. False for
    /// values that are no lists, and above 2^31 bytes of elements: 2^29 integers or choices, 2^28
    /// floats, 2^27 texts, 2^26 colours.
    virtual bool SetDimension(std::uint64_t dimension) = 0;

    /// The kind of the property.
    virtual PropertyType GetType() const = 0;

    /// The code of the value's unit; 0 when it carries none.
    virtual std::uint32_t GetUnits() const = 0;

    /// Sets the code of the unit; the number stays as it is. False for values without a unit. The
    /// codes of a property with `PropertyFlags::kUnits` are those of lengths (millimetres 8206,
    /// centimetres 8205, decimetres 8204, metres 8193, kilometres 8201, inches 8214, feet 8215,
    /// yards 8221, miles 8225); others give the report "Unsupported unit type". Observers do not
    /// hear of it.
    virtual bool SetUnits(std::uint32_t units) = 0;

    /// Are both of one class and equal? False for null. Values that only hold connections are equal
    /// to all of their class. Choices must also have equal lists to choose from, which are named
    /// after their properties; without a list one is equal to none, not even to itself.
    virtual bool IsEqual(const IValue* other) const = 0;

    virtual ~IValue() = default;
};

/// A value of a kind that this version does not know.
class IUnSpecifiedValue : public IValue {};

class IBinaryValue : public IValue {
public:
    /// Bytes that the value holds.
    virtual std::uint64_t GetSize() const = 0;

    /// The bytes; valid until the value is set again.
    virtual const void* GetData() const = 0;

    /// Replaces the bytes by a copy of `size` bytes at `data`. False above 2^31 bytes. Observers
    /// do not hear of it.
    virtual bool SetData(const void* data, std::uint64_t size, std::uint64_t index = 0) = 0;
};

class IStringValue : public IValue {
public:
    virtual bool GetValue(IString& value, std::uint64_t index = 0) const = 0;
    virtual bool SetValue(const wchar_t* value, std::uint64_t index = 0) = 0;

    /// The text for `locale`. Only a property with `PropertyFlags::kLocal` holds keys of messages;
    /// for a key without a message, and for all other properties, it is the text itself.
    virtual bool GetLocalizedValue(IString& value, const wchar_t* locale,
                                   std::uint64_t index = 0) const = 0;
};

class IDateTimeValue : public IStringValue {};

class IUuidValue : public IStringValue {};

class IUriValue : public IStringValue {
public:
    /// The resolution that the URI's folders tell, 0 the lowest. False, and `resolution` 4, when
    /// they tell none.
    virtual bool GetResolution(std::uint32_t& resolution, std::uint64_t index = 0) const = 0;
};

/// The URIs of one image: a plain list, or a set of the same image in up to four resolutions.
class ITextureURIValue : public IUriValue {
public:
    /// Are the elements the resolutions of one image?
    virtual bool IsResolutionSet() const = 0;

    /// The first element, when `IsResolutionSet`; else false.
    virtual bool GetBaseUri(IString& uri) const = 0;

    /// Makes the value the resolutions that the texture library has of the image `uri`, or, when it
    /// has none, the plain list of that one URI.
    virtual bool SetBaseUri(const wchar_t* uri) = 0;
};

class IBooleanValue : public IValue {
public:
    virtual bool GetValue(std::uint64_t index = 0) const = 0;
    virtual bool SetValue(bool value, std::uint64_t index = 0) = 0;
};

class IIntegerValue : public IValue {
public:
    virtual std::int32_t GetValue(std::uint64_t index = 0) const = 0;

    /// A value out of bounds gives the report "Value out of range" and false.
    virtual bool SetValue(std::int32_t value, std::uint64_t index = 0) = 0;

    /// The limits, or null. They belong to the property, and are good until a schema that is loaded
    /// changes them.
    virtual IBounds* GetBounds() const = 0;
};

/// A selection of a list of choices. The value is that of the chosen entry; `SetValue` refuses,
/// without a report, a value that no entry has.
class IChoiceListValue : public IIntegerValue {
public:
    /// The entries, or null. They belong to the property, and are good until a schema that is
    /// loaded changes them.
    virtual IChoiceList* GetChoices() const = 0;
};

class IScalarValue : public IValue {
public:
    virtual double GetValue(std::uint64_t index = 0) const = 0;

    /// A value out of bounds gives the report "Value out of range" and false. Vectors and matrices
    /// take any number.
    virtual bool SetValue(double value, std::uint64_t index = 0) = 0;

    /// The limits, or null. They belong to the property, and are good until a schema that is loaded
    /// changes them.
    virtual IBounds* GetBounds() const = 0;
};

class IColorValue : public IValue {
public:
    /// Without alpha, `a` reads as 1.0 and is ignored in setting.
    virtual bool HasAlpha() const = 0;

    virtual bool GetValue(double& r, double& g, double& b, double& a,
                          std::uint64_t index = 0) const = 0;

    /// A component of a single colour outside 0.0 to 1.0 gives the report "Value out of range" and
    /// false; lists take any number. (The defaults of a schema lie in 0 to 255.)
    virtual bool SetValue(double r, double g, double b, double a, std::uint64_t index = 0) = 0;
};

/// A place for connected assets; the value itself holds nothing.
class IReferenceValue : public IValue {};

class ITextureValue : public IReferenceValue {};

}  // namespace korvanet::platform::assets
