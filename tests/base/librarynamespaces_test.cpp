#include "assets/manager/base/librarynamespaces.h"

namespace {

using korvanet::platform::assets::CreateNamespace;
using korvanet::platform::assets::LibraryNamespaces;
using korvanet::platform::assets::namespace_creating_failed;
using velmor::Namespace;
using velmor::NamespaceImp;

class LibraryNamespacesTest : public testing::Test {
protected:
    Namespace Root() { return Namespace(&root_); }

    // What a failure says behind its source position.
    template <class Work>
    static std::string WordsOf(Work&& work) {
        try {
            work();
        } catch (const namespace_creating_failed& failure) {
            const std::string message = failure.what();
            return message.substr(message.find(')') + 1);
        }
        return "(nothing raised)";
    }

    NamespaceImp root_;
};

TEST_F(LibraryNamespacesTest, HaveThreeChildrenBelowTheirOwn) {
    const Namespace slib = CreateNamespace(Root(), "slib");
    const LibraryNamespaces group = LibraryNamespaces::Create(slib, "global");
    EXPECT_EQ(group.parent, slib);
    EXPECT_EQ(group.own.fullName(), ".slib.global");
    EXPECT_EQ(group.schema.fullName(), ".slib.global.schema");
    EXPECT_EQ(group.asset.fullName(), ".slib.global.asset");
    EXPECT_EQ(group.tmpAsset.fullName(), ".slib.global.tmpAsset");
    EXPECT_EQ(slib.findChild("global"), group.own);
}

TEST_F(LibraryNamespacesTest, AreNotMadeTwiceUnderOneName) {
    const Namespace slib = CreateNamespace(Root(), "slib");
    const LibraryNamespaces group = LibraryNamespaces::Create(slib, "global");
    EXPECT_EQ(WordsOf([&] { LibraryNamespaces::Create(slib, "global"); }),
              ".slib failed to create child namespace global");
    EXPECT_EQ(slib.findChild("global"), group.own);
}

TEST_F(LibraryNamespacesTest, TellTheRootByItsDot) {
    CreateNamespace(Root(), "usr");
    EXPECT_EQ(WordsOf([&] { CreateNamespace(Root(), "usr"); }),
              ". failed to create child namespace usr");
}

TEST_F(LibraryNamespacesTest, TakeADotInANameAsItIs) {
    const LibraryNamespaces group = LibraryNamespaces::Create(Root(), "a.b");
    EXPECT_EQ(Root().findChild("a.b"), group.own);
    EXPECT_FALSE(Root().findChild("a").valid());
}

}  // namespace
