// Whatever bytes stand in the place of the preferences' database: values can be stored, and a new process reads them.
#include "fuzz/Fuzz.h"

#include <sys/socket.h>

namespace {

constexpr const char16_t* kName = u"stored";

SECRegistry Registry() {
    SECRegistry registry;
    registry.Connect(1, nullptr, false);  // each value is stored at once
    return registry;
}

/// Compares the stored number in processes that have used no preferences before.
class Reader {
public:
    Reader() {
        Require(socketpair(AF_UNIX, SOCK_STREAM, 0, m_ends) == 0);
        if (fork() == 0)
            Serve();
        close(m_ends[1]);
    }

    bool Reads(std::uint32_t number) const {
        int status = -1;
        return write(m_ends[0], &number, sizeof number) == sizeof number && Take(m_ends[0], status) && status == 0;
    }

private:
    /// The fuzzer's timer interrupts a reading that waits.
    template <class Value> static bool Take(int end, Value& value) {
        return TEMP_FAILURE_RETRY(read(end, &value, sizeof value)) == sizeof value;
    }

    [[noreturn]] void Serve() const {
        close(m_ends[0]);
        int status = 0;
        for (std::uint32_t expected; Take(m_ends[1], expected);) {
            if (std::uint32_t number = 0; fork() == 0)
                _exit(Registry().GetValue(kName, number) && number == expected ? 0 : 1);
            wait(&status);  // by now the process has closed the database
            Require(write(m_ends[1], &status, sizeof status) == sizeof status);
        }
        _exit(0);
    }

    int m_ends[2]{};
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
        sound = folder.Read(database.substr(folder.Path().size()));
    }

    ScopedFolder folder;
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

}  // namespace

void Try(FuzzedDataProvider& data) {
    static const Place place;
    static std::uint32_t number = 0;
    place.folder.Write("new", AnyDatabase(data, place.sound));
    std::filesystem::rename(place.folder.Path("new"), place.database);  // the process still has the last one open

    SECRegistry registry = Registry();
    registry.Open(nullptr, {});
    const auto has = [&](const CString& name, auto type) {
        return registry.GetValueFromSystem(name, type).has_value();
    };
    for (const CString& name : registry.GetValueNames())
        Require(has(name, SECRegistry::Boolean) || has(name, SECRegistry::Number) || has(name, SECRegistry::String));
    registry.SetValue(kName, ++number);
    Require(rk::GetPreferenceState().lastFailure.empty() && place.reader->Reads(number));
    for (const CString& name : registry.GetValueNames())
        registry.DeleteValue(name);
    std::filesystem::remove(rk::GetPreferenceState().damagedDatabase);
}
