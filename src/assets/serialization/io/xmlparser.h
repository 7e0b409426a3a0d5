#pragma once

// The library is built with this, and its header declares the bounds on entities only where it is
// defined.
#define XML_DTD 1
#include <expat.h>

#include <cstddef>
#include <memory>
#include <new>
#include <type_traits>

namespace korvanet::platform::assets {

// Entities may make a text this many times as long as the document. Honest documents hold the odd
// character entity; expat's own bound of a hundred would let a file of a few megabytes fill
// hundreds. Chosen: far above the one, far below the other.
inline constexpr float kMaxEntityGrowth = 8.0F;

// The bound above is held from this many bytes of document and expansion on. Expat's own 8 MiB
// would let half a kilobyte of nested entities keep a reader busy for that long a text. Chosen: a
// small document may still grow by more, as a short one with one long entity does, and costs
// nothing that is felt.
inline constexpr unsigned long long kEntityGrowthHeldFrom = 256U << 10;

// Deeper elements end a document, so that a file that opens one after the other and nothing else
// does not take many times its size of memory. Chosen: so many take a few megabytes.
inline constexpr std::size_t kMaxOpenElements = 65536;

struct XmlParserDeleter {
    void operator()(XML_Parser parser) const { XML_ParserFree(parser); }
};
using XmlParserOwner = std::unique_ptr<std::remove_pointer_t<XML_Parser>, XmlParserDeleter>;

// A parser that no document can make expand for long. Never null; raises `std::bad_alloc`.
inline XmlParserOwner MakeXmlParser() {
    XmlParserOwner parser(XML_ParserCreate(nullptr));
    if (!parser) throw std::bad_alloc();
    XML_SetBillionLaughsAttackProtectionMaximumAmplification(parser.get(), kMaxEntityGrowth);
    XML_SetBillionLaughsAttackProtectionActivationThreshold(parser.get(), kEntityGrowthHeldFrom);
    return parser;
}

}  // namespace korvanet::platform::assets
