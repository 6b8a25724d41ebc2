#include "RkUtilities/color/CrkBaseColorTable.h"

#include "RkUtilities/color/CrkColorConverter.h"

#include <algorithm>
#include <atomic>
#include <span>
#include <string_view>

namespace {

constinit std::atomic<CrkBaseColorTable*> currentTable{nullptr};

CString NameIn(CrkBaseColorTable& table, unsigned int argb) {
    const std::span entries(table.GetColorEntries(), static_cast<std::size_t>(std::max(table.GetColorCount(), 0)));
    const auto entry = std::find_if(entries.begin(), entries.end(),
                                    [argb](const CrkBaseColorTable::ColorEntry& e) { return e.argb == argb; });
    CString name;
    if (entry != entries.end())
        name.LoadString(entry->key);
    return name;
}

/// "{FF,80,00}": red, green and blue.
CString BytesOf(unsigned int color) {
    constexpr std::u16string_view kDigits = u"0123456789ABCDEF";
    char16_t text[] = u"{00,00,00}";
    for (unsigned int channel = 0; channel < 3; ++channel) {
        text[1 + 3 * channel] = kDigits[color >> (8 * channel + 4) & 0xFU];
        text[2 + 3 * channel] = kDigits[color >> (8 * channel) & 0xFU];
    }
    return CString(text);
}

}  // namespace

void CrkBaseColorTable::Set(CrkBaseColorTable* table) noexcept { currentTable.store(table, std::memory_order_release); }

CrkBaseColorTable* CrkBaseColorTable::Get() noexcept { return currentTable.load(std::memory_order_acquire); }

CString CrkBaseColorTable::GetColorText(unsigned int color) {
    CString text;
    if (CrkBaseColorTable* const table = Get())
        text = NameIn(*table, CrkColorConverter::COLORREFToARGB(color));
    return text.IsEmpty() ? BytesOf(color) : text;
}
