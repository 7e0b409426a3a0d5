#include "valuetext.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <charconv>
#include <cmath>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <type_traits>

#include <korvanet/platform/core/utf8string.h>

#include "failure.h"
#include "reportlog.h"

namespace halvern {

using namespace korvanet::platform::assets;
using core::UTF8String;

namespace {

// Of a pipe too, as shells make them of what a program prints.
std::string ReadWhole(const std::string& path) {
    if (path.empty()) throw Failure(kFile, "the name of a file is empty");
    std::error_code error;
    if (std::filesystem::is_directory(path, error))
        throw Failure(kFile, path + " is a folder and no file");
    errno = 0;
    try {
        std::ifstream file(path, std::ios::binary);
        std::string bytes((std::istreambuf_iterator<char>(file)), {});
        if (file.is_open() && !file.bad()) return bytes;
    } catch (const std::ios_base::failure&) {  // of the reading, told below
    }
    throw Failure(kFile, "the file " + path + " cannot be read: " + SystemWords(errno));
}

struct Unit {
    std::uint32_t code;
    std::array<std::string_view, 5> words;
};

constexpr std::array kUnits{
    Unit{8206, {"mm", "millimeter", "millimetre", "millimeters", "millimetres"}},
    Unit{8205, {"cm", "centimeter", "centimetre", "centimeters", "centimetres"}},
    Unit{8204, {"dm", "decimeter", "decimetre", "decimeters", "decimetres"}},
    Unit{8193, {"m", "meter", "metre", "meters", "metres"}},
    Unit{8201, {"km", "kilometer", "kilometre", "kilometers", "kilometres"}},
    Unit{8214, {"in", "inch", "inches"}},
    Unit{8215, {"ft", "foot", "feet"}},
    Unit{8221, {"yd", "yard", "yards"}},
    Unit{8225, {"mi", "mile", "miles"}}};

std::string_view Trimmed(std::string_view text) {
    while (!text.empty() && text.front() == ' ')
        text.remove_prefix(1);
    while (!text.empty() && text.back() == ' ')
        text.remove_suffix(1);
    return text;
}

// Whole texts only, in the classic form whatever the locale is.
template <class Number>
bool ParseNumber(std::string_view text, Number& number) {
    text = Trimmed(text);
    if (text.starts_with('+')) text.remove_prefix(1);
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (error != std::errc() || end != text.data() + text.size()) return false;
    // "nan" and "inf" are read as numbers, but no length or bound is meant by them.
    return !std::is_floating_point_v<Number> || std::isfinite(number);
}

std::string ChoiceIds(IChoiceListValue& value) {
    std::string ids;
    const IChoiceList* const choices = value.GetChoices();
    for (std::uint64_t at = 0; choices != nullptr && at < choices->GetCount(); ++at) {
        UTF8String id;
        choices->GetChoice(at)->GetId(id);
        ids += (at == 0 ? "" : ", ") + std::string(id.AsUTF8());
    }
    return ids;
}

std::string WordsForNumbers(IProperty& property) {
    const bool is_list = (property.GetFlags() & PropertyFlags::kAllowMultipleValues) != 0;
    if (!is_list && property.GetValue()->GetDimension() == 3) return "x,y,z";
    if ((property.GetFlags() & PropertyFlags::kUnits) == 0) return "a number";
    return "a number, or a number, a blank and a unit such as mm";
}

// What the property takes, where that can be told in a few words.
std::string WordsForValues(IProperty& property) {
    const std::string words = "it is not one of its values";
    if (auto* choice = dynamic_cast<IChoiceListValue*>(property.GetValue()))
        return words + ": " + ChoiceIds(*choice);
    switch (property.GetType()) {
        case PropertyType::kBoolean:
            return words + ": true, false";
        case PropertyType::kInteger:
            return words + ": a whole number";
        case PropertyType::kScalar:
            return words + ": " + WordsForNumbers(property);
        case PropertyType::kColor:
            return words + ": r,g,b or r,g,b,a";
        case PropertyType::kBinary:
            return words + ": @FILE";
        default:
            return words;
    }
}

// Sets one value, element by element. Each operation is false for a text that is no value, and when
// the library refuses it.
class Setter {
public:
    Setter(IProperty& property, const std::string& text) : property_(property), text_(text) {}

    bool Set() {
        IValue* const value = property_.GetValue();
        const bool is_list = (property_.GetFlags() & PropertyFlags::kAllowMultipleValues) != 0 ||
                             dynamic_cast<ITextureURIValue*>(value) != nullptr;
        if (is_list) return SetList(*value);
        if (auto* binary = dynamic_cast<IBinaryValue*>(value)) return SetBinary(*binary);
        if (property_.GetType() == PropertyType::kScalar) return SetScalars(*value);
        return SetElement(*value, 0, text_);
    }

private:
    bool SetList(IValue& value) {
        const bool colors = property_.GetType() == PropertyType::kColor;
        const std::vector<std::string> elements = SplitList(text_, colors ? '|' : ',');
        if (!value.SetDimension(elements.size())) return false;
        for (std::size_t at = 0; at < elements.size(); ++at)
            if (!SetElement(value, at, elements[at])) return false;
        return true;
    }

    static bool SetElement(IValue& value, std::uint64_t index, const std::string& text) {
        if (auto* string = dynamic_cast<IStringValue*>(&value))
            return string->SetValue(UTF8String(text.c_str()).AsWide(), index);
        if (auto* boolean = dynamic_cast<IBooleanValue*>(&value))
            return (text == "true" || text == "false") && boolean->SetValue(text == "true", index);
        if (auto* choice = dynamic_cast<IChoiceListValue*>(&value))
            return SetChoice(*choice, index, text);
        if (auto* integer = dynamic_cast<IIntegerValue*>(&value)) {
            std::int32_t number = 0;
            return ParseNumber(text, number) && integer->SetValue(number, index);
        }
        if (auto* scalar = dynamic_cast<IScalarValue*>(&value)) {
            double number = 0;
            return ParseNumber(text, number) && scalar->SetValue(number, index);
        }
        if (auto* color = dynamic_cast<IColorValue*>(&value)) return SetColor(*color, index, text);
        return false;
    }

    static bool SetChoice(IChoiceListValue& value, std::uint64_t index, const std::string& text) {
        const IChoiceList* const choices = value.GetChoices();
        for (std::uint64_t at = 0; choices != nullptr && at < choices->GetCount(); ++at) {
            IChoice* const choice = choices->GetChoice(at);
            UTF8String id;
            choice->GetId(id);
            if (id.AsUTF8() == text) return value.SetValue(choice->GetValue(), index);
        }
        return false;
    }

    static bool SetColor(IColorValue& value, std::uint64_t index, const std::string& text) {
        const std::vector<std::string> parts = SplitList(text, ',');
        std::array<double, 4> color{0, 0, 0, 1};
        if (parts.size() < 3 || parts.size() > 4) return false;
        for (std::size_t at = 0; at < parts.size(); ++at)
            if (!ParseNumber(parts[at], color[at])) return false;
        return value.SetValue(color[0], color[1], color[2], color[3], index);
    }

    // A single number, one with a unit, or as many as the value has parts.
    bool SetScalars(IValue& value) {
        if (value.GetDimension() == 1) return SetWithUnit(value);
        const std::vector<std::string> parts = SplitList(text_, ',');
        if (parts.size() != value.GetDimension()) return false;
        for (std::size_t at = 0; at < parts.size(); ++at)
            if (!SetElement(value, at, parts[at])) return false;
        return true;
    }

    bool SetWithUnit(IValue& value) {
        const std::string_view text = Trimmed(text_);
        const std::size_t blank = text.find(' ');
        if ((property_.GetFlags() & PropertyFlags::kUnits) == 0 || blank == std::string_view::npos)
            return SetElement(value, 0, std::string(text));
        const std::uint32_t code = UnitCode(Trimmed(text.substr(blank)));
        return code != 0 && SetElement(value, 0, std::string(text.substr(0, blank))) &&
               value.SetUnits(code);
    }

    bool SetBinary(IBinaryValue& value) {
        if (text_.empty()) return value.SetData("", 0);
        if (text_.front() != '@') return false;
        const std::string path = text_.substr(1);
        const std::string bytes = ReadWhole(path);
        return value.SetData(bytes.data(), bytes.size());
    }

    IProperty& property_;
    const std::string& text_;
};

}  // namespace

std::vector<std::string> SplitList(std::string_view text, char separator) {
    std::vector<std::string> elements;
    if (text.empty()) return elements;
    elements.emplace_back();
    for (std::size_t at = 0; at < text.size(); ++at) {
        const bool escapes = text[at] == '\\' && at + 1 < text.size() &&
                             std::string_view(",|\\").find(text[at + 1]) != std::string_view::npos;
        if (escapes)
            elements.back() += text[++at];
        else if (text[at] == separator)
            elements.emplace_back();
        else
            elements.back() += text[at];
    }
    return elements;
}

std::uint32_t UnitCode(std::string_view word) {
    for (const Unit& unit : kUnits)
        if (!word.empty() &&
            std::find(unit.words.begin(), unit.words.end(), word) != unit.words.end())
            return unit.code;
    return 0;
}

std::string UnitWord(std::uint32_t code) {
    for (const Unit& unit : kUnits)
        if (unit.code == code) return std::string(unit.words[0]);
    return std::to_string(code);
}

void SetFromText(IProperty& property, const std::string& text) {
    UTF8String name;
    property.GetName(name);
    const std::string of = std::string("the property ") + name.AsUTF8();
    if ((property.GetFlags() & PropertyFlags::kReadOnly) != 0)
        throw Failure(kNo, of + " is read-only");
    if (dynamic_cast<IReferenceValue*>(property.GetValue()) != nullptr)
        throw Failure(kNo, of + " takes connections and no value");
    ReportLog reports;
    if (Setter(property, text).Set()) return;
    throw Failure(
        kNo, of + " does not take \"" + text + "\": " + reports.LastOr(WordsForValues(property)));
}

}  // namespace halvern
