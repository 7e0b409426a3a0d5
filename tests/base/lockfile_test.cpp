#include "assets/manager/base/lockfile.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <string>

namespace {

bool has_locks = true;

}  // namespace

// The linker turns the library's calls to this one (`--wrap`).
extern "C" {

int __real_flock(int file, int operation);

int __wrap_flock(int file, int operation) {
    if (has_locks) return __real_flock(file, operation);
    errno = EOPNOTSUPP;
    return -1;
}

}  // extern "C"

namespace korvanet::platform::assets {
namespace {

// A folder of its own for each test, gone with it.
class LockFileTest : public ::testing::Test {
protected:
    void SetUp() override {
        char name[] = "/tmp/halvern_lock_XXXXXX";
        ASSERT_NE(::mkdtemp(name), nullptr);
        folder_ = name;
        path_ = folder_ + "/a.jpk.lck";
    }
    void TearDown() override {
        ::unlink(path_.c_str());
        ::rmdir(folder_.c_str());
    }
    bool Exists() const { return ::access(path_.c_str(), F_OK) == 0; }

    std::string folder_;
    std::string path_;
};

// A child that runs `work`, says so by one byte, and then lives until it is killed.
template <class Work>
pid_t HoldInChild(Work&& work) {
    int pipe_ends[2];
    EXPECT_EQ(::pipe(pipe_ends), 0);
    const pid_t child = ::fork();
    if (child == 0) {
        const char done = work() ? 1 : 0;
        if (::write(pipe_ends[1], &done, 1) != 1) ::_exit(1);
        while (true)
            ::pause();
    }
    char done = 0;
    EXPECT_EQ(::read(pipe_ends[0], &done, 1), 1);
    EXPECT_EQ(done, 1);
    ::close(pipe_ends[0]);
    ::close(pipe_ends[1]);
    return child;
}

void Kill(pid_t child) {
    ::kill(child, SIGKILL);
    ::waitpid(child, nullptr, 0);
}

TEST_F(LockFileTest, TakingMakesAnEmptyFileAndReleasingDeletesIt) {
    LockFile lock;
    ASSERT_EQ(lock.Take(path_.c_str()), LockResult::kTaken);
    EXPECT_TRUE(lock.Held());
    struct stat status {};
    ASSERT_EQ(::stat(path_.c_str(), &status), 0);
    EXPECT_EQ(status.st_size, 0);
    lock.Release();
    EXPECT_FALSE(lock.Held());
    EXPECT_FALSE(Exists());
}

TEST_F(LockFileTest, TheLockGoesBackWithTheObject) {
    {
        LockFile lock;
        ASSERT_EQ(lock.Take(path_.c_str()), LockResult::kTaken);
    }
    EXPECT_FALSE(Exists());
}

TEST_F(LockFileTest, AStaleFileThatNobodyHoldsIsTaken) {
    ::close(::open(path_.c_str(), O_CREAT | O_RDWR, 0666));
    LockFile lock;
    EXPECT_EQ(lock.Take(path_.c_str()), LockResult::kTaken);
}

TEST_F(LockFileTest, ALockHeldInThisProcessIsRefusedAndLeftAlone) {
    LockFile first;
    ASSERT_EQ(first.Take(path_.c_str()), LockResult::kTaken);
    {
        LockFile second;
        EXPECT_EQ(second.Take(path_.c_str()), LockResult::kHeld);
        EXPECT_FALSE(second.Held());
    }
    EXPECT_TRUE(Exists());
}

TEST_F(LockFileTest, ALockHeldByAnotherProcessIsRefusedUntilThatProcessIsKilled) {
    const pid_t holder =
        HoldInChild([&] { return (new LockFile)->Take(path_.c_str()) == LockResult::kTaken; });
    LockFile lock;
    EXPECT_EQ(lock.Take(path_.c_str()), LockResult::kHeld);
    Kill(holder);
    EXPECT_TRUE(Exists());
    EXPECT_EQ(lock.Take(path_.c_str()), LockResult::kTaken);
}

TEST_F(LockFileTest, AFileThatAnotherProcessMerelyHasOpenIsRefused) {
    const pid_t holder =
        HoldInChild([&] { return ::open(path_.c_str(), O_CREAT | O_RDWR, 0666) >= 0; });
    LockFile lock;
    EXPECT_EQ(lock.Take(path_.c_str()), LockResult::kHeld);
    Kill(holder);
    EXPECT_EQ(lock.Take(path_.c_str()), LockResult::kTaken);
}

// Whoever opens a file of which somebody else has a lease would wait for three quarters of a
// minute; the alarm ends such a wait, and with it the test.
TEST_F(LockFileTest, AnotherProcessInTheMiddleOfTakingIsNotWaitedFor) {
    const pid_t holder = HoldInChild([&] {
        ::signal(SIGIO, SIG_IGN);
        return ::fcntl(::open(path_.c_str(), O_CREAT | O_RDWR, 0666), F_SETLEASE, F_WRLCK) == 0;
    });
    struct sigaction wake {};
    wake.sa_handler = [](int) {};
    struct sigaction before {};
    ASSERT_EQ(::sigaction(SIGALRM, &wake, &before), 0);
    ::alarm(10);
    LockFile lock;
    EXPECT_EQ(lock.Take(path_.c_str()), LockResult::kHeld);
    ::alarm(0);
    ::sigaction(SIGALRM, &before, nullptr);
    Kill(holder);
}

TEST_F(LockFileTest, AFileThatIsNoLongerItsOwnIsNotDeleted) {
    LockFile first;
    ASSERT_EQ(first.Take(path_.c_str()), LockResult::kTaken);
    ASSERT_EQ(::unlink(path_.c_str()), 0);
    LockFile second;
    ASSERT_EQ(second.Take(path_.c_str()), LockResult::kTaken);
    first.Release();
    EXPECT_FALSE(first.Held());
    EXPECT_TRUE(Exists());
    LockFile third;
    EXPECT_EQ(third.Take(path_.c_str()), LockResult::kHeld);
}

TEST_F(LockFileTest, AFileSystemWithoutLocksRefusesAndKeepsNoFile) {
    has_locks = false;
    LockFile lock;
    EXPECT_EQ(lock.Take(path_.c_str()), LockResult::kNoFile);
    EXPECT_EQ(errno, EOPNOTSUPP);
    has_locks = true;
    EXPECT_FALSE(Exists());
    EXPECT_EQ(lock.Take(path_.c_str()), LockResult::kTaken);
}

TEST_F(LockFileTest, AFolderThatDoesNotExistRefuses) {
    LockFile lock;
    EXPECT_EQ(lock.Take((folder_ + "/none/a.lck").c_str()), LockResult::kNoFile);
    EXPECT_EQ(errno, ENOENT);
    EXPECT_FALSE(lock.Held());
}

TEST_F(LockFileTest, TheHandleIsNotInheritedByAProgramThatIsStarted) {
    LockFile lock;
    ASSERT_EQ(lock.Take(path_.c_str()), LockResult::kTaken);
    const std::string look =
        "for f in /proc/self/fd/*; do readlink $f; done | grep -c '" + path_ + "' | grep -qx 0";
    EXPECT_EQ(std::system(look.c_str()), 0);
}

}  // namespace
}  // namespace korvanet::platform::assets
