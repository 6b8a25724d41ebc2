#include "RkUtilities/platform/locale/CFormat.h"

#include <clocale>
#include <cstdio>
#include <locale.h>
#include <new>

namespace rk::platform {

namespace {

/// The thread's locale is "C" as long as this lives.
class ScopedCLocale {
public:
    ScopedCLocale() {
        // The C library has this locale ready: nothing is made.
        const locale_t locale = newlocale(LC_ALL_MASK, "C", nullptr);
        if (locale == nullptr)
            throw std::bad_alloc();
        m_previous = uselocale(locale);
    }
    ~ScopedCLocale() { uselocale(m_previous); }
    ScopedCLocale& operator=(ScopedCLocale&&) = delete;

private:
    locale_t m_previous{};
};

}  // namespace

template <class Number>
std::string FormatNumber(const std::string& conversion, int width, int precision, Number number) {
    const ScopedCLocale plain;
    const char* const format = conversion.c_str();
    std::string text(64, '\0');
    for (;;) {
        // The caller builds the format from checked flags and the conversion of a number.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wformat-nonliteral"
        const int length = std::snprintf(text.data(), text.size() + 1, format, width, precision, number);
#pragma GCC diagnostic pop
        if (length < 0)
            throw std::bad_alloc();
        const bool whole = static_cast<std::size_t>(length) <= text.size();
        text.resize(static_cast<std::size_t>(length));
        if (whole)
            return text;
    }
}

template std::string FormatNumber(const std::string&, int, int, double);
template std::string FormatNumber(const std::string&, int, int, long double);
template std::string FormatNumber(const std::string&, int, int, long long);
template std::string FormatNumber(const std::string&, int, int, unsigned long long);
template std::string FormatNumber(const std::string&, int, int, const void*);

}  // namespace rk::platform
