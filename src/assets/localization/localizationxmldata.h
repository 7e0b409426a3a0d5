#pragma once

#include "assets/localization/localizationimp.h"
#include "assets/serialization/io/xmlhandler.h"
#include "nuo/common/string_builder.h"

// Reads this much of an XLF document; everything else in it is skipped:
//
//   unit   = '<trans-unit id="' KEY '">' ... target ... '</trans-unit>'
//   target = '<target>' MESSAGE '</target>'
//
// docs/formats/xlf.md tells the format.

namespace korvanet::platform::assets {

// Fills a table with the messages of one XLF document. Of two units with one id the first counts;
// a unit whose target is empty adds nothing.
class LocalizationXmlData : public IXmlCallBack {
public:
    explicit LocalizationXmlData(ILocalizationImp& table) : table_(&table) {}

    void OnXml(XmlDriverState& driver, const nuo::string& name, const nuo::string& text,
               const XmlAttributes& attributes, bool start) override;

private:
    void OnStart(const nuo::string& name, const XmlAttributes& attributes);
    void OnEnd(const nuo::string& name);

    nuo::string id_;
    nuo::string_builder text_;
    ILocalizationImp* table_;
};

}  // namespace korvanet::platform::assets
