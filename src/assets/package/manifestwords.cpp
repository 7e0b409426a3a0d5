#include "assets/package/manifestwords.h"

namespace korvanet::platform::assets::words {
namespace {

struct Words {
    nuo::string string_kind{"string"};
    nuo::string time_kind{"time"};
    nuo::string bool_kind{"bool"};
    ElementKey identifier{"uuid", "identifier"};
    ElementKey created{time_kind, "created"};
    ElementKey updated{time_kind, "updated"};
    ElementKey updates{"uint32", "updates"};
    ElementKey read_only{bool_kind, "read only"};
    ElementKey last_saved{string_kind, "last saved"};
    ElementKey name{string_kind, "name"};
    ElementKey type{string_kind, "type"};
    ElementKey interop_content{bool_kind, "interop content"};
    nuo::string zero{"0"};
    nuo::string one{"1"};
    nuo::string untyped_kind{"name"};
};

const Words& All() {
    static const Words words;
    return words;
}

}  // namespace

const ElementKey& Identifier() {
    return All().identifier;
}
const ElementKey& Created() {
    return All().created;
}
const ElementKey& Updated() {
    return All().updated;
}
const ElementKey& Updates() {
    return All().updates;
}
const ElementKey& ReadOnly() {
    return All().read_only;
}
const ElementKey& LastSaved() {
    return All().last_saved;
}
const ElementKey& Name() {
    return All().name;
}
const ElementKey& Type() {
    return All().type;
}
const ElementKey& InteropContent() {
    return All().interop_content;
}
const nuo::string& Zero() {
    return All().zero;
}
const nuo::string& One() {
    return All().one;
}
const nuo::string& UntypedKind() {
    return All().untyped_kind;
}

}  // namespace korvanet::platform::assets::words
