#pragma once

#include "assets/package/contenttype.h"
#include "assets/package/packagedescription.h"
#include "nuo/common/string_builder.h"

// The parts that a package keeps by itself, byte for byte. Nothing stands between the pieces.
//
//   types   = DECLARATION '<Types xmlns="' OPC '">' default* '</Types>'
//   default = '<Default Extension="' EXTENSION '" ContentType="' TYPE '"/>'
//   format  = DECLARATION '<formats><format>' URI '</format></formats>'
//   cnx     = DECLARATION ROOT '<group name="default">' child* '</group></root>'
//   child   = '<link name="' FOLDER '">' element* '</link>'
//           | '<link name="' FILE '" class="schema.korvanet.data.1.resource">' element* '</link>'
//   core    = DECLARATION ROOT '<group name="content">'
//             '<node name="asset" class="schema.korvanet.package.1.asset">'
//             '<uuid name="identifier">' UUID '</uuid>' element* '</node></group>' QMX? '</root>'
//   element = '<' KIND ' name="' NAME '">' VALUE '</' KIND '>'
//           | '<' KIND ' locale="en-us">' VALUE '</' KIND '>'       without a name
//
// docs/formats/manifests_and_options.md tells the rest: order, escaping, how to read them.

namespace korvanet::platform::assets {

// "[Content_Types].xml"
nuo::string ContentTypesText(const ContentTypeSet& types);

// "korvanet-design-package.xml"
nuo::string FormatText();

// "core.xml" of the folder named `leaf`; empty for the root.
nuo::string CoreText(nuo::string_ref leaf, const PropertyMap& node);

// Whether a "cnx.xml" can name a child of this name and still be read again.
bool CanLinkFile(nuo::string_ref name);
bool CanLinkFolder(nuo::string_ref name);

// "cnx.xml" of one folder: (AddFolder | AddFile)* Finish
class LinksText {
public:
    LinksText();

    // The name is written as it stands: folders are named by the library, not by files.
    void AddFolder(nuo::string_ref name, const PropertyMap& elements);
    void AddFile(nuo::string_ref name, const PropertyMap& elements);
    nuo::string Finish();

private:
    nuo::string_builder text_;
};

}  // namespace korvanet::platform::assets
