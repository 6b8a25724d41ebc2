// Threads and processes that log into one folder at once, and those that end or fail in the middle of it.

#include "tests/logging/LogFolder.h"
#include "tests/support/AtOnce.h"
#include "tests/support/Failure.h"
#include "tests/support/InChild.h"
#include "tests/support/ScopedFileSizeLimit.h"

#include <atomic>
#include <chrono>
#include <fcntl.h>
#include <map>

namespace {

using Writer = CrkLogWriter;

TEST(LogSharing, KeepsEveryEntryOfThreadsAndProcessesInOrderAndRollsOverOnce) {
    constexpr int kProcesses = 4, kThreads = 3, kRounds = 8, kEntries = 40;
    for (int round = 0; round < kRounds; ++round) {
        const LogFolder folder;
        constexpr std::uintmax_t kShortest = 250, kTotal = kProcesses * kThreads * kEntries;
        Writer::m_maxFileLength = kShortest * kTotal * 3 / 5;  // so that the file becomes too long once
        std::vector<pid_t> children;
        for (int process = 0; process < kProcesses; ++process)
            children.push_back(StartChild([process] {
                std::atomic<int> nextWriter = process * kThreads;
                AtOnce<kThreads>([&nextWriter] {
                    const CString writer = std::to_string(nextWriter++);
                    for (int number = 1; number <= kEntries; ++number)
                        Writer::Log(Writer::LogInfo, std::to_string(1000 * number), writer);
                });
            }));
        std::for_each(children.begin(), children.end(), ExpectItEndsWell);

        ASSERT_EQ(folder.Backups().size(), 1U);
        std::map<std::string, int> lastNumbers;
        const auto entries = Entries(folder.Read(folder.Backups()[0]) + folder.Read(folder.Active()));
        EXPECT_EQ(entries.size(), kTotal);
        for (const std::string& entry : entries) {
            int& last = lastNumbers[entry.substr(0, entry.find('/'))];
            last += 1000;
            ASSERT_EQ(entry.substr(entry.rfind('/') + 1), std::to_string(last)) << entry;
        }
        EXPECT_LT(std::filesystem::file_size(folder.Path(folder.Backups()[0])),
                  Writer::m_maxFileLength + 2 * kShortest);
    }
}

TEST(LogSharing, PutsTheFileBackWhenASizeLimitStrikesAndGoesOnAfterwards) {
    const LogFolder folder;
    Writer::Log(Writer::LogInfo, u"0");
    const std::string entry = folder.Read(folder.Active());
    const ScopedFileSizeLimit farAway(std::size_t{1} << 30);
    // In the middle of an entry, between two, and behind the limit already.
    for (const std::size_t limit : {entry.size() * 7 / 2, entry.size() * 2, entry.size(), entry.size() / 2}) {
        folder.Write(folder.Active(), entry);
        std::size_t length = entry.size();
        const auto fill = [&] {
            const ScopedFileSizeLimit limited(limit);
            for (;; length = std::filesystem::file_size(folder.ActivePath()))
                Writer::Log(Writer::LogInfo, u"1");
        };
        EXPECT_EQ(CauseOf(fill), CFileException::diskFull);
        EXPECT_EQ(std::filesystem::file_size(folder.ActivePath()), length);
        EXPECT_GT(length + entry.size(), limit);
        Writer::Log(Writer::LogInfo, u"2");
        EXPECT_EQ(folder.Logged().back(), "General/Info/2");
    }
}

TEST(LogSharing, WaitsForNoLockWithoutEndAndLeavesRollingOverToTheNext) {
    const LogFolder folder;
    Writer::Log(Writer::LogInfo, u"1");
    const int reader = open(folder.ActivePath().c_str(), O_RDONLY | O_CLOEXEC);
    struct flock lock{};
    lock.l_type = F_RDLCK;
    ASSERT_EQ(fcntl(reader, F_OFD_SETLK, &lock), 0);
    Writer::m_maxFileLength = 0;
    Writer::Log(Writer::LogInfo, u"2");
    EXPECT_EQ(Writer::GetLogState().lastFailure, "lock the file (the entry was written without): Connection timed out");
    close(reader);
    {
        const std::lock_guard heldByUs(Writer::m_mutex);
        Writer::Log(Writer::LogInfo, u"3");
    }
    EXPECT_EQ(folder.Backups().size(), 0U);
    Writer::Log(Writer::LogInfo, u"4");
    ASSERT_EQ(folder.Backups().size(), 1U);
    EXPECT_EQ(Entries(folder.Read(folder.Backups()[0])).size(), 4U);
    EXPECT_EQ(Writer::GetLogState().droppedEntries, 0U);
}

TEST(LogSharing, LetsAChildLogThatIsForkedWhileOtherThreadsDo) {
    const LogFolder folder;
    Writer::m_maxFileLength = UINT64_MAX;
    std::atomic<bool> isOver = false;
    std::thread logs([&isOver] {
        for (; !isOver; std::this_thread::sleep_for(std::chrono::microseconds(1)))
            Writer::Log(Writer::LogInfo, u"thread");
    });
    constexpr int kChildren = 300;
    for (int child = 0; child < kChildren; ++child)
        ExpectItEndsWell(StartChild([] { Writer::Log(Writer::LogInfo, u"child"); }));
    isOver = true;
    logs.join();
    const std::vector<std::string> entries = folder.Logged();
    EXPECT_EQ(std::count(entries.begin(), entries.end(), "General/Info/child"), kChildren);
    EXPECT_EQ(std::count(entries.begin(), entries.end(), "torn"), 0);
}

/// Its destructor logs when the main thread's own objects are gone already.
struct LogsAtTheEnd {
    bool isWanted = false;
    ~LogsAtTheEnd() {
        if (isWanted)
            Writer::Log(Writer::LogInfo, u"the end");
    }
} lastObject;

TEST(LogSharing, TakesAMessageFromTheDestructorOfAStaticObject) {
    const LogFolder folder;
    ExpectItEndsWell(StartChild([] {
        Writer::Log(Writer::LogInfo, u"before");
        lastObject.isWanted = true;
        std::exit(0);
    }));
    EXPECT_EQ(folder.Logged(), std::vector<std::string>({"General/Info/before", "General/Info/the end"}));
}

}  // namespace
