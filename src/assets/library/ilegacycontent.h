#pragma once

#include "nuo/common/iarchive.h"

namespace korvanet::platform::assets {

class GeneralLibrary;

// How a document reads and writes the older layout (a "qmx" folder with two XML files). The manager
// joins an implementation; while there is none a library of that layout does not open and is not
// written.
class ILegacyContent {
public:
    // Fills the document from objects.xml. Gives whether the file calls itself a material library.
    virtual bool LoadObjects(GeneralLibrary& document, nuo::archive::iarchive& objects) = 0;
    virtual void WriteDirectory(const GeneralLibrary& document,
                                nuo::archive::iarchive& directory) = 0;
    virtual void WriteObjects(const GeneralLibrary& document, nuo::archive::iarchive& objects) = 0;

protected:
    ~ILegacyContent() = default;
};

}  // namespace korvanet::platform::assets
