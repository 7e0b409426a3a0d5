#pragma once

#include "assets/package/packagedescription.h"

// The elements that every package has, and the values they start with. One string stands behind
// each: descriptions share its block instead of holding thousands of copies.

namespace korvanet::platform::assets::words {

const ElementKey& Identifier();
const ElementKey& Created();
const ElementKey& Updated();
const ElementKey& Updates();
const ElementKey& ReadOnly();
const ElementKey& LastSaved();
const ElementKey& Name();
const ElementKey& Type();
const ElementKey& InteropContent();

const nuo::string& Zero();
const nuo::string& One();

// The kind under which an element of the empty kind is stored.
const nuo::string& UntypedKind();

}  // namespace korvanet::platform::assets::words
