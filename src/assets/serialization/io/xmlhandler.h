#pragma once

#include <map>
#include <vector>

#include "nuo/common/exception.h"
#include "nuo/common/iarchive.h"
#include "nuo/common/string.h"

namespace korvanet::platform::assets {

// A document that is not well-formed XML.
NUO_DECLARE_EXCEPTION(xml_malformed_ex);

class IXmlCallBack;

using XmlAttributes = std::map<nuo::string, nuo::string, nuo::string_less>;

// What a callback sees of the document around an event.
struct XmlDriverState {
    explicit XmlDriverState(IXmlCallBack& receiver) : callback(&receiver) {}

    // Names of the open elements, outermost first. During a start event the last entry is the
    // element itself; during an end event the element is no longer here.
    std::vector<nuo::string> elements;
    IXmlCallBack* callback;
};

// Receives a document as a flat series of events.
//
//   event   name     text    attributes   start
//   start   its own  empty   its own      true
//   text    empty    chunk   empty        true
//   end     its own  empty   empty        false
//
// One text of the document may come in any number of chunks, and white space is text like any
// other: a receiver that wants the whole text of an element appends. An exception ends the parse
// and passes out of `ParseXml`.
class IXmlCallBack {
public:
    virtual void OnXml(XmlDriverState& driver, const nuo::string& name, const nuo::string& text,
                       const XmlAttributes& attributes, bool start) = 0;

    virtual ~IXmlCallBack() = default;
};

// Reads all of `source` from its start and gives its events to `driver.callback`. Returns true, or
// raises `xml_malformed_ex`: "The xml input is bad." for an empty source, one that is not well
// formed, cannot be read from its start, is longer than 2 GiB - 1, has more than 65,536 elements
// one in the other, or whose entities make it grow out of measure; "The nodes of xml are
// asymmetric." when an end tag meets a stack of another element, which takes a callback that
// changed the stack. Events before the bad place have then been delivered.
bool ParseXml(XmlDriverState& driver, nuo::archive::iarchive& source);

}  // namespace korvanet::platform::assets
