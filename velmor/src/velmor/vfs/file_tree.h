#pragma once

#include <cstddef>
#include <iterator>
#include <map>
#include <memory>
#include <utility>

#include "velmor/vfs/path_walker.h"
#include "velmor/vfs/vfs.h"

namespace velmor::fs {

NUO_DECLARE_EXCEPTION(not_all_parent_are_dir);

namespace private_ {

/// The tree behind file systems that live in memory: one node for each path component, children in
/// string order. Looking up makes no string.
template <class T>
class file_tree {
public:
    struct node {
        nuo::string name;  // one component, empty for the root
        int state = state_directory;
        node* parent = nullptr;
        std::map<nuo::string, std::unique_ptr<node>, nuo::string_less> children;
        T data{};  // null for a node with no payload
    };

    file_tree() = default;
    file_tree(const file_tree&) = delete;
    file_tree& operator=(const file_tree&) = delete;

    node& root() noexcept { return root_; }
    const node& root() const noexcept { return root_; }

    /// How many nodes there are, the root not counted.
    std::size_t size() const noexcept { return size_; }

    /// The root for a path without components; null when one is missing.
    node* locate(nuo::string_ref path) noexcept {
        node* at = &root_;
        PathWalker walker(path);
        nuo::string_ref name;
        while (at != nullptr && walker.next(name))
            at = child(*at, name);
        return at;
    }

    /// The node at a path: the one that is there, or a new one with `state`. Missing parents are
    /// made as directories or, without `createParents`, make the result null. A parent that is a
    /// file raises not_all_parent_are_dir where parents are made, and gives null elsewhere.
    node* create(nuo::string_ref path, int state, bool createParents) {
        PathWalker walker(path);
        nuo::string_ref name;
        nuo::string_ref following;
        node* at = &root_;
        for (bool more = walker.next(name); more && at != nullptr; name = following) {
            more = walker.next(following);
            at = more ? enter(*at, name, createParents) : &obtain(*at, name, state);
        }
        return at;
    }

    /// The child of that name, made with `state` when missing. Children that come in string order
    /// are added without a search.
    node& obtain(node& folder, nuo::string_ref name, int state) {
        auto& children = folder.children;
        const bool behindAll = children.empty() || children.rbegin()->first < name;
        auto at = behindAll ? children.end() : children.lower_bound(name);
        if (at != children.end() && at->first == name) return *at->second;
        auto made = std::make_unique<node>();
        made->name = nuo::string(name);
        made->state = state;
        made->parent = &folder;
        at = children.emplace_hint(at, made->name, std::move(made));
        ++size_;
        return *at->second;
    }

    /// Destroys a node; er_not_empty while it has children, er_invalid for the root.
    fs_error remove(node& victim) {
        if (victim.parent == nullptr) return er_invalid;
        if (!victim.children.empty()) return er_not_empty;
        auto& siblings = victim.parent->children;
        siblings.erase(siblings.find(victim.name.ref()));
        --size_;
        return er_ok;
    }

    /// Destroys every node but the root.
    void clear() noexcept {
        root_.children.clear();
        size_ = 0;
    }

private:
    static node* child(node& folder, nuo::string_ref name) noexcept {
        const auto found = folder.children.find(name);
        return found != folder.children.end() ? found->second.get() : nullptr;
    }

    node* enter(node& folder, nuo::string_ref name, bool createParents) {
        node* at = child(folder, name);
        if (at == nullptr) return createParents ? &obtain(folder, name, state_directory) : nullptr;
        if (at->state == state_directory) return at;
        if (createParents) NUO_RAISE(not_all_parent_are_dir);
        return nullptr;
    }

    node root_;
    std::size_t size_ = 0;
};

/// Walks the children of one node. Small enough to live inside an IteratorT.
template <class T>
class FileNodeIterator {
    using position = typename decltype(file_tree<T>::node::children)::const_iterator;

public:
    FileNodeIterator(position at, IVfs& owner) noexcept : at_(at), owner_(&owner) {}

    VfsNode operator*() const { return {at_->first, owner_}; }
    FileNodeIterator& operator++() {
        ++at_;
        return *this;
    }
    FileNodeIterator& operator--() {
        --at_;
        return *this;
    }
    friend bool operator==(const FileNodeIterator& a, const FileNodeIterator& b) {
        return a.at_ == b.at_;
    }

private:
    position at_;
    IVfs* owner_;
};

/// The children of a node; an empty range for none.
template <class T>
VfsNodeRange childrenOf(const typename file_tree<T>::node* folder, IVfs& owner) {
    using iterator = FileNodeIterator<T>;
    if (folder == nullptr)
        return nuo::make_range<VfsNode, VfsNode>(iterator({}, owner), iterator({}, owner));
    return nuo::make_range<VfsNode, VfsNode>(iterator(folder->children.begin(), owner),
                                             iterator(folder->children.end(), owner));
}

}  // namespace private_
}  // namespace velmor::fs
