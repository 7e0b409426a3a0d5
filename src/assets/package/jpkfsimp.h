#pragma once

#include "assets/package/packagedescription.h"
#include "velmor/vfs/rootfs.h"
#include "velmor/vfs/vfs.h"

namespace korvanet::platform::assets {

// What a JpkFs holds.
class JpkFsImp {
public:
    JpkFsImp(velmor::fs::IVfs& below, nuo::string name)
        : inner(&below), resource(std::move(name)) {}

    velmor::fs::RootFs* root = nullptr;
    velmor::fs::IVfs* inner;  // not owned
    nuo::string resource;
    PackageDescription description;
};

// Reads the manifests of all folders of `inner` into `description`.
void LoadManifests(velmor::fs::IVfs& inner, PackageDescription& description);

// Completes `description` with what it does not tell of the files of `inner`, and writes all
// manifests.
void WriteManifests(velmor::fs::IVfs& inner, PackageDescription& description);

}  // namespace korvanet::platform::assets
