#pragma once

#include <sys/types.h>

#include <cstdio>
#include <functional>
#include <string>
#include <vector>

namespace halvern_tests {

// Another process. Its body must not use what the parent has made of the library.
class Child {
public:
    // Starts at once. The child ends well when the body gives true.
    explicit Child(const std::function<bool(Child&)>& body);
    Child(const Child&) = delete;
    Child& operator=(const Child&) = delete;
    ~Child();

    // The parent: waits until the child hands over, lets it go on, or sees it end. `Await` is false
    // when the child has ended instead.
    bool Await();
    void Continue();
    bool EndedWell();
    void Kill();

    // The child: lets the parent work, and waits for `Continue`.
    void HandOver();

private:
    int process_ = -1;
    int to_parent_[2];
    int to_child_[2];
};

// Runs `body` in a child and tells whether it gave true.
bool InChild(const std::function<bool()>& body);

// For children: become another user, with a group of the same number and these; become a user who
// owns nothing; see file systems of their own; see no other folder than this one. All work for
// root, the last two also where users may make namespaces.
bool BecomeUser(uid_t user, const std::vector<gid_t>& groups);
bool DropToNobody();
bool EnterOwnMounts();
bool EnterRoot(const std::string& folder);

}  // namespace halvern_tests

// In a child, where a failed expectation would not be heard.
#define HALVERN_NEED(condition)                                                  \
    do {                                                                         \
        if (!(condition)) {                                                      \
            std::fprintf(stderr, "%s:%d: %s\n", __FILE__, __LINE__, #condition); \
            return false;                                                        \
        }                                                                        \
    } while (false)
