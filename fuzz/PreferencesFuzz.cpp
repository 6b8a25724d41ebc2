// Whatever bytes stand in the place of the preferences' database: values can be stored, and a new process reads them.
#include "RkUtilities/foundation/CAtlArray.h"
#include "RkUtilities/preferences/PreferenceState.h"
#include "RkUtilities/preferences/SECRegistry.h"

#include "fuzz/Require.h"
#include "fuzz/ScratchFolder.h"

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <cstdlib>
#include <fuzzer/FuzzedDataProvider.h>
#include <optional>
#include <string>
#include <sys/wait.h>
#include <unistd.h>

namespace {

constexpr const char16_t* kName = u"stored";

SECRegistry Registry() {
    SECRegistry registry;
    registry.Connect(1, nullptr, false);  // each value is stored at once
    return registry;
}

/// Reads the stored number in processes that have used no preferences before.
class Reader {
public:
    Reader() {
        int wishes[2], numbers[2];
        Require(pipe(wishes) == 0 && pipe(numbers) == 0);
        if (fork() == 0) {
            close(wishes[1]);
            Serve(wishes[0], numbers[1]);
        }
        m_wishes = wishes[1];
        m_numbers = numbers[0];
        close(wishes[0]);
        close(numbers[1]);
    }

    std::uint32_t Read() const {
        std::uint32_t number = 0;
        char end = 0;
        Require(write(m_wishes, "", 1) == 1 && Take(m_numbers, number));
        Require(Take(m_numbers, end));  // by now the process has closed the database
        return number;
    }

private:
    /// The fuzzer's timer interrupts a reading that waits.
    template <class Value> static bool Take(int pipe, Value& value) {
        ssize_t count = -1;
        do
            count = read(pipe, &value, sizeof value);
        while (count < 0 && errno == EINTR);
        return count == sizeof value;
    }

    [[noreturn]] static void Serve(int wishes, int numbers) {
        int status = 0;
        for (char wish; status == 0 && Take(wishes, wish);) {
            if (fork() == 0) {
                std::uint32_t number = 0;
                Registry().GetValue(kName, number);
                _exit(write(numbers, &number, sizeof number) == sizeof number ? 0 : 1);
            }
            wait(&status);
            status |= write(numbers, "", 1) == 1 ? 0 : 1;
        }
        _exit(0);
    }

    int m_wishes = -1, m_numbers = -1;
};

/// The folder of the preferences, and the bytes of a sound database with a few pages.
struct Place {
    Place() {
        setenv("XDG_CONFIG_HOME", folder.Path().c_str(), /*overwrite=*/1);
        reader.emplace();
        for (std::uint32_t i = 0; i < 200; ++i)
            Registry().SetValue(std::u16string(i % 40, static_cast<char16_t>(u'a' + i % 26)) + static_cast<char16_t>(i),
                                i);
        Registry().SetValue(u"text", std::u16string(5000, u'x'));
        database = rk::GetPreferenceState().database;
        if (fork() == 0)  // which closes the database
            _exit(0);
        wait(nullptr);
        sound = ReadFile(database);
    }

    ScratchFolder folder;
    std::optional<Reader> reader;
    std::string database, sound;
};

/// A damaged database, or any bytes.
std::string AnyDatabase(FuzzedDataProvider& data, std::string sound) {
    if (data.ConsumeBool())
        return data.ConsumeRemainingBytesAsString();
    if (data.ConsumeBool())
        sound.resize(data.ConsumeIntegralInRange<std::size_t>(0, sound.size()));
    while (data.remaining_bytes() > 0 && !sound.empty()) {
        // Where pages are described, or anywhere.
        const std::size_t page = data.ConsumeIntegralInRange<std::size_t>(0, sound.size() / 4096) * 4096;
        const std::size_t at = page + data.ConsumeIntegralInRange<std::size_t>(0, data.ConsumeBool() ? 100 : 4095);
        sound[std::min(at, sound.size() - 1)] = data.ConsumeIntegral<char>();
    }
    return sound;
}

void ReadAll() {
    const SECRegistry registry = Registry();
    for (const CString& name : registry.GetValueNames()) {
        int kinds = 0;
        for (const auto type : {SECRegistry::Boolean, SECRegistry::Number, SECRegistry::String})
            kinds += registry.GetValueFromSystem(name, type).has_value() ? 1 : 0;
        Require(kinds >= 1);
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    static const Place place;
    static std::uint32_t number = 0;
    FuzzedDataProvider data(bytes, size);
    const std::string newFile = place.database + "-new";
    WriteFile(newFile, AnyDatabase(data, place.sound));
    std::filesystem::rename(newFile, place.database);  // the process still has the last one open

    SECRegistry registry = Registry();
    registry.Open(nullptr, {});
    ReadAll();
    registry.SetValue(kName, ++number);
    auto got = place.reader->Read();
    fprintf(stderr, "FAIL %s aside %s got %u want %u\n", rk::GetPreferenceState().lastFailure.c_str(),
            rk::GetPreferenceState().damagedDatabase.c_str(), got, number);
    Require(rk::GetPreferenceState().lastFailure.empty() && got == number);
    for (const CString& name : registry.GetValueNames())
        registry.DeleteValue(name);
    std::filesystem::remove(rk::GetPreferenceState().damagedDatabase);
    return 0;
}
