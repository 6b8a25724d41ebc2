// Threads and processes that log into one folder at once, and those that end or fail in the middle of it.

#include "RkUtilities/foundation/CFileException.h"

#include "../support/ScopedFileSizeLimit.h"
#include "LogFolder.h"

#include <algorithm>
#include <atomic>
#include <chrono>
#include <csignal>
#include <functional>
#include <gtest/gtest.h>
#include <map>
#include <memory>
#include <random>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

namespace {

using Writer = CrkLogWriter;

pid_t InAChild(const std::function<void()>& work)
{
    const pid_t child = fork();
    if (child == 0) {
        work();
        _exit(testing::Test::HasFailure() ? 1 : 0);
    }
    return child;
}

void ExpectItEndsWell(pid_t child)
{
    int status = -1;
    EXPECT_EQ(waitpid(child, &status, 0), child);
    EXPECT_EQ(status, 0);
}

void LogNumbers(int writer, int count)
{
    for (int number = 0; number < count; ++number)
        Writer::Log(Writer::LogInfo, std::to_string(1000 * (number + 1)), std::to_string(writer));
}

TEST(LogSharing, KeepsEveryEntryOfThreadsAndProcessesInOrderAndRollsOverOnce)
{
    static constexpr int kProcesses = 4, kThreads = 3, kRounds = 12, kEntries = 40;
    for (int round = 0; round < kRounds; ++round) {
        const LogFolder folder;
        Writer::Log(Writer::LogInfo, u"1000", u"0");
        constexpr std::uintmax_t kTotal = kProcesses * kThreads * kEntries;
        const std::uintmax_t entryLength = std::filesystem::file_size(folder.ActiveFile());
        std::filesystem::remove(folder.ActiveFile());
        // Between a half and all of what is written, so that the file becomes too long once. Short files meet the
        // race most.
        Writer::m_maxFileLength = entryLength * (kTotal * 3 / 5);
        std::vector<pid_t> children;
        for (int process = 0; process < kProcesses; ++process)
            children.push_back(InAChild([process] {
                std::vector<std::thread> threads;
                for (int thread = 0; thread < kThreads; ++thread)
                    threads.emplace_back(LogNumbers, process * kThreads + thread, kEntries);
                for (std::thread& thread : threads)
                    thread.join();
            }));
        for (const pid_t child : children)
            ExpectItEndsWell(child);

        ASSERT_EQ(folder.Backups().size(), 1U);
        std::map<std::string, int> lastNumbers;
        for (const std::string& entry : Entries(ReadAll(folder.Backups()[0]) + ReadAll(folder.ActiveFile()))) {
            int& last = lastNumbers[entry.substr(0, entry.find('/'))];
            last += 1000;
            ASSERT_EQ(entry.substr(entry.rfind('/') + 1), std::to_string(last)) << entry;
        }
        EXPECT_EQ(lastNumbers.size(), std::size_t{kProcesses * kThreads});
        EXPECT_TRUE(std::all_of(lastNumbers.begin(), lastNumbers.end(),
                                [](const auto& writer) { return writer.second == 1000 * kEntries; }));
        const std::uintmax_t backupLength = std::filesystem::file_size(folder.Backups()[0]);
        EXPECT_LE(backupLength, Writer::m_maxFileLength + 2 * entryLength);
    }
}

TEST(LogSharing, LeavesWholeEntriesWhenAWriterIsKilled)
{
    const LogFolder folder;
    Writer::m_maxFileLength = UINT64_MAX;
    const CString large(std::u16string(3'000'000, u'x'));
    std::minstd_rand random;
    for (int round = 0; round < 30; ++round) {
        const pid_t child = InAChild([&] {
            for (;;)
                Writer::Log(Writer::LogInfo, large, u"large");
        });
        std::this_thread::sleep_for(std::chrono::microseconds(random() % 20'000));
        kill(child, SIGKILL);
        waitpid(child, nullptr, 0);
        Writer::Log(Writer::LogInfo, u"after", u"small");
        const std::string text = ReadAll(folder.ActiveFile());
        std::size_t begin = 0;
        for (std::size_t end; (end = text.find('\n', begin)) != text.npos; begin = end + 1) {
            const std::string entry = text.substr(begin, end - begin);
            ASSERT_EQ(entry.rfind("<l:LogEntry><l:Timestamp>", 0), 0U);
            ASSERT_EQ(entry.rfind("<l:LogEntry>"), 0U) << "an entry was cut by the next";
            ASSERT_EQ(entry.find("</l:LogEntry>"), entry.size() - 13);
        }
        ASSERT_EQ(begin, text.size());
        std::filesystem::remove(folder.ActiveFile());
    }
}

TEST(LogSharing, PutsTheFileBackWhenASizeLimitStrikesAndGoesOnAfterwards)
{
    const LogFolder folder;
    Writer::Log(Writer::LogInfo, u"0");
    const std::uintmax_t entryLength = std::filesystem::file_size(folder.ActiveFile());
    // In the middle of an entry, between two, and behind the limit already.
    for (const std::uintmax_t limit : {entryLength * 7 / 2, entryLength * 2, entryLength, entryLength / 2}) {
        std::filesystem::resize_file(folder.ActiveFile(), entryLength);
        ExpectItEndsWell(InAChild([&] {
            auto sizes = std::make_unique<ScopedFileSizeLimit>(limit);
            std::uintmax_t written = 1;
            for (bool isFull = false; !isFull;) {
                try {
                    Writer::Log(Writer::LogInfo, u"1");
                    ++written;
                } catch (CFileException* failure) {
                    EXPECT_EQ(failure->m_cause, CFileException::diskFull);
                    failure->Delete();
                    isFull = true;
                }
            }
            EXPECT_EQ(written, std::max<std::uintmax_t>(limit / entryLength, 1));
            EXPECT_EQ(std::filesystem::file_size(folder.ActiveFile()), written * entryLength);
            sizes.reset();
            sigset_t pending;
            EXPECT_TRUE(sigpending(&pending) == 0 && sigismember(&pending, SIGXFSZ) == 0);
            Writer::Log(Writer::LogInfo, u"2");
        }));
        EXPECT_EQ(Entries(ReadAll(folder.ActiveFile())).back(), "General/Info/2");
    }
}

TEST(LogSharing, LetsAChildLogThatIsForkedWhileOtherThreadsDo)
{
    const LogFolder folder;
    std::atomic<bool> isOver = false;
    std::vector<std::thread> threads;
    for (int thread = 0; thread < 2; ++thread)
        threads.emplace_back([&isOver] {
            while (!isOver)
                Writer::Log(Writer::LogInfo, u"thread");
        });
    constexpr int kChildren = 20;
    for (int child = 0; child < kChildren; ++child)
        ExpectItEndsWell(InAChild([] {
            alarm(60);  // ends a child that hangs
            Writer::Log(Writer::LogInfo, u"child");
        }));
    isOver = true;
    for (std::thread& thread : threads)
        thread.join();
    const std::vector<std::string> bodies = Entries(ReadAll(folder.ActiveFile()));
    EXPECT_EQ(std::count(bodies.begin(), bodies.end(), "General/Info/child"), kChildren);
}

}  // namespace
