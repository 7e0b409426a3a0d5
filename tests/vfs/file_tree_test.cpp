#include "velmor/vfs/file_tree.h"

#include <gtest/gtest.h>

#include "vfs/support.h"

namespace {

using namespace vfs_tests;
using Tree = fs::private_::file_tree<int*>;

TEST(FileTreeTest, TheRootIsANamelessDirectory) {
    Tree tree;
    EXPECT_TRUE(tree.root().name.empty());
    EXPECT_EQ(tree.root().state, fs::state_directory);
    EXPECT_EQ(tree.root().parent, nullptr);
    EXPECT_EQ(tree.locate(""), &tree.root());
    EXPECT_EQ(tree.locate("//"), &tree.root());
    EXPECT_EQ(tree.create("", fs::state_file, true), &tree.root());
}

TEST(FileTreeTest, CreateMakesParentsOnlyWhenAsked) {
    Tree tree;
    EXPECT_EQ(tree.create("a/b/c", fs::state_file, false), nullptr);
    EXPECT_EQ(tree.size(), 0u);
    const Tree::node* made = tree.create("a/b/c", fs::state_file, true);
    ASSERT_NE(made, nullptr);
    EXPECT_EQ(tree.size(), 3u);
    EXPECT_EQ(made->state, fs::state_file);
    EXPECT_EQ(made->data, nullptr);
    EXPECT_EQ(Text(made->name), "c");
    EXPECT_EQ(made->parent, tree.locate("a/b"));
    EXPECT_EQ(made->parent->state, fs::state_directory);
}

TEST(FileTreeTest, CreateReturnsWhatIsThereAsItIs) {
    Tree tree;
    Tree::node* made = tree.create("a", fs::state_file, true);
    EXPECT_EQ(tree.create("/a/", fs::state_directory, true), made);
    EXPECT_EQ(made->state, fs::state_file);
}

TEST(FileTreeTest, AFileOnTheWayRaisesWhenParentsAreMade) {
    Tree tree;
    tree.create("x", fs::state_file, true);
    EXPECT_EQ(
        RaisedText<fs::not_all_parent_are_dir>([&] { tree.create("x/y", fs::state_file, true); }),
        "");
    EXPECT_EQ(tree.create("x/y", fs::state_file, false), nullptr);
    EXPECT_EQ(tree.size(), 1u);
}

TEST(FileTreeTest, LocateFindsNothingBelowWhatIsMissing) {
    Tree tree;
    tree.create("a/b", fs::state_directory, true);
    EXPECT_EQ(tree.locate("a/c"), nullptr);
    EXPECT_EQ(tree.locate("c/b"), nullptr);
    EXPECT_EQ(tree.locate("a/b/c"), nullptr);
}

TEST(FileTreeTest, RemoveRefusesTheRootAndFullDirectories) {
    Tree tree;
    tree.create("a/b", fs::state_file, true);
    EXPECT_EQ(tree.remove(tree.root()), fs::er_invalid);
    EXPECT_EQ(tree.remove(*tree.locate("a")), fs::er_not_empty);
    EXPECT_EQ(tree.remove(*tree.locate("a/b")), fs::er_ok);
    EXPECT_EQ(tree.remove(*tree.locate("a")), fs::er_ok);
    EXPECT_EQ(tree.size(), 0u);
    EXPECT_EQ(tree.locate("a"), nullptr);
}

TEST(FileTreeTest, ObtainKeepsStringOrderWhateverTheOrderOfCalls) {
    Tree tree;
    for (const char* name : {"m", "z", "a", "n", "b"})
        tree.obtain(tree.root(), name, fs::state_file);
    Tree::node& again = tree.obtain(tree.root(), "n", fs::state_file);
    EXPECT_EQ(&again, tree.locate("n"));
    std::string order;
    for (const auto& [name, child] : tree.root().children)
        order += Text(name);
    EXPECT_EQ(order, "abmnz");
}

}  // namespace
