#pragma once

#include "RkUtilities/RkUtilities.h"

#include <span>
#include <string>

/// What the laboratory makes fail: one call of the library with all that it may change.
namespace faults {

/// What a call works on. Made anew, in an empty folder, before each call.
struct Scene {
    std::string folder;  ///< without "/" at its end; "../elsewhere" is an empty one on another file system
    CString text;
    CString other;
    double number = 0;
    CAtlArray<CString> array;
    CAtlList<CString> list;
    CAtlMap<CString, CString, CStringElementTraits<CString>> map;
    CFile file;

    [[nodiscard]] std::string Path(const char* name) const { return folder + '/' + name; }
    [[nodiscard]] CString Text(const char* name) const { return rk::PathText(Path(name)); }
    /// Makes files and the folders that lead to them.
    void Make(std::initializer_list<std::pair<const char*, const char*>> files) const;
    /// All that stands here, on the disk and in the preferences, as one text.
    [[nodiscard]] std::string State() const;
};

enum class Keeps {
    Before,   ///< after a failure everything is as before the call
    Either,   ///< as before, or as after a success where a call to the system failed
    Later,    ///< the same, and after a success too: what could not be stored waits
    Moved,    ///< as before, or where a call to the system failed all is there elsewhere and a part is here still
    Nothing,  ///< outputs may hold a part
};

struct Workload {
    const char* name;
    void (*prepare)(Scene& scene);  ///< may be null
    std::string (*call)(Scene& scene);
    /// Further results that a call may give when something fails, with "|" between them; "*": any. What is thrown is
    /// named as `CallOf` does. Without memory `bad_alloc` is always one, and the undisturbed result is one in any case.
    const char* failures = "";
    Keeps keeps = Keeps::Before;
    /// The call may be the first that needs the zone, and the C library keeps UTC for a zone that it could not read.
    bool readsZone = false;
};

extern const std::span<const Workload> kTextWorkloads;
extern const std::span<const Workload> kLocaleWorkloads;
extern const std::span<const Workload> kFileWorkloads;
extern const std::span<const Workload> kStorageWorkloads;

inline std::string Shown(const CString& text) { return text.ToUtf8(); }
inline std::string Shown(bool value) { return value ? "true" : "false"; }
template <class Number>
    requires std::is_arithmetic_v<Number>
std::string Shown(Number value) {
    return std::to_string(value);
}

inline std::string Shown(std::string value) { return value; }

/// A row whose call gives a value of the scene `s` that `prepare` made; further results and what is kept may follow.
#define AFTER(prepare, name, expression, ...)                                                                          \
    {name, prepare, []([[maybe_unused]] Scene& s) { return Shown(expression); } __VA_OPT__(, ) __VA_ARGS__}
/// The same behind `Begin`, which each family has its own of.
#define GIVES(name, ...) AFTER(&Begin, name, __VA_ARGS__)
/// A call behind `Begin` whose result is not looked at.
#define DOES(name, call, ...) AFTER(&Begin, name, (static_cast<void>(call), true)__VA_OPT__(, ) __VA_ARGS__)

}  // namespace faults
