#include "nuo/common/iarchive.h"

namespace nuo {

ideletor::~ideletor() = default;

namespace archive {

view_imp::~view_imp() = default;
sequence* reader::place() {
    return dynamic_cast<sequence*>(this);
}
reader::~reader() = default;
writer::~writer() = default;
sequence::~sequence() = default;
iarchive::~iarchive() = default;

}  // namespace archive
}  // namespace nuo
