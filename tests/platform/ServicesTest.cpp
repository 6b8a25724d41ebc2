#include "RkUtilities/platform/Services.h"

#include "tests/support/ScopedFolder.h"
#include "tests/support/ScopedVariable.h"

#include <cstdio>
#include <filesystem>
#include <gtest/gtest.h>
#include <memory>
#include <string>

namespace {

/// What a run of ColdProgram prints, standard error included, and its status unless that is 0. Preferences go to a folder
/// of the run's own.
std::string PrintedBy(const std::string& steps, const std::string& variables = "")
{
    const ScopedFolder settings;
    const std::string command =
        "XDG_CONFIG_HOME='" + settings.Path() + "' " + variables + " exec '" COLD_PROGRAM "' " + steps + " 2>&1";
    const std::unique_ptr<FILE, int (*)(FILE*)> pipe(popen(command.c_str(), "r"), [](FILE*) { return 0; });
    std::string output;
    for (int c = std::fgetc(pipe.get()); c != EOF; c = std::fgetc(pipe.get()))
        output += static_cast<char>(c);
    const int status = pclose(pipe.get());
    return status == 0 ? output : output + "status " + std::to_string(status);
}

TEST(Services, MayBeUsedFirstByAnyThreadAtAnyTime)
{
    for (const char* const steps : {"threads", "threads threads", "child", "late", "threads late", "case late"})
        EXPECT_EQ(PrintedBy(steps), "") << steps;
    EXPECT_EQ(PrintedBy("late", "RK_EARLY=1"), "");
    EXPECT_EQ(rk::platform::LoadServices(), "");
}

#if !defined(RKUTILITIES_STATIC)

TEST(Services, AreLoadedByTheCallThatNeedsThem)
{
    const std::string icu = "libicuuc\n", expat = "libexpat\n", sqlite = "libsqlite3\n";
    const std::string icuModule = "libRkUtilitiesIcu\n", expatModule = "libRkUtilitiesXml\n";
    const std::string sqliteModule = "libRkUtilitiesStorage\n";
    EXPECT_EQ(PrintedBy("mapped"), "") << "a program that needs none of them pays for none";
    for (const char* const use : {"case ", "names ", "numbers ", "dates "})
        EXPECT_EQ(PrintedBy(use + std::string("mapped")), icu + icuModule) << use;
    EXPECT_EQ(PrintedBy("settings mapped"), expat + expatModule);
    EXPECT_EQ(PrintedBy("preferences mapped"), sqlite + sqliteModule);
    EXPECT_EQ(PrintedBy("load mapped"), '\n' + icu + expat + sqlite + icuModule + expatModule + sqliteModule);
}

/// A thread that waits for the loader holds nothing that the thread inside the loader may need.
TEST(Services, MayBeUsedByThePlugInsThatAreLoadedMeanwhile)
{
    for (const char* const use : {"case", "names", "numbers", "dates", "preferences", "settings"})
        EXPECT_EQ(PrintedBy("plugin '" COLD_PLUGIN "' " + std::string(use)), "") << use;
}

/// A copy of the library and its modules.
class MovedServices : public testing::Test {
protected:
    void SetUp() override
    {
        m_folder.MakeFolder("lib");
        m_folder.MakeFolder("links");
        for (const auto& file : std::filesystem::directory_iterator(LIBRARY_FOLDER)) {
            const std::string name = file.path().filename().string();
            if (name.starts_with("libRkUtilities"))
                std::filesystem::copy(file.path(), m_folder.Path("lib/" + name),
                                      std::filesystem::copy_options::copy_symlinks);
        }
        m_folder.Link("links/libRkUtilities.so.0", m_folder.Path("lib/libRkUtilities.so.0"));
    }

    std::string PrintedIn(const std::string& libraryFolder, const std::string& steps) const
    {
        return PrintedBy(steps, "cd '" + m_folder.Path() + "' && LD_LIBRARY_PATH='" + libraryFolder + '\'');
    }

    const ScopedFolder m_folder;
    const std::string m_module = m_folder.Path("lib/libRkUtilitiesIcu.so.0");
};

TEST_F(MovedServices, AreThoseBesideTheLibraryHoweverItIsReached)
{
    // Both fail once the module there is gone, so it is that one which is loaded.
    for (const std::string& libraries : {m_folder.Path("lib"), m_folder.Path("links"), std::string("lib")})
        EXPECT_EQ(PrintedIn(libraries, "in / load case"), "\n") << libraries;
    std::filesystem::remove(m_module);
    const std::string fault = m_module + ": cannot open shared object file: No such file or directory";
    for (const std::string& libraries : {m_folder.Path("lib"), m_folder.Path("links"), std::string("lib")}) {
        EXPECT_EQ(PrintedIn(libraries, "in / load settings preferences"), fault + '\n') << libraries;
        EXPECT_EQ(PrintedIn(libraries, "in / case"), "RkUtilities: " + fault + "\nstatus 6") << libraries;
    }
}

TEST_F(MovedServices, AreRefusedWhenTheyAreOfAnotherVersion)
{
    std::filesystem::copy_file(COLD_PLUGIN, m_module, std::filesystem::copy_options::overwrite_existing);
    const std::string fault = m_module + ": does not belong to version " RKUTILITIES_VERSION "\n";
    EXPECT_EQ(PrintedIn("lib", "load"), fault);
    EXPECT_EQ(PrintedIn("lib", "dates"), "RkUtilities: " + fault + "status 6");
}

#endif

}  // namespace
