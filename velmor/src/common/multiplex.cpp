#include "nuo/common/multiplex.h"

namespace nuo::archive::detail {
namespace {

template <class Capability>
Capability* need(Capability* found) {
    if (found == nullptr) NUO_RAISE(create_failed);
    return found;
}

}  // namespace

random& need_random(iarchive& archive) {
    return *need(archive.query_random());
}
reader* need_reader(iarchive& archive) {
    return need(archive.query_reader());
}
writer* need_writer(iarchive& archive) {
    return need(archive.query_writer());
}

shared_archive::shared_archive(std::shared_ptr<iarchive> archive) : archive_(std::move(archive)) {
    if (archive_ == nullptr) NUO_RAISE(create_failed);
}

}  // namespace nuo::archive::detail
