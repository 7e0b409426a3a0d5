#include "assets/localization/localizationxmldata.h"

namespace korvanet::platform::assets {

void LocalizationXmlData::OnXml(XmlDriverState& driver, const nuo::string& name,
                                const nuo::string& text, const XmlAttributes& attributes,
                                bool start) {
    if (!start) {
        OnEnd(name);
    } else if (!name.empty()) {
        OnStart(name, attributes);
    } else if (!driver.elements.empty() && driver.elements.back() == "target") {
        text_.append(text);
    }
}

void LocalizationXmlData::OnStart(const nuo::string& name, const XmlAttributes& attributes) {
    if (name == "trans-unit") {
        id_.clear();
        const auto id = attributes.find("id");
        if (id != attributes.end()) {
            nuo::string(id->second).swap(id_);
        }
    } else if (name == "target") {
        text_.clear();
    }
}

void LocalizationXmlData::OnEnd(const nuo::string& name) {
    // The id stays until the next unit, so that a target outside of any unit belongs to the last.
    if (name == "target" && !id_.empty() && !text_.empty()) {
        table_->AddFirst(id_, text_);
    }
}

}  // namespace korvanet::platform::assets
